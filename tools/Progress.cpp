#include "tools/Progress.h"

#include <unistd.h>

#include <algorithm>
#include <iostream>

namespace tools {
namespace {

constexpr std::size_t kMebi = std::size_t{1} << 20U;
constexpr std::size_t kLong = 32 * kMebi;
constexpr std::chrono::milliseconds kBetweenChanges(100);

}  // namespace

Progress::Progress(const char* work, std::size_t total)
    : mWork(work),
      mTotal(total),
      mIsWanted((total == 0 || total >= kLong) && isatty(STDERR_FILENO) == 1) {}

Progress::~Progress() {
    if (mWidth > 0) std::cerr << '\r' << std::string(mWidth, ' ') << '\r' << std::flush;
}

void Progress::show(std::size_t done) {
    if (!mIsWanted || (mTotal == 0 && done < kLong)) return;
    const auto now = std::chrono::steady_clock::now();
    if (now < mNext) return;
    mNext = now + kBetweenChanges;
    const std::string line = lineFor(done);
    mWidth = std::max(mWidth, line.size());
    std::cerr << '\r' << line << std::flush;
}

std::string Progress::lineFor(std::size_t done) const {
    const std::string work = std::string(mWork) + ' ';
    if (mTotal == 0) return work + std::to_string(done / kMebi) + " MiB";
    constexpr std::size_t kBarWidth = 40;
    const std::size_t marks = std::min(done, mTotal) * kBarWidth / mTotal;
    const std::size_t percent = std::min(done, mTotal) * 100 / mTotal;
    return work + '[' + std::string(marks, '#') + std::string(kBarWidth - marks, ' ') + "] " +
           std::to_string(percent) + " %";
}

}  // namespace tools
