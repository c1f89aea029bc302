#include "xpath/PrecedingNodes.h"

#include <algorithm>
#include <cstddef>

namespace Xml {

const std::vector<PrecedingNodes::Place>& PrecedingNodes::gather(const Object& node) {
    const DocumentOrder::NotPreceding excluded = mOrder.notPreceding(node);
    mGathered.clear();
    gatherAround(excluded);
    gatherRange(excluded);
    return mGathered;
}

// It is enough to look at the innermost of them: where that one is around the node, so are all, and
// where it stands in the excluded range, so does each of them that is not around the node.
void PrecedingNodes::gatherAround(const DocumentOrder::NotPreceding& excluded) {
    while (!mMissingAround.empty()) {
        const Place place = mMissingAround.back();
        const bool isSibling = excluded.begin <= place && place < excluded.end;
        if (isSibling || mOrder.isOnPath(place, excluded.holder)) break;
        mGathered.push_back(place);
        mMissingAround.pop_back();
    }
    std::reverse(mGathered.begin(), mGathered.end());
}

// The missing range is made of whole elements, so it holds elements around the node only if it
// holds the innermost. They stay missing, in front of what remains of the range.
void PrecedingNodes::gatherRange(const DocumentOrder::NotPreceding& excluded) {
    const std::size_t known = mMissingAround.size();
    for (Place place = excluded.holder;
         place != DocumentOrder::kNone && place >= mBegin && place < mEnd;
         place = mOrder.parentOf(place)) {
        mMissingAround.push_back(place);
    }
    std::reverse(mMissingAround.begin() + static_cast<std::ptrdiff_t>(known), mMissingAround.end());
    auto around = mMissingAround.begin() + static_cast<std::ptrdiff_t>(known);
    for (Place place = mBegin; place < std::min(mEnd, excluded.begin); ++place) {
        if (around != mMissingAround.end() && *around == place) {
            ++around;
        } else {
            mGathered.push_back(place);
        }
    }
    for (Place place = std::max(mBegin, excluded.end); place < mEnd; ++place) {
        mGathered.push_back(place);
    }
    mBegin = std::max(mBegin, excluded.begin);
    mEnd = std::max(mBegin, std::min(mEnd, excluded.end));
}

}  // namespace Xml
