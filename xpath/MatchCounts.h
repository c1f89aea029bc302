#pragma once

#include <optional>
#include <vector>

#include "VexXml/Dom.h"
#include "xpath/DocumentOrder.h"
#include "xpath/Program.h"

namespace Xml {

/// How many nodes of a document pass a test, counted once, so that for any node it can be told
/// without a search whether a step leads from it to one of them.
class MatchCounts {
public:
    /// How a step can be told of: by the nodes that pass its test and lie on an axis, or by the
    /// elements that have such attributes and lie there.
    struct Way {
        XPath::Axis axis;
        bool byAttributes;
    };

    /// Nothing for a step that cannot be told of.
    static std::optional<Way> wayOf(const Step& step);

    /// Needs: the order and the test outlive it.
    MatchCounts(const DocumentOrder& order, const NodeTest& test, Way way);

    bool finds(Object& node) const;

private:
    using Place = DocumentOrder::Place;

    void countBefore();
    void countOnPath();
    void countSiblings();

    bool passes(Object& node) const;
    bool passes(Place place) const { return passes(*mOrder.node(place)); }
    bool hasPassing(DocumentOrder::Range range) const;
    bool isPassing(Object& node) const;
    bool hasChild(Object& node) const;
    bool hasAncestor(const Object& node) const;
    bool hasDescendant(Object& node) const;
    bool hasPrecedingSibling(const Object& node) const;
    bool hasFollowingSibling(const Object& node) const;
    bool hasPreceding(const Object& node) const;

    const DocumentOrder& mOrder;
    const NodeTest& mTest;
    Way mWay;
    bool mIsRootPassing;
    bool mIsAboveRootPassing = false;  ///< whether the document does, or what it is in
    // All by place; those that the way does not need stay empty.
    std::vector<Place> mBefore;          ///< how many pass in front; last of all how many there are
    std::vector<Place> mOnPath;          ///< of the node and the elements around it but the root
    std::vector<Place> mSiblingsBefore;  ///< how many of the siblings in front pass
    std::vector<Place> mChildren;        ///< how many children pass; last of all those of the root
};

}  // namespace Xml
