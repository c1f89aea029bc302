#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "VexXml/Readers.h"
#include "readers/Reading.h"
#include "support/Diagnostics.h"
#include "support/Dump.h"
#include "support/PlainInStream.h"

namespace house {

class LoudReader : public Xml::DocumentReader {
public:
    std::string reported;

protected:
    void message(Xml::InStream& in, const std::string& text) override {
        reported += text + " at " + std::to_string(in.getPosition()) + ";";
        Xml::DocumentReader::message(in, text);
    }
};

}  // namespace house

namespace {

using Reports = std::vector<std::string>;
using reading::Failure;
using reading::kEnd;
using reading::read;

const char* const kClass = "Xml::DocumentReader";

/// What `read` tells, and the document that is there afterwards.
std::string documentOf(const std::string& input) {
    Xml::DocumentReader reader;
    std::string outcome = read(reader, input);
    if (reader.getDocument() == nullptr) return outcome;
    return outcome + ": " + support::dump(*reader.getDocument());
}

/// An input, and the document or the refusal.
using Outcome = std::pair<const char*, const char*>;

template <std::size_t N>
void expectDocuments(const Outcome (&rows)[N]) {
    for (const auto& [input, outcome] : rows) EXPECT_EQ(documentOf(input), outcome) << input;
}

const Outcome kPrologs[] = {
    {"<a/>", "true at 4: a()"},
    {" \r\n<a/>", "true at 7: a()"},
    {"<?xml version='1.0'?><a/>", "true at 25: a()"},
    {" <?xml version='1.0'?> <a/>", "true at 27: a()"},
    {"<!-- c --><a/>", "true at 14: a()"},
    {"<?p?><a/>", "true at 9: a()"},
    {"<?xml version='1.0'?><!-- c --> <?p?><?q?>\n<!-- d --><a/>", "true at 57: a()"},
    {"<!DOCTYPE a [<!ELEMENT a EMPTY>]><?p?><!-- d --> <a/>",
     "true at 53: <!DOCTYPE a [\n<!ELEMENT a EMPTY>\n]>\na()"},
    {"<?xml version='1.0'?><!-- c --><!DOCTYPE a [<!ELEMENT a EMPTY>]>\n<a/>",
     "true at 69: <!DOCTYPE a [\n<!ELEMENT a EMPTY>\n]>\na()"},
};

TEST(DocumentReader, ReadsTheProlog) { expectDocuments(kPrologs); }

const Outcome kMisc[] = {
    {"<a/>", "true at 4: a()"},
    {"<a/> \r\n", "true at 7: a()"},
    // Looking for one more of them meets the end, and the message of that stays.
    {"<a/><!-- c --><?p?> <?q?><!-- d -->",
     "true at 35 (line = 1, column = 35) Unexpected end of stream <Xml::DocumentReader>: a()"},
    {"<a/> <?p?>\n",
     "true at 11 (line = 1, column = 11) Unexpected end of stream <Xml::DocumentReader>: a()"},
};

TEST(DocumentReader, ReadsCommentsAndInstructionsBehindTheRoot) { expectDocuments(kMisc); }

const Outcome kRests[] = {
    {"<a/>b", "true at 4: a()"},
    {"<a/> b", "true at 5: a()"},
    {"<a/><b/>", "true at 4: a()"},
    {"<a/></a>", "true at 4: a()"},
    {"<a/>\n<!DOCTYPE a []>", "true at 5: a()"},
    {"<a/> <?xml version='1.0'?>", "true at 5: a()"},
    {"<a/> <![CDATA[x]]>", "true at 5: a()"},
    // Behind a comment the look ahead begins in front of the white space.
    {"<a/><!--c--> \r\n b", "true at 12: a()"},
    {"<a/> <?p?>  >", "true at 10: a()"},
};

TEST(DocumentReader, StopsInFrontOfAnythingElseBehindTheRoot) { expectDocuments(kRests); }

// A token that is cut off is taken for the end; the look at it leaves its message and is not
// undone.
const Failure kCutOffRests[] = {
    {"<a/>'x", 6, kEnd},   {"<a/> &x", 7, kEnd},        {"<a/><!", 6, kEnd},
    {"<a/> <!-", 8, kEnd}, {"<a/><!--c--> ", 13, kEnd}, {"<a/><?p?>", 9, kEnd},
};

TEST(DocumentReader, SucceedsWhereATokenBehindTheRootIsCutOff) {
    for (const Failure& row : kCutOffRests) {
        EXPECT_EQ(documentOf(row.input), "true at " + std::to_string(row.position) + " " +
                                             reading::messageAt(row.position, row.text, kClass) +
                                             ": a()");
    }
}

const Outcome kMiscFailures[] = {
    {"<a/><!-- c",
     "false at 10 (line = 1, column = 10) Unexpected end of stream <Xml::CommentReader>: a()"},
    {"<a/> <!-->",
     "false at 10 (line = 1, column = 10) Unexpected end of stream <Xml::CommentReader>: a()"},
    {"<a/><?p", "false at 7 (line = 1, column = 7) Unexpected end of stream <Xml::PIReader>: a()"},
    {"<a/><!-- c --><?",
     "false at 16 (line = 1, column = 16) Unexpected end of stream <Xml::PIReader>: a()"},
};

TEST(DocumentReader, KeepsTheDocumentWhenSomethingBehindTheRootFails) {
    expectDocuments(kMiscFailures);
}

const Failure kFailures[] = {
    {"", 0, kEnd},
    {" \r\n", 3, kEnd},
    {"'a", 2, kEnd},
    {"<!", 2, kEnd},
    {"<!-- c -->", 10, kEnd},
    {"<!-- c --> 'a", 13, kEnd},
    {"<?p?>", 5, kEnd},
    {"<?xml version='1.0'?>", 21, kEnd},
    {"<!DOCTYPE", 9, kEnd},
    {"<!DOCTYPE a", 11, kEnd},
    {"<!DOCTYPE a PUBLIC", 18, kEnd},
    {"<!DOCTYPE a PUBLIC 'x", 21, kEnd},
    {"<!DOCTYPE a PUBLIC 'x' 'y'", 26, kEnd},
    {"<!DOCTYPE a PUBLIC 'x' [>", 25, kEnd},
    {"<!DOCTYPE a PUBLIC 'x' [<!-- ]>", 31, kEnd},
};

TEST(DocumentReader, ReportsWhereTheStreamEnds) {
    reading::expectFailures(kFailures, kClass, [] { return Xml::DocumentReader(); });
}

const Outcome kPassedOn[] = {
    {"<?xml version='1.0'",
     "false at 19 (line = 1, column = 19) Unexpected end of stream <Xml::VersionInfoReader>"},
    {"<?xml version='1.1'?><a/>", "false at 19"},
    {"<?xml version='1.0' standalone='yes'?><a/>", "false at 30"},
    {"<!-- c", "false at 6 (line = 1, column = 6) Unexpected end of stream <Xml::CommentReader>"},
    {"<!-->", "false at 5 (line = 1, column = 5) Unexpected end of stream <Xml::CommentReader>"},
    {"<?p ?", "false at 5 (line = 1, column = 5) Unexpected end of stream <Xml::PIReader>"},
    {"<!DOCTYPE a><a/>",
     "false at 12 (line = 1, column = 12) Unexpected token \">\" <Xml::DoctypeReader>"},
    {"<!DOCTYPE [ x", "false at 11 (line = 1, column = 11) not a name: [ <Xml::DoctypeReader>"},
    {"<!DOCTYPE a [] b><a/>",
     "false at 16 (line = 1, column = 16) \">\" expected <Xml::DoctypeReader>"},
    {"<!DOCTYPE a [<!ELEMENT a>]><a/>", "false at 25"},
    {"<!DOCTYPE a [<!ENTITY e v>]><a/>",
     "false at 25 (line = 1, column = 25) \"\"\" or \"'\" expected <Xml::EntityReader>"},
    {"<!DOCTYPE a []><!-- c",
     "false at 21 (line = 1, column = 21) Unexpected end of stream <Xml::CommentReader>"},
    {"text", "false at 4 (line = 1, column = 4) \"<\" expected <Xml::ElementReader>"},
    {"<!-- c --><?xml version='1.0'?><a/>",
     "false at 15 (line = 1, column = 15) \"<\" expected <Xml::ElementReader>"},
    {"<?xml version='1.0'?><?xml version='1.0'?><a/>",
     "false at 26 (line = 1, column = 26) \"<\" expected <Xml::ElementReader>"},
    {"<!DOCTYPE a []><!DOCTYPE a []><a/>",
     "false at 24 (line = 1, column = 24) \"<\" expected <Xml::ElementReader>"},
    {"<![CDATA[x]]><a/>", "false at 9 (line = 1, column = 9) \"<\" expected <Xml::ElementReader>"},
    {"</a>", "false at 2 (line = 1, column = 2) \"<\" expected <Xml::ElementReader>"},
    {"<a></b>", "false at 6 (line = 1, column = 6) \"a\" expected <Xml::ElementReader>"},
    {"<a =>", "false at 4"},
};

TEST(DocumentReader, PassesOnTheMessageOfAPart) {
    support::Diagnostics diagnostics;
    expectDocuments(kPassedOn);
}

TEST(DocumentReader, DoesNotPassOnTheReportOfAnEncoding) {
    EXPECT_EQ(documentOf("<?xml version='1.0' encoding='latin-1'?><a/>"), "true at 44: a()");
}

const Outcome kPublic[] = {
    {"<!DOCTYPE a PUBLIC 'x' 'y'><a/>", "true at 31: a()"},
    {"<!DOCTYPE a PUBLIC><a/>", "true at 23: a()"},
    {"<!DOCTYPE a PUBLIC '>' \">\" ><a/>", "true at 32: a()"},
    {"<!DOCTYPE a PUBLIC 'x' []><a/>", "true at 30: a()"},
    {"<!DOCTYPE a PUBLIC 'x' [<!ELEMENT a (b)>]><a/>", "true at 46: a()"},
    {"<!DOCTYPE a PUBLIC 'x' [<!BAD \"]>\" ><!ENTITY e ']>'>] ><a/>", "true at 59: a()"},
    {"<!DOCTYPE a PUBLIC 'x' [<!-- it's ]> --><!-- \" -->]><a/>", "true at 56: a()"},
    {"<!DOCTYPE a PUBLIC 'x' 'y'><!-- c --><?p?> <a/>", "true at 47: a()"},
    // Only a token that is ">" alone ends it.
    {"<!DOCTYPE a PUBLIC /> 'x'><a/>", "true at 30: a()"},
};

TEST(DocumentReader, SkipsADeclarationWithAPublicIdentifier) { expectDocuments(kPublic); }

TEST(DocumentReader, HasNoDtdBehindAPublicIdentifier) {
    Xml::DocumentReader reader;
    EXPECT_EQ(read(reader, "<!DOCTYPE a PUBLIC 'x' [<!ELEMENT a EMPTY>]><a>x</a>"), "true at 52");
    EXPECT_EQ(reader.getDocument()->getDtd(), nullptr);
}

TEST(DocumentReader, PassesOnAFailureBehindAPublicIdentifier) {
    EXPECT_EQ(documentOf("<!DOCTYPE a PUBLIC 'x'><!-- c"),
              "false at 29 (line = 1, column = 29) Unexpected end of stream <Xml::CommentReader>");
}

const Outcome kInvalid[] = {
    {"<!DOCTYPE a []><a/>",
     "false at 19 (line = 1, column = 19) Doc could not be validated <Xml::DocumentReader>: "
     "<!DOCTYPE a [\n]>\na()"},
    {"<!DOCTYPE a [<!ELEMENT a EMPTY>]><a>x</a> ",
     "false at 41 (line = 1, column = 41) Doc could not be validated <Xml::DocumentReader>: "
     "<!DOCTYPE a [\n<!ELEMENT a EMPTY>\n]>\na(\"x\")"},
    {"<!DOCTYPE a [<!ELEMENT a EMPTY>]>\r\n<a x='1'/><!-- c",
     "false at 45 (line = 1, column = 10) Doc could not be validated <Xml::DocumentReader>: "
     "<!DOCTYPE a [\n<!ELEMENT a EMPTY>\n]>\na(x=\"1\")"},
};

TEST(DocumentReader, KeepsADocumentThatBreaksItsDtd) { expectDocuments(kInvalid); }

// Validation does not compare the root with the document type name.
TEST(DocumentReader, TakesAnyDeclaredElementForTheRoot) {
    EXPECT_EQ(documentOf("<!DOCTYPE a [<!ELEMENT b EMPTY>]><b/>"),
              "true at 37: <!DOCTYPE a [\n<!ELEMENT b EMPTY>\n]>\nb()");
}

const char* const kWithDtd =
    "<!DOCTYPE a [<!ENTITY e '&lt;v>'><!ELEMENT a (#PCDATA)>"
    "<!ATTLIST a x CDATA 'dx' y CDATA #IMPLIED>]><a y='&e;&lt;'>&e;&lt;</a>";

TEST(DocumentReader, ReadsTheDocumentAgainstItsDtd) {
    Xml::DocumentReader reader;
    ASSERT_EQ(read(reader, kWithDtd).substr(0, 4), "true");
    const Xml::Element* root = reader.getDocument()->getRoot();
    EXPECT_EQ(support::dump(*root), "a(y=\"<v><\" \"&e;&lt;\")");
    EXPECT_EQ(std::string(root->getCharData()), "<v><");
    EXPECT_EQ(std::string(root->getAttributeValue("x")), "dx");
}

TEST(DocumentReader, LinksTheDocumentTogether) {
    Xml::DocumentReader reader;
    ASSERT_EQ(read(reader, kWithDtd).substr(0, 4), "true");
    Xml::Document* document = reader.getDocument();
    EXPECT_EQ(document->getParent(), nullptr);
    EXPECT_EQ(document->getRoot()->getParent(), document);
    EXPECT_EQ(document->getDtd()->getParent(), document);
}

TEST(DocumentReader, HasNoDocumentAtFirst) {
    Xml::DocumentReader reader;
    EXPECT_EQ(reader.getDocument(), nullptr);
    EXPECT_EQ(reader.extractDocument(), nullptr);
    EXPECT_EQ(reader.getErrorMessage(), "");
}

TEST(DocumentReader, GivesItsDocumentAwayOnce) {
    std::unique_ptr<Xml::Document> document;
    {
        Xml::DocumentReader reader;
        ASSERT_EQ(read(reader, "<a>x</a>"), "true at 8");
        Xml::Document* kept = reader.getDocument();
        document.reset(reader.extractDocument());
        EXPECT_EQ(document.get(), kept);
        EXPECT_EQ(reader.getDocument(), nullptr);
        EXPECT_EQ(reader.extractDocument(), nullptr);
    }
    EXPECT_EQ(support::dump(*document), "a(\"x\")");
}

TEST(DocumentReader, HasNoDocumentWhenTheRootFailed) {
    Xml::DocumentReader reader;
    EXPECT_EQ(read(reader, "<!DOCTYPE a [<!ELEMENT a EMPTY>]><a><b/>").substr(0, 5), "false");
    EXPECT_EQ(reader.getDocument(), nullptr);
}

TEST(DocumentReader, ReportsDuplicateDeclarationsAndReadsOn) {
    support::Diagnostics diagnostics;
    EXPECT_EQ(documentOf("<!DOCTYPE a [<!ELEMENT a EMPTY><!ELEMENT a ANY>]><a/>"),
              "true at 53: <!DOCTYPE a [\n<!ELEMENT a EMPTY>\n]>\na()");
    EXPECT_EQ(diagnostics.take(), Reports{"<Dtd::addElementDecl> already added a"});
}

TEST(DocumentReader, ReportsThroughTheMessageOfADerivedReader) {
    house::LoudReader reader;
    EXPECT_EQ(read(reader, "<!DOCTYPE a []><a/>"),
              "false at 19 (line = 1, column = 19) Doc could not be validated <house::LoudReader>");
    EXPECT_EQ(reader.reported, "Doc could not be validated at 19;");
}

TEST(DocumentReader, LeavesMessagesOfPartsAlone) {
    house::LoudReader reader;
    EXPECT_EQ(read(reader, "<a></b>"),
              "false at 6 (line = 1, column = 6) \"a\" expected <Xml::ElementReader>");
    EXPECT_EQ(reader.reported, "");
}

TEST(DocumentReader, ReadsDocumentsOneBehindTheOther) {
    support::PlainInStream in("<?xml version='1.0'?><a/>\n<?xml version='1.0'?><b/>");
    for (const char* outcome : {"true at 26", "true at 51"}) {
        Xml::DocumentReader reader;
        EXPECT_EQ(read(reader, in), outcome);
    }
}

}  // namespace
