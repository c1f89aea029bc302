#include "tools/Output.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "faults/FailingCalls.h"
#include "support/TempFolder.h"

namespace {

using Names = std::vector<std::string>;

Names namesIn(const std::string& folder) {
    Names names;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        names.push_back(entry.path().filename().string());
    }
    return names;
}

std::string contentOf(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

TEST(ReplacingAFile, LeavesItAsItWasWhateverCallFails) {
    const support::TempFolder folder;
    const std::string after = "what it is to hold then";
    bool hasFailed = true;
    int failures = 0;
    for (long count = 0; hasFailed; ++count) {
        SCOPED_TRACE("call " + std::to_string(count) + " fails");
        const std::string path = folder.write("a.xml", "what it holds");
        bool isWritten = false;
        testing::internal::CaptureStderr();
        {
            const faults::FailingCalls calls(count, hasFailed);
            isWritten = tools::writeToFile(path, after);
        }
        EXPECT_EQ(testing::internal::GetCapturedStderr(),
                  isWritten ? "" : path + ": error: cannot be written: Input/output error\n");
        EXPECT_EQ(contentOf(path), isWritten ? after : "what it holds");
        EXPECT_EQ(namesIn(folder.path(".")), Names{"a.xml"});
        EXPECT_TRUE(isWritten || hasFailed);
        failures += !isWritten;
    }
    EXPECT_GE(failures, 5);
}

TEST(MakingAFile, LeavesNoneWhateverCallFails) {
    bool hasFailed = true;
    for (long count = 0; hasFailed; ++count) {
        SCOPED_TRACE("call " + std::to_string(count) + " fails");
        const support::TempFolder folder;
        testing::internal::CaptureStderr();
        bool isWritten = false;
        {
            const faults::FailingCalls calls(count, hasFailed);
            isWritten = tools::writeToFile(folder.path("new.xml"), "text");
        }
        testing::internal::GetCapturedStderr();
        EXPECT_EQ(namesIn(folder.path(".")), isWritten ? Names{"new.xml"} : Names());
    }
}

}  // namespace
