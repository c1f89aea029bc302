#include <algorithm>
#include <typeinfo>

#include "VexXml/Dom.h"
#include "VexXml/Streams.h"
#include "dom/AttributeList.h"

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
void Element::write(OutStream& out) const {
    struct Open {
        const Element* element;
        std::size_t next;
        bool onlyElements;
    };
    std::vector<Open> open;
    const auto start = [&](const Element& element) {
        const bool hasContent = element.writeStartTag(out);
        if (hasContent) open.push_back({&element, 0, element.hasOnlyElements()});
        if (hasContent && open.back().onlyElements) out << '\n';
        return hasContent;
    };
    const auto endChild = [&] {
        if (!open.empty() && open.back().onlyElements) out << '\n';
    };
    start(*this);
    while (!open.empty()) {
        const Element* parent = open.back().element;
        if (open.back().next == parent->mChildren.size()) {
            parent->writeEndTag(out);
            open.pop_back();
            if (parent != this) const_cast<Element*>(parent)->endWrite(out);
            endChild();
            continue;
        }
        Object* child = parent->mChildren[open.back().next++];
        if (typeid(*child) != typeid(Element)) {
            child->toStream(out);
            endChild();
        } else if (!child->beginWrite(out)) {
            endChild();
        } else if (!start(*static_cast<Element*>(child))) {
            child->endWrite(out);
            endChild();
        }
    }
}

// False when the tag is that of an empty element in short notation, so that nothing follows.
bool Element::writeStartTag(OutStream& out) const {
    out << '<' << mName;
    const auto writeAttribute = [&out](const Attribute& attribute) {
        if (attribute.isOk()) out << ' ' << attribute.text();
    };
    if (mAttributes) mAttributes->forEach(writeAttribute);
    if (mChildren.empty() && writesShortEmptyTags) {
        out << "/>";
        return false;
    }
    out << '>';
    out.incTab();
    return true;
}

void Element::writeEndTag(OutStream& out) const {
    out.decTab();
    out << "</" << mName << '>';
}

bool Element::hasOnlyElements() const {
    return !mChildren.empty() &&
           std::none_of(mChildren.begin(), mChildren.end(),
                        [](const Object* child) { return child->isCharData(); });
}

}  // namespace Xml
