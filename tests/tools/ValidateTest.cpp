#include <gtest/gtest.h>

#include <string>

#include "tools/Workplace.h"

namespace {

using support::Outcome;
using support::Workplace;

const char* const kDoctype = "<!DOCTYPE a [<!ELEMENT a (b)><!ELEMENT b EMPTY>]>\n";

class Validate : public ::testing::Test {
protected:
    Validate() {
        place.write("plain.xml", "<a/>");
        place.write("valid.xml", std::string(kDoctype) + "<a><b/></a>");
        place.write("invalid.xml", std::string(kDoctype) + "<a/>");
        place.write("broken.xml", "<a>\n<b></a>");
        place.write("empty.dtd", "<!ELEMENT a EMPTY>");
        place.write("b.dtd", "<!-- c --><!ELEMENT a (b)>\n<!ELEMENT b EMPTY>\n");
        place.write("broken.dtd", "<!ELEMENT a EMPTY>\n<!NOTATION n>\n");
    }

    Workplace place;
};

const char* const kInvalid =
    "invalid.xml:2:5: error: Doc could not be validated\n"
    "<a/>\n"
    "    ^\n";
const char* const kBroken =
    "broken.xml:2:7: error: \"b\" expected\n"
    "<b></a>\n"
    "      ^\n";
const char* const kMissing = "missing.xml: error: cannot be read: No such file or directory\n";

TEST_F(Validate, TellsOfEachValidDocument) {
    EXPECT_EQ(place.run("vexxml validate plain.xml valid.xml"),
              (Outcome{0, "plain.xml: valid\nvalid.xml: valid\n", ""}));
}

TEST_F(Validate, IsSilentAboutValidDocumentsOnDemand) {
    EXPECT_EQ(place.run("vexxml validate --quiet plain.xml invalid.xml"),
              (Outcome{1, "", kInvalid}));
}

TEST_F(Validate, ReadsTheStandardInputForADash) {
    EXPECT_EQ(place.run("vexxml validate -", "<a/>"), (Outcome{0, "-: valid\n", ""}));
}

TEST_F(Validate, FailsOnADocumentThatBreaksItsDtd) {
    EXPECT_EQ(place.run("vexxml validate invalid.xml"), (Outcome{1, "", kInvalid}));
}

TEST_F(Validate, FailsOnADocumentThatIsNotWellFormed) {
    EXPECT_EQ(place.run("vexxml validate broken.xml"), (Outcome{1, "", kBroken}));
}

TEST_F(Validate, TriesAllFilesAndTheWorstStatusWins) {
    EXPECT_EQ(place.run("vexxml validate broken.xml missing.xml invalid.xml plain.xml"),
              (Outcome{2, "plain.xml: valid\n", std::string(kBroken) + kMissing + kInvalid}));
    EXPECT_EQ(place.run("vexxml validate missing.xml broken.xml 2>/dev/null"),
              (Outcome{2, "", ""}));
    EXPECT_EQ(place.run("vexxml validate broken.xml plain.xml 2>/dev/null"),
              (Outcome{1, "plain.xml: valid\n", ""}));
}

TEST_F(Validate, JudgesByTheGivenDtd) {
    EXPECT_EQ(place.run("vexxml validate --dtd empty.dtd plain.xml"),
              (Outcome{0, "plain.xml: valid\n", ""}));
    EXPECT_EQ(place.run("vexxml validate --dtd b.dtd plain.xml"),
              (Outcome{1, "",
                       "plain.xml:1:5: error: Doc could not be validated\n"
                       "<a/>\n"
                       "    ^\n"}));
}

TEST_F(Validate, JudgesByTheGivenDtdInsteadOfTheDocumentsOwn) {
    EXPECT_EQ(place.run("vexxml validate --dtd empty.dtd invalid.xml"),
              (Outcome{0, "invalid.xml: valid\n", ""}));
    EXPECT_EQ(place.run("vexxml validate --dtd empty.dtd valid.xml"),
              (Outcome{1, "",
                       "valid.xml:2:12: error: Doc could not be validated\n"
                       "<a><b/></a>\n"
                       "           ^\n"}));
}

TEST_F(Validate, NamesThePlaceBehindTheRootElementForTheGivenDtd) {
    place.write("ended.xml", "<a>\n</a>\n\n");
    EXPECT_EQ(place.run("vexxml validate --dtd b.dtd ended.xml"),
              (Outcome{1, "",
                       "ended.xml:2:5: error: Doc could not be validated\n"
                       "</a>\n"
                       "    ^\n"}));
}

TEST_F(Validate, NamesThePlaceInAGivenDtdThatCannotBeRead) {
    EXPECT_EQ(place.run("vexxml validate --dtd broken.dtd plain.xml"),
              (Outcome{1, "",
                       "broken.dtd:2:11: error: unexpected token \"<!NOTATION\"\n"
                       "<!NOTATION n>\n"
                       "          ^\n"}));
}

// What stands behind the end of `<!DOCTYPE a [<!ELEMENT a (b)>]>` and `<a/>`: the column in that
// second line, and the text; no text for what may stand there.
struct Rest {
    const char* bytes;
    int column;
    const char* text;
};

const Rest kRests[] = {
    {"", 0, nullptr},
    {" \t\r\n", 0, nullptr},
    {"<!-- c --> <?p i?>\n<!-- it's & \" -->\n", 0, nullptr},
    {"<!-- c --> <?p i?>", 0, nullptr},
    {"<b/>", 5, "text behind the root element"},
    {" text", 6, "text behind the root element"},
    {"<!-- ' -->'text", 15, "text behind the root element"},
    {"<!-- ; -->\"text", 15, "text behind the root element"},
    {"<!-- \" --> &amp", 16, "text behind the root element"},
    {"<?p i?><!", 12, "text behind the root element"},
    {"<?p i?><!-", 12, "text behind the root element"},
    {"<![CDATA[]]>", 5, "text behind the root element"},
    {"<?xml version='1.0'?>", 5, "text behind the root element"},
    {"]", 5, "text behind the root element"},
    {"<!-- c", 11, "Unexpected end of stream"},
    {"<?p", 8, "Unexpected end of stream"},
};

std::string rejection(const Rest& rest) {
    const std::string bytes = rest.bytes;
    return "a.xml:2:" + std::to_string(rest.column) + ": error: " + rest.text + "\n<a/>" + bytes +
           "\n" + std::string(static_cast<std::size_t>(rest.column) - 1, ' ') + "^\n";
}

TEST_F(Validate, FindsTextBehindTheRootElement) {
    for (const Rest& rest : kRests) {
        SCOPED_TRACE(rest.bytes);
        place.write("a.xml", std::string("<!-- no DTD -->\n<a/>") + rest.bytes);
        EXPECT_EQ(place.run("vexxml validate a.xml"), rest.text == nullptr
                                                          ? (Outcome{0, "a.xml: valid\n", ""})
                                                          : (Outcome{1, "", rejection(rest)}));
    }
}

TEST_F(Validate, FindsTextBehindARootElementThatOnlyTheGivenDtdAllows) {
    for (const Rest& rest : kRests) {
        SCOPED_TRACE(rest.bytes);
        place.write("a.xml", std::string("<!DOCTYPE a [<!ELEMENT a (b)>]>\n<a/>") + rest.bytes);
        EXPECT_EQ(place.run("vexxml validate --dtd empty.dtd a.xml"),
                  rest.text == nullptr ? (Outcome{0, "a.xml: valid\n", ""})
                                       : (Outcome{1, "", rejection(rest)}));
    }
}

}  // namespace
