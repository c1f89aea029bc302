#include <gtest/gtest.h>

#include <string>

#include "tools/Workplace.h"

namespace {

using support::Outcome;
using support::Workplace;

Outcome diff(const std::string& before, const std::string& now, const std::string& options = "") {
    const Workplace place;
    place.write("old.xml", before);
    place.write("new.xml", now);
    return place.run("vexxml diff " + options + " old.xml new.xml");
}

struct Pair {
    std::string before;
    std::string now;
};

const Pair kSame[] = {
    {"<a/>", "<a></a>"},
    {"<a x='1' y='2'/>", "<!-- c --><a y=\"2\" x=\"1\" />"},
    {"<a><b/> <c/></a>", "<a>\n\t<b/>\n\t<c/>\n</a>\n"},
    {"<a>&lt;&#66;</a>", "<a><![CDATA[<B]]></a>"},
    {"<a>bcd</a>", "<a>b<![CDATA[c]]>d<![CDATA[]]></a>"},
    {"<a x='&lt;'/>", "<a x='&#60;'/>"},
    {"<!DOCTYPE a [<!ELEMENT a EMPTY><!ENTITY e 'f'>]><a/>",
     "<!DOCTYPE a [<!ENTITY e 'f'><!ELEMENT a  EMPTY >]><a/>"},
};

TEST(Diff, FindsNoDifferenceInWhatMeansTheSame) {
    for (const auto& [before, now] : kSame) {
        SCOPED_TRACE(now);
        EXPECT_EQ(diff(before, now), (Outcome{0, "", ""}));
    }
}

// Two documents, and what is printed about them.
struct Difference {
    std::string before;
    std::string now;
    std::string text;
};

const std::string kMany(70, 'x');

const Difference kDifferences[] = {
    {"<a/>", "<b/>", "/a: deleted a\n/b: inserted b\n"},
    {"<a b='1'/>", "<a b='2'/>", "/a/@b: changed \"1\" to \"2\"\n"},
    {"<a b='' c='1'/>", "<a c='1' d='&amp;'/>", "/a/@b: deleted \"\"\n/a/@d: inserted \"&\"\n"},
    {"<a>b</a>", "<a>c</a>", "/a/text: changed \"b\" to \"c\"\n"},
    {"<a>b</a>", "<a/>", "/a/text: deleted \"b\"\n"},
    {"<a/>", "<a>b</a>", "/a/text: inserted \"b\"\n"},
    {"<a>b<i/>c<i/>d</a>", "<a>b<i/>C<i/>d</a>", "/a/text[2]: changed \"c\" to \"C\"\n"},
    {"<a><b/><c/></a>", "<a><c/></a>", "/a/b: deleted b\n"},
    {"<a><c/></a>", "<a><b x='1'>t</b><c/></a>", "/a/b: inserted b x=\"1\" \"t\"\n"},
    {"<a><b>1</b><b>2</b><b>3</b></a>", "<a><b>1</b><b>3</b></a>", "/a/b[2]: deleted b \"2\"\n"},
    {"<a><b>1</b><b>3</b></a>", "<a><b>1</b><b>2</b><b>3</b></a>", "/a/b[2]: inserted b \"2\"\n"},
    {"<a><b>1</b><b>2</b></a>", "<a><b>2</b><b>1</b></a>",
     "/a/b[1]: deleted b \"1\"\n/a/b[2]: inserted b \"1\"\n"},
    {"<a><b><c x='1'/></b><b/></a>", "<a><b><c x='2'/></b><b/></a>",
     "/a/b[1]/c/@x: changed \"1\" to \"2\"\n"},
    // Those of the same attributes belong together.
    {"<a><b i='1'>x</b><b i='2'>y</b></a>", "<a><b i='0'/><b i='1'>X</b><b i='2'>Y</b></a>",
     "/a/b[1]: inserted b i=\"0\"\n/a/b[1]/text: changed \"x\" to \"X\"\n"
     "/a/b[2]/text: changed \"y\" to \"Y\"\n"},
    {"<a><b i='1'/><c/></a>", "<a><b i='2'/><d/></a>",
     "/a/b/@i: changed \"1\" to \"2\"\n/a/c: deleted c\n/a/d: inserted d\n"},
    // A child is no attribute, a text no element.
    {"<a b='c'/>", "<a><b>c</b></a>", "/a/@b: deleted \"c\"\n/a/b: inserted b \"c\"\n"},
    {"<a>b</a>", "<a><b/></a>", "/a/text: deleted \"b\"\n/a/b: inserted b\n"},
    {"<a>\x1B</a>", "<a>\x9B</a>", "/a/text: changed \"?\" to \"?\"\n"},
    {"<a>" + kMany + "1" + kMany + "</a>", "<a>" + kMany + "2</a>",
     "/a/text: changed \"..." + kMany.substr(50) + "1" + kMany.substr(31) + "...\" to \"..." +
         kMany.substr(50) + "2\"\n"},
    {"<!DOCTYPE a [<!ELEMENT a EMPTY>]><a/>", "<a/>", "<!DOCTYPE>: changed\n"},
};

TEST(Diff, PrintsALineForEachDifference) {
    for (const auto& [before, now, text] : kDifferences) {
        SCOPED_TRACE(text);
        EXPECT_EQ(diff(before, now), (Outcome{1, text, ""}));
    }
}

TEST(Diff, PrintsNothingOnDemand) {
    EXPECT_EQ(diff("<a/>", "<b/>", "--quiet"), (Outcome{1, "", ""}));
    EXPECT_EQ(diff("<a/>", "<!DOCTYPE a [<!ELEMENT a EMPTY>]><a/>", "--quiet"),
              (Outcome{1, "", ""}));
    EXPECT_EQ(diff("<a/>", "<a/>", "--quiet"), (Outcome{0, "", ""}));
}

// Numbers from one to another as elements.
std::string items(int first, int last) {
    std::string text;
    for (int i = first; i <= last; ++i) text += "<i>" + std::to_string(i) + "</i>";
    return text;
}

std::string inserted(int first, int last) {
    std::string text;
    for (int i = first; i <= last; ++i) {
        text += "/a/i[" + std::to_string(i) + "]: inserted i \"" + std::to_string(i) + "\"\n";
    }
    return text;
}

TEST(Diff, PairsByTheLongestCommonPartWhereLittleIsLeftOver) {
    EXPECT_EQ(diff("<a>" + items(1, 1) + items(202, 400) + "</a>", "<a>" + items(1, 400) + "</a>"),
              (Outcome{1, inserted(2, 201), ""}));
}

TEST(Diff, PairsWhatIsUnlikeAllOthersWhereMuchIsLeftOver) {
    const std::string before = "<a>" + items(1, 1) + items(300, 400) + items(700, 700) + "</a>";
    EXPECT_EQ(diff(before, "<a>" + items(1, 700) + "</a>"),
              (Outcome{1, inserted(2, 299) + inserted(401, 699), ""}));
}

TEST(Diff, LeavesOutTheMiddleOfALongPath) {
    std::string start;
    std::string end;
    for (int i = 1; i < 102; ++i) {
        start += "<a" + std::to_string(i) + '>';
        end.insert(0, "</a" + std::to_string(i) + '>');
    }
    std::string path;
    for (int i = 1; i <= 50; ++i) path += "/a" + std::to_string(i);
    path += "/...";
    for (int i = 53; i <= 101; ++i) path += "/a" + std::to_string(i);
    EXPECT_EQ(diff(start + "<b x=''/>" + end, start + "<b/>" + end),
              (Outcome{1, path + "/b/@x: deleted \"\"\n", ""}));
}

TEST(Diff, ReadsTheStandardInputForADash) {
    const Workplace place;
    place.write("a.xml", "<a/>");
    EXPECT_EQ(place.run("vexxml diff a.xml -", "<a/>"), (Outcome{0, "", ""}));
    EXPECT_EQ(place.run("vexxml diff - a.xml", "<b/>").status, 1);
    EXPECT_EQ(place.run("vexxml diff - -", "<b/>"),
              (Outcome{2, "",
                       "vexxml: NEW: only one document can be the standard input\n"
                       "Run with --help for more information.\n"}));
}

TEST(Diff, TellsOfWhatCannotBeReadByStatusTwo) {
    const Workplace place;
    place.write("a.xml", "<a/>");
    place.write("broken.xml", "<a>");
    EXPECT_EQ(place.run("vexxml diff a.xml missing.xml"),
              (Outcome{2, "", "missing.xml: error: cannot be read: No such file or directory\n"}));
    EXPECT_EQ(place.run("vexxml diff broken.xml a.xml"),
              (Outcome{2, "", "broken.xml:1:4: error: Unexpected end of stream\n<a>\n   ^\n"}));
    EXPECT_EQ(place.run("vexxml diff --limit nodes=0 a.xml a.xml").status, 2);
    EXPECT_EQ(place.run("vexxml diff a.xml"),
              (Outcome{2, "", "vexxml: NEW is required\nRun with --help for more information.\n"}));
}

TEST(Diff, TakesADocumentThatBreaksItsDtd) {
    const std::string document = "<!DOCTYPE a [<!ELEMENT a (b)>]><a/>";
    EXPECT_EQ(diff(document, document), (Outcome{0, "", ""}));
}

TEST(Diff, FullStandardOutputEndsWithStatusTwo) {
    const Workplace place;
    place.write("a.xml", "<a/>");
    place.write("b.xml", "<b/>");
    EXPECT_EQ(
        place.run("vexxml diff a.xml b.xml >/dev/full"),
        (Outcome{2, "", "standard output: error: cannot be written: No space left on device\n"}));
}

}  // namespace
