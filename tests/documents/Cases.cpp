#include "documents/Cases.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "VexXml/Readers.h"
#include "support/Dump.h"

namespace documents {
namespace {

namespace fs = std::filesystem;

std::string bytesOf(const fs::path& path) {
    const std::ifstream file(path, std::ios::binary);
    EXPECT_TRUE(file) << path;
    std::ostringstream bytes;
    bytes << file.rdbuf();
    return bytes.str();
}

std::vector<Case> findCases() {
    std::vector<Case> found;
    for (const fs::directory_entry& entry : fs::directory_iterator(VEXXML_TEST_CASES)) {
        fs::path path = entry.path();
        if (path.extension() != ".xml") continue;
        const std::string text = bytesOf(path);
        const std::string expected = bytesOf(path.replace_extension(".expected"));
        found.push_back({path.stem().string(), text, expected});
    }
    std::sort(found.begin(), found.end(),
              [](const Case& a, const Case& b) { return a.name < b.name; });
    return found;
}

}  // namespace

const std::vector<Case>& cases() {
    static const std::vector<Case> all = findCases();
    return all;
}

std::string rewritten(const std::string& text, support::Diagnostics& diagnostics) {
    Xml::StringInStream in(text);
    Xml::DocumentReader reader;
    const bool answer = reader.parse(in);
    const std::string result = answer ? support::written(*reader.getDocument())
                                      : "error: " + reader.getErrorMessage() + "\n";
    std::string reports;
    for (const std::string& report : diagnostics.take()) reports += "report: " + report + "\n";
    return reports + result;
}

InCasesFolder::InCasesFolder() : mFolderBefore(fs::current_path().string()) {
    fs::current_path(VEXXML_TEST_CASES);
}

InCasesFolder::~InCasesFolder() { fs::current_path(mFolderBefore); }

}  // namespace documents
