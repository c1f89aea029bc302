#include "support/ReferenceXPathWalk.h"

#include <algorithm>

// NOLINTBEGIN(misc-no-recursion): the trees are small, and this is what is to be compared with
namespace support::xpath {
namespace {

using Xml::Object;

Text decoded(const Xml::DataHolder& bytes) {
    return VexSys::UTF8ToUni16Char(bytes.toCString(), static_cast<std::size_t>(bytes.getSize()));
}

Text nameOf(const Object& node) {
    return decoded(node.isElement() ? node.toElement()->getName() : node.toAttribute()->getName());
}

bool passes(const Object& node, const Text& test) {
    const Text name = nameOf(node);
    const std::size_t colon = name.find(L':');
    if (test.front() == L':') return colon != Text::npos && name.substr(colon) == test;
    if (test.back() == L':') return colon != Text::npos && name.substr(0, colon + 1) == test;
    return name == test;
}

bool complies(const Object& node, const NodeTest& test) {
    const bool isAnyName = test.name.empty();
    switch (test.kind) {
        case Query::NoKind:
        case Query::AnyNode:
            return isAnyName ||
                   ((node.isAttribute() || node.isElement()) && passes(node, test.name));
        case Query::ElementNode:
            return node.isElement() && (isAnyName || passes(node, test.name));
        case Query::AttributeNode:
            return node.isAttribute() && (isAnyName || passes(node, test.name));
        case Query::DocumentNode:
            return node.isDocument();
        case Query::TextNode:
            return node.isCharData();
    }
    return false;
}

std::vector<Object*> childrenOf(Object& node) {
    std::vector<Object*> children;
    if (node.isDocument() && node.toDocument()->getRoot() != nullptr) {
        children.push_back(node.toDocument()->getRoot());
    }
    if (!node.isElement()) return children;
    Xml::Element& element = *node.toElement();
    for (int i = 0; i < element.getChildCount(); ++i) children.push_back(element.getChild(i));
    return children;
}

class AxisWalk {
public:
    AxisWalk(Object& node, const NodeTest& test, Xml::Document& document, Items& selected)
        : mNode(node), mTest(test), mDocument(document), mSelected(selected) {}

    void along(Query::Axis axis);

private:
    void add(Object& candidate) {
        if (complies(candidate, mTest)) addNode(&candidate, mSelected);
    }

    void descendants(Object& node);
    void attributes();
    void parent();
    void ancestors(Object& node);
    void siblings(bool following);
    void following();
    void followingBelow(Object& node, bool isBehind);
    void preceding();
    void precedingBelow(Object& node);
    bool isAncestor(Object* node) const;

    Object& mNode;
    const NodeTest& mTest;
    Xml::Document& mDocument;
    Items& mSelected;
    std::vector<Object*> mAncestors;
};

void AxisWalk::along(Query::Axis axis) {
    switch (axis) {
        case Query::AttributeAxis:
            return attributes();
        case Query::ChildAxis:
            for (Object* child : childrenOf(mNode)) add(*child);
            return;
        case Query::DescendantOrSelfAxis:
            add(mNode);
            return descendants(mNode);
        case Query::DescendantAxis:
            return descendants(mNode);
        case Query::ParentAxis:
            return parent();
        case Query::AncestorAxis:
            return ancestors(mNode);
        case Query::AncestorOrSelfAxis:
            ancestors(mNode);
            return add(mNode);
        case Query::FollowingSiblingAxis:
            return siblings(true);
        case Query::PrecedingSiblingAxis:
            return siblings(false);
        case Query::FollowingAxis:
            return following();
        case Query::PrecedingAxis:
            return preceding();
        case Query::SelfAxis:
            return add(mNode);
        case Query::NoAxis:
            return;
    }
}

void AxisWalk::descendants(Object& node) {
    for (Object* child : childrenOf(node)) {
        add(*child);
        descendants(*child);
    }
}

void AxisWalk::attributes() {
    if (!mNode.isElement()) return;
    Xml::Element& element = *mNode.toElement();
    for (int i = 0; i < element.getAttributeCount(); ++i) add(*element.getAttribute(i));
}

void AxisWalk::parent() {
    if (!mNode.isDocument() && mNode.getParent() != nullptr) add(*mNode.getParent());
}

void AxisWalk::ancestors(Object& node) {
    Object* const parent = node.getParent();
    if (parent == nullptr) return;
    ancestors(*parent);
    add(*parent);
}

void AxisWalk::siblings(bool following) {
    if (mNode.isDocument() || mNode.isAttribute()) return;
    Object* const parent = mNode.getParent();
    if (parent == nullptr || !parent->isElement()) return;
    bool isBehind = false;
    for (Object* child : childrenOf(*parent)) {
        if (child != &mNode && isBehind == following) add(*child);
        if (child == &mNode) isBehind = true;
    }
}

void AxisWalk::following() {
    Xml::Element* const root = mDocument.getRoot();
    if (mNode.isDocument() || root == nullptr || &mNode == root) return;
    followingBelow(*root, false);
}

// That the node was met is handed down but never back up, so nothing behind its ancestors is
// selected.
void AxisWalk::followingBelow(Object& node, bool isBehind) {
    for (Object* child : childrenOf(node)) {
        if (isBehind) add(*child);
        if (child == &mNode) {
            isBehind = true;
        } else {
            followingBelow(*child, isBehind);
        }
    }
}

void AxisWalk::preceding() {
    Xml::Element* const root = mDocument.getRoot();
    if (mNode.isDocument() || root == nullptr || &mNode == root) return;
    for (Object* node = mNode.getParent(); node != nullptr; node = node->getParent()) {
        mAncestors.push_back(node);
    }
    precedingBelow(*root);
}

// The node stops only the walk over its own siblings, so what stands behind its ancestors is
// selected as well.
void AxisWalk::precedingBelow(Object& node) {
    for (Object* child : childrenOf(node)) {
        if (child == &mNode) return;
        if (!isAncestor(child)) add(*child);
        precedingBelow(*child);
    }
}

bool AxisWalk::isAncestor(Object* node) const {
    return std::find(mAncestors.begin(), mAncestors.end(), node) != mAncestors.end();
}

}  // namespace

Query::ResultItem nodeItem(Object* node) {
    Query::ResultItem item;
    item.node = node;
    return item;
}

void addNode(Object* node, Items& nodes) {
    for (const Query::ResultItem& item : nodes) {
        if (item.kind == Query::Node && item.node == node) return;
    }
    nodes.push_back(nodeItem(node));
}

Text valueText(Object& node) {
    if (node.isAttribute()) return decoded(node.toAttribute()->getValue());
    if (node.isCharData()) return decoded(node.toCharData()->getData());
    if (!node.isElement()) return {};
    const std::vector<Object*> children = childrenOf(node);
    const bool hasText = std::any_of(children.begin(), children.end(),
                                     [](const Object* child) { return child->isCharData(); });
    return hasText ? decoded(node.toElement()->getCharData()) : Text();
}

void selectFrom(Object& node, const Step& step, Xml::Document& document, Items& selected) {
    AxisWalk(node, step.test, document, selected).along(step.axis);
}

void selectDescendantsOrSelf(Object& node, Items& selected) {
    addNode(&node, selected);
    for (Object* child : childrenOf(node)) selectDescendantsOrSelf(*child, selected);
}

}  // namespace support::xpath
// NOLINTEND(misc-no-recursion)
