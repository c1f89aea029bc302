// What no parser can be faster than on this machine: copying the text, looking at all of it, and
// taking a block of memory for each node.
#include <benchmark/benchmark.h>

#include <cstdlib>
#include <cstring>
#include <utility>

#include "bench/peers/Library.h"

namespace Bench {

namespace {

class Floor : public Library {
public:
    Abilities abilities() const override { return {false, false, false, false, false}; }
};

class CopyFloor : public Floor {
public:
    bool parse(const std::string& text) override {
        mCopy.assign(text.begin(), text.end());
        benchmark::DoNotOptimize(mCopy.data());
        return true;
    }
    // Assigning `{}` would keep the memory.
    void clear() override { mCopy = std::vector<char>(); }

private:
    std::vector<char> mCopy;
};

std::size_t countOf(const std::string& text, char wanted) {
    std::size_t count = 0;
    const char* const end = text.data() + text.size();
    const char* at = text.data();
    while ((at = static_cast<const char*>(
                std::memchr(at, wanted, static_cast<std::size_t>(end - at)))) != nullptr) {
        ++at;
        ++count;
    }
    return count;
}

class ScanFloor : public Floor {
public:
    bool parse(const std::string& text) override {
        benchmark::DoNotOptimize(countOf(text, '<'));
        return true;
    }
    void clear() override {}
};

/// One block for each tag and each attribute, which is about one for each element, text and
/// attribute. They are counted once.
class AllocationFloor : public Floor {
public:
    ~AllocationFloor() override { AllocationFloor::clear(); }

    bool parse(const std::string& text) override {
        if (mBlocks.empty()) mBlocks.resize(countOf(text, '<') + countOf(text, '='));
        for (void*& block : mBlocks) block = std::calloc(1, kNodeSize);
        benchmark::DoNotOptimize(mBlocks.data());
        return true;
    }
    void clear() override {
        for (void*& block : mBlocks) std::free(std::exchange(block, nullptr));
    }

private:
    static constexpr std::size_t kNodeSize = 64;

    std::vector<void*> mBlocks;
};

const Registration kCopy({"memcpy", "", LibraryInfo::Kind::Floor,
                          [] { return std::make_unique<CopyFloor>(); }});
const Registration kScan({"memchr", "", LibraryInfo::Kind::Floor,
                          [] { return std::make_unique<ScanFloor>(); }});
const Registration kAllocation({"malloc", "", LibraryInfo::Kind::Floor,
                                [] { return std::make_unique<AllocationFloor>(); }});

}  // namespace

}  // namespace Bench
