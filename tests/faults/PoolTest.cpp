#include <gtest/gtest.h>

#include <new>
#include <thread>
#include <vector>

#include "VexXml/Dom.h"
#include "faults/EachAllocation.h"
#include "faults/FailingMemory.h"

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

}  // namespace
