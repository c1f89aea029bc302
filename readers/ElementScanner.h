#pragma once

#include <cstddef>
#include <memory>
#include <vector>

#include "VexXml/Dom.h"
#include "readers/ElementContent.h"
#include "streams/TextWindow.h"

namespace Xml {

/// Reads the content of elements straight from a text in memory.
///
/// It knows what well-formed content mostly consists of, and reads that exactly as the stream's
/// operations would. Everything else, all mistakes among it, it leaves to them: then it answers
/// `Unread` and nothing has changed.
class ElementScanner {
public:
    /// `dtd`, which may be null, is asked for the entities in attribute values.
    ElementScanner(TextWindow& window, Dtd* dtd) : mWindow(window), mDtd(dtd) {}

    /// Reads what comes next in `parent`: character data, which becomes its child; the tag that
    /// begins a child, which is left in `child`; or its end tag.
    ElementContent read(Element& parent, std::unique_ptr<Element>& child);

private:
    /// From `begin` to just before `end`.
    struct Stretch {
        std::size_t begin;
        std::size_t end;
    };

    struct AttributeText {
        Stretch name;
        Stretch value;  ///< without its quotes
    };

    bool readCharData(Element& parent, std::size_t first);
    bool passOverLookAhead(std::size_t first);
    bool readEndTag(const Element& element, std::size_t slash);
    ElementContent readStartTag(std::size_t open, std::unique_ptr<Element>& child);
    bool readAttributes(std::size_t& at);
    bool readAttribute(std::size_t name, std::size_t& at);
    std::unique_ptr<Element> makeElement(Stretch name) const;

    std::size_t skipWhite(std::size_t at) const;
    std::size_t skipName(std::size_t at) const;
    std::string text(Stretch stretch) const;

    TextWindow& mWindow;
    Dtd* mDtd;
    std::vector<AttributeText> mAttributes;  ///< of the start tag that is being read
};

}  // namespace Xml
