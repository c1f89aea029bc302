#pragma once

#include <cstddef>
#include <memory>
#include <memory_resource>
#include <vector>

#include "VexXml/Dom.h"
#include "xpath/Conditions.h"
#include "xpath/DocumentOrder.h"
#include "xpath/MatchCounts.h"
#include "xpath/NodeList.h"
#include "xpath/NodeTable.h"
#include "xpath/NodeTest.h"
#include "xpath/Program.h"
#include "xpath/SiblingPlaces.h"
#include "xpath/Subtrees.h"

namespace Xml {

/// Applies location steps. What it learns about a document it keeps for the steps to come, so the
/// tree must not change while it lives.
class AxisWalk {
public:
    static constexpr std::size_t kNoLimit = static_cast<std::size_t>(-1);

    /// What it keeps for the length of a query comes from `memory`, which must outlive it.
    AxisWalk(Document& document, std::pmr::memory_resource* memory)
        : mDocument(document), mToBeOpened(memory) {}

    /// What is wanted of the nodes that pass a step's test.
    struct Demand {
        Conditions* conditions = nullptr;  ///< that they have to meet as well; null for none
        std::size_t limit = kNoLimit;      ///< so many are enough, on axes that lead back any
    };

    /// Puts what the step selects from the context nodes into `output`, each node once and in the
    /// order in which the nodes of the context lead to it. Returns whether any node passed the
    /// step's test. Needs: each node of the context is there once.
    bool collect(const Step& step, const NodeList& context, const Demand& demand, NodeList& output);
    /// Whether the step selects anything from the context nodes.
    bool finds(const Step& step, const NodeList& context);

private:
    /// The searches of one step that found nothing, or only asked whether there is something.
    struct Search {
        std::size_t count = 0;
        std::size_t candidates = 0;           ///< in all of them
        std::unique_ptr<MatchCounts> counts;  ///< once they are the cheaper way
    };

    bool isHopeless(const Step& step, const NodeList& context);
    static bool findsAny(const MatchCounts& counts, const NodeList& context);
    void noteSearch(const Step& step);
    const MatchCounts* countsFor(const Step& step);

    void walk(const Step& step, const NodeList& context);
    void collectAfterDoubleSlash(const Step& step, const NodeList& context);
    void collectAlong(XPath::Axis axis, const NodeList& context);
    void collectAlong(XPath::Axis axis, Object& node);

    void GetChildrenOf(Object& node);
    void GetAttributesOf(Object& node);
    void GetSelfOf(Object& node);
    void GetParentOf(Object& node);
    void GetAncestorsOf(Object& node, bool includesNode);
    void GetDescendantsOf(const NodeList& nodes, Subtrees::Tops tops);
    void GetFollowingSiblingsOf(Object& node);
    void GetPrecedingSiblingsOf(Object& node);
    void GetFollowingOf(const NodeList& nodes);
    void GetPrecedingOf(const NodeList& nodes);
    void GetPrecedingOf(const Object& node);

    void offer(Object& candidate);
    void take(Object& node);
    void offer(const std::vector<DocumentOrder::Place>& places);
    void offerRange(DocumentOrder::Place begin, DocumentOrder::Place end);
    void offerChildren(const Element& parent, std::size_t begin, std::size_t end);
    void offerAllChildrenBelow(Object& top);
    void offerAndOpenChildren(const Element& parent);
    bool isNew(const Object& candidate);
    bool isFull() const { return mOutput->size() >= mDemand.limit; }
    Element* parentWithSiblings(const Object& node) const;
    const DocumentOrder& order();

    Document& mDocument;
    std::unique_ptr<DocumentOrder> mOrder;  ///< null until it is needed
    SiblingPlaces mSiblings;
    Subtrees mSubtrees;

    std::size_t mUseful = 0;        ///< candidates, in all steps that selected something
    std::vector<Search> mSearches;  ///< by the steps' numbers
    NodeList mFound;

    // Of the step that is being applied.
    NodeMatcher mMatcher;
    Demand mDemand;
    NodeList* mOutput = nullptr;
    std::size_t mCandidates = 0;
    bool mHasMatch = false;    ///< a candidate has passed the test
    bool mHasSeveral = false;  ///< context nodes, so that candidates may come more than once
    /// The parents and ancestors that were candidates; or, on a sibling axis, the parents, each
    /// with the index up to which, or from which on, its children were candidates.
    NodeTable mSeen;
    NodeList mAncestors;                           ///< of one context node
    std::pmr::vector<const Element*> mToBeOpened;  ///< the next one is the last
};

}  // namespace Xml
