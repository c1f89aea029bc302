#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "VexXml/Dtd.h"
#include "VexXml/Readers.h"
#include "readers/Reading.h"
#include "support/Diagnostics.h"
#include "support/Dump.h"
#include "support/PlainInStream.h"

namespace {

using Reports = std::vector<std::string>;
using reading::Failure;
using reading::kEnd;
using reading::kQuote;
using reading::read;

/// The attribute definitions of the element "a" as they are written.
std::string definitionsOf(Xml::Dtd& dtd) {
    static const std::string kStart = "<!DOCTYPE d [\n<!ELEMENT a EMPTY>\n<!ATTLIST a\n";
    static const std::string kEmpty = "<!DOCTYPE d [\n<!ELEMENT a EMPTY>\n]>\n";
    dtd.addElementDecl("a", new Xml::EmptySpec(&dtd));
    const std::string text = support::written(dtd);
    if (text == kEmpty) return "";
    EXPECT_EQ(text.substr(0, kStart.size()), kStart);
    return text.substr(kStart.size(), text.size() - kStart.size() - std::string(">\n]>\n").size());
}

const std::pair<const char*, const char*> kLists[] = {
    {"<!ATTLIST a>", ""},
    {"<!ATTLIST a x CDATA #REQUIRED>", "\tx CDATA #REQUIRED\n"},
    {"<!ATTLIST a x CDATA #IMPLIED>", "\tx CDATA #IMPLIED\n"},
    {"<!ATTLIST a x CDATA 'v'>", "\tx CDATA \"v\"\n"},
    {"<!ATTLIST a x CDATA \"it's\">", "\tx CDATA \"it&apos;s\"\n"},
    {"<!ATTLIST a x CDATA ''>", "\tx CDATA \"\"\n"},
    {"<!ATTLIST a x CDATA #FIXED \"1\">", "\tx CDATA #FIXED\"1\"\n"},
    {"<!ATTLIST a x CDATA #FIXED'1'>", "\tx CDATA #FIXED\"1\"\n"},
    {"<!ATTLIST a x CDATA #REQUIRED y CDATA 'x'>", "\tx CDATA #REQUIRED\n\ty CDATA \"x\"\n"},
    {" <!ATTLIST\r\na\r\ny CDATA #IMPLIED\r\nx CDATA #REQUIRED\r\n>",
     "\tx CDATA #REQUIRED\n\ty CDATA #IMPLIED\n"},
    {"<!ATTLIST a x CDATA'1'y CDATA'2'>", "\tx CDATA \"1\"\n\ty CDATA \"2\"\n"},
    // Deliberate: only the end of the type is checked.
    {"<!ATTLIST a x XCDATA '1'>", "\tx CDATA \"1\"\n"},
};

TEST(AttListReader, StoresDefinitions) {
    for (const auto& [input, definitions] : kLists) {
        SCOPED_TRACE(input);
        Xml::Dtd dtd("d");
        Xml::AttListReader reader(&dtd);
        EXPECT_EQ(read(reader, input + std::string("rest")),
                  "true at " + std::to_string(std::string(input).size()));
        EXPECT_EQ(definitionsOf(dtd), definitions);
    }
}

TEST(AttListReader, StoresDefaultsAsTheyAreWritten) {
    Xml::Dtd dtd("d");
    dtd.setEntity("e", "v");
    Xml::AttListReader reader(&dtd);
    EXPECT_EQ(read(reader, "<!ATTLIST a x CDATA '&lt;&e;&#65;\"'>"), "true at 36");
    EXPECT_EQ(std::string(dtd.getDefaultValue("a", "x")), "&lt;&e;&#65;\"");
}

TEST(AttListReader, StoresNoDefaultForRequiredAndImpliedAttributes) {
    Xml::Dtd dtd("d");
    Xml::AttListReader reader(&dtd);
    EXPECT_EQ(read(reader, "<!ATTLIST a x CDATA #REQUIRED y CDATA #IMPLIED z CDATA ''>"),
              "true at 58");
    EXPECT_FALSE(dtd.hasDefaultValue("a", "x"));
    EXPECT_FALSE(dtd.hasDefaultValue("a", "y"));
    EXPECT_TRUE(dtd.hasDefaultValue("a", "z"));
}

const Failure kFailures[] = {
    {"", 0, kEnd},
    {"<!ELEMENT a", 9, "\"<!ATTLIST\" expected"},
    {"<!ATTLIST", 9, "not a name: "},
    {"<!ATTLIST >", 11, "not a name: >"},
    {"<!ATTLIST a", 11, kEnd},
    {"<!ATTLIST a x", 13, kEnd},
    {"<!ATTLIST a x>", 14, "\"CDATA\" expected"},
    {"<!ATTLIST a x ID #REQUIRED>", 16, "\"CDATA\" expected"},
    {"<!ATTLIST a x cdata #REQUIRED>", 19, "\"CDATA\" expected"},
    {"<!ATTLIST a x (b|c) 'b'>", 15, "\"CDATA\" expected"},
    {"<!ATTLIST a x NOTATION (b)>", 22, "\"CDATA\" expected"},
    {"<!ATTLIST a x CDATA", 19, kEnd},
    {"<!ATTLIST a x CDATA 'v", 22, kEnd},
    {"<!ATTLIST a x CDATA #FIXED", 26, kEnd},
    {"<!ATTLIST a x CDATA #FIXED 'v", 29, kEnd},
    {"<!ATTLIST a x CDATA #REQUIRED", 29, kEnd},
    {"<!ATTLIST a x CDATA 'v' y", 25, kEnd},
};

TEST(AttListReader, ReportsWhereItFailed) {
    Xml::Dtd dtd("d");
    support::Diagnostics diagnostics;
    reading::expectFailures(kFailures, "Xml::AttListReader",
                            [&] { return Xml::AttListReader(&dtd); });
}

// Deliberate: callers tell this failure from the others by its missing text.
const Failure kSilentFailures[] = {
    {"<!ATTLIST a 1 CDATA 'v'>", 13, nullptr},
    {"<!ATTLIST a 'x' CDATA 'v'>", 15, nullptr},
    {"<!ATTLIST a />", 14, nullptr},
    {"<!ATTLIST a #REQUIRED>", 21, nullptr},
    {"<!ATTLIST a <b>", 13, nullptr},
    {"<!ATTLIST a x CDATA 'v' ]", 25, nullptr},
    {"<!ATTLIST a x CDATA #REQUIRED 'v'>", 33, nullptr},
};

TEST(AttListReader, FailsWithoutAMessageWhereAnAttributeNameIsMissing) {
    Xml::Dtd dtd("d");
    support::Diagnostics diagnostics;
    reading::expectFailures(kSilentFailures, "", [&] { return Xml::AttListReader(&dtd); });
}

const std::pair<const char*, int> kUnquoted[] = {
    {"<!ATTLIST a x CDATA v>", 21},          {"<!ATTLIST a x CDATA #FIXED v>", 28},
    {"<!ATTLIST a x CDATA #fixed 'v'>", 26}, {"<!ATTLIST a x CDATA #FIXED #REQUIRED>", 36},
    {"<!ATTLIST a x CDATA >", 21},           {"<!ATTLIST a x CDATA &v;>", 23},
};

// The stream had no failure, so there is no text between place and class.
TEST(AttListReader, RaisesAMessageAboutADefaultWithoutQuotes) {
    support::Diagnostics diagnostics;
    for (const auto& [input, position] : kUnquoted) {
        Xml::Dtd dtd("d");
        Xml::AttListReader reader(&dtd);
        EXPECT_EQ(read(reader, input), "false at " + std::to_string(position) + " " +
                                           reading::messageAt(position, "", "Xml::AttListReader"));
        EXPECT_EQ(diagnostics.take(), Reports{"<AttListReader::parse> string   "});
        EXPECT_EQ(definitionsOf(dtd), "");
    }
}

TEST(AttListReader, ReportsTheLastErrorOfTheStreamForADefaultWithoutQuotes) {
    support::Diagnostics diagnostics;
    support::PlainInStream in("a<!ATTLIST a x CDATA v>");
    std::string quoted;
    EXPECT_FALSE(in.getString(quoted));
    Xml::Dtd dtd("d");
    Xml::AttListReader reader(&dtd);
    EXPECT_EQ(read(reader, in),
              "false at 22 " + reading::messageAt(22, kQuote, "Xml::AttListReader"));
}

TEST(AttListReader, KeepsTheDefinitionsInFrontOfAFailure) {
    Xml::Dtd dtd("d");
    Xml::AttListReader reader(&dtd);
    EXPECT_EQ(read(reader, "<!ATTLIST a x CDATA 'v' y ID>").substr(0, 11), "false at 28");
    EXPECT_EQ(definitionsOf(dtd), "\tx CDATA \"v\"\n");
}

TEST(AttListReader, KeepsTheFirstOfTwoDefinitions) {
    support::Diagnostics diagnostics;
    Xml::Dtd dtd("d");
    Xml::AttListReader reader(&dtd);
    EXPECT_EQ(read(reader, "<!ATTLIST a x CDATA '1' x CDATA '2' y CDATA '3'>"), "true at 48");
    EXPECT_EQ(definitionsOf(dtd), "\tx CDATA \"1\"\n\ty CDATA \"3\"\n");
    EXPECT_EQ(diagnostics.take(), Reports{"<Dtd::addAttlistDecl> alraedy added a x"});
}

TEST(AttListReader, AddsToTheListThatIsThere) {
    Xml::Dtd dtd("d");
    for (const char* input : {"<!ATTLIST a y CDATA '2'>", "<!ATTLIST a x CDATA '1'>"}) {
        Xml::AttListReader reader(&dtd);
        EXPECT_EQ(read(reader, input), "true at 24");
    }
    EXPECT_EQ(definitionsOf(dtd), "\tx CDATA \"1\"\n\ty CDATA \"2\"\n");
}

}  // namespace
