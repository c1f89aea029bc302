#pragma once

#include <cstdint>
#include <limits>

namespace Xml {

/// Whether every position in a source of `size` bytes, its end included, is a 32-bit `int`.
constexpr bool fitsPositions(std::uint64_t size) {
    return size <= static_cast<std::uint64_t>(std::numeric_limits<std::int32_t>::max());
}

}  // namespace Xml
