#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>

#include "VexXml/Dtd.h"
#include "VexXml/Readers.h"
#include "readers/Reading.h"
#include "support/Diagnostics.h"
#include "support/Dump.h"
#include "support/PlainInStream.h"

namespace house {

class QuietReader : public Xml::ElementReader {
public:
    using Xml::ElementReader::ElementReader;

    std::string reported;

protected:
    void message(Xml::InStream& in, const std::string& text) override {
        reported += text + " at " + std::to_string(in.getPosition());
    }
};

class NamedReader : public Xml::ElementReader {
public:
    using Xml::ElementReader::ElementReader;
};

}  // namespace house

namespace {

using reading::Failure;
using reading::kEnd;
using reading::kQuote;
using reading::read;

const char* const kClass = "Xml::ElementReader";

/// The tree that was read, or what `read` tells when it was refused.
std::string treeOf(const std::string& input, Xml::Dtd* dtd = nullptr) {
    Xml::ElementReader reader(dtd);
    const std::string outcome = read(reader, input);
    return outcome.compare(0, 4, "true") == 0 ? support::dump(*reader.getRoot()) : outcome;
}

using Tree = std::pair<const char*, const char*>;

template <std::size_t N>
void expectTrees(const Tree (&rows)[N]) {
    for (const auto& [input, tree] : rows) EXPECT_EQ(treeOf(input), tree) << input;
}

const Tree kTags[] = {
    {"<a/>", "a()"},
    {"<a></a>", "a()"},
    {" \r\n< a ></ a >", "a()"},
    {"<a.b:c-d_1/>", "a.b:c-d_1()"},
    {"<_/>", "_()"},
    {"<a \r\n/>", "a()"},
    {"<a>\r\n</a\t>", "a()"},
    // Deliberate: only the end of the last token is checked.
    {"<a></a/>", "a()"},
};

TEST(ElementReader, ReadsTags) { expectTrees(kTags); }

const Tree kAttributes[] = {
    {"<a x='1' y=\"2\"></a>", "a(x=\"1\" y=\"2\")"},
    {"<a y='2' x='1'/>", "a(x=\"1\" y=\"2\")"},
    {"<a x = \r\n'1'/>", "a(x=\"1\")"},
    {"<a x='1'y='2'/>", "a(x=\"1\" y=\"2\")"},
    {"<a x='1' x='2'/>", "a(x=\"2\")"},
    {"<a x=''/>", "a(x=\"\")"},
    {"<a x='>/<a b='/>", "a(x=\">/<a b=\")"},
    {"<a x='\"' y=\"'\"/>", "a(x=\"\\x22\" y=\"'\")"},
    {"<a x='\r\n\t'/>", "a(x=\"\\x0d\\x0a\\x09\")"},
    {"<a x:y='1' _='2'/>", "a(_=\"2\" x:y=\"1\")"},
};

TEST(ElementReader, ReadsAttributes) { expectTrees(kAttributes); }

const Tree kReferences[] = {
    {"<a x='&lt;&gt;&amp;&quot;&apos;'/>", "a(x=\"<>&\\x22'\")"},
    {"<a x='&#65;&#x41;'/>", "a(x=\"AA\")"},
    {"<a x='&amp;lt;'/>", "a(x=\"&lt;\")"},
    {"<a x='&unknown;'/>", "a(x=\"&unknown;\")"},
    {"<a x='a&b'/>", "a(x=\"a&b;\")"},
};

TEST(ElementReader, ReplacesReferencesInAttributes) { expectTrees(kReferences); }

TEST(ElementReader, AsksItsDtdForEntitiesInAttributes) {
    support::Diagnostics diagnostics;
    Xml::Dtd dtd("a");
    dtd.setEntity("e", "<v>");
    EXPECT_EQ(treeOf("<a x='&e;'><b x='&e;&f;'/></a>", &dtd), "a(x=\"<v>\" b(x=\"<v>&f;\"))");
    EXPECT_TRUE(diagnostics.take().empty());
}

const Tree kTexts[] = {
    {"<a>text</a>", "a(\"text\")"},
    {"<a> x y </a>", "a(\" x y \")"},
    {"<a>\r\nx\n</a>", "a(\"\\x0d\\x0ax\\x0a\")"},
    {"<a>it's 5 > 4 ]]> \"</a>", "a(\"it's 5 > 4 ]]> \\x22\")"},
    {"<a>'x' \"y\"</a>", "a(\"'x' \\x22y\\x22\")"},
    {"<a>/></a>", "a(\"/>\")"},
    {"<a>=</a>", "a(\"=\")"},
    {"<a>&lt;&e;&#65;</a>", "a(\"&lt;&e;&#65;\")"},
    {"<a>& x;</a>", "a(\"& x;\")"},
    {"<a>x & y</a>", "a(\"x & y\")"},
    {"<a> \r\n\t </a>", "a()"},
    {"<a>-->?></a>", "a(\"-->?>\")"},
    {"<a>\xC3\xA4</a>", "a(\"\\xc3\\xa4\")"},
};

TEST(ElementReader, KeepsTextAsItIsWritten) { expectTrees(kTexts); }

TEST(ElementReader, ResolvesReferencesInTextOnlyWhenAskedForData) {
    Xml::ElementReader reader(nullptr);
    EXPECT_EQ(read(reader, "<a>&lt;&#65;&e;</a>"), "true at 19");
    EXPECT_EQ(std::string(reader.getRoot()->getCharData()), "<A&e;");
    EXPECT_EQ(support::written(*reader.getRoot()), "<a>&lt;&#65;&e;</a>");
}

const Tree kChildren[] = {
    {"<a><b/></a>", "a(b())"},
    {"<a><b><c/></b><d/></a>", "a(b(c()) d())"},
    {"<a>\r\n  <b/>\r\n  <c/>\r\n</a>", "a(b() c())"},
    {"<a>x<b>y</b>z</a>", "a(\"x\" b(\"y\") \"z\")"},
    {"<a> x <b/> y </a>", "a(\" x \" b() \" y \")"},
    {"<a>x <b/> <c/></a>", "a(\"x \" b() c())"},
    {"<a><a><a/></a></a>", "a(a(a()))"},
    {"<a>< b/></a>", "a(b())"},
};

TEST(ElementReader, DropsWhiteSpaceInFrontOfMarkupOnly) { expectTrees(kChildren); }

const Tree kComments[] = {
    {"<a><!-- c --></a>", "a()"},
    {"<a>x<!-- <b/> & ' \" -->y</a>", "a(\"x\" \"y\")"},
    {"<a> <!--c--> <b/> <!--d--> </a>", "a(b())"},
    {"<a><!----></a>", "a()"},
    // Deliberate: the "--" of the opening is part of what is skipped.
    {"<a><!-->x</a>", "a(\"x\")"},
    {"<a><!--->x</a>", "a(\"x\")"},
    {"<a> <!-->x--></a>", "a(\"x-->\")"},
};

TEST(ElementReader, DropsComments) { expectTrees(kComments); }

const Tree kSections[] = {
    {"<a><![CDATA[x]]></a>", "a(\"x\")"},
    {"<a><![CDATA[<b>&\"']]></a>", "a(\"&lt;b&gt;&amp;&quot;&apos;\")"},
    {"<a><![CDATA[&lt;]]></a>", "a(\"&amp;lt;\")"},
    {"<a><![CDATA[]]></a>", "a(\"\")"},
    {"<a><![CDATA[ ]]></a>", "a(\" \")"},
    {"<a> \r\n<![CDATA[\r\n x ]]> \r\n</a>", "a(\"\\x0d\\x0a x \")"},
    {"<a><![CDATA[]]]></a>", "a(\"]\")"},
    {"<a><![CDATA[]]]]></a>", "a(\"]]\")"},
    {"<a><![CDATA[a]]b]>c]]></a>", "a(\"a]]b]&gt;c\")"},
    {"<a><![CDATA[a]]>b<![CDATA[c]]></a>", "a(\"a\" \"b\" \"c\")"},
    {"<a><![CDATA[<![CDATA[]]></a>", "a(\"&lt;![CDATA[\")"},
    {"<a><! [ CDATA\r\n[x]]></a>", "a(\"x\")"},
    {"<a><![CDATA[a]]><b/></a>", "a(\"a\" b())"},
};

TEST(ElementReader, MakesTextOfCDataSections) { expectTrees(kSections); }

const Tree kInstructions[] = {
    {"<a><?x y?></a>", "a()"},
    {"<a>x<?y <b/> '?>z</a>", "a(\"x\" \"z\")"},
    {"<a> <?x?> <b/></a>", "a(b())"},
    {"<a><?\?></a>", "a()"},
    {"<a><?xml version='1.0'?></a>", "a()"},
    {"<a><?xml-stylesheet?>x</a>", "a(\"x\")"},
    {"<a><?myxml?>x</a>", "a(\"x\")"},
    {"<a><?>x?>y</a>", "a(\"y\")"},
    {"<a><?x?\?>y</a>", "a(\"y\")"},
    {"<a><? x ?>y</a>", "a(\"y\")"},
};

TEST(ElementReader, DropsProcessingInstructions) { expectTrees(kInstructions); }

const Failure kFailures[] = {
    // start tag
    {"", 0, kEnd},
    {"  ", 2, kEnd},
    {"a", 1, "\"<\" expected"},
    {"</a>", 2, "\"<\" expected"},
    {"<!-- a", 4, "\"<\" expected"},
    {"<?a?>", 2, "\"<\" expected"},
    {"'<'", 3, "\"<\" expected"},
    {"<", 1, "not a name: "},
    {"<>", 2, "not a name: >"},
    {"<1a>", 3, "not a name: 1a"},
    {"< <a>", 3, "not a name: <"},
    {"<a", 2, kEnd},
    {"<a ", 3, kEnd},
    // attributes
    {"<a b", 4, kEnd},
    {"<a b>", 5, "\"=\" expected"},
    {"<a b c='1'>", 6, "\"=\" expected"},
    {"<a b=", 5, kEnd},
    {"<a b=>", 6, kQuote},
    {"<a b=1>", 6, kQuote},
    {"<a b='1", 7, kEnd},
    {"<a b='1'", 8, kEnd},
    {"<a b='1' c", 10, kEnd},
    // content
    {"<a>", 3, kEnd},
    {"<a> ", 4, kEnd},
    {"<a>x", 4, kEnd},
    {"<a>x y", 6, kEnd},
    {"<a>&x</a>", 9, kEnd},
    {"<a>'tis</a>", 11, kEnd},
    {"<a><b/>", 7, kEnd},
    {"<a><", 4, "not a name: "},
    {"<a><!", 5, kEnd},
    {"<a><!-", 6, kEnd},
    // end tag
    {"<a></", 5, kEnd},
    {"<a></b>", 6, "\"a\" expected"},
    {"<a></>", 6, "\"a\" expected"},
    {"<a></ab>", 7, "\"a\" expected"},
    {"<a></ba>", 7, "\"a\" expected"},
    {"<a></A>", 6, "\"a\" expected"},
    {"<a></'a'>", 8, "\"a\" expected"},
    {"<a></a", 6, kEnd},
    {"<a></a b>", 8, "\">\" expected"},
    {"<a></a<", 7, "\">\" expected"},
    // sections, instructions and other markup
    {"<a><![CDATA[", 12, kEnd},
    {"<a><![CDATA[x]]", 15, kEnd},
    {"<a><![CDATA[]]</a>", 18, kEnd},
    {"<a><?", 5, kEnd},
    {"<a><?x", 6, kEnd},
    {"<a><?x ?", 8, kEnd},
    {"<a><?></a>", 10, kEnd},
    {"<a><?xml", 8, kEnd},
    {"<a><?xml>", 9, kEnd},
    {"<a><!DOCTYPE a></a>", 3, "unexpected token \"<!DOCTYPE\""},
    {"<a><!ELEMENT a EMPTY></a>", 3, "unexpected token \"<!ELEMENT\""},
    {"<a><!></a>", 3, "unexpected token \"<!\""},
    {"<a><!- x --></a>", 3, "unexpected token \"<!\""},
    {"<a><! -- x --></a>", 3, "unexpected token \"<!\""},
    {"<a><![ x ]]></a>", 3, "unexpected token \"<![\""},
    {"<a><![cdata[x]]></a>", 3, "unexpected token \"<![\""},
    {"<a><![xCDATA[x]]></a>", 3, "unexpected token \"<![xCDATA[\""},
    {"<a>x <!y/></a>", 5, "unexpected token \"<!y\""},
    {"<a><b/> \r <!y/></a>", 7, "unexpected token \"<!y\""},
};

TEST(ElementReader, ReportsWhereItFailed) {
    reading::expectFailures(kFailures, kClass, [] { return Xml::ElementReader(nullptr); });
}

// Deliberate: callers tell these from the others by their missing text.
const Failure kSilentFailures[] = {
    {"<a =>", 4, nullptr},        {"<a 'x'>", 6, nullptr},       {"<a 1='x'>", 4, nullptr},
    {"<a / >", 4, nullptr},       {"<a <b/>", 4, nullptr},       {"<a &x;>", 6, nullptr},
    {"<a x='1' =>", 10, nullptr}, {"<a </a>", 5, nullptr},       {"<a ? >", 4, nullptr},
    {"<a><!--", 7, nullptr},      {"<a><!-- x --", 12, nullptr}, {"<a><!-- x </a>", 14, nullptr},
};

TEST(ElementReader, FailsWithoutAMessageBehindAttributesAndInComments) {
    reading::expectFailures(kSilentFailures, kClass, [] { return Xml::ElementReader(nullptr); });
}

// The place is that of the failure, wherever the elements around it began.
const Failure kFailuresBelow[] = {
    {"<a><b></c></a>", 9, "\"b\" expected"},
    {"<a><b><c></c></b></c>", 20, "\"a\" expected"},
    {"<a><b x></b></a>", 8, "\"=\" expected"},
    {"<a><1/></a>", 5, "not a name: 1"},
    {"<a><b>x", 7, kEnd},
    {"<a><b><!y></b></a>", 6, "unexpected token \"<!y\""},
    {"<a><b ='x'></b></a>", 7, nullptr},
    {"<a><b><!-- </b></a>", 19, nullptr},
};

TEST(ElementReader, PassesOnTheMessageOfAChild) {
    reading::expectFailures(kFailuresBelow, kClass, [] { return Xml::ElementReader(nullptr); });
}

TEST(ElementReader, NamesThePlaceOfAWrongEndTag) {
    Xml::ElementReader reader(nullptr);
    EXPECT_EQ(read(reader, "<a></b>"),
              "false at 6 (line = 1, column = 6) \"a\" expected <Xml::ElementReader>");
}

TEST(ElementReader, NamesTheLineOfAWrongEndTag) {
    Xml::ElementReader reader(nullptr);
    EXPECT_EQ(read(reader, "<a>\r\n<b/>\r\n</b>"),
              "false at 14 (line = 2, column = 3) \"a\" expected <Xml::ElementReader>");
}

TEST(ElementReader, ReportsLongNamesWhole) {
    const std::string name(5000, 'n');
    Xml::ElementReader reader(nullptr);
    EXPECT_EQ(read(reader, "<" + name + "></b>"), "false at 5005 (line = 1, column = 5005) \"" +
                                                      name + "\" expected <Xml::ElementReader>");
}

TEST(ElementReader, LeavesTheStreamBehindTheElement) {
    support::PlainInStream in("<a/><b></b> <c x='1'/>d");
    for (const char* outcome : {"true at 4", "true at 11", "true at 22"}) {
        Xml::ElementReader reader(nullptr);
        EXPECT_EQ(read(reader, in), outcome);
    }
}

TEST(ElementReader, HasNoElementAtFirst) {
    Xml::ElementReader reader(nullptr);
    EXPECT_EQ(reader.getRoot(), nullptr);
    EXPECT_EQ(reader.extractRoot(), nullptr);
    EXPECT_EQ(reader.getErrorMessage(), "");
}

TEST(ElementReader, GivesItsElementAwayOnce) {
    Xml::ElementReader reader(nullptr);
    EXPECT_EQ(read(reader, "<a/>"), "true at 4");
    Xml::Element* root = reader.getRoot();
    const std::unique_ptr<Xml::Element> extracted(reader.extractRoot());
    EXPECT_EQ(extracted.get(), root);
    EXPECT_EQ(extracted->getParent(), nullptr);
    EXPECT_EQ(reader.getRoot(), nullptr);
    EXPECT_EQ(reader.extractRoot(), nullptr);
}

TEST(ElementReader, KeepsWhatItReadBeforeItFailed) {
    Xml::ElementReader reader(nullptr);
    EXPECT_EQ(read(reader, "<a x='1'><b>t</b><c></d>").substr(0, 11), "false at 23");
    EXPECT_EQ(support::dump(*reader.getRoot()), "a(x=\"1\" b(\"t\"))");
}

TEST(ElementReader, HasNoElementWhenItFailedBeforeTheNameWasRead) {
    Xml::ElementReader reader(nullptr);
    EXPECT_EQ(read(reader, "<1>").substr(0, 10), "false at 2");
    EXPECT_EQ(reader.getRoot(), nullptr);
}

TEST(ElementReader, ReportsUnderTheNameOfADerivedReader) {
    house::NamedReader reader(nullptr);
    EXPECT_EQ(read(reader, "<a></b>"),
              "false at 6 (line = 1, column = 6) \"a\" expected <house::NamedReader>");
}

TEST(ElementReader, ReportsThroughTheMessageOfADerivedReader) {
    for (const Failure& failure : kFailures) {
        SCOPED_TRACE(failure.input);
        if (failure.input == "<a><") continue;  // a child's failure
        house::QuietReader reader(nullptr);
        EXPECT_EQ(read(reader, failure.input), "false at " + std::to_string(failure.position));
        EXPECT_EQ(reader.reported, failure.text + (" at " + std::to_string(failure.position)));
    }
}

TEST(ElementReader, ReadsChildrenWithPlainReaders) {
    house::QuietReader reader(nullptr);
    EXPECT_EQ(read(reader, "<a><b></c></a>"),
              "false at 9 (line = 1, column = 9) \"b\" expected <Xml::ElementReader>");
    EXPECT_EQ(reader.reported, "");
}

}  // namespace
