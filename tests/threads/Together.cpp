#include "threads/Together.h"

#include <atomic>
#include <cstddef>
#include <thread>
#include <vector>

namespace threads {

void together(const std::function<void(int)>& work, int count) {
    std::atomic<int> missing{count};
    std::vector<std::thread> running;
    running.reserve(static_cast<std::size_t>(count));
    for (int number = 0; number < count; ++number) {
        running.emplace_back([&, number] {
            --missing;
            while (missing > 0) std::this_thread::yield();
            work(number);
        });
    }
    for (std::thread& thread : running) thread.join();
}

}  // namespace threads
