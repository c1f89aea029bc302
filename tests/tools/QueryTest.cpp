#include <gtest/gtest.h>

#include <cstddef>
#include <string>

#include "tools/Workplace.h"

namespace {

using support::Outcome;
using support::Workplace;

class Query : public ::testing::Test {
protected:
    Query() {
        place.write("menu.xml",
                    "<menu day=\"Monday\"><dish price=\"5\">soup</dish>"
                    "<dish price=\"12\">fish &amp; <b>chips</b></dish><drink/></menu>");
        place.write("plain.xml", "<a>one</a>");
        place.write("other.xml", "<a>two</a>");
        place.write("broken.xml", "<a>\n<b></a>");
    }

    /// What the command prints on `menu.xml`, if all goes well.
    Outcome onMenu(const std::string& arguments) const {
        return place.run("vexxml query " + arguments + " menu.xml");
    }

    Workplace place;
};

const char* const kBroken =
    "broken.xml:2:7: error: \"b\" expected\n"
    "<b></a>\n"
    "      ^\n";
const char* const kMissing = "missing.xml: error: cannot be read: No such file or directory\n";

// Options and expression, and what is printed.
const std::pair<const char*, const char*> kSelections[] = {
    {"/menu/dish", "soup\nfish & \n"},
    {"//@price", "5\n12\n"},
    {"/menu/drink", "\n"},
    {"/", "\n"},
    {"//dish/text", "soup\nfish & \n"},
    {"'//dish[@price > 10]/b'", "chips\n"},
    {"'1 + 1'", "2.000000\n"},
    {"'1 = 1'", "1\n"},
    {"'1 = 2'", "0\n"},
    {"'\"a b\"'", "a b\n"},
    {"--value //@day", "Monday\n"},
    {"--node //dish",
     "<dish price=\"5\">soup</dish>\n<dish price=\"12\">fish &amp; <b>chips</b></dish>\n"},
    {"--node //@price", "price=\"5\"\nprice=\"12\"\n"},
    {"--node //dish/text", "soup\nfish &amp; \n"},
    {"--node //drink", "<drink/>\n"},
    {"--node '1 + 1'", "2.000000\n"},
    {"--count //dish", "2\n"},
    {"--count --node //dish", "2\n"},
    {"--count '1 + 1'", "1\n"},
};

TEST_F(Query, PrintsWhatIsSelected) {
    for (const auto& [arguments, out] : kSelections) {
        SCOPED_TRACE(arguments);
        EXPECT_EQ(onMenu(arguments), (Outcome{0, out, ""}));
    }
}

TEST_F(Query, StartsARelativeExpressionFromTheDocument) {
    EXPECT_EQ(onMenu("menu/dish"), onMenu("/menu/dish"));
    EXPECT_EQ(onMenu("dish"), (Outcome{1, "", ""}));
}

TEST_F(Query, PrintsADocumentWhole) {
    place.write("a.xml", "<!DOCTYPE a [<!ELEMENT a EMPTY>]><a/>");
    const std::string whole =
        "<?xml version = \"1.0\" ?>\n<!DOCTYPE a [\n<!ELEMENT a EMPTY>\n]>\n<a/>\n";
    EXPECT_EQ(place.run("vexxml query --node / a.xml"), (Outcome{0, whole, ""}));
    EXPECT_EQ(place.run("vexxml query --node //node a.xml"), (Outcome{0, "<a/>\n", ""}));
}

TEST_F(Query, NamesTheFileInFrontOfEachResultOfSeveral) {
    EXPECT_EQ(place.run("vexxml query //text plain.xml other.xml"),
              (Outcome{0, "plain.xml:one\nother.xml:two\n", ""}));
    EXPECT_EQ(place.run("vexxml query --node //a plain.xml other.xml"),
              (Outcome{0, "plain.xml:<a>one</a>\nother.xml:<a>two</a>\n", ""}));
    EXPECT_EQ(place.run("vexxml query --count //dish plain.xml menu.xml"),
              (Outcome{0, "plain.xml:0\nmenu.xml:2\n", ""}));
}

TEST_F(Query, EndsResultsWithANulOnDemand) {
    place.write("a.xml", "<a><b>1\n2</b><b>3\n</b></a>");
    EXPECT_EQ(place.run("vexxml query -0 //b a.xml"),
              (Outcome{0, std::string("1\n2\0003\n\0", 7), ""}));
    EXPECT_EQ(place.run("vexxml query -0 //b a.xml plain.xml"),
              (Outcome{0, std::string("a.xml:1\n2\0a.xml:3\n\0", 19), ""}));
    EXPECT_EQ(place.run("vexxml query -0 --count //b a.xml"),
              (Outcome{0, std::string("2\0", 2), ""}));
}

TEST_F(Query, KeepsTheLineFeedsOfAResult) {
    place.write("a.xml", "<a><b>1\n2</b></a>");
    EXPECT_EQ(place.run("vexxml query //b a.xml plain.xml"), (Outcome{0, "a.xml:1\n2\n", ""}));
}

TEST_F(Query, ReadsTheStandardInputForADash) {
    EXPECT_EQ(place.run("vexxml query /a/@b -", "<a b='c'/>"), (Outcome{0, "c\n", ""}));
    EXPECT_EQ(place.run("vexxml query //text - plain.xml", "<a>c</a>"),
              (Outcome{0, "-:c\nplain.xml:one\n", ""}));
}

TEST_F(Query, TakesADocumentThatBreaksItsDtd) {
    EXPECT_EQ(place.run("vexxml query //b -", "<!DOCTYPE a [<!ELEMENT a EMPTY>]><a><b>c</b></a>"),
              (Outcome{0, "c\n", ""}));
}

TEST_F(Query, IsSilentWhenNothingIsSelected) {
    EXPECT_EQ(onMenu("//supper"), (Outcome{1, "", ""}));
    EXPECT_EQ(onMenu("'//dish[3]'"), (Outcome{1, "", ""}));
    EXPECT_EQ(onMenu("--node //supper"), (Outcome{1, "", ""}));
}

TEST_F(Query, CountsNothingAsZero) {
    EXPECT_EQ(onMenu("--count //supper"), (Outcome{1, "0\n", ""}));
}

TEST_F(Query, SucceedsWhenAnyFileHasAResult) {
    EXPECT_EQ(place.run("vexxml query //dish/b plain.xml menu.xml other.xml"),
              (Outcome{0, "menu.xml:chips\n", ""}));
    EXPECT_EQ(place.run("vexxml query //dish plain.xml other.xml"), (Outcome{1, "", ""}));
}

TEST_F(Query, TriesAllFilesAndTroubleWins) {
    EXPECT_EQ(place.run("vexxml query //text missing.xml plain.xml broken.xml other.xml"),
              (Outcome{2, "plain.xml:one\nother.xml:two\n", std::string(kMissing) + kBroken}));
    EXPECT_EQ(place.run("vexxml query //dish broken.xml plain.xml"), (Outcome{2, "", kBroken}));
    EXPECT_EQ(place.run("vexxml query //text plain.xml missing.xml"),
              (Outcome{2, "plain.xml:one\n", kMissing}));
}

// Names, and how to quote them for the shell.
TEST_F(Query, TakesAnyName) {
    const std::pair<const char*, const char*> names[] = {
        {"a b.xml", "'a b.xml'"}, {"a[b,c].xml", "'a[b,c].xml'"}, {"a\nb", "'a\nb'"},
        {"\xFF", "'\xFF'"},       {"format", "format"},           {"a:b", "a:b"},
        {"%s%n", "'%s%n'"},
    };
    for (const auto& [name, argument] : names) {
        SCOPED_TRACE(name);
        place.write(name, "<a>c</a>");
        EXPECT_EQ(place.run("vexxml query //text " + std::string(argument) + " plain.xml"),
                  (Outcome{0, std::string(name) + ":c\nplain.xml:one\n", ""}));
    }
    place.write("-x", "<a>c</a>");
    EXPECT_EQ(place.run("vexxml query -- //text -x"), (Outcome{0, "c\n", ""}));
    EXPECT_EQ(place.run("vexxml query -- //text ''"),
              (Outcome{2, "", ": error: cannot be read: No such file or directory\n"}));
}

TEST_F(Query, TakesAnExpressionThatIsACommand) {
    EXPECT_EQ(place.run("vexxml query format -", "<format>a</format>"), (Outcome{0, "a\n", ""}));
}

TEST_F(Query, PrintsManyResults) {
    std::string document = "<a>";
    std::string out;
    for (int i = 0; i < 20000; ++i) {
        const std::string number = std::to_string(i);
        document += "<b>" + number + "</b>";
        out += number + "\n";
    }
    place.write("a.xml", document + "</a>");
    EXPECT_TRUE(place.run("vexxml query //b a.xml") == (Outcome{0, out, ""}));
}

TEST_F(Query, StopsAtTheFirstResultThatCannotBeWritten) {
    place.write("long.xml", "<a>" + std::string(200000, 'a') + "</a>");
    EXPECT_EQ(
        place.run("vexxml query //text long.xml long.xml missing.xml >/dev/full"),
        (Outcome{2, "", "standard output: error: cannot be written: No space left on device\n"}));
}

TEST_F(Query, ShowsWhatIsNotUtf8AsReplaced) {
    EXPECT_EQ(
        place.run("vexxml query //@b -", "<a b='\xE4'>\xC3\xA4</a>"),
        (Outcome{0, "\xEF\xBF\xBD\n", "-: warning: bytes that are not UTF-8 appear as U+FFFD\n"}));
    EXPECT_EQ(place.run("vexxml query //text -", "<a b='\xE4'>\xC3\xA4</a>"),
              (Outcome{0, "\xC3\xA4\n", ""}));
    EXPECT_EQ(place.run("vexxml query //text -", "<a>\xEF\xBF\xBD</a>"),
              (Outcome{0, "\xEF\xBF\xBD\n", ""}));
}

TEST_F(Query, WritesNodesAsTheyAreAndTellsWhenThatIsNotUtf8) {
    EXPECT_EQ(place.run("vexxml query --node //@b -", "<a b='\xE4'/>"),
              (Outcome{0, "b=\"\xE4\"\n", "-: warning: what is written is not UTF-8\n"}));
}

// An expression, the place of the mistake in it, counted from 0, and what is said.
struct Mistake {
    std::string expression;
    std::size_t place;
    const char* text;
};

const Mistake kMistakes[] = {
    {"menu/dish//", 9, "a step is missing after the double slash at the end --> //"},
    {"//menu//", 6, "a step is missing after the double slash at the end --> //"},
    {"a['//'] // ", 8, "a step is missing after the double slash at the end --> //"},
    {"", 0, "the expression, or a predicate in it, is empty"},
    {"menu[]", 5, "the expression, or a predicate in it, is empty"},
    {"menu['[]'][ ]", 12, "the expression, or a predicate in it, is empty"},
    {"dish['a'b]", 5, "only an operator may follow a quoted text --> 'a'b"},
    {"dish['a' b]", 5, "only an operator may follow a quoted text --> 'a'b"},
    {"dish[last()b]", 5, "only an operator may follow a function call --> last()b"},
    {"menu/text()", 5,
     "a kind test is written without parentheses, and nothing may follow it --> text()"},
    {"menu/..", 5,
     "a kind test is written without parentheses, and nothing may follow it --> node()"},
    {"a.b/./c", 4,
     "a kind test is written without parentheses, and nothing may follow it --> node()"},
    {"a[1.5 = 1]/.", 11,
     "a kind test is written without parentheses, and nothing may follow it --> node()"},
    {"a['1x'][1x]", 8, "a number consists of digits and at most one point --> 1x"},
    {"a[1 + 1 x]", 6, "a number consists of digits and at most one point --> 1x"},
    {"b[1]/a[1]b", 6, "only a predicate, a slash or an operator may follow a predicate --> [1]"},
    {"a[ 1 ] b", 1, "only a predicate, a slash or an operator may follow a predicate --> [ 1 ]"},
    {"a[@5]/@b", 3, "the name of an attribute is missing or not valid --> 5"},
    {"a[5]/@5", 6, "the name of an attribute is missing or not valid --> 5"},
    {"a[b=1]/@", 8, "the name of an attribute is missing or not valid --> "},
    {"a[5]/5", 5, "a name or kind test is missing or not valid --> 5"},
    {"a/b-/*c", 5, "a name or kind test is missing or not valid --> *c"},
    {"-a", 0, "a name or kind test is missing or not valid --> -a"},
    {"[1]", 0, "a name or kind test is missing or not valid --> "},
    {"ab/b/", 3, "a step is missing after the slash at the end --> b/"},
    {"ab / b /", 5, "a step is missing after the slash at the end --> b/"},
    {"a/up::b", 2, "there is no such axis --> up::b"},
    {"a['b", 2, "a closing quote is missing after a text --> 'b"},
    {"a['b' = 'b", 8, "a closing quote is missing after a text --> 'b"},
    {"menu/dish[1", 9, "a closing bracket is missing after a predicate --> [1"},
    {"a[b[1]", 1, "a closing bracket is missing after a predicate --> [b[1]"},
    {"a[last(]", 2, "a closing parenthesis is missing after a function --> last("},
    {"last/a[last]", 0,
     "position and last need parentheses, and no other name may begin like them --> last/a[last]"},
    {"a/text(x", 2, "a closing parenthesis is missing after a kind test --> text(x"},
    {"texts/a/textb", 0,
     "a name must not begin like a kind test (node, element, attribute, text, document-node) --> "
     "texts"},
    {"\xC3\xA4/5", 0, "a name or kind test is missing or not valid --> \xC3\xA4"},
    {"a[b='\xF0\x9F\x98\x80']/5", 9, "a name or kind test is missing or not valid --> 5"},
};

std::string report(const Mistake& mistake) {
    return "expression:1:" + std::to_string(mistake.place + 1) + ": error: " + mistake.text + "\n" +
           mistake.expression + "\n" + std::string(mistake.place, ' ') + "^\n";
}

TEST_F(Query, PointsAtAMistakeInTheExpression) {
    for (const Mistake& mistake : kMistakes) {
        SCOPED_TRACE(mistake.expression);
        place.write("expression", mistake.expression);
        EXPECT_EQ(place.run("vexxml query -- \"$(cat expression)\" menu.xml"),
                  (Outcome{2, "", report(mistake)}));
    }
}

TEST_F(Query, ReportsAMalformedExpressionOnceAndReadsNoFile) {
    EXPECT_EQ(place.run("vexxml query a/ missing.xml broken.xml menu.xml"),
              (Outcome{2, "",
                       "expression:1:1: error: a step is missing after the slash at the end --> "
                       "a/\na/\n^\n"}));
}

}  // namespace
