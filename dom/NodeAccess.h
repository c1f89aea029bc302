#pragma once

#include <cstddef>
#include <string>

#include "VexXml/Dom.h"
#include "dom/Exactly.h"

namespace Xml {

/// What nodes hold, for loops over many of them: without a virtual call, a check or a copy.
class NodeAccess {
public:
    /// In the order of the document; valid until the element changes.
    struct Children {
        Object* const* first;
        Object* const* last;

        Object* const* begin() const { return first; }
        Object* const* end() const { return last; }
        std::size_t size() const { return static_cast<std::size_t>(last - first); }
        bool empty() const { return first == last; }
        Object* operator[](std::size_t index) const { return first[index]; }
    };

    // What a class that a caller derived answers is asked; of our own it is known.
    static bool isElement(const Object& node) {
        return isExactly<Element>(node) ||
               (!isExactly<CharData>(node) && !isExactly<Attribute>(node) && node.isElement());
    }
    static bool isCharData(const Object& node) {
        return isExactly<CharData>(node) ||
               (!isExactly<Element>(node) && !isExactly<Attribute>(node) && node.isCharData());
    }
    static bool isAttribute(const Object& node) {
        return isExactly<Attribute>(node) ||
               (!isExactly<Element>(node) && !isExactly<CharData>(node) && node.isAttribute());
    }

    static const std::string& nameOf(const Element& element) { return element.getName(); }
    static const std::string& nameOf(const Attribute& attribute) { return attribute.getName(); }
    template <class Node>  // an element or an attribute
    static const Detail::NodeName& nodeNameOf(const Node& node) {
        return node.mName;
    }
    static Children childrenOf(const Element& element) {
        return {element.mChildren.begin(), element.mChildren.end()};
    }
    /// False when all children are character data.
    static bool mayHoldElements(const Element& element) {
        return element.is(Object::MayHoldElements);
    }
    static const DataHolder& valueOf(const Attribute& attribute) { return attribute.mValue; }
    /// The escaped text.
    static const DataHolder& textOf(const CharData& text) { return text.mData; }
};

}  // namespace Xml
