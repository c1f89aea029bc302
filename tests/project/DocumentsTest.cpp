#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <map>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "project/Files.h"
#include "project/Markdown.h"
#include "support/TempFolder.h"

namespace {

using support::block;
using support::blocksOf;
using support::readSource;
using support::sourcePath;

std::string outputOf(const std::string& command) {
    std::string output;
    std::FILE* pipe = popen(command.c_str(), "r");
    if (pipe == nullptr) return "cannot run " + command;
    for (int c = std::fgetc(pipe); c != EOF; c = std::fgetc(pipe)) output += static_cast<char>(c);
    const int status = pclose(pipe);
    return status == 0 ? output : output + "status " + std::to_string(status) + '\n';
}

// A folder that programs may write to, with the examples in it.
class Workplace {
public:
    Workplace() {
        std::filesystem::create_directory_symlink(sourcePath("examples"), mFolder.path("examples"));
    }

    // What the command prints on either of its outputs.
    std::string outputOf(const std::string& command) const {
        return ::outputOf("cd '" + mFolder.path("") +
                          "' && PATH='" VEXXML_PROGRAM_FOLDER "':'" VEXXML_EXAMPLES
                          "':$PATH && { " +
                          command + "; } 2>&1");
    }

private:
    support::TempFolder mFolder;
};

// The documents that show code, and the program that it comes from. One source holds all that a
// document shows, as a whole or in pieces; see `support::Snippet`.
struct Chapter {
    const char* document;
    const char* source;
    const char* program;
};

constexpr Chapter kChapters[] = {
    {"README.md", "examples/Recipes.cpp", "recipes"},
    {"docs/security.md", "examples/Untrusted.cpp", "untrusted"},
    {"docs/dialect.md", "examples/handbook/Dialect.cpp", "handbook_Dialect"},
    {"docs/editing.md", "examples/handbook/Editing.cpp", "handbook_Editing"},
    {"docs/reading.md", "examples/handbook/Reading.cpp", "handbook_Reading"},
    {"docs/settings.md", "examples/handbook/Settings.cpp", "handbook_Settings"},
    {"docs/speed.md", "examples/handbook/Speed.cpp", "handbook_Speed"},
    {"docs/start.md", "examples/handbook/Start.cpp", "handbook_Start"},
    {"docs/streams.md", "examples/handbook/Streams.cpp", "handbook_Streams"},
    {"docs/validation.md", "examples/handbook/Validation.cpp", "handbook_Validation"},
    {"docs/writing.md", "examples/handbook/Writing.cpp", "handbook_Writing"},
    {"docs/xpath.md", "examples/handbook/XPath.cpp", "handbook_XPath"},
};

// All that people read.
std::vector<std::string> documents() {
    std::vector<std::string> names;
    for (const char* folder : {"", "docs", "examples"}) {
        for (const auto& entry : std::filesystem::directory_iterator(sourcePath(folder))) {
            if (entry.path().extension() != ".md") continue;
            names.push_back(std::filesystem::relative(entry.path(), sourcePath("")).string());
        }
    }
    std::sort(names.begin(), names.end());
    return names;
}

bool isChapter(const std::string& document) {
    return std::any_of(std::begin(kChapters), std::end(kChapters),
                       [&](const Chapter& chapter) { return document == chapter.document; });
}

TEST(Documents, ShowCodeThatIsCompiled) {
    for (const Chapter& chapter : kChapters) {
        std::string shown, compiled;
        for (const support::Block& block : blocksOf(readSource(chapter.document))) {
            if (block.language == "cpp") shown += block.text;
        }
        for (const auto& snippet : support::snippetsOf(readSource(chapter.source))) {
            compiled += snippet.text;
        }
        EXPECT_EQ(shown, compiled) << chapter.document;
    }
}

TEST(Documents, ShowNoOtherCode) {
    for (const std::string& document : documents()) {
        if (isChapter(document)) continue;
        for (const support::Block& block : blocksOf(readSource(document))) {
            EXPECT_NE(block.language, "cpp") << document << " shows " << block.text;
        }
    }
}

// The text behind each block of code, which is empty where none follows it.
std::vector<std::string> textsBehindCode(const std::string& document) {
    std::vector<std::string> texts;
    bool isBehindCode = false;
    for (const support::Block& block : blocksOf(document)) {
        if (isBehindCode && block.language == "text") texts.back() = block.text;
        isBehindCode = block.language == "cpp";
        if (isBehindCode) texts.emplace_back();
    }
    return texts;
}

TEST(Documents, ShowWhatTheirCodePrints) {
    for (const Chapter& chapter : kChapters) {
        SCOPED_TRACE(chapter.document);
        const Workplace workplace;
        auto outputs = support::outputsOf(workplace.outputOf(chapter.program));
        const auto snippets = support::snippetsOf(readSource(chapter.source));
        const auto shown = textsBehindCode(readSource(chapter.document));
        ASSERT_EQ(shown.size(), snippets.size());
        for (std::size_t i = 0; i < snippets.size(); ++i) {
            const std::string& name = snippets[i].name;
            EXPECT_EQ(outputs.count(name) == 1, snippets[i].isRun) << name << " is not run";
            EXPECT_EQ(shown[i], outputs[name]) << name;
        }
    }
}

// What a terminal would show for the commands in a block, which stand behind prompts.
std::string sessionOf(const std::string& shown) {
    const std::string prompt = "$ ";
    const Workplace workplace;
    std::string session;
    std::istringstream lines(shown);
    for (std::string line; std::getline(lines, line);) {
        if (line.rfind(prompt, 0) != 0) continue;
        session.append(line).append("\n").append(
            workplace.outputOf("{ " + line.substr(prompt.size()) + "; } || true"));
    }
    return session;
}

// One example takes a library that need not be there.
bool isBuilt(const std::string& session) {
    return VEXXML_HAS_ZLIB || session.find("read_gz") == std::string::npos;
}

TEST(Documents, ShowWhatATerminalShows) {
    for (const std::string& document : documents()) {
        for (const support::Block& block : blocksOf(readSource(document))) {
            if (block.language != "console" || !isBuilt(block.text)) continue;
            EXPECT_EQ(block.text, sessionOf(block.text)) << document;
        }
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

TEST(Start, ConfiguresItsProject) {
    const std::string text = readSource("docs/start.md");
    const support::TempFolder folder;
    folder.write("menu.cpp", block(text, "cpp"));
    folder.write("CMakeLists.txt", block(text, "cmake"));
    std::filesystem::create_directory_symlink(sourcePath(""), folder.path("VexXml"));
    const std::string output = outputOf("cd '" + folder.path("") + "' && cmake -S . -B build 2>&1");
    EXPECT_NE(output.find("-- Configuring done"), std::string::npos) << output;
}

// What is wrong with the link, if anything.
std::string mistakeIn(const std::string& link, const std::string& document) {
    const std::size_t hash = std::min(link.find('#'), link.size());
    const std::string file = link.substr(0, hash);
    const std::filesystem::path target =
        file.empty() ? std::filesystem::path(document)
                     : (std::filesystem::path(document).parent_path() / file).lexically_normal();
    if (!std::filesystem::exists(sourcePath(target.string()))) return "no such file: " + link;
    if (hash == link.size()) return {};
    const auto anchors = support::anchorsOf(readSource(target.string()));
    const bool isThere =
        std::find(anchors.begin(), anchors.end(), link.substr(hash + 1)) != anchors.end();
    return isThere ? "" : "no such heading: " + link;
}

TEST(Documents, LinkToWhatExists) {
    for (const std::string& document : documents()) {
        const std::string text = readSource(document);
        EXPECT_NE(text, "") << document;
        for (const std::string& link : support::linksOf(text)) {
            EXPECT_EQ(mistakeIn(link, document), "") << document;
        }
    }
}

}  // namespace
