#pragma once

/// What the process holds of memory.

#include <cstddef>

namespace Bench {

/// The bytes in use, overhead of the allocator included: all writable private memory, mapped by
/// whomever, but for what the allocator could give out again and what the system may take.
std::size_t bytesInUse();
std::size_t residentBytes();
/// The most that was resident since `resetPeak`.
std::size_t peakBytes();
void resetPeak();

/// Whether the allocator keeps what is freed (true) or gives back what it can, so that each
/// document gets fresh pages, whatever was there before it. Left alone, it decides by what happens
/// to be freed first and lies at the end of the heap, and pages cost as much as the work of a fast
/// parser.
void keepFreedMemory(bool on);

}  // namespace Bench
