#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "tools/Workplace.h"

namespace {

using support::Outcome;
using support::Workplace;

const std::string kHead = "<?xml version = \"1.0\" ?>\n";
const std::string kMenu =
    "<menu day=\"Monday\"><dish price=\"5\">soup</dish>"
    "<dish price=\"12\">fish &amp; <b>chips</b> too</dish><drink/></menu>";

/// The menu without the line feeds and tabs that indent it, as it has none of its own.
std::string onOneLine(const std::string& text) {
    std::string line;
    for (const char c : text) line += c == '\n' || c == '\t' ? "" : std::string(1, c);
    return line;
}

class Edit : public ::testing::Test {
protected:
    Edit() { place.write("menu.xml", kMenu); }

    /// The menu once it was edited.
    std::string edited(const std::string& arguments) const {
        const Outcome outcome = place.run("vexxml edit " + arguments + " menu.xml");
        EXPECT_EQ(outcome.status, 0) << outcome;
        EXPECT_EQ(outcome.err, "");
        return onOneLine(outcome.out.substr(std::min(kHead.size(), outcome.out.size())));
    }

    Outcome onMenu(const std::string& arguments) const {
        return place.run("vexxml edit " + arguments + " menu.xml");
    }

    Workplace place;
};

const std::string kSoup = "<dish price=\"5\">soup</dish>";
const std::string kFish = "<dish price=\"12\">fish &amp; <b>chips</b> too</dish>";
const std::string kRest = kFish + "<drink/></menu>";
const std::string kStart = "<menu day=\"Monday\">";

// Expression and actions, and what becomes of the menu.
const std::pair<const char*, std::string> kEdits[] = {
    {"'//dish[1]' --set-text 'a & <b> \"&lt;\" ]]>'",
     kStart + "<dish price=\"5\">a &amp; &lt;b&gt; &quot;&amp;lt;&quot; ]]&gt;</dish>" + kRest},
    {"//drink --set-text tea", kStart + kSoup + kFish + "<drink>tea</drink></menu>"},
    {"'//dish[1]' --set-text ''", kStart + "<dish price=\"5\"/>" + kRest},
    {"//b/text --set-text peas",
     kStart + kSoup + "<dish price=\"12\">fish &amp; <b>peas</b> too</dish><drink/></menu>"},
    {"'//dish[2]/text' --set-text ''",
     kStart + kSoup + "<dish price=\"12\"><b>chips</b></dish><drink/></menu>"},
    {"//@day --set-text 'Tues\"day'", "<menu day=\"Tues&quot;day\">" + kSoup + kRest},
    {"//@day --set-text ''", "<menu day=\"\">" + kSoup + kRest},
    {"/menu --set-attribute day=a=b", "<menu day=\"a=b\">" + kSoup + kRest},
    {"//drink --set-attribute x=1 --set-attribute 'y=<&>'",
     kStart + kSoup + kFish + "<drink x=\"1\" y=\"&lt;&amp;&gt;\"/></menu>"},
    {"//dish --remove-attribute price --remove-attribute none",
     kStart + "<dish>soup</dish><dish>fish &amp; <b>chips</b> too</dish><drink/></menu>"},
    {"//@price --delete",
     kStart + "<dish>soup</dish><dish>fish &amp; <b>chips</b> too</dish><drink/></menu>"},
    {"//dish --delete", kStart + "<drink/></menu>"},
    {"'//dish[1]' --delete", kStart + kRest},
    {"//b --delete", kStart + kSoup + "<dish price=\"12\">fish &amp;  too</dish><drink/></menu>"},
    {"/menu/dish/descendant-or-self::node --delete", kStart + "<drink/></menu>"},
    {"//text --delete",
     kStart + "<dish price=\"5\"/><dish price=\"12\"><b/></dish><drink/></menu>"},
    {"//drink --rename drinks", kStart + kSoup + kFish + "<drinks/></menu>"},
    {"/menu --rename card", "<card day=\"Monday\">" + kSoup + kFish + "<drink/></card>"},
    {"//@day --rename date --set-text Tuesday", "<menu date=\"Tuesday\">" + kSoup + kRest},
    {"//@day --rename day", kMenu},
    {"//drink --add '<tea kind=\"&lt;a&gt;\"/> <!-- c --><b>x &amp; y</b>z'",
     kStart + kSoup + kFish + "<drink><tea kind=\"&lt;a&gt;\"/><b>x &amp; y</b>z</drink></menu>"},
    {"/menu --add '<a/>' --add '<b/>'", kStart + kSoup + kFish + "<drink/><a/><b/></menu>"},
    {"//drink --add '<a/>' --rename b --set-attribute c=d",
     kStart + kSoup + kFish + "<b c=\"d\"><a/></b></menu>"},
    {"//drink --add text --set-text other", kStart + kSoup + kFish + "<drink>other</drink></menu>"},
};

TEST_F(Edit, ChangesWhatIsSelected) {
    for (const auto& [arguments, menu] : kEdits) {
        SCOPED_TRACE(arguments);
        EXPECT_EQ(edited(arguments), menu);
    }
}

TEST_F(Edit, KeepsTheTextsThatAnElementHeldUntilAllIsDone) {
    place.write("a.xml", "<a><b>x</b></a>");
    EXPECT_EQ(place.run("vexxml edit //b/descendant-or-self::node --set-text y a.xml"),
              (Outcome{0, kHead + "<a>\n\t<b>y</b>\n</a>\n", ""}));
    EXPECT_EQ(place.run("vexxml edit //b/descendant-or-self::node --set-text '' --delete a.xml"),
              (Outcome{0, kHead + "<a/>\n", ""}));
}

// A text or value, which comes back when it is asked for.
const char* const kTexts[] = {"&amp;", "&#65; &x;", "  a  ",         "'",        "\"",  "\"a",
                              "&a",    "a\n\tb",    "<![CDATA[a]]>", "\xC3\xB6", "]]>", "a\r\nb"};

TEST_F(Edit, WritesTextsSoThatTheyAreReadAsTheyWereGiven) {
    for (const std::string text : kTexts) {
        SCOPED_TRACE(text);
        place.write("text", text);
        EXPECT_EQ(place.run("vexxml edit //b --set-text \"$(cat text)\" menu.xml | "
                            "vexxml query -0 //b -"),
                  (Outcome{0, text + '\0', ""}));
    }
}

TEST_F(Edit, WritesValuesSoThatTheyAreReadAsTheyWereGiven) {
    for (const std::string value : {"&amp;", "&#65; &x;", "  a  ", "'\"", "<a\tb>", "="}) {
        SCOPED_TRACE(value);
        place.write("value", value);
        EXPECT_EQ(place.run("vexxml edit //b --set-attribute x=\"$(cat value)\" menu.xml | "
                            "vexxml query -0 //b/@x -"),
                  (Outcome{0, value + '\0', ""}));
    }
}

// Actions that are refused as they stand, and why.
const std::pair<const char*, const char*> kRefused[] = {
    {"", "edit: needs an action, such as --delete"},
    {"--delete --rename x", "--delete: must be the last action"},
    {"--set-text ' '", "--set-text: would not be read again as it is"},
    {"--set-text \"$(printf '\\t\\n.' | tr . ' ')\"",
     "--set-text: would not be read again as it is"},
    {"--set-text \"$(printf '\\033')\"", "--set-text: no document may hold control characters"},
    {"--set-attribute x", "--set-attribute: not of the form NAME=VALUE: x"},
    {"--set-attribute 1=2", "--set-attribute: not a name: 1"},
    {"--set-attribute =2", "--set-attribute: not a name: "},
    {"--set-attribute \"x=$(printf '1\\n2')\"",
     "--set-attribute: would not be read again as it is"},
    {"--set-attribute \"x=$(printf '\\001')\"",
     "--set-attribute: no document may hold control characters"},
    {"--remove-attribute '<'", "--remove-attribute: not a name: <"},
    {"--rename 'a b'", "--rename: not a name: a b"},
    {"--add \"$(printf '<a>\\033</a>')\"", "--add: no document may hold control characters"},
    {"--delete --in-place -o b.xml", "--output excludes --in-place"},
};

TEST_F(Edit, RefusesActionsThatCannotBeDoneToAnyDocument) {
    for (const auto& [actions, text] : kRefused) {
        SCOPED_TRACE(actions);
        EXPECT_EQ(onMenu("//drink " + std::string(actions)),
                  (Outcome{2, "",
                           "vexxml: " + std::string(text) +
                               "\nRun with --help for more information.\n"}));
    }
}

// Expression and actions, and why they cannot be done to the menu.
const std::pair<const char*, const char*> kImpossible[] = {
    {"/menu --delete", "the root element cannot be deleted: /menu"},
    {"//node --delete", "the root element cannot be deleted: /menu"},
    {"/ --delete", "the document itself cannot be changed: /"},
    {"/ --set-text x", "the document itself cannot be changed: /"},
    {"/menu --set-text x", "has child elements, which would be lost: /menu"},
    {"//dish --set-text x", "has child elements, which would be lost: /menu/dish"},
    {"//@price --set-attribute a=b", "only elements have attributes: /menu/dish/@price"},
    {"//b/text --remove-attribute a", "only elements have attributes: /menu/dish/b/text"},
    {"//@price --add '<a/>'", "only elements have children: /menu/dish/@price"},
    {"//text --rename a", "a text has no name: /menu/dish/text"},
    {"//@*  --rename a --rename b --set-attribute c=d", "only elements have attributes: /menu/@b"},
    {"//drink --set-attribute a=1 --set-attribute b=2 --add '<a'", "--add: not well-formed"},
    {"//drink --add '<a>'", "--add: Unexpected end of stream"},
    {"//drink --add '</a><a>'", "--add: not well-formed"},
    {"//drink --add '<!-- c --> '", "--add: nothing to add"},
    {"//drink --add '<![CDATA[ ]]>'", "--add: would not be read again as it is"},
    {"//drink --add '<a b=\"1&#10;2\"/>'", "--add: would not be read again as it is"},
};

TEST_F(Edit, RefusesActionsThatCannotBeDoneAndWritesNothing) {
    for (const auto& [arguments, text] : kImpossible) {
        SCOPED_TRACE(arguments);
        EXPECT_EQ(onMenu("--in-place " + std::string(arguments)),
                  (Outcome{2, "", "menu.xml: error: " + std::string(text) + "\n"}));
    }
    EXPECT_EQ(place.read("menu.xml"), kMenu);
}

TEST_F(Edit, NamesTheNearestLevelsOnly) {
    place.write("a.xml", "<a><b><c><d><e><f><g><h><i j=''/></h></g></f></e></d></c></b></a>");
    EXPECT_EQ(place.run("vexxml edit //@j --add x a.xml").err,
              "a.xml: error: only elements have children: .../b/c/d/e/f/g/h/i/@j\n");
}

TEST_F(Edit, RefusesANameThatAnotherAttributeHas) {
    place.write("a.xml", "<a b='1' c='2'/>");
    EXPECT_EQ(place.run("vexxml edit //@c --rename b a.xml"),
              (Outcome{2, "", "a.xml: error: there is a \"b\" already: /a/@c\n"}));
}

TEST_F(Edit, AddsWithTheEntitiesOfTheDocument) {
    EXPECT_EQ(place.run("vexxml edit /a --add '<b c=\"&e;\">&e;</b>' -",
                        "<!DOCTYPE a [<!ENTITY e 'f'>]><a/>"),
              (Outcome{0,
                       kHead + "<!DOCTYPE a [\n<!ENTITY e \"f\">\n]>\n"
                               "<a>\n\t<b c=\"f\">&e;</b>\n</a>\n",
                       ""}));
}

TEST_F(Edit, WritesNothingWhereNothingIsSelected) {
    EXPECT_EQ(onMenu("//supper --delete --in-place"), (Outcome{1, "", ""}));
    EXPECT_EQ(onMenu("//supper --delete -o out.xml"), (Outcome{1, "", ""}));
    EXPECT_EQ(place.list(), std::vector<std::string>{"menu.xml"});
    EXPECT_EQ(place.read("menu.xml"), kMenu);
}

TEST_F(Edit, RefusesAnExpressionThatGivesNoNodes) {
    EXPECT_EQ(onMenu("'1 + 1' --delete"),
              (Outcome{2, "", "expression: error: selects values, not nodes\n"}));
    EXPECT_EQ(onMenu("'//dish[' --delete").status, 2);
}

TEST_F(Edit, TellsOfADocumentThatCannotBeReadByStatusTwo) {
    EXPECT_EQ(place.run("vexxml edit //a --delete -", "<a>"),
              (Outcome{2, "", "-:1:4: error: Unexpected end of stream\n<a>\n   ^\n"}));
    EXPECT_EQ(place.run("vexxml edit --in-place //a --delete -", "<a/>").status, 2);
}

TEST_F(Edit, TakesADocumentThatBreaksItsDtd) {
    EXPECT_EQ(
        place.run("vexxml edit //b --delete -", "<!DOCTYPE a [<!ELEMENT a EMPTY>]><a><b/></a>"),
        (Outcome{0, kHead + "<!DOCTYPE a [\n<!ELEMENT a EMPTY>\n]>\n<a/>\n", ""}));
}

TEST_F(Edit, ReplacesTheFile) {
    EXPECT_EQ(onMenu("'//dish | x' --delete --in-place").status, 2);
    EXPECT_EQ(onMenu("//dish --delete --in-place"), (Outcome{0, "", ""}));
    EXPECT_EQ(place.read("menu.xml"), kHead + "<menu day=\"Monday\">\n\t<drink/>\n</menu>\n");
    EXPECT_EQ(place.list(), std::vector<std::string>{"menu.xml"});
    EXPECT_EQ(onMenu("//drink --rename tea -o new.xml"), (Outcome{0, "", ""}));
    EXPECT_EQ(place.read("new.xml"), kHead + "<menu day=\"Monday\">\n\t<tea/>\n</menu>\n");
}

}  // namespace
