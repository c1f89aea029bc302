#include <gtest/gtest.h>

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

namespace {

using Reports = std::vector<std::string>;
using reading::Failure;
using reading::kEnd;
using reading::read;

Xml::DTDReader makeReader(bool internal) {
    Xml::DTDReader reader("d");
    reader.setInternal(internal);
    return reader;
}

/// The DTD as it is written, without its first and last line, behind what `read` tells.
std::string declarationsOf(const std::string& input, bool internal) {
    Xml::DTDReader reader = makeReader(internal);
    const std::string outcome = read(reader, input);
    const std::string text = support::written(*reader.getDtd());
    const std::string start = "<!DOCTYPE d [\n";
    EXPECT_EQ(text.substr(0, start.size()), start);
    return outcome + "\n" + text.substr(start.size(), text.size() - start.size() - 3);
}

const std::pair<const char*, const char*> kFiles[] = {
    {"<!ELEMENT a EMPTY>", "true at 18\n<!ELEMENT a EMPTY>\n"},
    {"\r\n<!ELEMENT a EMPTY>\r\n", "true at 22\n<!ELEMENT a EMPTY>\n"},
    {"<!ELEMENT b ANY><!ELEMENT a (b)>", "true at 32\n<!ELEMENT a (b)>\n<!ELEMENT b ANY>\n"},
    {"<!ENTITY e '&lt;'> ", "true at 19\n<!ENTITY e \"&lt;\">\n"},
    {"<!-- ]]> <!ELEMENT --> ", "true at 23\n"},
    {"<!ATTLIST a x CDATA 'v'><!ELEMENT a EMPTY><!-- c -->",
     "true at 52\n<!ELEMENT a EMPTY>\n<!ATTLIST a\n\tx CDATA \"v\"\n>\n"},
    // An attribute list alone is read, though it is not written.
    {"<!ATTLIST a x CDATA 'v'>", "true at 24\n"},
};

TEST(DTDReader, ReadsDeclarationsUpToTheEnd) {
    for (const auto& [input, outcome] : kFiles) EXPECT_EQ(declarationsOf(input, false), outcome);
}

const std::pair<const char*, const char*> kSubsets[] = {
    {"]", "true at 1\n"},
    {" \r\n ]>", "true at 5\n"},
    {"<!ELEMENT a EMPTY>]>", "true at 19\n<!ELEMENT a EMPTY>\n"},
    {"<!-- ]> --> ] <a/>", "true at 13\n"},
    {"<!ENTITY e ']>'> <!ELEMENT a (b) > ]]",
     "true at 36\n<!ENTITY e \"]&gt;\">\n<!ELEMENT a (b)>\n"},
};

TEST(DTDReader, ReadsAnInternalSubsetUpToItsEnd) {
    for (const auto& [input, outcome] : kSubsets) EXPECT_EQ(declarationsOf(input, true), outcome);
}

const Failure kFailures[] = {
    {"", 0, kEnd},
    {" \r\n", 3, kEnd},
    {"a", 1, "unexpected token \"a\""},
    {"<a>", 1, "unexpected token \"<\""},
    {"<?a?>", 2, "unexpected token \"<?\""},
    {"<?xml version='1.0'?>", 5, "unexpected token \"<?xml\""},
    {"%e;", 3, "unexpected token \"%e;\""},
    {"&e;", 3, "unexpected token \"&e;\""},
    {"<![INCLUDE[", 3, "unexpected token \"<![\""},
    {"<!NOTATION n SYSTEM 'x'>", 10, "unexpected token \"<!NOTATION\""},
    {"<!DOCTYPE a>", 9, "unexpected token \"<!DOCTYPE\""},
    {"<!element a EMPTY>", 9, "unexpected token \"<!element\""},
    {"<!ELEMENT a EMPTY> b", 20, "unexpected token \"b\""},
    {"<!ELEMENT a EMPTY>>", 19, "unexpected token \">\""},
    {"<!-- a --><!", 12, kEnd},
};

TEST(DTDReader, ReportsAnythingElse) {
    for (const bool internal : {false, true}) {
        reading::expectFailures(kFailures, "Xml::DTDReader", [&] { return makeReader(internal); });
    }
}

const Failure kEndsOfFiles[] = {
    {"]", 1, "unexpected token \"]\""},
    {"<!ELEMENT a EMPTY>\n]", 20, "unexpected token \"]\""},
};

TEST(DTDReader, TakesNoBracketForTheEndOfAFile) {
    reading::expectFailures(kEndsOfFiles, "Xml::DTDReader", [] { return makeReader(false); });
}

const Failure kCutOffSubsets[] = {
    {"<!ELEMENT a EMPTY>", 18, kEnd},
    {"<!ELEMENT a EMPTY> ", 19, kEnd},
    {"<!-- c -->", 10, kEnd},
};

TEST(DTDReader, ReportsAnInternalSubsetThatIsCutOff) {
    reading::expectFailures(kCutOffSubsets, "Xml::DTDReader", [] { return makeReader(true); });
}

struct SubFailure {
    const char* input;
    const char* outcome;
};

const SubFailure kSubFailures[] = {
    {"<!-- a", "false at 6 (line = 1, column = 6) Unexpected end of stream <Xml::CommentReader>"},
    // The whole opening is read before the end is looked for.
    {"<!-->", "false at 5 (line = 1, column = 5) Unexpected end of stream <Xml::CommentReader>"},
    {"<!ELEMENT 1>", "false at 11 (line = 1, column = 11) not a name: 1 <Xml::ElementDeclReader>"},
    {"<!ELEMENT a (#PCDATA)+>",
     "false at 22 (line = 1, column = 22) unexpected repetition type <Xml::MixedSpecReader>"},
    {"<!ELEMENT a (1)>",
     "false at 14 (line = 1, column = 14) unexpected \"1\" <Xml::ChildrenSpecReader>"},
    {"<!ATTLIST a x ID>",
     "false at 16 (line = 1, column = 16) \"CDATA\" expected <Xml::AttListReader>"},
    {"<!ENTITY % e 'v'>", "false at 10 (line = 1, column = 10) not a name: % <Xml::EntityReader>"},
    {"<!ENTITY e SYSTEM 'v'>",
     "false at 12 (line = 1, column = 12) \"\"\" or \"'\" expected <Xml::EntityReader>"},
    // These have no text of their own.
    {"<!ATTLIST a 1>", "false at 13"},
    {"<!ELEMENT a b>", "false at 13"},
};

TEST(DTDReader, PassesOnTheMessageOfADeclaration) {
    support::Diagnostics diagnostics;
    for (const bool internal : {false, true}) {
        for (const auto& [input, outcome] : kSubFailures) {
            Xml::DTDReader reader = makeReader(internal);
            EXPECT_EQ(read(reader, input), outcome);
        }
    }
}

TEST(DTDReader, TakesOverAMissingMessageToo) {
    support::Diagnostics diagnostics;
    EXPECT_EQ(declarationsOf("<!ELEMENT a EMPTY><!ELEMENT b c>", false),
              "false at 31\n<!ELEMENT a EMPTY>\n");
    EXPECT_EQ(diagnostics.take(), Reports{"<ElementDeclReader::parse> don't know what to do c"});
}

TEST(DTDReader, StopsAtTheFirstFailure) {
    EXPECT_EQ(declarationsOf("<!ELEMENT a EMPTY><!BAD><!ELEMENT b EMPTY>", false),
              "false at 23 (line = 1, column = 23) unexpected token \"<!BAD\" <Xml::DTDReader>\n"
              "<!ELEMENT a EMPTY>\n");
}

TEST(DTDReader, NamesTheLineOfAFailure) {
    Xml::DTDReader reader("d");
    EXPECT_EQ(read(reader, "<!ELEMENT a EMPTY>\r\n<!ELEMENT b EMPTY>\r\n<!BAD>"),
              "false at 45 (line = 2, column = 5) unexpected token \"<!BAD\" <Xml::DTDReader>");
}

TEST(DTDReader, ReportsDuplicatesAndReadsOn) {
    support::Diagnostics diagnostics;
    EXPECT_EQ(declarationsOf("<!ELEMENT a EMPTY><!ELEMENT a ANY>"
                             "<!ATTLIST a x CDATA '1' x CDATA '2'><!ENTITY e '1'><!ENTITY e '2'>",
                             false),
              "true at 100\n<!ENTITY e \"2\">\n<!ELEMENT a EMPTY>\n"
              "<!ATTLIST a\n\tx CDATA \"1\"\n>\n");
    EXPECT_EQ(diagnostics.take(), (Reports{"<Dtd::addElementDecl> already added a",
                                           "<Dtd::addAttlistDecl> alraedy added a x"}));
}

TEST(DTDReader, HasANamedAndEmptyDtdAtFirst) {
    Xml::DTDReader reader("doc");
    EXPECT_EQ(support::written(*reader.getDtd()), "<!DOCTYPE doc [\n]>\n");
    EXPECT_EQ(reader.getErrorMessage(), "");
}

TEST(DTDReader, GivesItsDtdAwayOnce) {
    Xml::DTDReader reader("d");
    EXPECT_EQ(read(reader, "<!ELEMENT a EMPTY>"), "true at 18");
    Xml::Dtd* dtd = reader.getDtd();
    const std::unique_ptr<Xml::Dtd> extracted(reader.extractDtd());
    EXPECT_EQ(extracted.get(), dtd);
    EXPECT_EQ(reader.getDtd(), nullptr);
    EXPECT_EQ(reader.extractDtd(), nullptr);
}

}  // namespace
