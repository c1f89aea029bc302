#pragma once

#include <chrono>
#include <cstddef>
#include <string>

namespace tools {

/// Shows on a terminal how far a long work on an input has come, in a line of the standard error
/// stream that is gone with this. Nothing is shown of an input of less than 32 MiB.
class Progress {
public:
    /// `total` is the length of the input, 0 where it is not known.
    Progress(const char* work, std::size_t total);
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    /// Whether anything can come to be shown.
    bool isWanted() const { return mIsWanted; }
    /// To be called as often as one likes: the line changes ten times a second.
    void show(std::size_t done);

private:
    std::string lineFor(std::size_t done) const;

    const char* mWork;
    std::size_t mTotal;
    bool mIsWanted;
    std::size_t mWidth = 0;  ///< of the line that is shown
    std::chrono::steady_clock::time_point mNext;
};

}  // namespace tools
