#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "VexXml/Dtd.h"
#include "VexXml/Readers.h"
#include "readers/Reading.h"
#include "support/Diagnostics.h"
#include "support/Dump.h"
#include "support/PlainInStream.h"
#include "support/TempFolder.h"

namespace {

using Reports = std::vector<std::string>;
using reading::Failure;
using reading::kEnd;
using reading::kQuote;
using reading::read;

/// What `read` tells, and the DTD as it is written.
std::string doctypeOf(const std::string& input) {
    Xml::DoctypeReader reader;
    const std::string outcome = read(reader, input);
    const std::unique_ptr<Xml::Dtd> dtd(reader.extractDtd());
    EXPECT_EQ(reader.extractDtd(), nullptr);
    return outcome + (dtd != nullptr ? "\n" + support::written(*dtd) : "");
}

const std::pair<const char*, const char*> kSubsets[] = {
    {"<!DOCTYPE doc [ ]>", "true at 18\n<!DOCTYPE doc [\n]>\n"},
    {"<!DOCTYPE doc[]>", "true at 16\n<!DOCTYPE doc [\n]>\n"},
    {" <!DOCTYPE\r\ndoc\r\n[\r\n]\r\n> ", "true at 24\n<!DOCTYPE doc [\n]>\n"},
    {"<!DOCTYPE a [<!ELEMENT a EMPTY>]><a/>",
     "true at 33\n<!DOCTYPE a [\n<!ELEMENT a EMPTY>\n]>\n"},
    {"<!DOCTYPE a [<!-- ]> --><!ENTITY e 'v'>\n]>",
     "true at 42\n<!DOCTYPE a [\n<!ENTITY e \"v\">\n]>\n"},
    // Deliberate: only the end of the last token is checked.
    {"<!DOCTYPE a []/>", "true at 16\n<!DOCTYPE a [\n]>\n"},
};

TEST(DoctypeReader, ReadsAnInternalSubset) {
    for (const auto& [input, outcome] : kSubsets) EXPECT_EQ(doctypeOf(input), outcome);
}

const Failure kFailures[] = {
    {"", 0, kEnd},
    {"<!ELEMENT a", 9, "\"<!DOCTYPE\" expected"},
    {"<a", 1, "\"<!DOCTYPE\" expected"},
    {"<!DOCTYPE", 9, "not a name: "},
    {"<!DOCTYPE [", 11, "not a name: ["},
    {"<!DOCTYPE 'a' []>", 13, "not a name: 'a'"},
    {"<!DOCTYPE a", 11, kEnd},
    {"<!DOCTYPE a>", 12, "Unexpected token \">\""},
    {"<!DOCTYPE a/>", 13, "Unexpected token \"/>\""},
    {"<!DOCTYPE a PUBLIC 'x' 'y'>", 18, "Unexpected token \"PUBLIC\""},
    {"<!DOCTYPE a system 'x'>", 18, "Unexpected token \"system\""},
    {"<!DOCTYPE a 'x'>", 15, "Unexpected token \"'x'\""},
    {"<!DOCTYPE a ]>", 13, "Unexpected token \"]\""},
    {"<!DOCTYPE a SYSTEM", 18, kEnd},
    {"<!DOCTYPE a SYSTEM [", 20, kQuote},
    {"<!DOCTYPE a SYSTEM x>", 20, kQuote},
    {"<!DOCTYPE a SYSTEM 'x", 21, kEnd},
    {"<!DOCTYPE a []", 14, kEnd},
    {"<!DOCTYPE a [] b>", 16, "\">\" expected"},
    {"<!DOCTYPE a [<!ELEMENT a EMPTY>] <a/>", 34, "\">\" expected"},
    {"<!DOCTYPE a []]>", 15, "\">\" expected"},
};

TEST(DoctypeReader, ReportsWhereItFailed) {
    reading::expectFailures(kFailures, "Xml::DoctypeReader", [] { return Xml::DoctypeReader(); });
}

TEST(DoctypeReader, HasNoDtdBeforeOrAfterAFailure) {
    Xml::DoctypeReader reader;
    EXPECT_EQ(reader.extractDtd(), nullptr);
    for (const Failure& failure : kFailures) {
        EXPECT_EQ(doctypeOf(failure.input), reading::outcomeOf(failure, "Xml::DoctypeReader"));
    }
}

const std::pair<const char*, const char*> kSubsetFailures[] = {
    {"<!DOCTYPE a [",
     "false at 13 (line = 1, column = 13) Unexpected end of stream <Xml::DTDReader>"},
    {"<!DOCTYPE a [<!ELEMENT a EMPTY> ",
     "false at 32 (line = 1, column = 32) Unexpected end of stream <Xml::DTDReader>"},
    {"<!DOCTYPE a [x]>",
     "false at 14 (line = 1, column = 14) unexpected token \"x\" <Xml::DTDReader>"},
    {"<!DOCTYPE a [%e;]>",
     "false at 16 (line = 1, column = 16) unexpected token \"%e;\" <Xml::DTDReader>"},
    {"<!DOCTYPE a [<!ELEMENT a (a b)>]>",
     "false at 29 (line = 1, column = 29) unexpected \"b\" <Xml::ChildrenSpecReader>"},
    {"<!DOCTYPE a [<!ATTLIST a 1>]>", "false at 26"},
};

TEST(DoctypeReader, PassesOnTheMessageOfItsDeclarations) {
    for (const auto& [input, outcome] : kSubsetFailures) EXPECT_EQ(doctypeOf(input), outcome);
}

/// What becomes of a declaration that names a file with these bytes; positions in it do not show.
class SystemFile : public testing::Test {
protected:
    std::string doctypeOfFile(const std::string& bytes, const std::string& rest = ">") {
        const std::string path = folder.write("a.dtd", bytes);
        Xml::DoctypeReader reader;
        support::PlainInStream in("<!DOCTYPE a SYSTEM '" + path + "'" + rest);
        const std::string answer = reader.parse(in) ? "true" : "false";
        const std::unique_ptr<Xml::Dtd> dtd(reader.extractDtd());
        return answer + " " + reader.getErrorMessage() +
               (dtd != nullptr ? support::written(*dtd) : "");
    }

    support::TempFolder folder;
    support::Diagnostics diagnostics;
};

const std::pair<const char*, const char*> kFiles[] = {
    {"<!ELEMENT a EMPTY>", "<!ELEMENT a EMPTY>\n"},
    {"<!ELEMENT a EMPTY>\n", "<!ELEMENT a EMPTY>\n"},
    {"<!ELEMENT a EMPTY>\r\n \t\r\n", "<!ELEMENT a EMPTY>\n"},
    {"\n<!-- c -->\n<!ENTITY e ']>'>\n<!ELEMENT a (b)>\n",
     "<!ENTITY e \"]&gt;\">\n<!ELEMENT a (b)>\n"},
    {"<!-- c -->", ""},
};

TEST_F(SystemFile, IsReadToItsEnd) {
    for (const auto& [bytes, declarations] : kFiles) {
        EXPECT_EQ(doctypeOfFile(bytes),
                  std::string("true <!DOCTYPE a [\n") + declarations + "]>\n");
    }
    EXPECT_TRUE(diagnostics.take().empty());
}

TEST_F(SystemFile, LeavesTheStreamBehindTheDeclaration) {
    const std::string path = folder.write("a.dtd", "<!ELEMENT a EMPTY>");
    const std::string input = " <!DOCTYPE a SYSTEM \"" + path + "\" >";
    Xml::DoctypeReader reader;
    EXPECT_EQ(read(reader, input + "<a/>"), "true at " + std::to_string(input.size()));
}

const std::pair<const char*, const char*> kFileFailures[] = {
    {"]", "(line = 1, column = 1) unexpected token \"]\" <Xml::DTDReader>"},
    {"<!ELEMENT a EMPTY>\n]\n", "(line = 1, column = 20) unexpected token \"]\" <Xml::DTDReader>"},
    {"<!ELEMENT a EMPTY>\r\n<!BAD>",
     "(line = 1, column = 5) unexpected token \"<!BAD\" <Xml::DTDReader>"},
    {"<?xml version='1.0'?>", "(line = 1, column = 5) unexpected token \"<?xml\" <Xml::DTDReader>"},
    {"<!ELEMENT 1 EMPTY>", "(line = 1, column = 11) not a name: 1 <Xml::ElementDeclReader>"},
    {"<!ATTLIST a 1>", ""},
    // At the end of a file there is no position.
    {"", "(line = 1, column = -1) Unexpected end of stream <Xml::DTDReader>"},
    {" \n", "(line = 1, column = -1) Unexpected end of stream <Xml::DTDReader>"},
    {"<!ELEMENT a (b)",
     "(line = 1, column = -1) Unexpected end of stream <Xml::ElementDeclReader>"},
    {"<!ENTITY e 'v'", "(line = 1, column = -1) Unexpected end of stream <Xml::EntityReader>"},
    {"<!-- c --", "(line = 1, column = -1) Unexpected end of stream <Xml::CommentReader>"},
};

TEST_F(SystemFile, IsReportedWithThePlaceInTheFile) {
    for (const auto& [bytes, message] : kFileFailures) {
        EXPECT_EQ(doctypeOfFile(bytes), std::string("false ") + message);
    }
}

// At the end of a file one more read succeeds and gives the last byte again.
TEST_F(SystemFile, GivesTheLastByteOfACutOffWordTwice) {
    EXPECT_EQ(doctypeOfFile("<!ELEMENT a EMPTY"), "false ");
    EXPECT_EQ(diagnostics.take(),
              Reports{"<ElementDeclReader::parse> don't know what to do EMPTYY"});
}

TEST_F(SystemFile, MayBeNamedInEitherQuotes) {
    const std::string path = folder.write("a.dtd", "<!ELEMENT a EMPTY>");
    EXPECT_EQ(doctypeOf("<!DOCTYPE a SYSTEM \"" + path + "\">"),
              "true at " + std::to_string(path.size() + 22) +
                  "\n<!DOCTYPE a [\n<!ELEMENT a EMPTY>\n]>\n");
}

TEST_F(SystemFile, IsReportedWhenItIsMissing) {
    const std::string path = folder.path("none.dtd");
    EXPECT_EQ(doctypeOf("<!DOCTYPE a SYSTEM '" + path + "'>"),
              "false at " + std::to_string(path.size() + 21) +
                  " (line = 1, column = -1) Unexpected end of stream <Xml::DTDReader>");
    EXPECT_EQ(diagnostics.take(),
              Reports{"<Xml::FileInStream::FileInStream> Could not open file: " + path});
}

TEST_F(SystemFile, IsLookedForInTheCurrentFolder) {
    folder.write("a.dtd", "<!ELEMENT a EMPTY>");
    const std::filesystem::path before = std::filesystem::current_path();
    std::filesystem::current_path(folder.path(""));
    EXPECT_EQ(doctypeOf("<!DOCTYPE a SYSTEM 'a.dtd'>"),
              "true at 27\n<!DOCTYPE a [\n<!ELEMENT a EMPTY>\n]>\n");
    std::filesystem::current_path(before);
}

// References in the path are not replaced, and white space is not trimmed.
TEST_F(SystemFile, IsNamedAsWritten) {
    EXPECT_EQ(doctypeOf("<!DOCTYPE a SYSTEM ' &lt;.dtd'>").substr(0, 11), "false at 30");
    EXPECT_EQ(diagnostics.take(),
              Reports{"<Xml::FileInStream::FileInStream> Could not open file:  &lt;.dtd"});
}

TEST_F(SystemFile, AllowsNoInternalSubset) {
    EXPECT_EQ(doctypeOfFile("<!ELEMENT a EMPTY>", "").substr(0, 6), "false ");
    EXPECT_NE(
        doctypeOfFile("<!ELEMENT a EMPTY>", " [ ]>").find("\">\" expected <Xml::DoctypeReader>"),
        std::string::npos);
}

}  // namespace
