#include <algorithm>
#include <cstdint>
#include <cstring>
#include <limits>

#include "VexXml/Streams.h"
#include "values/Room.h"

namespace Xml {

std::vector<int>::const_iterator InStream::LineStarts::firstNotBelow(int position) const {
    const auto isBelow = [this](int place, int limit) {
        return mFound[static_cast<std::size_t>(place)] < limit;
    };
    return std::lower_bound(mHighs.begin(), mHighs.end(), position, isBelow);
}

// Text is mostly read onwards, and what is read again is mostly the last of it. Without memory for
// a position it is in none of the lists.
void InStream::LineStarts::add(int position) {
    const int place = static_cast<int>(mFound.size());
    makeRoom(mFound);
    if (mHighs.empty() || mFound[static_cast<std::size_t>(mHighs.back())] < position) {
        mHighs.push_back(place);
        mFound.push_back(position);
        return;
    }
    const auto high = firstNotBelow(position);
    if (mFound[static_cast<std::size_t>(*high)] == position) return;
    if (mOthers.emplace(position, place).second) mFound.push_back(position);
}

void InStream::LineStarts::addFrom(const char* piece, std::size_t size, int position) {
    for (std::size_t place = 0; place + 1 < size; ++place) {
        const void* found = std::memchr(piece + place, '\r', size - 1 - place);
        if (found == nullptr) return;
        place = static_cast<std::size_t>(static_cast<const char*>(found) - piece);
        const char next = piece[place + 1];
        if (next == '\r' || next == '\n') add(position + static_cast<int>(place) + 2);
    }
}

// A position that is no line start counts to the last line, wherever it lies: deliberate, as
// messages are compared with these numbers.
int InStream::LineStarts::lineOf(int position) const {
    if (mFound.empty()) return 1;
    const auto high = firstNotBelow(position);
    if (high != mHighs.end() && mFound[static_cast<std::size_t>(*high)] == position) {
        return *high + 1;
    }
    const auto other = mOthers.find(position);
    return other != mOthers.end() ? other->second + 1 : static_cast<int>(mFound.size());
}

// The first entry found that is not below the position is always one above all earlier ones, so
// the highs alone tell it. At a line start itself the column still counts from the line before:
// deliberate, as above.
int InStream::LineStarts::columnOf(int position) const {
    const auto high = firstNotBelow(position);
    const std::size_t place =
        high != mHighs.end() ? static_cast<std::size_t>(*high) : mFound.size();
    if (place == 0) return position;
    // A caller's stream may have been at positions below 0, too far for an `int` from the others.
    const std::int64_t column = std::int64_t{position} - mFound[place - 1];
    return static_cast<int>(std::min<std::int64_t>(column, std::numeric_limits<int>::max()));
}

}  // namespace Xml
