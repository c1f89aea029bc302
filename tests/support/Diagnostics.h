#pragma once

#include <string>
#include <vector>

namespace support {

/// Collects what the library reports while it lives, in place of the standard error stream.
///
/// Only one may live at a time. The default handler cannot be asked for, so afterwards reports go
/// nowhere until the next one lives.
class Diagnostics {
public:
    Diagnostics();
    ~Diagnostics();
    Diagnostics(const Diagnostics&) = delete;
    Diagnostics& operator=(const Diagnostics&) = delete;

    /// What was reported since the last call, oldest first.
    std::vector<std::string> take();
};

}  // namespace support
