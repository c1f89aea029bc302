#include <gtest/gtest.h>

#include <string>

#include "tools/Workplace.h"

namespace {

using support::Outcome;
using support::Workplace;

const std::string kMenu =
    "<menu day='Monday' x=''><dish price=\"5\">soup &amp; bread</dish>"
    "<dish>fish <b>and</b> chips</dish><drink/></menu>";

const std::string kOutline =
    "menu day=\"Monday\" x=\"\"\n"
    "  dish price=\"5\" \"soup & bread\"\n"
    "  dish\n"
    "    \"fish \"\n"
    "    b \"and\"\n"
    "    \" chips\"\n"
    "  drink\n";

TEST(Tree, OutlinesADocument) {
    EXPECT_EQ(Workplace().run("vexxml tree -", kMenu), (Outcome{0, kOutline, ""}));
}

// The depth, and the outline.
const std::pair<const char*, std::string> kDepths[] = {
    {"1", "menu day=\"Monday\" x=\"\" ...\n"},
    {"2",
     "menu day=\"Monday\" x=\"\"\n"
     "  dish price=\"5\" \"soup & bread\"\n"
     "  dish ...\n"
     "  drink\n"},
    {"3", kOutline},
};

TEST(Tree, MarksElementsWhoseChildrenAreTooDeep) {
    for (const auto& [depth, outline] : kDepths) {
        EXPECT_EQ(Workplace().run(std::string("vexxml tree - --depth ") + depth, kMenu),
                  (Outcome{0, outline, ""}));
    }
}

TEST(Tree, NumbersLevelsInsteadOfIndentingThemFurther) {
    std::string document;
    std::string outline;
    for (int level = 1; level <= 42; ++level) {
        document.insert(0, "<a>").append("</a>");
        outline += std::string(static_cast<std::size_t>(2 * std::min(level, 40) - 2), ' ') +
                   (level > 40 ? std::to_string(level) + ": " : "") + "a\n";
    }
    EXPECT_EQ(Workplace().run("vexxml tree -", document), (Outcome{0, outline, ""}));
}

// A text, and how it is shown.
const std::pair<std::string, std::string> kTexts[] = {
    {"a \t\n\r b", "a b"},
    {"\x1B[31m\x7F", "?[31m?"},
    {"\xC2\x9B\x9B\xE2\x80\xAE", "???"},
    {"&#27;", "?"},
    {std::string("a\0b", 3), "a?b"},
    {"\xE2\x82\xAC", "\xE2\x82\xAC"},
    {std::string(60, 'x'), std::string(60, 'x')},
    {std::string(61, 'x'), std::string(60, 'x') + "..."},
};

TEST(Tree, ShowsValuesAndTextsHarmlessAndShort) {
    const Workplace place;
    for (const auto& [text, shown] : kTexts) {
        SCOPED_TRACE(shown);
        const std::string tag = "<a x='" + text + "'>";
        const std::string quoted = '"' + shown + '"';
        const std::string line = "a x=" + quoted + ' ';
        EXPECT_EQ(place.run("vexxml tree -", tag + text + "</a>"),
                  (Outcome{0, line + quoted + '\n', ""}));
    }
}

TEST(Tree, NamesTheFileAboveEachOutlineOfSeveral) {
    const Workplace place;
    place.write("a.xml", "<a/>");
    place.write("c\x1B.xml", "<b/>");
    place.write("broken.xml", "<a>");
    EXPECT_EQ(place.run("vexxml tree a.xml broken.xml c*.xml missing.xml"),
              (Outcome{2, "a.xml:\na\nc?.xml:\nb\n",
                       "broken.xml:1:4: error: Unexpected end of stream\n<a>\n   ^\n"
                       "missing.xml: error: cannot be read: No such file or directory\n"}));
}

TEST(Tree, TakesADocumentThatBreaksItsDtd) {
    EXPECT_EQ(Workplace().run("vexxml tree -", "<!DOCTYPE a [<!ELEMENT a (b)>]><a/>"),
              (Outcome{0, "a\n", ""}));
}

const std::string kColoured =
    "\x1b[34ma\x1b[0m \x1b[36mx\x1b[0m=\x1b[32m\"1\"\x1b[0m\n"
    "  \x1b[32m\"t\"\x1b[0m\n"
    "  \x1b[34mb\x1b[0m \x1b[32m\"u\"\x1b[0m\n";

TEST(Tree, ColoursOnDemand) {
    const std::string document = "<a x='1'>t<b>u</b></a>";
    const std::string plain = "a x=\"1\"\n  \"t\"\n  b \"u\"\n";
    EXPECT_EQ(Workplace().run("vexxml tree --color always -", document),
              (Outcome{0, kColoured, ""}));
    EXPECT_EQ(Workplace().run("vexxml tree --color auto -", document), (Outcome{0, plain, ""}));
}

TEST(Tree, ColoursOnATerminalUnlessToldOtherwise) {
    const Workplace place;
    place.write("a.xml", "<a/>");
    const auto outputOf = [&place](const std::string& variable, const std::string& option) {
        return place
            .run("unset NO_COLOR; " + variable +
                 " script --quiet --return --command 'vexxml tree " + option + " a.xml' /dev/null")
            .out;
    };
    EXPECT_EQ(outputOf("", ""), "\x1b[34ma\x1b[0m\r\n");
    EXPECT_EQ(outputOf("", "--color never"), "a\r\n");
    EXPECT_EQ(outputOf("NO_COLOR=1", ""), "a\r\n");
    EXPECT_EQ(outputOf("NO_COLOR=1", "--color always"), "\x1b[34ma\x1b[0m\r\n");
}

}  // namespace
