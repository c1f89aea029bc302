#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "dom/TreeBuilder.h"
#include "readers/ReadBudget.h"
#include "streams/TextWindow.h"

namespace Xml {

/// Reads the content of elements straight from a text in memory.
///
/// It knows what well-formed content mostly consists of, and reads that exactly as the stream's
/// operations would. Everything else, all mistakes among it, it leaves to them.
class ElementScanner {
public:
    /// `budget` may be null. What would go beyond it is left to the stream's operations too.
    ElementScanner(TextWindow& window, TreeBuilder& tree, ReadBudget* budget)
        : mWindow(window), mTree(tree), mBudget(budget) {}

    /// Reads into the tree for as long as it knows what comes next and the tree is not complete.
    void read();

private:
    /// From `begin` to just before `end`.
    struct Stretch {
        std::size_t begin;
        std::size_t end;
    };

    bool readNext();
    bool readCharData(std::size_t first);
    std::size_t lookAhead(std::size_t first);
    void endToken(std::size_t end);
    bool readEndTag(std::size_t slash);
    bool readStartTag(std::size_t open);
    bool readAttributes(std::size_t& at);
    bool readAttribute(std::size_t name, std::size_t& at);
    std::size_t findQuote(char quote, std::size_t begin, bool& hasReference);
    bool mayGrow(std::size_t begin, std::size_t end) const;
    bool mayAddText(std::size_t size);
    bool mayAddElement(std::size_t nameSize);
    bool mayAddAttribute(const TreeBuilder::AttributeText& attribute) const;
    bool readComment(std::size_t open);
    bool readCDataSection(std::size_t open);
    bool readInstruction(std::size_t open);

    std::size_t skipWhite(std::size_t at) const;
    std::size_t skipName(std::size_t at) const;
    std::size_t skipToken(std::size_t at) const;
    bool stands(std::string_view text, std::size_t at) const;

    TextWindow& mWindow;
    TreeBuilder& mTree;
    ReadBudget* mBudget;
    std::vector<TreeBuilder::AttributeText> mAttributes;  ///< of the start tag that is being read
    std::size_t mTokens = 0;  ///< where the tokens of the tag begin that are not passed over yet
};

}  // namespace Xml
