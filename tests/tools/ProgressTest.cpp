#include <gtest/gtest.h>

#include <string>

#include "tools/Workplace.h"

namespace {

using support::Outcome;
using support::Workplace;

// What makes an input of 32 MiB that is wrong from the beginning, so that it takes next to no time.
const std::string kInput = "{ printf \"<a></b>\\n\"; head -c 33554424 /dev/zero; }";

const std::string kError = "a.xml:1:7: error: \"a\" expected";

// What stands in the lines that were written one over the other.
std::string shown(const std::string& out) {
    return out.substr(0, std::min(out.find("\r\n"), out.size()));
}

std::string bar(const std::string& work) {
    return "\r" + work + " [" + std::string(40, ' ') + "] 0 %";
}

Outcome onTerminal(const std::string& command) {
    return Workplace().run("export NO_COLOR=1; script --quiet --return --command '" + command +
                           "' /dev/null");
}

TEST(Progress, IsShownOnATerminalAndGoneBeforeAMessage) {
    const std::string out = onTerminal(kInput + " >a.xml; vexxml validate a.xml").out;
    EXPECT_EQ(out.rfind(bar("reading"), 0), 0U) << shown(out);
    EXPECT_NE(out.find("\r" + bar("parsing")), std::string::npos) << shown(out);
    EXPECT_NE(out.find(" \r" + kError), std::string::npos) << shown(out);
}

TEST(Progress, CountsWhereTheLengthIsNotKnown) {
    const std::string out = onTerminal(kInput + " | vexxml validate -").out;
    EXPECT_EQ(out.rfind("\rreading 32 MiB\r              \r", 0), 0U) << shown(out);
}

TEST(Progress, IsShownNowhereElse) {
    EXPECT_EQ(Workplace().run(kInput + " >a.xml; vexxml validate a.xml").err,
              kError + "\n<a></b>\n      ^\n");
    EXPECT_EQ(onTerminal("echo \"<a/>\" | vexxml validate -").out, "-: valid\r\n");
}

}  // namespace
