#pragma once

#include <map>
#include <vector>

#include "xpath/DocumentOrder.h"

namespace Xml {

/// Gathers the following siblings of one node after another and all below them, each node of the
/// document once.
class FollowingNodes {
public:
    using Place = DocumentOrder::Place;

    explicit FollowingNodes(const DocumentOrder& order) : mOrder(order) {}

    /// The places of what follows the node and has not been gathered before, ascending. Valid until
    /// the next call.
    const std::vector<Place>& gather(const Object& node);

private:
    void gatherRange(Place begin, Place end);

    const DocumentOrder& mOrder;
    /// The gathered ranges: behind the last place of each the first. No two touch.
    std::map<Place, Place> mRanges;
    std::vector<Place> mGathered;
};

}  // namespace Xml
