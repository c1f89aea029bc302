#include <gtest/gtest.h>

#include <string>

#include "tools/Workplace.h"

namespace {

using support::Outcome;
using support::Workplace;

const std::string kMenu =
    "<menu day='Monday'><dish price=\"5\">soup &amp; bread</dish><!-- c -->"
    "<dish>fish <b>and</b> <![CDATA[chips]]></dish><drink price=''/></menu>";

const std::string kCounts =
    "           5  elements\n"
    "           3  attributes\n"
    "           4  texts\n"
    "           3  levels\n"
    "          25  bytes of texts\n"
    "           7  bytes of values\n"
    "           3  most children\n"
    "\n";

const std::string kNames =
    "           2  @price\n"
    "           2  dish\n"
    "           1  @day\n"
    "           1  b\n"
    "           1  drink\n"
    "           1  menu\n";

TEST(Stat, CountsWhatADocumentConsistsOf) {
    EXPECT_EQ(Workplace().run("vexxml stat -", kMenu), (Outcome{0, kCounts + kNames, ""}));
}

TEST(Stat, ListsSoManyNames) {
    EXPECT_EQ(Workplace().run("vexxml stat --top 1 -", kMenu),
              (Outcome{0, kCounts + "           2  @price\n         ...  and 5 more\n", ""}));
    EXPECT_EQ(Workplace().run("vexxml stat --top 6 -", kMenu), (Outcome{0, kCounts + kNames, ""}));
}

TEST(Stat, ListsTenNamesUnlessToldOtherwise) {
    std::string document;
    std::string names;
    for (const char name : std::string("abcdefghijk")) {
        document += std::string("<") + name + "/>";
        names += std::string("           1  ") + name + '\n';
    }
    document = "<a>" + document + "</a>";
    const std::string counts =
        "          12  elements\n           0  attributes\n           0  texts\n"
        "           2  levels\n           0  bytes of texts\n           0  bytes of values\n"
        "          11  most children\n\n";
    names.replace(0, 12, "           2");
    EXPECT_EQ(Workplace().run("vexxml stat --all -", document), (Outcome{0, counts + names, ""}));
    const std::string last = "           1  k\n";
    names.replace(names.size() - last.size(), last.size(), "         ...  and 1 more\n");
    EXPECT_EQ(Workplace().run("vexxml stat -", document), (Outcome{0, counts + names, ""}));
}

TEST(Stat, NamesTheFileAboveEachTableOfSeveral) {
    const Workplace place;
    place.write("a.xml", "<a/>");
    place.write("broken.xml", "<a>");
    const std::string table =
        "           1  elements\n           0  attributes\n           0  texts\n"
        "           1  levels\n           0  bytes of texts\n           0  bytes of values\n"
        "           0  most children\n\n           1  a\n";
    EXPECT_EQ(place.run("vexxml stat a.xml broken.xml -", "<a/>"),
              (Outcome{1, "a.xml:\n" + table + "-:\n" + table,
                       "broken.xml:1:4: error: Unexpected end of stream\n<a>\n   ^\n"}));
}

TEST(Stat, TakesADocumentThatBreaksItsDtd) {
    EXPECT_EQ(Workplace().run("vexxml stat -", "<!DOCTYPE a [<!ELEMENT a (b)>]><a/>").status, 0);
}

}  // namespace
