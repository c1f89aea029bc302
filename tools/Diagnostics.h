#pragma once

#include <string>
#include <vector>

namespace tools {

/// Collects what the library reports while this lives, instead of having it on the standard error
/// stream. Only one may live at a time.
class Diagnostics {
public:
    Diagnostics();
    ~Diagnostics();
    Diagnostics(const Diagnostics&) = delete;
    Diagnostics& operator=(const Diagnostics&) = delete;

    /// Removes the last report and gives its text; empty when there is none.
    std::string takeLast();
    /// Prints what was reported since the last call as warnings about `name`.
    void printAsWarnings(const std::string& name);

private:
    static std::vector<std::string>& reports();
    static void collect(const char* text, ...);
};

}  // namespace tools
