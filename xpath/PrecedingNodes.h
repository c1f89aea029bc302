#pragma once

#include <vector>

#include "xpath/DocumentOrder.h"

namespace Xml {

/// Gathers what precedes one node after another, each node of the document once.
///
/// By its definition nearly everything precedes a node: all but the elements around it, and but
/// itself and its following siblings with all below them. So it is what is still missing that is
/// kept: at first everything, and after each node only what that node leaves out as well. That is a
/// range of places, and in front of it some elements of which each is around the next.
class PrecedingNodes {
public:
    using Place = DocumentOrder::Place;

    explicit PrecedingNodes(const DocumentOrder& order) : mOrder(order), mEnd(order.size()) {}

    /// The places of what precedes the node and has not been gathered before, ascending. Valid
    /// until the next call.
    const std::vector<Place>& gather(const Object& node);

private:
    void gatherAround(const DocumentOrder::NotPreceding& excluded);
    void gatherRange(const DocumentOrder::NotPreceding& excluded);

    const DocumentOrder& mOrder;
    std::vector<Place> mMissingAround;
    Place mBegin = 0;  ///< of the missing range
    Place mEnd;
    std::vector<Place> mGathered;
};

}  // namespace Xml
