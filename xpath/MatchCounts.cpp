#include "xpath/MatchCounts.h"

#include <algorithm>

#include "xpath/NodeTest.h"

namespace Xml {

// Parents come before their children, so what is told of a parent is known.
MatchCounts::MatchCounts(const DocumentOrder& order, const NodeTest& test)
    : mOrder(order), mTest(test), mChildren(order.size() + 1) {
    for (Object* top = order.root(); top != nullptr; top = top->getParent()) {
        mIsRootOrAbove = mIsRootOrAbove || passes(*top);
    }
    Place count = 0;
    for (Place place = 0; place < order.size(); ++place) {
        const Place self = passes(*order.node(place)) ? 1 : 0;
        const Place parent = order.parentOf(place);
        Place& siblings = mChildren[std::min(parent, order.size())];
        mBefore.push_back(count);
        mOnPath.push_back(self + (parent == DocumentOrder::kNone ? 0 : mOnPath[parent]));
        mSiblingsBefore.push_back(siblings);
        siblings += self;
        count += self;
    }
    mBefore.push_back(count);
}

// On the other axes a search is short, or all searches together are.
bool MatchCounts::covers(XPath::Axis axis) {
    switch (axis) {
        case XPath::NoAxis:
        case XPath::AttributeAxis:
        case XPath::ChildAxis:
        case XPath::ParentAxis:
        case XPath::SelfAxis:
            return false;
        default:
            return true;
    }
}

bool MatchCounts::finds(XPath::Axis axis, Object& node) const {
    const Place place = mOrder.placeOf(node);
    switch (axis) {
        case XPath::DescendantOrSelfAxis:
            return passes(node) || hasDescendant(node);
        case XPath::DescendantAxis:
            return hasDescendant(node);
        case XPath::AncestorOrSelfAxis:
            return passes(node) || hasAncestor(node);
        case XPath::AncestorAxis:
            return hasAncestor(node);
        case XPath::FollowingAxis:
            return hasPassing(mOrder.following(node));
        case XPath::PrecedingAxis:
            return mOrder.isBelowRoot(node) && hasPreceding(node);
        case XPath::FollowingSiblingAxis:
            return place != DocumentOrder::kNone && hasFollowingSibling(place);
        default:
            return place != DocumentOrder::kNone && mSiblingsBefore[place] > 0;
    }
}

bool MatchCounts::passes(Object& node) const { return CompliesToKindTest(node, mTest); }

bool MatchCounts::hasPassing(DocumentOrder::Range range) const {
    return mBefore[range.end] > mBefore[range.begin];
}

bool MatchCounts::hasDescendant(Object& node) const {
    const bool isRootPassing =
        node.isDocument() && mOrder.root() != nullptr && passes(*mOrder.root());
    return isRootPassing || hasPassing(mOrder.below(node));
}

bool MatchCounts::hasAncestor(const Object& node) const {
    for (Object* above = node.getParent(); above != nullptr; above = above->getParent()) {
        const Place place = mOrder.placeOf(*above);
        if (place != DocumentOrder::kNone) return mIsRootOrAbove || mOnPath[place] > 0;
        if (passes(*above)) return true;
    }
    return false;
}

bool MatchCounts::hasFollowingSibling(Place place) const {
    const Place self = mBefore[place + 1] - mBefore[place];
    const Place siblings = mChildren[std::min(mOrder.parentOf(place), mOrder.size())];
    return siblings > mSiblingsBefore[place] + self;
}

// All in front of the node and behind its siblings, but for the elements around it.
bool MatchCounts::hasPreceding(const Object& node) const {
    const DocumentOrder::NotPreceding excluded = mOrder.notPreceding(node);
    const Place around = excluded.holder == DocumentOrder::kNone ? 0 : mOnPath[excluded.holder];
    const Place behind = mBefore.back() - mBefore[excluded.end];
    return mBefore[excluded.begin] + behind > around;
}

}  // namespace Xml
