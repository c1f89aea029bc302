// The first parse of a process, and the memory of the document.
#include "bench/CpuTime.h"
#include "bench/Fields.h"
#include "bench/Measurements.h"
#include "bench/Memory.h"

namespace Bench {

namespace {

// The memory of smaller documents is lost between the pages of the process.
constexpr std::size_t kLeastBytes = 100000;

}  // namespace

bool printFirst(const Subject& subject) {
    resetPeak();
    const std::size_t inUse = bytesInUse();
    const std::size_t resident = residentBytes();
    const double start = cpuSeconds();
    if (!subject.tested.parse(subject.text)) return false;
    const double parsed = cpuSeconds();
    const std::size_t peak = peakBytes();
    Fields fields;
    if (subject.tested.abilities().hasTree && subject.text.size() >= kLeastBytes) {
        fields.add("heap", bytesInUse() - inUse);
        fields.add("peak", peak - resident);
    }
    const double again = cpuSeconds();
    subject.tested.clear();
    fields.add("first parse", parsed - start + cpuSeconds() - again);
    return true;
}

}  // namespace Bench
