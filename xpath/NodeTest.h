#pragma once

#include <string>

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

    /// Needs: made for a test.
    bool operator()(const Object& node) const {
        return mIsWholeName ? isNamed(node) : CompliesToKindTest(node, *mTest);
    }

    /// Whether character data can pass.
    bool acceptsText() const { return !mIsWholeName; }

private:
    bool isNamed(const Object& node) const {
        if (NodeAccess::isElement(node)) {
            return NodeAccess::nameOf(static_cast<const Element&>(node)) == mTest->name.name;
        }
        return NodeAccess::isAttribute(node) &&
               NodeAccess::nameOf(static_cast<const Attribute&>(node)) == mTest->name.name;
    }

    const NodeTest* mTest = nullptr;
    bool mIsWholeName = false;
};

}  // namespace Xml
