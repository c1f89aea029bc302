#pragma once

#include <cstddef>

namespace faults {

/// While it lives, calls of the operating system that read, write, move in, close or rename files
/// succeed only `count` times in this thread; then the next one fails with `EIO`. Later ones
/// succeed.
class FailingCalls {
public:
    /// `hasFailed` tells whether one did.
    FailingCalls(long count, bool& hasFailed);
    ~FailingCalls();
    FailingCalls(const FailingCalls&) = delete;
    FailingCalls& operator=(const FailingCalls&) = delete;
};

}  // namespace faults
