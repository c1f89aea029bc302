#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "project/Files.h"
#include "support/TempFolder.h"

namespace {

using support::readSource;
using support::sourcePath;

// The text of a block between fences that begin with "```" and the language; `index` counts from 0.
std::string block(const std::string& document, const std::string& language, int index = 0) {
    const std::string opening = "```" + language + "\n";
    std::size_t fence = document.find(opening);
    for (; index > 0; --index) fence = document.find(opening, fence + 1);
    if (fence == std::string::npos) return "no such block of " + language;
    const std::size_t start = fence + opening.size();
    return document.substr(start, document.find("```", start) - start);
}

std::string outputOf(const std::string& command) {
    std::string output;
    std::FILE* pipe = popen(command.c_str(), "r");
    if (pipe == nullptr) return "cannot run " + command;
    for (int c = std::fgetc(pipe); c != EOF; c = std::fgetc(pipe)) output += static_cast<char>(c);
    const int status = pclose(pipe);
    return status == 0 ? output : "status " + std::to_string(status);
}

struct Example {
    const char* document;
    const char* source;
    const char* program;
};

constexpr Example kExamples[] = {{"README.md", "examples/Recipes.cpp", "recipes"},
                                 {"docs/security.md", "examples/Untrusted.cpp", "untrusted"}};

TEST(Documents, ShowExamplesAsTheyAreCompiled) {
    for (const Example& example : kExamples) {
        const std::string shown = block(readSource(example.document), "cpp");
        EXPECT_EQ(shown, readSource(example.source));
    }
}

TEST(Documents, ShowWhatTheirExamplesPrint) {
    const std::string start = "cd '" + sourcePath("") + "' && '" VEXXML_EXAMPLES "/";
    for (const Example& example : kExamples) {
        const std::string shown = block(readSource(example.document), "text");
        EXPECT_EQ(shown, outputOf(start + example.program + "'"));
    }
}

// What a terminal would show for the commands in a block, which stand behind prompts.
std::string sessionOf(const std::string& shown) {
    const std::string prompt = "$ ";
    std::string session;
    std::istringstream lines(shown);
    for (std::string line; std::getline(lines, line);) {
        if (line.rfind(prompt, 0) != 0) continue;
        session.append(line).append("\n").append(
            outputOf("PATH='" VEXXML_PROGRAM_FOLDER "':$PATH; { " + line.substr(prompt.size()) +
                     "; } 2>&1 || true"));
    }
    return session;
}

TEST(Readme, ShowsWhatTheProgramPrints) {
    const std::string readme = readSource("README.md");
    for (const int index : {0, 1}) {
        const std::string shown = block(readme, "console", index);
        EXPECT_EQ(shown, sessionOf(shown));
    }
}

TEST(Readme, NamesEveryFolder) {
    const std::string readme = readSource("README.md");
    for (const auto& entry : std::filesystem::directory_iterator(sourcePath(""))) {
        const std::string name = entry.path().filename();
        const bool isOfProject = entry.is_directory() && name.front() != '.' && name != "build" &&
                                 !std::filesystem::is_empty(entry.path());
        if (!isOfProject) continue;
        EXPECT_NE(readme.find("`" + name + "/`"), std::string::npos) << name;
    }
}

TEST(Architecture, ShowsWhatItsDocumentIsWrittenAs) {
    const std::string text = readSource("docs/architecture.md");
    const support::TempFolder folder;
    const std::string path = folder.write("note.xml", block(text, "xml"));
    EXPECT_EQ(block(text, "xml", 1),
              outputOf("'" VEXXML_PROGRAM_FOLDER "/vexxml' format '" + path + "'"));
}

// Where the links of a document lead, as far as that is within the project.
std::vector<std::string> linksOf(const std::string& document) {
    std::vector<std::string> links;
    const std::string opening = "](";
    for (std::size_t at = document.find(opening); at != std::string::npos;
         at = document.find(opening, at + 1)) {
        const std::size_t start = at + opening.size();
        std::string link = document.substr(start, document.find(')', start) - start);
        if (link.find_first_of(":#") == std::string::npos) links.push_back(std::move(link));
    }
    return links;
}

TEST(Documents, LinkToFilesThatExist) {
    for (const std::string document :
         {"README.md", "CONTRIBUTING.md", "CHANGELOG.md", "docs/architecture.md",
          "docs/security.md", "docs/xpath.md"}) {
        const std::string text = readSource(document);
        EXPECT_NE(text, "") << document;
        const std::filesystem::path path = sourcePath(document);
        for (const std::string& link : linksOf(text)) {
            EXPECT_TRUE(std::filesystem::exists(path.parent_path() / link))
                << document << " links to " << link;
        }
    }
}

}  // namespace
