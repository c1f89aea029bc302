#pragma once

#include <gtest/gtest.h>

#include <new>
#include <optional>
#include <string>

#include "VexXml/Values.h"
#include "faults/FailingMemory.h"
#include "faults/Quiet.h"

namespace faults {

inline const char* nameOf(Failing failing) {
    return failing == Failing::Once ? "only" : "from then on";
}

/// What is done must get along without a single allocation.
template <class Work>
void expectNoMemoryNeeded(const Work& work) {
    bool hasFailed = false;
    {
        const FailingMemory memory(0, Failing::FromThenOn, hasFailed);
        work();
    }
    EXPECT_FALSE(hasFailed) << "memory was asked for";
}

/// What a trial comes to while memory does not fail.
template <class Trial, class... Arguments>
std::string resultOf(const Arguments&... arguments) {
    Trial trial(arguments...);
    trial.run();
    return trial.result();
}

/// One trial in which memory fails behind `count` allocations. True when it failed.
template <class Trial, class... Arguments>
bool failsBehind(long count, Failing failing, const std::string& expected,
                 const Arguments&... arguments) {
    std::optional<Trial> trial;
    trial.emplace(arguments...);
    bool hasFailed = false;
    try {
        const FailingMemory memory(count, failing, hasFailed);
        trial->run();
    } catch (const std::bad_alloc&) {
        EXPECT_TRUE(hasFailed);
        trial->run();
    }
    EXPECT_EQ(trial->result(), expected);
    expectNoMemoryNeeded([&] { trial.reset(); });
    return hasFailed;
}

/// Reports something long, so that later reports find room for their texts, which the process
/// keeps.
inline void makeRoomForReports() {
    const Quiet quiet;
    const Xml::Message report(std::string(1000, '-'));
}

/// Lets each allocation of `Trial(arguments...).run()` fail in turn: it alone, and it with all that
/// follow.
///
/// Either `std::bad_alloc` comes out, and then the same objects can be used to run it again, or the
/// library went on without. The result is right in the end, freeing needs no memory, and none is
/// lost. What the process keeps for good is made by a run in front.
template <class Trial, class... Arguments>
void failEachAllocation(const Arguments&... arguments) {
    makeRoomForReports();
    const std::string expected = resultOf<Trial>(arguments...);
    for (const Failing failing : {Failing::Once, Failing::FromThenOn}) {
        bool hasFailed = true;
        for (long count = 0; hasFailed; ++count) {
            SCOPED_TRACE("allocation " + std::to_string(count) + " fails, " + nameOf(failing));
            const long before = liveBlocks();
            hasFailed = failsBehind<Trial>(count, failing, expected, arguments...);
            EXPECT_EQ(liveBlocks(), before) << "blocks of memory";
            if (testing::Test::HasFailure()) return;
        }
    }
}

}  // namespace faults
