#include "xpath/MatchCounts.h"

#include <algorithm>

#include "dom/AttributeList.h"
#include "xpath/NodeTest.h"

namespace Xml {
namespace {

constexpr DocumentOrder::Place kNone = DocumentOrder::kNone;

bool hasPassingAttribute(Element& element, const NodeTest& test) {
    bool isFound = false;
    if (const AttributeList* attributes = AttributeList::of(element)) {
        attributes->forEach([&](Attribute& attribute) {
            isFound = isFound || CompliesToKindTest(attribute, test);
        });
    }
    return isFound;
}

std::optional<MatchCounts::Way> wayInSubtree(XPath::Axis axis) {
    switch (axis) {
        case XPath::ChildAxis:
        case XPath::DescendantAxis:
            return MatchCounts::Way{XPath::DescendantAxis, false};
        case XPath::SelfAxis:
        case XPath::DescendantOrSelfAxis:
            return MatchCounts::Way{XPath::DescendantOrSelfAxis, false};
        case XPath::AttributeAxis:
            return MatchCounts::Way{XPath::DescendantOrSelfAxis, true};
        default:
            return std::nullopt;
    }
}

}  // namespace

std::optional<MatchCounts::Way> MatchCounts::wayOf(const Step& step) {
    if (step.afterDoubleSlash) return wayInSubtree(step.axis);
    if (step.axis == XPath::AttributeAxis) return Way{XPath::SelfAxis, true};
    const bool isShort = step.axis == XPath::ParentAxis || step.axis == XPath::SelfAxis;
    return isShort ? std::nullopt : std::optional(Way{step.axis, false});
}

MatchCounts::MatchCounts(const DocumentOrder& order, const NodeTest& test, Way way)
    : mOrder(order), mTest(test), mWay(way) {
    mIsRootPassing = order.root() != nullptr && passes(*order.root());
    const bool byPath = way.axis == XPath::AncestorAxis || way.axis == XPath::AncestorOrSelfAxis;
    const bool bySiblings = way.axis == XPath::ChildAxis ||
                            way.axis == XPath::PrecedingSiblingAxis ||
                            way.axis == XPath::FollowingSiblingAxis;
    if (byPath || way.axis == XPath::PrecedingAxis) countOnPath();
    if (bySiblings) countSiblings();
    if (!byPath && way.axis != XPath::ChildAxis) countBefore();
}

void MatchCounts::countBefore() {
    Place count = 0;
    mBefore.reserve(mOrder.size() + 1);
    for (Place place = 0; place < mOrder.size(); ++place) {
        mBefore.push_back(count);
        if (passes(place)) ++count;
    }
    mBefore.push_back(count);
}

// Parents come before their children.
void MatchCounts::countOnPath() {
    mOnPath.reserve(mOrder.size());
    for (Place place = 0; place < mOrder.size(); ++place) {
        const Place parent = mOrder.parentOf(place);
        const Place around = parent == kNone ? 0 : mOnPath[parent];
        mOnPath.push_back(around + (passes(place) ? 1 : 0));
    }
    if (mOrder.root() == nullptr) return;
    for (Object* above = mOrder.root()->getParent(); above; above = above->getParent()) {
        mIsAboveRootPassing = mIsAboveRootPassing || passes(*above);
    }
}

void MatchCounts::countSiblings() {
    mChildren.resize(mOrder.size() + 1);
    mSiblingsBefore.reserve(mOrder.size());
    for (Place place = 0; place < mOrder.size(); ++place) {
        Place& siblings = mChildren[std::min(mOrder.parentOf(place), mOrder.size())];
        mSiblingsBefore.push_back(siblings);
        if (passes(place)) ++siblings;
    }
}

bool MatchCounts::finds(Object& node) const {
    switch (mWay.axis) {
        case XPath::SelfAxis:
            return isPassing(node);
        case XPath::ChildAxis:
            return hasChild(node);
        case XPath::DescendantAxis:
            return hasDescendant(node);
        case XPath::DescendantOrSelfAxis:
            return isPassing(node) || hasDescendant(node);
        case XPath::AncestorAxis:
            return hasAncestor(node);
        case XPath::AncestorOrSelfAxis:
            return passes(node) || hasAncestor(node);
        case XPath::FollowingAxis:
            return hasPassing(mOrder.following(node));
        case XPath::PrecedingAxis:
            return mOrder.isBelowRoot(node) && hasPreceding(node);
        case XPath::FollowingSiblingAxis:
            return hasFollowingSibling(node);
        default:
            return hasPrecedingSibling(node);
    }
}

bool MatchCounts::passes(Object& node) const {
    if (!mWay.byAttributes) return CompliesToKindTest(node, mTest);
    return node.isElement() && hasPassingAttribute(*node.toElement(), mTest);
}

bool MatchCounts::hasPassing(DocumentOrder::Range range) const {
    return mBefore[range.end] > mBefore[range.begin];
}

bool MatchCounts::isPassing(Object& node) const {
    if (&node == mOrder.root()) return mIsRootPassing;
    const Place place = mOrder.placeOf(node);
    return place != kNone ? hasPassing({place, place + 1}) : passes(node);
}

bool MatchCounts::hasChild(Object& node) const {
    if (node.isDocument()) return mIsRootPassing;
    if (&node == mOrder.root()) return mChildren.back() > 0;
    const Place place = mOrder.placeOf(node);
    return place != kNone && mChildren[place] > 0;
}

bool MatchCounts::hasDescendant(Object& node) const {
    return (node.isDocument() && mIsRootPassing) || hasPassing(mOrder.below(node));
}

bool MatchCounts::hasAncestor(const Object& node) const {
    for (Object* above = node.getParent(); above != nullptr; above = above->getParent()) {
        if (above == mOrder.root()) return mIsRootPassing || mIsAboveRootPassing;
        const Place place = mOrder.placeOf(*above);
        if (place == kNone) continue;
        return mIsRootPassing || mIsAboveRootPassing || mOnPath[place] > 0;
    }
    return false;
}

bool MatchCounts::hasPrecedingSibling(const Object& node) const {
    const Place place = mOrder.placeOf(node);
    return place != kNone && mSiblingsBefore[place] > 0;
}

bool MatchCounts::hasFollowingSibling(const Object& node) const {
    const Place place = mOrder.placeOf(node);
    if (place == kNone) return false;
    const Place self = mBefore[place + 1] - mBefore[place];
    const Place siblings = mChildren[std::min(mOrder.parentOf(place), mOrder.size())];
    return siblings > mSiblingsBefore[place] + self;
}

// All in front of the node and behind its siblings, but for the elements around it.
bool MatchCounts::hasPreceding(const Object& node) const {
    const DocumentOrder::NotPreceding excluded = mOrder.notPreceding(node);
    const Place around = excluded.holder == kNone ? 0 : mOnPath[excluded.holder];
    const Place behind = mBefore.back() - mBefore[excluded.end];
    return mBefore[excluded.begin] + behind > around;
}

}  // namespace Xml
