#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <vector>

#include "fuzz/Checks.h"

// Every input that is kept, be it to start from or because something went wrong with it once.
namespace {

namespace fs = std::filesystem;

std::vector<std::string> filesIn(const fs::path& folder) {
    std::vector<std::string> files;
    if (!fs::exists(folder)) return files;
    for (const fs::directory_entry& entry : fs::directory_iterator(folder))
        files.push_back(entry.path().string());
    std::sort(files.begin(), files.end());
    return files;
}

std::string bytesOf(const std::string& path) {
    const std::ifstream file(path, std::ios::binary);
    EXPECT_TRUE(file) << path;
    std::ostringstream bytes;
    bytes << file.rdbuf();
    return bytes.str();
}

class KeptInputs : public testing::TestWithParam<fuzz::Target> {
protected:
    static std::vector<std::string> inputsIn(const char* kind) {
        return filesIn(fs::path(VEXXML_FUZZ_FOLDER) / kind / GetParam().name);
    }

    static void check(const std::vector<std::string>& inputs) {
        for (const std::string& input : inputs) {
            SCOPED_TRACE(input);
            EXPECT_EQ(GetParam().check(bytesOf(input)), "");
        }
    }
};

TEST_P(KeptInputs, ToStartFromAreTakenAsTheyShould) {
    const std::vector<std::string> inputs = inputsIn("corpus");
    EXPECT_FALSE(inputs.empty());
    check(inputs);
}

TEST_P(KeptInputs, ThatFailedOnceAreTakenAsTheyShould) { check(inputsIn("failures")); }

INSTANTIATE_TEST_SUITE_P(Fuzz, KeptInputs, testing::ValuesIn(fuzz::kTargets),
                         [](const auto& param) { return std::string(param.param.name); });

}  // namespace
