#pragma once

#include <string>
#include <vector>

#include "VexXml/Dom.h"

namespace Xml {

/// What nodes hold, for loops over many of them: without a virtual call, a check or a copy.
class NodeAccess {
public:
    static bool isElement(const Object& node) { return node.isElement(); }
    static bool isAttribute(const Object& node) { return node.isAttribute(); }
    static bool isCharData(const Object& node) { return node.isCharData(); }

    static const std::string& nameOf(const Element& element) { return element.mName; }
    static const std::string& nameOf(const Attribute& attribute) { return attribute.mName; }
    static const std::vector<Object*>& childrenOf(const Element& element) {
        return element.mChildren;
    }
    static const DataHolder& valueOf(const Attribute& attribute) { return attribute.mValue; }
    /// The escaped text.
    static const DataHolder& textOf(const CharData& text) { return text.mData; }
};

}  // namespace Xml
