#include <gtest/gtest.h>

#include <cstddef>
#include <memory>
#include <new>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "VexXml/Readers.h"
#include "faults/Documents.h"
#include "faults/FailingMemory.h"
#include "faults/FailingPages.h"
#include "support/Dump.h"

namespace {

constexpr std::size_t kNodeSize = sizeof(Xml::CharData);

TEST(FailingMemoryInANewThread, DoesNotKeepItFromFreeing) {
    void* node = Xml::Object::operator new(kNodeSize);
    std::thread thread([node] {
        bool hasFailed = false;
        const faults::FailingMemory memory(0, faults::Failing::FromThenOn, hasFailed);
        Xml::Object::operator delete(node, kNodeSize);
    });
    thread.join();
}

// What others have given back is there for it.
TEST(FailingMemoryInANewThread, ThrowsOnlyWhatACallerCanCatch) {
    std::thread thread([] {
        bool hasFailed = false;
        std::vector<void*> nodes;
        nodes.reserve(1000);
        {
            const faults::FailingMemory memory(0, faults::Failing::FromThenOn, hasFailed);
            try {
                while (nodes.size() < 1000) nodes.push_back(Xml::Object::operator new(kNodeSize));
            } catch (const std::bad_alloc&) {
                EXPECT_TRUE(hasFailed);
            }
        }
        for (void* node : nodes) Xml::Object::operator delete(node, kNodeSize);
    });
    thread.join();
}

#if VEXXML_TESTS_HAVE_PAGES

constexpr std::size_t kLargestInPool = 1024;

/// All that the pool can give without asking the system for more.
class DrainedPool {
public:
    DrainedPool() {
        bool hasFailed = false;
        mNodes.reserve(std::size_t{1} << 20U);
        const faults::FailingPages pages(0, hasFailed);
        for (std::size_t size = 8; size <= kLargestInPool; size += 8) drain(size);
    }
    ~DrainedPool() {
        for (const auto& [node, size] : mNodes) Xml::Object::operator delete(node, size);
    }
    DrainedPool(const DrainedPool&) = delete;
    DrainedPool& operator=(const DrainedPool&) = delete;

private:
    void drain(std::size_t size) {
        try {
            for (;;) mNodes.emplace_back(Xml::Object::operator new(size), size);
        } catch (const std::bad_alloc&) {
        }
    }

    std::vector<std::pair<void*, std::size_t>> mNodes;
};

std::string readBook() {
    Xml::StringInStream in(faults::kBook);
    Xml::DocumentReader reader;
    reader.parse(in);
    return support::dump(*reader.getDocument());
}

TEST(DrainedPool, ThrowsWhatItCannotGetAndGoesOnAfterwards) {
    const std::string expected = readBook();
    const DrainedPool drained;
    bool hasFailed = true;
    long failures = 0;
    for (long count = 0; hasFailed; ++count) {
        SCOPED_TRACE("page " + std::to_string(count) + " cannot be had");
        bool hasThrown = false;
        const DrainedPool drainedAgain;
        try {
            const faults::FailingPages pages(count, hasFailed);
            readBook();
        } catch (const std::bad_alloc&) {
            hasThrown = true;
            ++failures;
        }
        EXPECT_EQ(hasThrown, hasFailed);
        EXPECT_EQ(readBook(), expected);
    }
    EXPECT_GT(failures, 0);
}

TEST(LargeBlocks, ThatCannotBeHadLeaveATextAsItIs) {
    constexpr std::size_t kMoreThanIsKept = 40000000;
    Xml::DataHolder text("as it is");
    bool hasFailed = false;
    {
        const faults::FailingPages pages(0, hasFailed);
        EXPECT_THROW(text.reserve(kMoreThanIsKept), std::bad_alloc);
    }
    EXPECT_EQ(std::string(text), "as it is");
    EXPECT_TRUE(text.reserve(kMoreThanIsKept));
}

#endif

}  // namespace
