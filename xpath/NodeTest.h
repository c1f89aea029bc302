#pragma once

#include "VexXml/Dom.h"
#include "dom/NodeAccess.h"
#include "xpath/Program.h"

namespace Xml {

/// Whether the node is what a step asks for.
bool CompliesToKindTest(const Object& node, const NodeTest& test);

/// The same for many nodes in a row. The test must outlive it.
class NodeMatcher {
public:
    NodeMatcher() = default;
    explicit NodeMatcher(const NodeTest& test)
        : mTest(&test),
          mIsWholeName(test.kind == XPath::NoKind && test.name.form == NameTest::Form::WholeName) {}

    // Needs: made for a test.
    bool operator()(const Object& node) const {
        return mIsWholeName ? isNamed(node) : CompliesToKindTest(node, *mTest);
    }
    bool operator()(const Element& element) const { return matchesNamed(element); }
    bool operator()(const Attribute& attribute) const { return matchesNamed(attribute); }

    /// Whether character data can pass.
    bool acceptsText() const { return !mIsWholeName; }

private:
    bool isNamed(const Object& node) const {
        if (NodeAccess::isElement(node)) return hasName(static_cast<const Element&>(node));
        return NodeAccess::isAttribute(node) && hasName(static_cast<const Attribute&>(node));
    }
    template <class Node>
    bool matchesNamed(const Node& node) const {
        return mIsWholeName ? hasName(node) : CompliesToKindTest(node, *mTest);
    }
    template <class Node>
    bool hasName(const Node& node) const {
        return NodeAccess::nodeNameOf(node).is(mTest->name.name, mTest->name.sharedName);
    }

    const NodeTest* mTest = nullptr;
    bool mIsWholeName = false;
};

}  // namespace Xml
