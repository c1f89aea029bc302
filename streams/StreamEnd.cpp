#include "streams/StreamEnd.h"

#include <algorithm>

#include "streams/SizeLimit.h"

namespace Xml {

StreamEnd::StreamEnd(InStream& in, std::uint64_t bytes) : mIn(&in) {
    const auto start = static_cast<std::uint64_t>(std::max(in.getPosition(), 0));
    if (in.mEnd >= 0 || !fitsPositions(bytes) || !fitsPositions(start + bytes)) {
        mIn = nullptr;
        return;
    }
    in.mEnd = static_cast<int>(start + bytes);
    in.mHasMetEnd = false;
}

StreamEnd::~StreamEnd() {
    if (mIn != nullptr) mIn->mEnd = -1;
}

}  // namespace Xml
