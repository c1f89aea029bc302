#include "xpath/NodeTest.h"

#include <string_view>

namespace Xml {
namespace {

// Bytes are compared: the test is in UTF-8, as names are.
bool passes(std::string_view name, const NameTest& test) {
    const std::size_t colon = name.find(':');
    switch (test.form) {
        case NameTest::Form::Any:
            return true;
        case NameTest::Form::LocalName:
            return colon != std::string_view::npos && name.substr(colon) == test.name;
        case NameTest::Form::Prefix:
            return colon != std::string_view::npos && name.substr(0, colon + 1) == test.name;
        default:
            return name == test.name;
    }
}

bool isElement(Object& node, const NameTest& test) {
    return node.isElement() && passes(node.toElement()->getName(), test);
}

bool isAttribute(Object& node, const NameTest& test) {
    return node.isAttribute() && passes(node.toAttribute()->getName(), test);
}

}  // namespace

bool CompliesToKindTest(Object& node, const NodeTest& test) {
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
            return node.isCharData();
        default:
            return false;
    }
}

}  // namespace Xml
