#include <gtest/gtest.h>

#include <set>
#include <sstream>
#include <string>

#include "VexXml/Readers.h"
#include "tools/Help.h"
#include "tools/Workplace.h"

namespace {

using support::Outcome;
using support::Workplace;
using Words = std::set<std::string>;

const char* const kCommon[] = {"-h", "--help", "--version", "--trusted", "--limit"};

Words withCommon(Words options) {
    options.insert(std::begin(kCommon), std::end(kCommon));
    return options;
}

Words wordsOf(const std::string& text) {
    std::istringstream stream(text);
    return {std::istream_iterator<std::string>(stream), {}};
}

// What bash offers behind a line, sorted.
std::string completed(const std::string& line) {
    std::string words = line;
    if (line.back() == ' ') words += "''";
    return Workplace()
        .run(
            "bash -c '. \"$0\"; COMP_WORDS=(\"$@\"); COMP_CWORD=$(($# - 1)); _vexxml; "
            "[ ${#COMPREPLY[@]} = 0 ] || printf \"%s\\n\" \"${COMPREPLY[@]}\" | sort' "
            "'" VEXXML_TOOLS_FOLDER "/completions/vexxml.bash' " +
            words)
        .out;
}

TEST(Completion, OffersTheCommandsInBash) {
    std::string names = "--help\n--version\n-h\n";
    for (const std::string& name : Words(support::commands().begin(), support::commands().end())) {
        names += name + '\n';
    }
    EXPECT_EQ(completed("vexxml "), names);
    EXPECT_EQ(completed("vexxml fo"), "format\n");
    EXPECT_EQ(completed("vexxml --version v"), "validate\n");
}

TEST(Completion, OffersTheOptionsOfEachCommandInBash) {
    for (const std::string& command : support::commands()) {
        EXPECT_EQ(wordsOf(completed("vexxml " + command + " -")), support::helpedOptions(command))
            << command;
    }
    EXPECT_EQ(completed("vexxml tree --color a"), "always\nauto\n");
    EXPECT_EQ(completed("vexxml format a.xml --in"), "--in-place\n");
}

TEST(Completion, LeavesFilesToBash) {
    EXPECT_EQ(completed("vexxml format "), "");
    EXPECT_EQ(completed("vexxml format -o "), "");
    EXPECT_EQ(completed("vexxml validate --dtd --"), "");
    EXPECT_EQ(completed("vexxml unknown -"), "");
    EXPECT_EQ(Workplace()
                  .run("bash -c '. \"$0\"; complete -p vexxml' "
                       "'" VEXXML_TOOLS_FOLDER "/completions/vexxml.bash'")
                  .out,
              "complete -o bashdefault -o default -F _vexxml vexxml\n");
}

TEST(Completion, OffersLimitsInBash) {
    EXPECT_EQ(completed("vexxml format --limit node"), "nodes=\n");
    for (std::string limit : wordsOf(completed("vexxml format --limit "))) {
        limit.pop_back();
        EXPECT_NE(Xml::ReadLimits::named(limit), nullptr) << limit;
    }
}

TEST(Completion, KnowsTheCommandsInZsh) {
    const std::string names =
        support::partOf(support::readTool("completions/_vexxml"), "    commands=(\n", "\n    )\n");
    std::istringstream lines(names);
    std::vector<std::string> known;
    for (std::string line; std::getline(lines, line);) {
        known.push_back(line.substr(9, line.find(':') - 9));
    }
    EXPECT_EQ(known, support::commands());
}

TEST(Completion, KnowsTheOptionsOfEachCommandInZsh) {
    const std::string script = support::readTool("completions/_vexxml");
    EXPECT_EQ(support::optionsIn(support::partOf(script, "    common=(\n", "\n    )\n")),
              withCommon({}));
    for (const std::string& command : support::commands()) {
        const std::string part = support::partOf(script, "\n        " + command + ") ", ";;") +
                                 support::partOf(script, "\n        " + command + ")\n", ";;");
        EXPECT_NE(part, "") << command;
        EXPECT_EQ(withCommon(support::optionsIn(part)), support::helpedOptions(command)) << command;
    }
}

TEST(Completion, KnowsTheSameLimitsEverywhere) {
    const Words limits =
        wordsOf(support::partOf(support::readTool("completions/vexxml.bash"), "limits=\"", "\""));
    EXPECT_FALSE(limits.empty());
    EXPECT_EQ(wordsOf(support::partOf(support::readTool("completions/_vexxml"), "limits=(", ")")),
              limits);
}

}  // namespace
