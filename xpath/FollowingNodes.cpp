#include "xpath/FollowingNodes.h"

#include <algorithm>
#include <utility>

namespace Xml {

// The gathered ranges that the new one touches are passed over and, with it, become one.
const std::vector<FollowingNodes::Place>& FollowingNodes::gather(const Object& node) {
    mGathered.clear();
    const DocumentOrder::Range range = mOrder.following(node);
    if (range.begin == range.end) return mGathered;
    Place begin = range.begin;
    Place end = range.end;
    Place at = range.begin;
    auto next = mRanges.lower_bound(range.begin);
    while (next != mRanges.end() && next->second <= range.end) {
        gatherRange(at, next->second);
        at = next->first;
        begin = std::min(begin, next->second);
        end = std::max(end, next->first);
        next = mRanges.erase(next);
    }
    gatherRange(at, range.end);
    mRanges.emplace(end, begin);
    return mGathered;
}

void FollowingNodes::gatherRange(Place begin, Place end) {
    for (Place place = begin; place < end; ++place) mGathered.push_back(place);
}

}  // namespace Xml
