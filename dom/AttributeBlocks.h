#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "VexXml/Dom.h"

namespace Xml {

/// Frees an attribute, but for memory that is that of a list.
struct AttributeDeleter {
    void operator()(Attribute* attribute) const noexcept;
};

/// An `AttributeList` of very many. They are kept in blocks, so that adding one moves few others,
/// however many there are and in whatever order they come. No block is empty.
class AttributeBlocks {
public:
    /// Takes ownership of the attributes, at least one, which are in order.
    AttributeBlocks(Attribute* const* attributes, std::size_t count);

    int size() const { return mSize; }
    /// Null when there is none.
    Attribute* find(const std::string& name) const;
    /// Needs: an index from 0 to below the size.
    Attribute& at(int index) const;
    /// Needs: no attribute is held under that name.
    void insert(std::unique_ptr<Attribute> attribute);
    /// Needs: an index from 0 to below the size.
    void erase(int index);
    /// False when there is no such attribute.
    bool erase(const std::string& name);

    /// Whether `condition` holds for some attribute; those behind that are not looked at.
    template <class Condition>
    bool anyOf(const Condition& condition) const {
        for (const Block& block : mBlocks) {
            for (const auto& attribute : block) {
                if (condition(*attribute)) return true;
            }
        }
        return false;
    }

private:
    using Item = std::unique_ptr<Attribute, AttributeDeleter>;
    using Block = std::vector<Item>;

    struct Place {
        std::size_t block;
        std::size_t index;
    };

    /// Where the attribute is, or would be inserted.
    Place placeOf(const std::string& name) const;
    Place placeOf(int index) const;
    bool holds(const Place& place, const std::string& name) const;
    void erase(const Place& place);
    void splitBlock(std::size_t block);
    void count(std::size_t block, int change);
    void countAll();

    std::vector<Block> mBlocks;
    /// How many attributes are in one or more blocks up to each: the place of a block counts from 1
    /// here, and as many blocks are added up as its lowest bit that is set says. So an index is
    /// found in logarithmic time, and a change costs no more.
    std::vector<int> mSums;
    int mSize = 0;
};

}  // namespace Xml
