#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>
#include <string>
#include <vector>

#include "project/Files.h"

namespace {

using Names = std::vector<std::string>;

const Names kValues = {"values/", "VexXml/Values.h", "VexXml/Export.h"};
const Names kPlatform = {"platform/", "VexSys/"};

Names operator+(Names left, const Names& right) {
    left.insert(left.end(), right.begin(), right.end());
    return left;
}

const Names kStreams = kValues + kPlatform + Names{"streams/", "VexXml/Streams.h"};
const Names kModel = kStreams + Names{"dom/", "dtd/", "VexXml/Dom.h", "VexXml/Dtd.h"};
const Names kXPath = kStreams + Names{"dom/", "xpath/", "VexXml/Dom.h", "VexXml/XPath.h"};
const Names kReaders = kModel + Names{"readers/", "VexXml/Readers.h"};

// A folder or header, and what it may include of the project; what ends with "/" stands for all
// below.
struct Layer {
    const char* name;
    Names allowed;
};

const Layer kLayers[] = {
    {"values", kValues},
    {"platform", kPlatform},
    {"streams", kStreams},
    {"dom", kModel},
    {"dtd", kModel},
    {"readers", kReaders},
    {"xpath", kXPath},
    {"tools", kReaders + Names{"tools/", "VexXml/XPath.h", "VexXml/VexXml.h"}},
    {"include/VexSys", kPlatform},
    {"include/VexXml/Values.h", {"VexXml/Export.h"}},
    {"include/VexXml/Streams.h", {"VexXml/Values.h", "VexXml/Export.h"}},
    {"include/VexXml/Dom.h", {"VexXml/Streams.h", "VexXml/Values.h", "VexXml/Export.h"}},
    {"include/VexXml/Dtd.h",
     {"VexXml/Dom.h", "VexXml/Streams.h", "VexXml/Values.h", "VexXml/Export.h"}},
    {"include/VexXml/XPath.h", {"VexSys/Uni16.h", "VexXml/Export.h"}},
};

// Names of entities are looked up in a DTD: the one place where a lower folder asks a higher one.
bool isException(const std::string& file, const std::string& included) {
    return file.rfind("values/References", 0) == 0 && included == "VexXml/Dtd.h";
}

bool isAllowed(const std::string& included, const Names& allowed) {
    return std::any_of(allowed.begin(), allowed.end(), [&](const std::string& name) {
        return name.back() == '/' ? included.rfind(name, 0) == 0 : included == name;
    });
}

// The files that a file includes by a name in quotes.
Names includesOf(const std::string& file) {
    const std::string opening = "#include \"";
    Names included;
    std::istringstream text(support::readSource(file));
    for (std::string line; std::getline(text, line);) {
        if (line.rfind(opening, 0) != 0) continue;
        included.push_back(line.substr(opening.size(), line.rfind('"') - opening.size()));
    }
    return included;
}

bool isFile(const std::string& name) { return name.find('.') != std::string::npos; }

TEST(Layers, NoFolderIncludesAHigherOne) {
    std::string wrong;
    for (const auto& [name, allowed] : kLayers) {
        const Names files = isFile(name) ? Names{name} : support::sourcesBelow(name);
        EXPECT_FALSE(files.empty()) << name;
        for (const std::string& file : files) {
            for (const std::string& included : includesOf(file)) {
                if (isAllowed(included, allowed) || isException(file, included)) continue;
                wrong.append(file).append(" includes ").append(included) += '\n';
            }
        }
    }
    EXPECT_EQ(wrong, "");
}

TEST(Layers, HeadersAreIncludedOnce) {
    std::string wrong;
    for (const char* folder : {"include", "values", "platform", "streams", "dom", "dtd", "readers",
                               "xpath", "tools", "tests", "fuzz"}) {
        for (const std::string& file : support::sourcesBelow(folder)) {
            const bool isHeader = file.substr(file.size() - 2) == ".h";
            const bool isGuarded = support::readSource(file).rfind("#pragma once\n", 0) == 0;
            if (isHeader && !isGuarded) wrong += file + '\n';
        }
    }
    EXPECT_EQ(wrong, "");
}

}  // namespace
