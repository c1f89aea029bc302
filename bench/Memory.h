#pragma once

/// What the process holds of memory.

#include <cstddef>

namespace Bench {

/// The bytes in use, overhead of the allocator included: all writable private memory, mapped by
/// whomever, but for what the allocator could give out again.
std::size_t bytesInUse();
std::size_t residentBytes();
/// The most that was resident since `resetPeak`.
std::size_t peakBytes();
void resetPeak();

}  // namespace Bench
