#include <algorithm>
#include <typeinfo>

#include "VexXml/Dom.h"
#include "dom/AttributeList.h"
#include "streams/OutWindow.h"

namespace Xml {
namespace {

bool writesShortEmptyTags = true;

}  // namespace

bool Element::setShortNotationForEmptyTags(bool on) {
    const bool previous = writesShortEmptyTags;
    writesShortEmptyTags = on;
    return previous;
}

bool Element::usingShortNotationForEmptyTags() { return writesShortEmptyTags; }

// Writes all that is below without recursion; children of classes that a caller derived write
// themselves. Invariant: the elements of `open` have their start tags written, each is a child of
// the one before it, and only their children from `next` on and their end tags are missing.
void Element::write(OutStream& stream) const {
    struct Open {
        const Element* element;
        std::size_t next;
        bool onlyElements;
    };
    std::vector<Open> open;
    OutWindow out(stream);
    const auto start = [&](const Element& element) {
        const bool hasContent = element.writeStartTag(out);
        if (hasContent) open.push_back({&element, 0, element.hasOnlyElements()});
        if (hasContent && open.back().onlyElements) out.put('\n');
        return hasContent;
    };
    const auto endChild = [&] {
        if (!open.empty() && open.back().onlyElements) out.put('\n');
    };
    start(*this);
    while (!open.empty()) {
        const Element* parent = open.back().element;
        if (open.back().next == parent->mChildren.size()) {
            parent->writeEndTag(out);
            open.pop_back();
            if (parent != this) const_cast<Element*>(parent)->endWrite(out.getPosition());
            endChild();
            continue;
        }
        Object* child = parent->mChildren[open.back().next++];
        const std::type_info& type = typeid(*child);
        if (type != typeid(Element) && type != typeid(CharData)) {
            out.release();
            child->toStream(stream);
            out.takeBack();
            endChild();
        } else if (!child->beginWrite(out.getPosition())) {
            out.setPosition(child->mWriteEnd);
            endChild();
        } else if (type == typeid(CharData)) {
            out.writeDataHolder(static_cast<CharData*>(child)->mData);
            child->endWrite(out.getPosition());
            endChild();
        } else if (!start(*static_cast<Element*>(child))) {
            child->endWrite(out.getPosition());
            endChild();
        }
    }
}

// False when the tag is that of an empty element in short notation, so that nothing follows.
bool Element::writeStartTag(OutWindow& out) const {
    out.put('<');
    out.put(mName);
    const auto writeAttribute = [&out](const Attribute& attribute) {
        if (!attribute.isOk()) return;
        out.put(' ');
        out.put(attribute.mName);
        out.put("=\"");
        out.putEscaped(
            {attribute.mValue.toCString(), static_cast<std::size_t>(attribute.mValue.getSize())});
        out.put('"');
    };
    if (mAttributes) mAttributes->forEach(writeAttribute);
    if (mChildren.empty() && writesShortEmptyTags) {
        out.put("/>");
        return false;
    }
    out.put('>');
    out.incTab();
    return true;
}

void Element::writeEndTag(OutWindow& out) const {
    out.decTab();
    out.put("</");
    out.put(mName);
    out.put('>');
}

bool Element::hasOnlyElements() const {
    return !mChildren.empty() &&
           std::none_of(mChildren.begin(), mChildren.end(),
                        [](const Object* child) { return child->isCharData(); });
}

}  // namespace Xml
