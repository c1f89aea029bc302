#include <gtest/gtest.h>

#include <set>
#include <sstream>
#include <string>

#include "tools/Help.h"
#include "tools/Workplace.h"

namespace {

using support::Outcome;
using support::Workplace;

// What the page says without the fonts, and with characters for their names.
std::string plainPage() {
    std::string text = support::readTool("vexxml.1");
    const std::pair<const char*, const char*> escapes[] = {
        {"\\fB", ""}, {"\\fI", ""},   {"\\fR", ""},    {"\\&", ""},
        {"\\-", "-"}, {"\\(aq", "'"}, {"\\(dq", "\""}, {"\\e", "\\"}};
    for (const auto& [name, character] : escapes) {
        for (std::size_t at = 0; (at = text.find(name, at)) != std::string::npos;) {
            text.replace(at, std::string(name).size(), character);
        }
    }
    return text;
}

// The options in a section, which begin paragraphs.
std::set<std::string> listedOptions(const std::string& section) {
    std::set<std::string> options;
    std::istringstream lines(section);
    for (std::string line; std::getline(lines, line);) {
        if (line == ".TP" && std::getline(lines, line)) options.merge(support::optionsIn(line));
    }
    return options;
}

TEST(Manual, ListsTheOptionsOfEachCommand) {
    const std::string page = plainPage();
    const auto common =
        listedOptions(support::partOf(page, "\n.SS Options of every command\n", "\n.S"));
    for (const std::string& command : support::commands()) {
        const std::string section = support::partOf(page, "\n.SS vexxml " + command + "\n", "\n.S");
        EXPECT_NE(section, "") << command;
        std::set<std::string> options = listedOptions(section);
        options.insert(common.begin(), common.end());
        EXPECT_EQ(options, support::helpedOptions(command)) << command;
    }
}

TEST(Manual, ShowsTheOptionsOfEachCommandInTheSynopsis) {
    const std::string page = plainPage();
    const std::string synopsis = support::partOf(page, "\n.SH SYNOPSIS\n", "\n.SH") + "\n.br\n";
    for (const std::string& command : support::commands()) {
        const std::string section = support::partOf(page, "\n.SS vexxml " + command + "\n", "\n.S");
        const auto shown =
            support::optionsIn(support::partOf(synopsis, ".B vexxml " + command + "\n", "\n.br\n"));
        const auto listed = listedOptions(section);
        for (const std::string& option : shown) EXPECT_EQ(listed.count(option), 1U) << option;
        for (const std::string& option : listed) {
            const bool hasShortForm = option == "--output";
            EXPECT_TRUE(hasShortForm || shown.count(option) == 1) << command << ' ' << option;
        }
    }
}

TEST(Manual, IsSetWithoutAWarning) {
    EXPECT_EQ(Workplace().run("groff -man -ww -z '" VEXXML_TOOLS_FOLDER "/vexxml.1'"),
              (Outcome{0, "", ""}));
}

// What a terminal shows for the commands in an example, which stand behind prompts.
std::string sessionOf(const Workplace& place, const std::string& example) {
    std::string session;
    std::istringstream lines(example);
    for (std::string line; std::getline(lines, line);) {
        if (line.rfind("$ ", 0) != 0) continue;
        session += line + '\n' + place.run("{ " + line.substr(2) + "\n} 2>&1").out;
    }
    return session;
}

TEST(Manual, ShowsWhatItsExamplesPrint) {
    std::string rest = plainPage();
    const Workplace place;
    const std::string shown = "$ cat menu.xml\n";
    place.write("menu.xml", support::partOf(rest, shown, ".EE\n"));
    int count = 0;
    for (std::size_t at = 0; (at = rest.find("\n.EX\n")) != std::string::npos; ++count) {
        rest = rest.substr(at + 5);
        const std::string example = rest.substr(0, rest.find(".EE\n"));
        EXPECT_EQ(example, sessionOf(place, example));
    }
    EXPECT_GT(count, 1);
}

}  // namespace
