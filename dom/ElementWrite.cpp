#include <algorithm>
#include <atomic>
#include <string_view>
#include <vector>

#include "VexXml/Dom.h"
#include "dom/AttributeList.h"
#include "dom/Exactly.h"
#include "streams/OutWindow.h"

namespace Xml {
namespace {

std::atomic<bool> writesShortEmptyTags{true};

}  // namespace

bool Element::setShortNotationForEmptyTags(bool on) { return writesShortEmptyTags.exchange(on); }

bool Element::usingShortNotationForEmptyTags() {
    return writesShortEmptyTags.load(std::memory_order_relaxed);
}

/// Writes an element and all below it without recursion; nodes of classes that a caller derived
/// write themselves. Invariant: `here` and the elements around it have their start tags written,
/// and only their children from `next` on and their end tags are missing.
class Element::Writer {
public:
    explicit Writer(OutStream& stream) : mStream(stream), mOut(stream) {}

    // Whatever stops it, a lack of memory say, the stream is indented as before.
    void write(const Element& top) {
        const int level = mOut.level();
        try {
            writeAll(top);
            mOut.release();
        } catch (...) {
            mOut.setLevel(level);
            throw;
        }
    }

private:
    struct Open {
        const Element* element;
        std::size_t next;
        bool onlyElements;
    };

    void writeAll(const Element& top) {
        if (!writeStartTag(top)) return;
        Open here = open(top);
        while (true) {
            if (const Element* inner = writeChildren(here)) {
                mAround.push_back(here);
                here = open(*inner);
                continue;
            }
            writeEndTag(*here.element);
            if (mAround.empty()) return;
            const_cast<Element*>(here.element)->endWrite(mOut.getPosition());
            here = mAround.back();
            mAround.pop_back();
            endChild(here);
        }
    }

    Open open(const Element& element) {
        const bool onlyElements = element.hasOnlyElements();
        if (onlyElements) mOut.endLine();
        return {&element, 0, onlyElements};
    }
    void endChild(const Open& here) {
        if (here.onlyElements) mOut.endLine();
    }

    // Stops behind the start tag of a child that has content. Null when there is none left.
    const Element* writeChildren(Open& here) {
        const auto& children = here.element->mChildren;
        while (here.next < children.size()) {
            Object* child = children[here.next++];
            if (isExactly<Element>(*child)) {
                if (writeStart(*static_cast<Element*>(child))) return static_cast<Element*>(child);
            } else if (isExactly<CharData>(*child)) {
                writeText(*static_cast<CharData*>(child));
            } else {
                mOut.release();
                child->toStream(mStream);
                mOut.takeBack();
            }
            endChild(here);
        }
        return nullptr;
    }

    // False when the element is written, or passed over.
    bool writeStart(Element& element) {
        if (!beginWrite(element)) return false;
        if (writeStartTag(element)) return true;
        element.endWrite(mOut.getPosition());
        return false;
    }

    void writeText(CharData& text) {
        if (!beginWrite(text)) return;
        mOut.writeDataHolder(text.mData);
        text.endWrite(mOut.getPosition());
    }

    bool beginWrite(Object& node) {
        if (node.beginWrite(mOut.getPosition())) return true;
        mOut.setPosition(node.mWriteEnd);
        return false;
    }

    // False when the tag is that of an empty element in short notation, so that nothing follows.
    bool writeStartTag(const Element& element) {
        mOut.put('<', nameOf(element));
        if (element.mAttributes) {
            element.mAttributes->forEach(
                [this](const Attribute& attribute) { writeAttribute(attribute); });
        }
        if (element.mChildren.empty() && usingShortNotationForEmptyTags()) {
            mOut.put('/', '>');
            return false;
        }
        mOut.put('>');
        mOut.incTab();
        return true;
    }

    void writeAttribute(const Attribute& attribute) {
        if (!attribute.isOk()) return;
        const DataHolder& value = attribute.getValue();
        const std::string_view bytes(value.toCString(), static_cast<std::size_t>(value.getSize()));
        mOut.put(' ', nameOf(attribute), '=', '"', LinePart::Escaped{bytes}, '"');
    }

    template <class Node>
    static std::string_view nameOf(const Node& node) {
        return node.getName();
    }

    void writeEndTag(const Element& element) {
        mOut.decTab();
        mOut.put('<', '/', nameOf(element), '>');
    }

    OutStream& mStream;
    OutWindow mOut;
    std::vector<Open> mAround;
};

void Element::write(OutStream& out) const { Writer(out).write(*this); }

bool Element::hasOnlyElements() const {
    if (mChildren.empty() || !is(MayHoldElements)) return false;
    return !is(MayHoldText) ||
           std::none_of(mChildren.begin(), mChildren.end(), [](const Object* child) {
               return !isExactly<Element>(*child) && child->isCharData();
           });
}

}  // namespace Xml
