#include "bench/Memory.h"

#include <malloc.h>

#include <fstream>
#include <limits>
#include <string>

namespace Bench {

namespace {

// A line of /proc/self/status, such as "VmData:     1234 kB".
std::size_t statusBytes(const std::string& key) {
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);) {
        if (line.compare(0, key.size(), key) == 0) {
            return std::stoul(line.substr(key.size() + 1)) * 1024;
        }
    }
    return 0;
}

}  // namespace

std::size_t bytesInUse() { return statusBytes("VmData:") - mallinfo2().fordblks; }

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
