#include "bench/Memory.h"

#include <malloc.h>
#include <sys/mman.h>

#include <cstring>
#include <fstream>
#include <limits>
#include <string>

namespace Bench {

namespace {

// A line of a file in /proc/self, such as "VmData:     1234 kB".
std::size_t bytesFrom(const char* file, const std::string& key) {
    std::ifstream status(file);
    for (std::string line; std::getline(status, line);) {
        if (line.compare(0, key.size(), key) == 0) {
            return std::stoul(line.substr(key.size() + 1)) * 1024;
        }
    }
    return 0;
}

std::size_t statusBytes(const std::string& key) { return bytesFrom("/proc/self/status", key); }

// The system takes note of pages that it is offered when it is offered some more, or they go.
void noteOfferedPages() {
    constexpr std::size_t kSize = 262144;
    void* pages = mmap(nullptr, kSize, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (pages == MAP_FAILED) return;
    std::memset(pages, 1, kSize);
    madvise(pages, kSize, MADV_FREE);
    munmap(pages, kSize);
}

}  // namespace

std::size_t bytesInUse() {
    noteOfferedPages();
    return statusBytes("VmData:") - mallinfo2().fordblks -
           bytesFrom("/proc/self/smaps_rollup", "LazyFree:");
}

std::size_t residentBytes() { return statusBytes("VmRSS:"); }

std::size_t peakBytes() { return statusBytes("VmHWM:"); }

void keepFreedMemory(bool on) {
    mallopt(M_TRIM_THRESHOLD, on ? std::numeric_limits<int>::max() : 128 << 10);
    mallopt(M_MMAP_THRESHOLD, 128 << 10);  // as the allocator starts out, but never moved
    mallopt(M_MMAP_MAX, on ? 0 : 1 << 16);
    malloc_trim(0);
}

void resetPeak() { std::ofstream("/proc/self/clear_refs") << "5"; }

}  // namespace Bench
