#include "xpath/AxisWalk.h"

#include <algorithm>

#include "dom/AttributeList.h"
#include "xpath/FollowingNodes.h"
#include "xpath/NodeTest.h"
#include "xpath/PrecedingNodes.h"

namespace Xml {
namespace {

// Whether anything below the element may pass.
bool isWorthOpening(const Element& element, const NodeMatcher& matches) {
    return NodeAccess::mayHoldElements(element) ||
           (matches.acceptsText() && !NodeAccess::childrenOf(element).empty());
}

// What the searches of a step may look at in vain: so many candidates each, and in all so many
// more, or so many times what the query has looked at to some use.
constexpr std::size_t kFewCandidates = 16;
constexpr std::size_t kManyCandidates = 20000;
constexpr std::size_t kFactor = 4;

// Room for so many saves most lists from growing step by step.
constexpr std::size_t kFewNodes = 16;

}  // namespace

bool AxisWalk::collect(const Step& step, const NodeList& context, const Demand& demand,
                       NodeList& output) {
    output.clear();
    output.reserve(kFewNodes);
    if (isHopeless(step, context)) return false;
    mOutput = &output;
    mDemand = demand;
    walk(step, context);
    if (mHasMatch) {
        mUseful += mCandidates;
    } else {
        noteSearch(step);
    }
    return mHasMatch;
}

// A search ends at the first node that passes.
bool AxisWalk::finds(const Step& step, const NodeList& context) {
    if (const MatchCounts* counts = countsFor(step)) return findsAny(*counts, context);
    mFound.clear();
    mOutput = &mFound;
    mDemand = {nullptr, 1};
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

void AxisWalk::noteSearch(const Step& step) {
    if (mSearches.size() <= step.number) mSearches.resize(step.number + 1);
    Search& search = mSearches[step.number];
    search.candidates += mCandidates;
    ++search.count;
}

// Many searches for the same that come to nothing would cost with the square of the document, so
// after some of them the nodes that pass are counted. Null as long as that is not worth it.
const MatchCounts* AxisWalk::countsFor(const Step& step) {
    if (mSearches.size() <= step.number) return nullptr;
    Search& search = mSearches[step.number];
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
    mMatcher = NodeMatcher(step.test);
    mCandidates = 0;
    mHasMatch = false;
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
    if (step.axis == XPath::ChildAxis && context.size() == 1) {
        return offerAllChildrenBelow(*context.front());
    }
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
    if (NodeAccess::isElement(node)) {
        const Element& element = static_cast<Element&>(node);
        offerChildren(element, 0, NodeAccess::childrenOf(element).size());
    } else if (node.isDocument()) {
        if (Element* root = node.toDocument()->getRoot()) offer(*root);
    }
}

void AxisWalk::GetAttributesOf(Object& node) {
    if (!NodeAccess::isElement(node)) return;
    const AttributeList* attributes = AttributeList::of(static_cast<Element&>(node));
    if (attributes == nullptr) return;
    attributes->anyOf([this](Attribute& attribute) {
        offer(attribute);
        return isFull();
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
        if (mDemand.limit == 1) {
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
    const auto behind = static_cast<NodeTable::Value>(index + 1);
    const std::size_t count = NodeAccess::childrenOf(*parent).size();
    if (!mHasSeveral) return offerChildren(*parent, behind, count);
    NodeTable::Value& begun = mSeen.valueOf(parent, static_cast<NodeTable::Value>(count));
    offerChildren(*parent, behind, begun);
    begun = std::min(begun, behind);
}

void AxisWalk::GetPrecedingSiblingsOf(Object& node) {
    Element* parent = parentWithSiblings(node);
    const int index = parent != nullptr ? mSiblings.indexOf(*parent, node) : -1;
    if (index < 0) return;
    const auto place = static_cast<NodeTable::Value>(index);
    if (!mHasSeveral) return offerChildren(*parent, 0, place);
    NodeTable::Value& ended = mSeen.valueOf(parent, 0);
    offerChildren(*parent, ended, place);
    ended = std::max(ended, place);
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
    if (mMatcher(candidate)) take(candidate);
}

// Needs: the node passes the test.
void AxisWalk::take(Object& node) {
    mHasMatch = true;
    if (mDemand.conditions == nullptr || mDemand.conditions->hold(node)) mOutput->push_back(&node);
}

void AxisWalk::offer(const std::vector<DocumentOrder::Place>& places) {
    for (const DocumentOrder::Place place : places) offer(*order().node(place));
}

void AxisWalk::offerRange(DocumentOrder::Place begin, DocumentOrder::Place end) {
    for (DocumentOrder::Place place = begin; place < end && !isFull(); ++place) {
        offer(*order().node(place));
    }
}

void AxisWalk::offerChildren(const Element& parent, std::size_t begin, std::size_t end) {
    const NodeAccess::Children children = NodeAccess::childrenOf(parent);
    const NodeMatcher matches = mMatcher;
    for (std::size_t index = begin; index < end; ++index) {
        ++mCandidates;
        if (!matches(*children[index])) continue;
        take(*children[index]);
        if (isFull()) return;
    }
}

// All children of an element are candidates before anything below them, so the elements among them
// are put aside. Invariant: what is still to come is below the elements of `mToBeOpened`, from the
// last one to the first.
void AxisWalk::offerAllChildrenBelow(Object& top) {
    mToBeOpened.clear();
    mToBeOpened.reserve(kFewNodes);
    if (NodeAccess::isElement(top)) {
        mToBeOpened.push_back(static_cast<Element*>(&top));
    } else if (Element* root = top.isDocument() ? top.toDocument()->getRoot() : nullptr) {
        offer(*root);
        mToBeOpened.push_back(root);
    }
    while (!mToBeOpened.empty() && !isFull()) {
        const Element& parent = *mToBeOpened.back();
        mToBeOpened.pop_back();
        offerAndOpenChildren(parent);
    }
}

void AxisWalk::offerAndOpenChildren(const Element& parent) {
    const NodeAccess::Children children = NodeAccess::childrenOf(parent);
    const std::size_t others = mToBeOpened.size();
    const NodeMatcher matches = mMatcher;
    mCandidates += children.size();
    for (Object* child : children) {
        const auto* element =
            NodeAccess::isElement(*child) ? static_cast<Element*>(child) : nullptr;
        if (element != nullptr ? matches(*element) : matches(*child)) {
            take(*child);
            if (isFull()) return;
        }
        if (element != nullptr && isWorthOpening(*element, matches)) mToBeOpened.push_back(element);
    }
    std::reverse(mToBeOpened.begin() + static_cast<std::ptrdiff_t>(others), mToBeOpened.end());
}

bool AxisWalk::isNew(const Object& candidate) { return !mHasSeveral || mSeen.insert(&candidate); }

}  // namespace Xml
