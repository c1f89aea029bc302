#include "xpath/NodeTest.h"

#include <string_view>

namespace Xml {
namespace {

// Bytes are compared: the test is in UTF-8, as names are.
bool passes(std::string_view name, const NameTest& test) {
    if (test.form == NameTest::Form::Any) return true;
    if (test.form == NameTest::Form::WholeName) return name == test.name;
    const std::size_t colon = name.find(':');
    if (colon == std::string_view::npos) return false;
    return test.form == NameTest::Form::LocalName ? name.substr(colon) == test.name
                                                  : name.substr(0, colon + 1) == test.name;
}

bool isElement(const Object& node, const NameTest& test) {
    return NodeAccess::isElement(node) &&
           passes(NodeAccess::nameOf(static_cast<const Element&>(node)), test);
}

bool isAttribute(const Object& node, const NameTest& test) {
    return NodeAccess::isAttribute(node) &&
           passes(NodeAccess::nameOf(static_cast<const Attribute&>(node)), test);
}

}  // namespace

bool CompliesToKindTest(const Object& node, const NodeTest& test) {
    switch (test.kind) {
        case XPath::NoKind:
        case XPath::AnyNode:
            // Without a name anything will do, so "*" selects character data too. Deliberate:
            // applications gather all content of an element by it.
            return test.name.form == NameTest::Form::Any || isElement(node, test.name) ||
                   isAttribute(node, test.name);
        case XPath::ElementNode:
            return isElement(node, test.name);
        case XPath::AttributeNode:
            return isAttribute(node, test.name);
        case XPath::DocumentNode:
            return node.isDocument();
        case XPath::TextNode:
            return NodeAccess::isCharData(node);
        default:
            return false;
    }
}

}  // namespace Xml
