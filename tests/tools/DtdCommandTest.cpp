#include <gtest/gtest.h>

#include <string>

#include "tools/Workplace.h"

namespace {

using support::Outcome;
using support::Workplace;

TEST(DtdCommand, WritesTheDeclarationAsUnderstood) {
    EXPECT_EQ(Workplace().run("vexxml dtd -",
                              "<?xml version='1.0'?><!DOCTYPE  a [<!ELEMENT b EMPTY>\n"
                              "<!ATTLIST a x CDATA 'y'><!ELEMENT a ( b? )><!ENTITY e 'f'>]><a/>"),
              (Outcome{0,
                       "<!DOCTYPE a [\n"
                       "<!ENTITY e \"f\">\n"
                       "<!ELEMENT a (b?)>\n"
                       "<!ATTLIST a\n"
                       "\tx CDATA \"y\"\n"
                       ">\n"
                       "<!ELEMENT b EMPTY>\n"
                       "]>\n",
                       ""}));
}

TEST(DtdCommand, WritesTheDeclarationsOfAnExternalSubset) {
    const Workplace place;
    place.write("a.dtd", "<!ELEMENT a EMPTY>");
    EXPECT_EQ(place.run("vexxml dtd -", "<!DOCTYPE a SYSTEM 'a.dtd'><a/>"),
              (Outcome{0, "<!DOCTYPE a [\n<!ELEMENT a EMPTY>\n]>\n", ""}));
}

TEST(DtdCommand, TellsOfAnExternalSubsetThatIsMissing) {
    const Workplace place;
    EXPECT_EQ(place.run("vexxml dtd -", "<!DOCTYPE a SYSTEM 'a.dtd'><a/>"),
              (Outcome{1, "",
                       "-: warning: <Xml::FileInStream::FileInStream> Could not open file: " +
                           place.path("a.dtd") +
                           "\n"
                           "-:1:27: error: Unexpected end of stream\n"
                           "<!DOCTYPE a SYSTEM 'a.dtd'><a/>\n"
                           "                          ^\n"}));
}

TEST(DtdCommand, WritesADeclarationThatTheDocumentBreaks) {
    EXPECT_EQ(Workplace().run("vexxml dtd -", "<!DOCTYPE a [<!ELEMENT a (b)>]>\n<a/>\n"),
              (Outcome{1, "<!DOCTYPE a [\n<!ELEMENT a (b)>\n]>\n",
                       "-:2:5: error: Doc could not be validated\n<a/>\n    ^\n"}));
}

TEST(DtdCommand, FailsOnADocumentWithoutADeclaration) {
    for (const std::string document :
         {"<a/>", "<!DOCTYPE a PUBLIC 'a' 'b' [<!ELEMENT a ANY>]><a/>"}) {
        EXPECT_EQ(Workplace().run("vexxml dtd -", document),
                  (Outcome{1, "",
                           "-: error: no document type declaration (one with PUBLIC is not "
                           "read)\n"}));
    }
}

TEST(DtdCommand, WritesNothingForADocumentThatIsNotWellFormed) {
    EXPECT_EQ(Workplace().run("vexxml dtd -", "<!DOCTYPE a [<!ELEMENT a ANY>]><a>"),
              (Outcome{1, "",
                       "-:1:35: error: Unexpected end of stream\n"
                       "<!DOCTYPE a [<!ELEMENT a ANY>]><a>\n"
                       "                                  ^\n"}));
}

}  // namespace
