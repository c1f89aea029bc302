#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "VexXml/Readers.h"
#include "readers/Reading.h"
#include "support/Diagnostics.h"
#include "support/Dump.h"
#include "support/FileLikeInStream.h"
#include "support/PlainInStream.h"
#include "support/TempFolder.h"

namespace {

using Xml::ReadLimits;

using Limit = std::uint64_t ReadLimits::*;

ReadLimits only(Limit limit, std::uint64_t value) {
    ReadLimits limits;
    limits.*limit = value;
    return limits;
}

/// All that is to be seen of reading a document from the stream.
std::string readingOf(Xml::InStream& in, const ReadLimits& limits) {
    Xml::DocumentReader reader;
    reader.setLimits(limits);
    std::string seen = reading::read(reader, in);
    seen += ", line " + std::to_string(in.getLine()) + ", column " + std::to_string(in.getColumn());
    if (reader.getDocument() != nullptr) seen += ", " + support::dump(*reader.getDocument());
    return seen;
}

/// The same for streams in memory and files, of which those that end alike must agree.
std::string readingOf(const std::string& text, const ReadLimits& limits) {
    support::PlainInStream plain(text);
    std::string seen = readingOf(plain, limits);
    Xml::StringInStream inMemory(text);
    EXPECT_EQ(readingOf(inMemory, limits), seen) << text;
    std::istringstream source(text);
    Xml::FileInStream file(&source);
    support::FileLikeInStream like(text);
    EXPECT_EQ(readingOf(file, limits), readingOf(like, limits)) << text;
    return seen;
}

std::string messageFor(const std::string& text, const ReadLimits& limits) {
    support::PlainInStream in(text);
    Xml::DocumentReader reader;
    reader.setLimits(limits);
    return reader.parse(in) ? "" : reader.getErrorMessage();
}

struct Case {
    const char* name;
    Limit limit;
    std::uint64_t value;
    std::string within;
    std::string beyond;
    int column;
    const char* className;
};

std::string declaring(const std::string& declarations, const std::string& root) {
    return "<!DOCTYPE a [" + declarations + "]>" + root;
}

const std::string kEmpty = "<!ELEMENT a EMPTY>";

// What the entity stands for is three bytes longer than its reference.
const std::string kGrowing =
    "<!ENTITY e 'abcdef'><!ELEMENT a ANY><!ELEMENT b EMPTY><!ATTLIST a x CDATA ''>";

const std::vector<Case> kCases = {
    {"totalBytes", &ReadLimits::totalBytes, 9, "<a>xy</a>", "<a>xyz</a>", 9, "DocumentReader"},
    {"totalBytes", &ReadLimits::totalBytes, 9, "<a>xy</a>", "<a>xy</a> ", 9, "DocumentReader"},
    {"elementDepth", &ReadLimits::elementDepth, 2, "<a><b/><b></b></a>", "<a><b><c/></b></a>", 10,
     "ElementReader"},
    {"elementDepth", &ReadLimits::elementDepth, 2, "<a><b/><b></b></a>", "<a><b><c></c></b></a>", 9,
     "ElementReader"},
    {"elementDepth", &ReadLimits::elementDepth, 0, "", "<a/>", 4, "ElementReader"},
    {"nodes", &ReadLimits::nodes, 4, "<a x='1'>t<b/></a>", "<a x='1'>t<b/><c/></a>", 16,
     "ElementReader"},
    {"nodes", &ReadLimits::nodes, 4, "<a x='1'>t<b/></a>", "<a x='1'>t<b y=''/></a>", 14,
     "ElementReader"},
    {"nodes", &ReadLimits::nodes, 2, "<a>t</a>", "<a>t<!--c-->t</a>", 13, "ElementReader"},
    {"nodes", &ReadLimits::nodes, 2, "<a><![CDATA[t]]></a>", "<a>t<![CDATA[t]]></a>", 17,
     "ElementReader"},
    {"attributesPerElement", &ReadLimits::attributesPerElement, 1, "<a x='1'><b x='1'/></a>",
     "<a><b x='1' y='2'/></a>", 13, "ElementReader"},
    {"nameLength", &ReadLimits::nameLength, 3, "<abc/>", "<abcd/>", 5, "ElementReader"},
    {"nameLength", &ReadLimits::nameLength, 3, "<a><abc/></a>", "<a><abcd/></a>", 8,
     "ElementReader"},
    {"nameLength", &ReadLimits::nameLength, 3, "<a><a abc=''/></a>", "<a><a abcd=''/></a>", 10,
     "ElementReader"},
    {"nameLength", &ReadLimits::nameLength, 3, declaring("<!ELEMENT abc EMPTY>" + kEmpty, "<a/>"),
     declaring("<!ELEMENT abcd EMPTY>" + kEmpty, "<a/>"), 27, "ElementDeclReader"},
    {"nameLength", &ReadLimits::nameLength, 3, declaring("<!ELEMENT a (abc*)>", "<a/>"),
     declaring("<!ELEMENT a (abcd*)>", "<a/>"), 30, "ChildrenSpecReader"},
    {"nameLength", &ReadLimits::nameLength, 3, declaring("<!ELEMENT a (#PCDATA|abc)*>", "<a/>"),
     declaring("<!ELEMENT a (#PCDATA|abcd)*>", "<a/>"), 38, "MixedSpecReader"},
    {"nameLength", &ReadLimits::nameLength, 3,
     declaring(kEmpty + "<!ATTLIST a abc CDATA #IMPLIED>", "<a/>"),
     declaring(kEmpty + "<!ATTLIST a abcd CDATA #IMPLIED>", "<a/>"), 47, "AttListReader"},
    {"nameLength", &ReadLimits::nameLength, 3, declaring(kEmpty + "<!ENTITY abc ''>", "<a/>"),
     declaring(kEmpty + "<!ENTITY abcd ''>", "<a/>"), 44, "EntityReader"},
    {"valueLength", &ReadLimits::valueLength, 3, "<a><b x='abc'/></a>", "<a><b x='abcd'/></a>", 14,
     "ElementReader"},
    {"valueLength", &ReadLimits::valueLength, 6,
     declaring("<!ENTITY e 'abc'>" + kEmpty + "<!ATTLIST a x CDATA ''>", "<a x='&e;&e;'/>"),
     declaring("<!ENTITY e 'abcd'>" + kEmpty + "<!ATTLIST a x CDATA ''>", "<a x='&e;&e;'/>"), 87,
     "ElementReader"},
    {"valueLength", &ReadLimits::valueLength, 3, declaring(kEmpty + "<!ENTITY e 'abc'>", "<a/>"),
     declaring(kEmpty + "<!ENTITY e 'abcd'>", "<a/>"), 48, "EntityReader"},
    {"valueLength", &ReadLimits::valueLength, 3,
     declaring(kEmpty + "<!ATTLIST a x CDATA 'abc'>", "<a/>"),
     declaring(kEmpty + "<!ATTLIST a x CDATA 'abcd'>", "<a/>"), 57, "AttListReader"},
    {"textLength", &ReadLimits::textLength, 3, "<a>abc<b/>abc</a>", "<a>abc<b/>abcd</a>", 14,
     "ElementReader"},
    {"textLength", &ReadLimits::textLength, 3, "<a><![CDATA[abc]]></a>", "<a><![CDATA[abcd]]></a>",
     19, "ElementReader"},
    {"textLength", &ReadLimits::textLength, 6,
     declaring("<!ENTITY e 'abc'><!ELEMENT a (#PCDATA)>", "<a>&e;&e;</a>"),
     declaring("<!ENTITY e 'abcd'><!ELEMENT a (#PCDATA)>", "<a>&e;&e;</a>"), 64, "ElementReader"},
    {"entityGrowth", &ReadLimits::entityGrowth, 6, declaring(kGrowing, "<a x='&e;'>&e;</a>"),
     declaring(kGrowing, "<a x='&e;'>&e;<b/>&e;</a>"), 113, "ElementReader"},
    {"entityGrowth", &ReadLimits::entityGrowth, 6,
     declaring(kGrowing, "<a x='&lt;'>&amp;&e;&e;</a>"),
     declaring(kGrowing, "<a><a x='&e;&e;&e;'/></a>"), 111, "ElementReader"},
    {"declarations", &ReadLimits::declarations, 2, declaring(kEmpty + "<!--c-->", "<a/>"),
     declaring(kEmpty + "<!--c--><!ELEMENT b ANY>", "<a/>"), 48, "DTDReader"},
    {"declarationBytes", &ReadLimits::declarationBytes, 26, declaring(kEmpty + "<!--c-->", "<a/>"),
     declaring(kEmpty + "<!--cc-->", "<a/>"), 40, "DTDReader"},
    {"groupDepth", &ReadLimits::groupDepth, 2, declaring("<!ELEMENT a ((b)*)>", "<a/>"),
     declaring("<!ELEMENT a (((b))*)>", "<a/>"), 28, "ChildrenSpecReader"},
    {"groupDepth", &ReadLimits::groupDepth, 0, "<a/>", declaring("<!ELEMENT a (b)>", "<a/>"), 26,
     "ChildrenSpecReader"},
    {"validationSteps", &ReadLimits::validationSteps, 1000,
     declaring("<!ELEMENT a ((b?)*)><!ELEMENT b EMPTY>", "<a><b/></a>"),
     declaring("<!ELEMENT a ((b?)*)><!ELEMENT c EMPTY>", "<a><c/></a>"), 64, "DocumentReader"},
};

TEST(ReadLimits, AcceptWhatIsWithinThem) {
    for (const Case& each : kCases) {
        if (each.within.empty()) continue;
        const std::string seen = readingOf(each.within, only(each.limit, each.value));
        EXPECT_EQ(seen, readingOf(each.within, ReadLimits())) << each.name;
        EXPECT_EQ(messageFor(each.within, only(each.limit, each.value)), "") << each.within;
    }
}

TEST(ReadLimits, AreNamedWithTheirValueAndThePlaceBeyondThem) {
    for (const Case& each : kCases) {
        const std::string text =
            std::string("limit exceeded: ") + each.name + " = " + std::to_string(each.value);
        EXPECT_EQ(messageFor(each.beyond, only(each.limit, each.value)),
                  reading::messageAt(each.column, text, std::string("Xml::") + each.className))
            << each.beyond;
    }
}

TEST(ReadLimits, AreMetAtTheSamePlaceInAllStreams) {
    for (const Case& each : kCases) readingOf(each.beyond, only(each.limit, each.value));
}

TEST(ReadLimits, OfBytesCutAnyDocumentAnywhere) {
    const std::string text =
        "<?xml version='1.0'?>\r\n<!DOCTYPE r [\r<!ELEMENT r (#PCDATA|a)*>\n"
        "<!ENTITY e 'v'><!ELEMENT a ANY><!ATTLIST a x CDATA #IMPLIED>]>\r\n"
        "<!--c--><r>\r\n <a x='&e;'/>t &lt; 'q' <![CDATA[<]]>\r\r<?p i?><a\r>b</a\r></r>\n<!--d-->";
    const support::Diagnostics diagnostics;
    for (std::uint64_t bytes = 0; bytes <= text.size(); ++bytes) {
        const std::string seen = readingOf(text, only(&ReadLimits::totalBytes, bytes));
        EXPECT_EQ(seen.find("limit exceeded: totalBytes") == std::string::npos,
                  bytes == text.size())
            << bytes << ": " << seen;
    }
}

// The parts of a text that goes on behind the limit are not all in memory at once.
TEST(ReadLimits, OfBytesCutLongDocumentsToo) {
    std::string text = "<r>";
    while (text.size() < 200000) text += "<a x='1'>some text\r\n</a><b/>";
    text += "</r>";
    for (const std::uint64_t bytes : {16384U, 100000U, 199999U}) {
        readingOf(text, only(&ReadLimits::totalBytes, bytes));
    }
    EXPECT_EQ(messageFor(text, only(&ReadLimits::totalBytes, text.size())), "");
}

TEST(ReadLimits, AreCountedFromWhereReadingBegins) {
    Xml::StringInStream in("<a>long</a><b/>");
    in.setPosition(11);
    Xml::DocumentReader reader;
    reader.setLimits(only(&ReadLimits::totalBytes, 4));
    EXPECT_TRUE(reader.parse(in)) << reader.getErrorMessage();
}

TEST(ReadLimits, OfBytesBeyondAllPositionsAreNone) {
    for (const std::uint64_t bytes :
         {std::uint64_t{0x7FFFFFFF}, std::uint64_t{0x80000000}, ReadLimits::kNone - 1}) {
        EXPECT_EQ(messageFor("<a/>", only(&ReadLimits::totalBytes, bytes)), "") << bytes;
    }
}

TEST(ReadLimits, LeaveTheStreamWithoutThem) {
    Xml::StringInStream in("<a>long text</a>");
    Xml::DocumentReader limited;
    limited.setLimits(only(&ReadLimits::totalBytes, 5));
    EXPECT_FALSE(limited.parse(in));
    in.setPosition(0);
    Xml::DocumentReader unlimited;
    EXPECT_TRUE(unlimited.parse(in)) << unlimited.getErrorMessage();
}

TEST(ReadLimits, HoldAgainForEachDocument) {
    Xml::DocumentReader reader;
    reader.setLimits(only(&ReadLimits::nodes, 2));
    for (int round = 0; round < 3; ++round) {
        Xml::StringInStream in("<a>t</a>");
        EXPECT_TRUE(reader.parse(in)) << reader.getErrorMessage();
    }
}

TEST(ReadLimits, GoAlongWithCopiesOfAReader) {
    Xml::DocumentReader reader;
    reader.setLimits(only(&ReadLimits::nodes, 1));
    Xml::DocumentReader copy = reader;
    Xml::DocumentReader assigned;
    assigned = reader;
    Xml::DocumentReader moved = std::move(reader);
    for (Xml::DocumentReader* each : {&copy, &assigned, &moved}) {
        Xml::StringInStream in("<a>t</a>");
        EXPECT_FALSE(each->parse(in));
    }
}

TEST(ReadLimits, HoldForReadersThatAreUsedAlone) {
    Xml::ElementReader element(nullptr);
    element.setLimits(only(&ReadLimits::elementDepth, 1));
    EXPECT_EQ(
        reading::read(element, "<a><b/></a>"),
        "false at 7 (line = 1, column = 7) limit exceeded: elementDepth = 1 <Xml::ElementReader>");
    Xml::DoctypeReader doctype;
    doctype.setLimits(only(&ReadLimits::declarations, 1));
    EXPECT_EQ(
        reading::read(doctype, "<!DOCTYPE a [<!ELEMENT a ANY><!ELEMENT b ANY>]>"),
        "false at 38 (line = 1, column = 38) limit exceeded: declarations = 1 <Xml::DTDReader>");
    Xml::DTDReader declarations("a");
    declarations.setLimits(only(&ReadLimits::totalBytes, 9));
    EXPECT_EQ(reading::read(declarations, "<!ELEMENT a ANY>"),
              "false at 9 (line = 1, column = 9) limit exceeded: totalBytes = 9 <Xml::DTDReader>");
}

TEST(ReadLimits, OfStepsStayWithTheDtd) {
    const std::string text = declaring("<!ELEMENT a ((b?)*)><!ELEMENT b EMPTY>", "<a/>");
    Xml::StringInStream in(text);
    Xml::DocumentReader reader;
    reader.setLimits(only(&ReadLimits::validationSteps, 5000));
    ASSERT_TRUE(reader.parse(in)) << reader.getErrorMessage();
    Xml::Document& document = *reader.getDocument();
    EXPECT_EQ(document.getDtd()->getStepLimit(), 5000U);
    document.getRoot()->addChild(new Xml::Element("c"));
    EXPECT_FALSE(document.validate());
    Xml::Document copy = document;
    EXPECT_FALSE(copy.validate());
}

TEST(ReadLimits, MayForbidToOpenFiles) {
    const support::TempFolder folder;
    const std::string path = folder.write("a.dtd", "<!ELEMENT a EMPTY>");
    const std::string text = "<!DOCTYPE a SYSTEM '" + path + "'><a/>";
    EXPECT_EQ(messageFor(text, ReadLimits()), "");
    ReadLimits limits;
    limits.mayOpenFiles = false;
    EXPECT_EQ(messageFor(text, limits),
              reading::messageAt(21 + static_cast<int>(path.size()),
                                 "not allowed to open a file: " + path, "Xml::DoctypeReader"));
}

/// Files in and outside a folder that is the only one allowed.
class ReadLimitsFolder : public ::testing::Test {
protected:
    ReadLimitsFolder() {
        std::filesystem::create_directories(outer.path("in/deep"));
        std::filesystem::create_directories(outer.path("inner"));
        for (const char* name : {"in/a.dtd", "in/deep/a.dtd", "inner/a.dtd", "a.dtd"}) {
            outer.write(name, "<!ELEMENT a EMPTY>");
        }
        std::filesystem::create_symlink("../a.dtd", outer.path("in/link.dtd"));
        limits.folder = outer.path("in");
    }

    std::string messageFor(const std::string& path) const {
        return ::messageFor("<!DOCTYPE a SYSTEM '" + path + "'><a/>", limits);
    }
    std::string refusalOf(const std::string& path) const {
        const std::string text =
            "not allowed to open a file outside " + limits.folder + ": " + path;
        return reading::messageAt(21 + static_cast<int>(path.size()), text, "Xml::DoctypeReader");
    }

    support::TempFolder outer;
    ReadLimits limits;
};

TEST_F(ReadLimitsFolder, AllowsWhatIsInIt) {
    for (const char* name :
         {"in/a.dtd", "in/deep/a.dtd", "in/deep/../a.dtd", "inner/../in/a.dtd"}) {
        EXPECT_EQ(messageFor(outer.path(name)), "") << name;
    }
}

TEST_F(ReadLimitsFolder, ForbidsWhatIsOutside) {
    for (const char* name : {"a.dtd", "inner/a.dtd", "in/../a.dtd", "in/link.dtd", "in"}) {
        EXPECT_EQ(messageFor(outer.path(name)), refusalOf(outer.path(name)));
    }
}

TEST_F(ReadLimitsFolder, TakesPathsFromTheCurrentFolder) {
    const std::filesystem::path former = std::filesystem::current_path();
    std::filesystem::current_path(limits.folder);
    EXPECT_EQ(messageFor("a.dtd"), "");
    EXPECT_EQ(messageFor("../a.dtd"), refusalOf("../a.dtd"));
    limits.folder = "deep";
    EXPECT_EQ(messageFor("deep/a.dtd"), "");
    EXPECT_EQ(messageFor("a.dtd"), refusalOf("a.dtd"));
    std::filesystem::current_path(former);
}

TEST_F(ReadLimitsFolder, AllowsNothingWhenItDoesNotExist) {
    limits.folder = outer.path("none");
    EXPECT_EQ(messageFor(outer.path("a.dtd")), refusalOf(outer.path("a.dtd")));
}

TEST_F(ReadLimitsFolder, CountsTheBytesOfTheFileForThemselves) {
    const std::string path = outer.path("in/a.dtd");
    const std::string text = "<!DOCTYPE a SYSTEM '" + path + "'><a/>";
    limits.totalBytes = text.size();
    outer.write("in/a.dtd", "<!ELEMENT a EMPTY>" + std::string(text.size() - 18, ' '));
    EXPECT_EQ(messageFor(path), "");
    outer.write("in/a.dtd", "<!ELEMENT a EMPTY>" + std::string(text.size() - 17, ' '));
    const int size = static_cast<int>(text.size());
    EXPECT_EQ(messageFor(path),
              reading::messageAt(size, "limit exceeded: totalBytes = " + std::to_string(size),
                                 "Xml::DoctypeReader"));
}

// Each value and text is short, and even what entities make of it is within its limit.
TEST(ReadLimits, KeepDocumentsFromGrowingByManyEntities) {
    std::string content;
    for (int i = 0; i < 100; ++i) content += "<b/>&e;";
    const std::string text = declaring("<!ENTITY e '" + std::string(1000000, 'x') +
                                           "'><!ELEMENT a (#PCDATA|b)*><!ELEMENT b EMPTY>",
                                       "<a>" + content + "</a>");
    EXPECT_NE(messageFor(text, ReadLimits::untrusted()).find("limit exceeded: entityGrowth"),
              std::string::npos);
}

// Values that grow by their entities are not put together first.
TEST(ReadLimits, KeepValuesFromGrowing) {
    std::string value;
    for (int i = 0; i < 100000; ++i) value += "&e;";
    const std::string text = declaring("<!ENTITY e '" + std::string(1000000, 'x') + "'>" + kEmpty,
                                       "<a x='" + value + "'/>");
    EXPECT_NE(messageFor(text, ReadLimits::untrusted()).find("limit exceeded: valueLength"),
              std::string::npos);
}

TEST(ReadLimits, AreFoundByTheirNames) {
    for (const Case& each : kCases) EXPECT_EQ(ReadLimits::named(each.name), each.limit);
    for (const char* name : {"", "node", "nodesAll", "mayOpenFiles"}) {
        EXPECT_EQ(ReadLimits::named(name), nullptr) << name;
    }
}

TEST(ReadLimits, AreNoneAtFirst) {
    const ReadLimits limits;
    for (const Case& each : kCases) EXPECT_EQ(limits.*each.limit, ReadLimits::kNone) << each.name;
    EXPECT_TRUE(limits.mayOpenFiles);
    EXPECT_EQ(limits.folder, "");
    EXPECT_EQ(Xml::Dtd("a").getStepLimit(), ReadLimits::kNone);
}

TEST(ReadLimits, ForUntrustedInputAreTheDocumentedOnes) {
    const ReadLimits limits = ReadLimits::untrusted();
    const std::pair<Limit, std::uint64_t> expected[] = {
        {&ReadLimits::totalBytes, 268435456}, {&ReadLimits::elementDepth, 1000},
        {&ReadLimits::nodes, 10000000},       {&ReadLimits::attributesPerElement, 1000},
        {&ReadLimits::nameLength, 1000},      {&ReadLimits::valueLength, 10485760},
        {&ReadLimits::textLength, 104857600}, {&ReadLimits::entityGrowth, 67108864},
        {&ReadLimits::declarations, 10000},   {&ReadLimits::declarationBytes, 4194304},
        {&ReadLimits::groupDepth, 100},       {&ReadLimits::validationSteps, 50000000}};
    for (const auto& [limit, value] : expected) EXPECT_EQ(limits.*limit, value);
    EXPECT_FALSE(limits.mayOpenFiles);
    EXPECT_EQ(limits.folder, "");
}

}  // namespace
