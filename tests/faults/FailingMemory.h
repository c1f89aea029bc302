#pragma once

#include "faults/Plan.h"

namespace faults {

/// While it lives, allocations of this thread by `operator new` succeed only `count` times; then
/// the next one throws `std::bad_alloc`, or every one does. `hasFailed` tells whether one did.
class FailingMemory {
public:
    FailingMemory(long count, Failing failing, bool& hasFailed);
    ~FailingMemory();
    FailingMemory(const FailingMemory&) = delete;
    FailingMemory& operator=(const FailingMemory&) = delete;
};

/// How many blocks of memory that `operator new` gave have not been freed.
long liveBlocks();

}  // namespace faults
