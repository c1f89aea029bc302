#pragma once

#include <functional>

namespace threads {

constexpr int kThreads = 4;

/// Calls `work` with the numbers from 0 on in so many threads, which begin at the same moment, and
/// returns when all have ended. What they did wrong shows in their results and, under the thread
/// sanitizer, by itself.
void together(const std::function<void(int)>& work, int count = kThreads);

}  // namespace threads
