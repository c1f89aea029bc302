#include "xpath/AxisWalk.h"

#include <algorithm>

#include "dom/AttributeList.h"
#include "xpath/FollowingNodes.h"
#include "xpath/NodeTest.h"
#include "xpath/PrecedingNodes.h"

namespace Xml {
namespace {

// What the searches of a step may look at in vain: so many candidates each, and in all so many
// more, or so many times what the query has looked at to some use.
constexpr std::size_t kFewCandidates = 16;
constexpr std::size_t kManyCandidates = 20000;
constexpr std::size_t kFactor = 4;

}  // namespace

void AxisWalk::collect(const Step& step, const NodeList& context, NodeList& output) {
    output.clear();
    if (isHopeless(step, context)) return;
    mOutput = &output;
    mSeeksOne = false;
    walk(step, context);
    if (output.empty()) {
        noteSearch(step);
    } else {
        mUseful += mCandidates;
    }
}

// A search ends at the first node that passes.
bool AxisWalk::finds(const Step& step, const NodeList& context) {
    if (const MatchCounts* counts = countsFor(step)) return findsAny(*counts, context);
    mFound.clear();
    mOutput = &mFound;
    mSeeksOne = true;
    walk(step, context);
    noteSearch(step);
    return !mFound.empty();
}

bool AxisWalk::isHopeless(const Step& step, const NodeList& context) {
    const MatchCounts* counts = countsFor(step);
    return counts != nullptr && !findsAny(*counts, context);
}

bool AxisWalk::findsAny(const MatchCounts& counts, const NodeList& context) {
    return std::any_of(context.begin(), context.end(),
                       [&counts](Object* node) { return counts.finds(*node); });
}

AxisWalk::Search& AxisWalk::searchOf(const Step& step) {
    if (mSearches.size() <= step.number) mSearches.resize(step.number + 1);
    return mSearches[step.number];
}

void AxisWalk::noteSearch(const Step& step) {
    Search& search = searchOf(step);
    search.candidates += mCandidates;
    ++search.count;
}

// Many searches for the same that come to nothing would cost with the square of the document, so
// after some of them the nodes that pass are counted. Null as long as that is not worth it.
const MatchCounts* AxisWalk::countsFor(const Step& step) {
    Search& search = searchOf(step);
    const std::size_t patience =
        kManyCandidates + kFewCandidates * search.count + kFactor * mUseful;
    if (search.counts == nullptr && search.candidates > patience) {
        if (const auto way = MatchCounts::wayOf(step)) {
            search.counts = std::make_unique<MatchCounts>(order(), step.test, *way);
        }
    }
    return search.counts.get();
}

void AxisWalk::walk(const Step& step, const NodeList& context) {
    mTest = &step.test;
    mCandidates = 0;
    if (step.afterDoubleSlash) {
        collectAfterDoubleSlash(step, context);
    } else {
        collectAlong(step.axis, context);
    }
}

// "//" stands for all that is in the subtrees of the context nodes. On the axes that lead to each
// node from one other only, that need not be kept in a list.
void AxisWalk::collectAfterDoubleSlash(const Step& step, const NodeList& context) {
    const bool isOneToOne = step.axis == XPath::ChildAxis || step.axis == XPath::AttributeAxis ||
                            step.axis == XPath::SelfAxis;
    if (isOneToOne) {
        mSubtrees.walk(context, Subtrees::Tops::Included, [&](Object& node) {
            ++mCandidates;
            collectAlong(step.axis, node);
            return !isFull();
        });
        return;
    }
    NodeList nodes;
    mSubtrees.walk(context, Subtrees::Tops::Included, [&nodes](Object& node) {
        nodes.push_back(&node);
        return true;
    });
    collectAlong(step.axis, nodes);
}

void AxisWalk::collectAlong(XPath::Axis axis, const NodeList& context) {
    mHasSeveral = context.size() > 1;
    mSeen.clear();
    switch (axis) {
        case XPath::DescendantAxis:
            return GetDescendantsOf(context, Subtrees::Tops::Excluded);
        case XPath::DescendantOrSelfAxis:
            return GetDescendantsOf(context, Subtrees::Tops::Included);
        case XPath::FollowingAxis:
            return GetFollowingOf(context);
        case XPath::PrecedingAxis:
            return GetPrecedingOf(context);
        default:
            break;
    }
    for (Object* node : context) {
        collectAlong(axis, *node);
        if (isFull()) return;
    }
}

void AxisWalk::collectAlong(XPath::Axis axis, Object& node) {
    switch (axis) {
        case XPath::ChildAxis:
            return GetChildrenOf(node);
        case XPath::AttributeAxis:
            return GetAttributesOf(node);
        case XPath::ParentAxis:
            return GetParentOf(node);
        case XPath::AncestorAxis:
            return GetAncestorsOf(node, false);
        case XPath::AncestorOrSelfAxis:
            return GetAncestorsOf(node, true);
        case XPath::FollowingSiblingAxis:
            return GetFollowingSiblingsOf(node);
        case XPath::PrecedingSiblingAxis:
            return GetPrecedingSiblingsOf(node);
        default:
            return GetSelfOf(node);
    }
}

void AxisWalk::GetChildrenOf(Object& node) {
    if (node.isDocument()) {
        if (Element* root = node.toDocument()->getRoot()) offer(*root);
    } else if (node.isElement()) {
        Element& element = *node.toElement();
        offerChildren(element, 0, element.getChildCount());
    }
}

void AxisWalk::GetAttributesOf(Object& node) {
    if (!node.isElement()) return;
    const AttributeList* attributes = AttributeList::of(*node.toElement());
    if (attributes == nullptr) return;
    attributes->forEach([this](Attribute& attribute) {
        if (!isFull()) offer(attribute);
    });
}

void AxisWalk::GetSelfOf(Object& node) { offer(node); }

void AxisWalk::GetParentOf(Object& node) {
    Object* parent = node.isDocument() ? nullptr : node.getParent();
    if (parent != nullptr && isNew(*parent)) offer(*parent);
}

// From the top down. Above one that has been a candidate, all have been.
void AxisWalk::GetAncestorsOf(Object& node, bool includesNode) {
    mAncestors.clear();
    for (Object* above = node.getParent(); above != nullptr && isNew(*above) && !isFull();
         above = above->getParent()) {
        if (mSeeksOne) {
            offer(*above);
        } else {
            mAncestors.push_back(above);
        }
    }
    for (auto ancestor = mAncestors.rbegin(); ancestor != mAncestors.rend(); ++ancestor) {
        offer(**ancestor);
    }
    if (includesNode && isNew(node)) offer(node);
}

void AxisWalk::GetDescendantsOf(const NodeList& nodes, Subtrees::Tops tops) {
    mSubtrees.walk(nodes, tops, [this](Object& candidate) {
        offer(candidate);
        return !isFull();
    });
}

void AxisWalk::GetFollowingSiblingsOf(Object& node) {
    Element* parent = parentWithSiblings(node);
    const int index = parent != nullptr ? mSiblings.indexOf(*parent, node) : -1;
    if (index < 0) return;
    const int count = parent->getChildCount();
    if (!mHasSeveral) return offerChildren(*parent, index + 1, count);
    NodeTable::Value& begun = mSeen.valueOf(parent, static_cast<NodeTable::Value>(count));
    offerChildren(*parent, index + 1, static_cast<int>(begun));
    begun = std::min(begun, static_cast<NodeTable::Value>(index + 1));
}

void AxisWalk::GetPrecedingSiblingsOf(Object& node) {
    Element* parent = parentWithSiblings(node);
    const int index = parent != nullptr ? mSiblings.indexOf(*parent, node) : -1;
    if (index < 0) return;
    if (!mHasSeveral) return offerChildren(*parent, 0, index);
    NodeTable::Value& ended = mSeen.valueOf(parent, 0);
    offerChildren(*parent, static_cast<int>(ended), index);
    ended = std::max(ended, static_cast<NodeTable::Value>(index));
}

// Null when the node cannot have siblings.
Element* AxisWalk::parentWithSiblings(const Object& node) const {
    if (node.isDocument() || node.isAttribute()) return nullptr;
    Object* parent = node.getParent();
    return parent != nullptr && parent->isElement() ? parent->toElement() : nullptr;
}

void AxisWalk::GetFollowingOf(const NodeList& nodes) {
    if (nodes.size() == 1) {
        const DocumentOrder::Range range = order().following(*nodes.front());
        return offerRange(range.begin, range.end);
    }
    FollowingNodes following(order());
    for (auto node = nodes.begin(); node != nodes.end() && !isFull(); ++node) {
        offer(following.gather(**node));
    }
}

void AxisWalk::GetPrecedingOf(const NodeList& nodes) {
    if (nodes.size() == 1) return GetPrecedingOf(*nodes.front());
    PrecedingNodes preceding(order());
    for (auto node = nodes.begin(); node != nodes.end() && !isFull(); ++node) {
        if (order().isBelowRoot(**node)) offer(preceding.gather(**node));
    }
}

void AxisWalk::GetPrecedingOf(const Object& node) {
    if (!order().isBelowRoot(node)) return;
    const DocumentOrder::NotPreceding excluded = order().notPreceding(node);
    for (DocumentOrder::Place place = 0; place < excluded.begin && !isFull(); ++place) {
        if (order().isOnPath(place, excluded.holder)) {
            ++mCandidates;
        } else {
            offer(*order().node(place));
        }
    }
    offerRange(excluded.end, order().size());
}

const DocumentOrder& AxisWalk::order() {
    if (!mOrder) mOrder = std::make_unique<DocumentOrder>(mDocument);
    return *mOrder;
}

void AxisWalk::offer(Object& candidate) {
    ++mCandidates;
    if (CompliesToKindTest(candidate, *mTest)) mOutput->push_back(&candidate);
}

void AxisWalk::offer(const std::vector<DocumentOrder::Place>& places) {
    for (const DocumentOrder::Place place : places) offer(*order().node(place));
}

void AxisWalk::offerRange(DocumentOrder::Place begin, DocumentOrder::Place end) {
    for (DocumentOrder::Place place = begin; place < end && !isFull(); ++place) {
        offer(*order().node(place));
    }
}

void AxisWalk::offerChildren(Element& parent, int begin, int end) {
    for (int index = begin; index < end && !isFull(); ++index) offer(*parent.getChild(index));
}

bool AxisWalk::isNew(const Object& candidate) { return !mHasSeveral || mSeen.insert(&candidate); }

}  // namespace Xml
