#include <gtest/gtest.h>

#include <string>

#include "tools/Workplace.h"

namespace {

using support::Outcome;
using support::Workplace;

const std::string kHead = "<?xml version = \"1.0\" ?>\n";

// A document, and what it is written as behind the XML declaration.
const std::pair<const char*, const char*> kDocuments[] = {
    {"<a/>", "<a/>\n"},
    {"<a><b><c/></b></a>", "<a>\n\t<b>\n\t\t<c/>\n\t</b>\n</a>\n"},
    {"<a>text</a>", "<a>text</a>\n"},
    {"<a y='2' x='1'/>", "<a x=\"1\" y=\"2\"/>\n"},
    {"<?xml version='1.0' encoding='UTF-8'?><!-- c --><?p i?><a><!-- c --><?p i?></a><!-- c -->\n",
     "<a/>\n"},
    {"<!DOCTYPE a [<!ELEMENT a EMPTY>]><a/>", "<!DOCTYPE a [\n<!ELEMENT a EMPTY>\n]>\n<a/>\n"},
    {"<!DOCTYPE a PUBLIC '-//X//Y' 'a.dtd'><a/>", "<a/>\n"},
};

TEST(Format, WritesTheDocumentIndented) {
    const Workplace place;
    for (const auto& [document, text] : kDocuments) {
        SCOPED_TRACE(document);
        place.write("a.xml", document);
        EXPECT_EQ(place.run("vexxml format a.xml"), (Outcome{0, kHead + text, ""}));
    }
}

TEST(Format, ReadsTheStandardInputForADash) {
    EXPECT_EQ(Workplace().run("vexxml format -", "<a/>"), (Outcome{0, kHead + "<a/>\n", ""}));
}

TEST(Format, ReadsAPipe) {
    EXPECT_EQ(Workplace().run("printf '<a/>' | vexxml format /dev/stdin"),
              (Outcome{0, kHead + "<a/>\n", ""}));
}

TEST(Format, WritesEmptyElementsInFullOnDemand) {
    EXPECT_EQ(Workplace().run("vexxml format --no-short-tags -", "<a><b/></a>"),
              (Outcome{0, kHead + "<a>\n\t<b></b>\n</a>\n", ""}));
}

TEST(Format, WritesNothingForADocumentThatIsNotWellFormed) {
    EXPECT_EQ(Workplace().run("vexxml format -", "<a></b>"),
              (Outcome{1, "", "-:1:7: error: \"a\" expected\n<a></b>\n      ^\n"}));
}

TEST(Format, WritesNothingForADocumentThatIsNotValid) {
    EXPECT_EQ(Workplace().run("vexxml format -", "<!DOCTYPE a [<!ELEMENT a (b)>]>\n<a/>\n"),
              (Outcome{1, "", "-:2:5: error: Doc could not be validated\n<a/>\n    ^\n"}));
}

TEST(Format, GivesReportsOfTheLibraryAsWarnings) {
    const std::string twice = "<!DOCTYPE a [<!ELEMENT a EMPTY><!ELEMENT a ANY>]><a/>";
    const Outcome outcome = Workplace().run("vexxml format -", twice);
    EXPECT_EQ(outcome.status, 0) << outcome;
    EXPECT_EQ(outcome.err.substr(0, 13), "-: warning: <") << outcome;
}

// A document, and whether it is written in UTF-8.
const std::pair<const char*, bool> kEncodings[] = {
    {"<a>\xC3\xB6</a>", true},  {"<a>&#246;</a>", true}, {"<a x='\xC3\xB6'/>", true},
    {"<a>\xF6</a>", false},     {"<a>\xC3</a>", false},  {"<a>\xE2\x82</a>", false},
    {"<a x='&#246;'/>", false},
};

TEST(Format, WarnsOfTextThatIsNotUtf8) {
    for (const auto& [document, isUtf8] : kEncodings) {
        SCOPED_TRACE(document);
        EXPECT_EQ(Workplace().run("vexxml format -o b.xml -", document),
                  (Outcome{0, "",
                           isUtf8 ? ""
                                  : "-: warning: what is written is not UTF-8, and no encoding is "
                                    "declared in it\n"}));
    }
}

TEST(Format, WritesToTheNamedFile) {
    const Workplace place;
    place.write("a.xml", "<a />");
    EXPECT_EQ(place.run("umask 027; vexxml format -o b.xml a.xml; stat --format %a b.xml"),
              (Outcome{0, "640\n", ""}));
    EXPECT_EQ(place.read("b.xml"), kHead + "<a/>\n");
    EXPECT_EQ(place.read("a.xml"), "<a />");
}

TEST(Format, WritesToTheStandardOutputForADash) {
    EXPECT_EQ(Workplace().run("vexxml format -o - -", "<a/>"), (Outcome{0, kHead + "<a/>\n", ""}));
}

TEST(Format, WritesOverTheNamedFile) {
    const Workplace place;
    place.write("a.xml", "<a/>");
    place.write("b.xml", std::string(10000, 'x'));
    EXPECT_EQ(place.run("chmod 604 b.xml; vexxml format -o b.xml a.xml; stat --format %a b.xml"),
              (Outcome{0, "604\n", ""}));
    EXPECT_EQ(place.read("b.xml"), kHead + "<a/>\n");
}

TEST(Format, MakesTheFileThatADanglingLinkNames) {
    const Workplace place;
    place.write("a.xml", "<a/>");
    EXPECT_EQ(place.run("mkdir d && ln -s ../c.xml d/b.xml && vexxml format -o d/b.xml a.xml && "
                        "readlink d/b.xml"),
              (Outcome{0, "../c.xml\n", ""}));
    EXPECT_EQ(place.read("c.xml"), kHead + "<a/>\n");
}

// What to write to, and why that fails.
const std::pair<const char*, const char*> kUnwritable[] = {
    {"/dev/full", "No space left on device"},       {"folder", "Is a directory"},
    {"missing/b.xml", "No such file or directory"}, {"a.xml/b.xml", "Not a directory"},
    {"loop", "Too many levels of symbolic links"},
};

TEST(Format, NamesAFileThatCannotBeWritten) {
    const Workplace place;
    place.write("a.xml", "<a/>");
    place.run("mkdir folder; ln -s loop loop");
    for (const auto& [output, reason] : kUnwritable) {
        SCOPED_TRACE(output);
        EXPECT_EQ(
            place.run("vexxml format -o " + std::string(output) + " a.xml"),
            (Outcome{2, "", std::string(output) + ": error: cannot be written: " + reason + "\n"}));
    }
}

TEST(Format, LeavesTheNamedFileAloneWhenTheDocumentIsNotWellFormed) {
    const Workplace place;
    place.write("a.xml", "<a>");
    place.write("b.xml", "precious");
    EXPECT_EQ(place.run("vexxml format -o b.xml a.xml 2>/dev/null"), (Outcome{1, "", ""}));
    EXPECT_EQ(place.read("b.xml"), "precious");
}

}  // namespace
