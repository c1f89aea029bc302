#pragma once

#include <vector>

#include "xpath/DocumentOrder.h"

namespace Xml {

/// Gathers the following siblings of one node after another and all below them, each node of the
/// document once.
class FollowingNodes {
public:
    using Place = DocumentOrder::Place;

    explicit FollowingNodes(const DocumentOrder& order);

    /// The places of what follows the node and has not been gathered before, ascending. Valid until
    /// the next call.
    const std::vector<Place>& gather(const Object& node);

private:
    Place firstMissing(Place place);

    const DocumentOrder& mOrder;
    /// For each place itself while that is missing; later one behind it, with only gathered ones
    /// between.
    std::vector<Place> mNext;
    std::vector<Place> mGathered;
};

}  // namespace Xml
