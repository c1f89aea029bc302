#pragma once

#include <vector>

#include "VexXml/Dom.h"
#include "xpath/DocumentOrder.h"
#include "xpath/Program.h"

namespace Xml {

/// How many nodes of a document pass a test, counted once, so that for any node it can be told
/// without a search whether an axis leads from it to one of them.
class MatchCounts {
public:
    /// Needs: the order and the test outlive it.
    MatchCounts(const DocumentOrder& order, const NodeTest& test);

    /// Whether it can tell for the axis.
    static bool covers(XPath::Axis axis);
    /// Whether the axis leads from the node to one that passes. Needs: the axis is covered.
    bool finds(XPath::Axis axis, Object& node) const;

private:
    using Place = DocumentOrder::Place;

    bool passes(Object& node) const;
    bool hasPassing(DocumentOrder::Range range) const;
    bool hasAncestor(const Object& node) const;
    bool hasDescendant(Object& node) const;
    bool hasFollowingSibling(Place place) const;
    bool hasPreceding(const Object& node) const;

    const DocumentOrder& mOrder;
    const NodeTest& mTest;
    bool mIsRootOrAbove = false;  ///< whether the root element, or what is above it, passes
    /// By place: how many pass in front of it, and last of all in the whole document.
    std::vector<Place> mBefore;
    /// By place: how many pass of the node and the elements around it, but for the root.
    std::vector<Place> mOnPath;
    /// By place: how many of the siblings in front of it pass.
    std::vector<Place> mSiblingsBefore;
    /// By place: how many of its children pass, and last of those of the root.
    std::vector<Place> mChildren;
};

}  // namespace Xml
