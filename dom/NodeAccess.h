#pragma once

#include <string>

#include "VexXml/Dom.h"

namespace Xml {

/// What nodes hold, for loops over many of them: without a virtual call, a check or a copy.
class NodeAccess {
public:
    static bool isElement(const Object& node) { return node.isElement(); }
    static bool isAttribute(const Object& node) { return node.isAttribute(); }
    static bool isCharData(const Object& node) { return node.isCharData(); }

    static const std::string& nameOf(const Element& element) { return element.getName(); }
    static const std::string& nameOf(const Attribute& attribute) { return attribute.getName(); }
    static const Detail::ChildList& childrenOf(const Element& element) { return element.mChildren; }
    static const DataHolder& valueOf(const Attribute& attribute) { return attribute.mValue; }
    /// The escaped text.
    static const DataHolder& textOf(const CharData& text) { return text.mData; }
};

}  // namespace Xml
