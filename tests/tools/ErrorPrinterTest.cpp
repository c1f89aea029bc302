#include <gtest/gtest.h>

#include <string>

#include "tools/Workplace.h"

namespace {

using support::Outcome;
using support::Workplace;

// A document, and what is printed about it.
struct Report {
    std::string document;
    std::string text;
};

const Report kReports[] = {
    {"", "-:1:1: error: Unexpected end of stream\n\n^\n"},
    {"<a></b>", "-:1:7: error: \"a\" expected\n<a></b>\n      ^\n"},
    {"<a>", "-:1:4: error: Unexpected end of stream\n<a>\n   ^\n"},
    {"<a>\n", "-:2:1: error: Unexpected end of stream\n\n^\n"},
    // Failures without a text of their own.
    {"<a ?>", "-:1:5: error: not well-formed\n<a ?>\n    ^\n"},
    {"<?xml version='1.1'?><a/>",
     "-:1:20: error: not well-formed\n<?xml version='1.1'?><a/>\n                   ^\n"},
};

TEST(ErrorPrinter, ShowsTheLineAndTheTextOfTheLibrary) {
    for (const auto& [document, text] : kReports) {
        EXPECT_EQ(Workplace().run("vexxml format -", document), (Outcome{1, "", text}));
    }
}

// A document with a faulty end tag in line 4, column 5, and each kind of line end.
const char* const kDocuments[] = {
    "<a>\n\n<b>\n\t</c>\n</a>\n",
    "<a>\r\n\r\n<b>\r\n\t</c>\r\n</a>\r\n",
    "<a>\r\r<b>\r\t</c>\r</a>\r",
};

TEST(ErrorPrinter, CountsLinesOverEveryKindOfLineEnd) {
    for (const char* document : kDocuments) {
        EXPECT_EQ(Workplace().run("vexxml format -", document),
                  (Outcome{1, "", "-:4:5: error: \"b\" expected\n\t</c>\n\t   ^\n"}));
    }
}

TEST(ErrorPrinter, CountsMixedLineEnds) {
    EXPECT_EQ(Workplace().run("vexxml format -", "<a>\n\r\r\n\n\r</b>"),
              (Outcome{1, "", "-:6:4: error: \"a\" expected\n</b>\n   ^\n"}));
}

TEST(ErrorPrinter, ShowsAPlaceBetweenCarriageReturnAndLineFeedAtTheEndOfItsLine) {
    EXPECT_EQ(Workplace().run("vexxml format -", "<a>\r\n</a\r\n<"),
              (Outcome{1, "", "-:3:2: error: \">\" expected\n<\n ^\n"}));
    EXPECT_EQ(Workplace().run("vexxml format -", "<a b='1'\r\r\n'"),
              (Outcome{1, "", "-:3:2: error: Unexpected end of stream\n'\n ^\n"}));
}

TEST(ErrorPrinter, CountsCharactersNotBytes) {
    EXPECT_EQ(Workplace().run("vexxml format -", "<\xC3\xA4>"),
              (Outcome{1, "",
                       "-:1:3: error: not a name: \xC3\xA4\n"
                       "<\xC3\xA4>\n"
                       "  ^\n"}));
    EXPECT_EQ(Workplace().run("vexxml format -", "<a>\xF0\x9F\x98\x80\xE2\x82\xAC</b>"),
              (Outcome{1, "",
                       "-:1:9: error: \"a\" expected\n"
                       "<a>\xF0\x9F\x98\x80\xE2\x82\xAC</b>\n"
                       "        ^\n"}));
}

// Bytes in a document, and how they are shown.
const std::pair<std::string, const char*> kBytes[] = {
    {"\x1B[31m", "?[31m"},
    {std::string(1, '\0'), "?"},
    {"\a\b\x7F", "???"},
    {"\xC2\x9B", "?"},         // a control character in two bytes
    {"\x9B", "?"},             // a byte that cannot begin a character
    {"\xC3", "?"},             // the first of two
    {"\xE2\x80\xAE", "?"},     // what turns the direction of writing
    {"\xE2\x80\x8B", "?"},     // what has no width
    {"\xEF\xBB\xBF", "?"},     // a byte order mark
    {"\xC0\x80\xF8", "???"},   // bytes that no character has
    {"\xE2\x82", "??"},        // a character cut off
    {"\xC3\xB6", "\xC3\xB6"},  // a letter
    {"\t", "\t"},
};

TEST(ErrorPrinter, ShowsNothingThatATerminalWouldActOn) {
    for (const auto& [bytes, shown] : kBytes) {
        SCOPED_TRACE(shown);
        const Outcome outcome = Workplace().run("vexxml format -", "<a>" + bytes + "</b>");
        const std::string line = outcome.err.substr(outcome.err.find('\n') + 1);
        EXPECT_EQ(line.substr(0, line.find('\n')), "<a>" + std::string(shown) + "</b>");
    }
}

TEST(ErrorPrinter, PutsTheCaretUnderItsCharacterBehindHiddenOnes) {
    EXPECT_EQ(Workplace().run("vexxml format -", "<a>\x1B\xC3\xA4\t\xE2\x82</b>"),
              (Outcome{1, "",
                       "-:1:12: error: \"a\" expected\n"
                       "<a>?\xC3\xA4\t?\?</b>\n"
                       "     \t     ^\n"}));
}

TEST(ErrorPrinter, KeepsTextAndNameHarmlessAndOnOneLine) {
    const Workplace place;
    const std::string name = "a\x1B\nb";
    place.write(name, "<'\x1B\n'>");
    EXPECT_EQ(place.run("vexxml format *"),
              (Outcome{1, "", "a??b:2:2: error: not a name: '?\?'\n'>\n ^\n"}));
}

TEST(ErrorPrinter, CutsALongText) {
    const std::string name(100000, '1');
    const Outcome outcome = Workplace().run("vexxml format -", "<" + name + ">");
    EXPECT_EQ(outcome.err, "-:1:100002: error: not a name: " + name.substr(0, 488) + "...\n..." +
                               name.substr(0, 100) + ">\n" + std::string(103, ' ') + "^\n");
}

const std::string kXs(100, 'x');
const std::string kYs(54, 'y');

TEST(ErrorPrinter, ShowsALineOf160BytesWhole) {
    const std::string line = "<a>" + kXs + "</b>" + kYs.substr(1);
    EXPECT_EQ(Workplace().run("vexxml format -", line).err,
              "-:1:107: error: \"a\" expected\n" + line + '\n' + std::string(106, ' ') + "^\n");
}

TEST(ErrorPrinter, CutsALongerLineAroundThePlace) {
    const std::string line = "<a>" + kXs + "</b>" + kYs;
    EXPECT_EQ(Workplace().run("vexxml format -", line).err,
              "-:1:107: error: \"a\" expected\n..." + kXs.substr(3) + "</b>" + kYs.substr(5) +
                  "...\n" + std::string(103, ' ') + "^\n");
}

TEST(ErrorPrinter, CutsALongLineBetweenCharacters) {
    std::string text;
    for (int i = 0; i < 100; ++i) text += "\xE2\x82\xAC";
    const Outcome outcome = Workplace().run("vexxml format -", "<a>" + text + "</b>" + text);
    EXPECT_EQ(outcome.err, "-:1:107: error: \"a\" expected\n..." + text.substr(0, 96) + "</b>" +
                               text.substr(0, 51) + "...\n" + std::string(38, ' ') + "^\n");
}

const std::string kPlainReport = "-:1:4: error: Unexpected end of stream";

TEST(ErrorPrinter, ColoursOnATerminalOnly) {
    const std::string command =
        "script --quiet --return --command 'echo \"<a>\" | tr -d \"\\n\" | "
        "vexxml format -' /dev/null";
    const Workplace place;
    const Outcome coloured = place.run("unset NO_COLOR; " + command);
    EXPECT_EQ(coloured.out,
              "\x1b[1m-:1:4:\x1b[0m \x1b[1;31merror:\x1b[0m Unexpected end of stream"
              "\r\n<a>\r\n   ^\r\n")
        << coloured;
    const Outcome plain = place.run("export NO_COLOR=1; " + command);
    EXPECT_EQ(plain.out, kPlainReport + "\r\n<a>\r\n   ^\r\n") << plain;
}

}  // namespace
