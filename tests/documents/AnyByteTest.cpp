#include <gtest/gtest.h>

#include <string>

#include "VexXml/Readers.h"
#include "VexXml/XPath.h"
#include "support/Diagnostics.h"
#include "support/Dump.h"
#include "support/QueryTwins.h"
#include "support/Readings.h"

namespace {

struct Place {
    const char* name;
    const char* before;
    const char* behind;
};

// Where a byte may stand, by the production that it is in.
const Place kPlaces[] = {
    {"alone", "", ""},
    {"in front of the root", "", "<a/>"},
    {"in the XML declaration", "<?xml version='1.0' ", "?><a/>"},
    {"in the version", "<?xml version='1.", "'?><a/>"},
    {"in the encoding", "<?xml version='1.0' encoding='U", "F-8'?><a/>"},
    {"in the name of the declaration", "<?xm", " version='1.0'?><a/>"},
    {"behind the declaration", "<?xml version='1.0'?>", "<a/>"},
    {"in an instruction in front of the root", "<?p ", "?><a/>"},
    {"in a comment in front of the root", "<!-- ", "--><a/>"},
    {"at the start of an element name", "<a><", "/></a>"},
    {"in an element name", "<a><b", "c/></a>"},
    {"behind an element name", "<a ", "></a>"},
    {"at the start of an attribute name", "<a ", "='v'/>"},
    {"in an attribute name", "<a b", "c='v'/>"},
    {"around the equals sign", "<a b", "= 'v'/>"},
    {"in front of a value", "<a b=", "'v'/>"},
    {"in a value", "<a b='v", "w'/>"},
    {"in a value between double quotes", "<a b=\"v", "w\"/>"},
    {"behind a value", "<a b='v'", "/>"},
    {"behind a slash", "<a/", ">"},
    {"in text", "<a>t", "u</a>"},
    {"as the only text", "<a>", "</a>"},
    {"between tags", "<a><b/>", "<b/></a>"},
    {"in a reference", "<a>&l", "t;</a>"},
    {"in a number", "<a>&#6", "5;</a>"},
    {"in a hexadecimal number", "<a>&#x4", ";</a>"},
    {"in a section", "<a><![CDATA[x", "y]]></a>"},
    {"in the opening of a section", "<a><![CDA", "TA[x]]></a>"},
    {"at the end of a section", "<a><![CDATA[x]", "]></a>"},
    {"in a comment", "<a><!-- x", "y --></a>"},
    {"in the opening of a comment", "<a><!-", "- y --></a>"},
    {"in an instruction", "<a><?p x", "y?></a>"},
    {"in the target of an instruction", "<a><?", "p?></a>"},
    {"in an end tag", "<a></", "a>"},
    {"behind the name of an end tag", "<a></a", ">"},
    {"behind the root", "<a/>", ""},
    {"in a comment behind the root", "<a/><!--", "-->"},
    {"in the word DOCTYPE", "<!DOC", "TYPE a [<!ELEMENT a ANY>]><a/>"},
    {"in the document type name", "<!DOCTYPE ", " [<!ELEMENT a ANY>]><a/>"},
    {"in front of the subset", "<!DOCTYPE a ", "[<!ELEMENT a ANY>]><a/>"},
    {"in a public identifier", "<!DOCTYPE a PUBLIC '", "' 'y'><a/>"},
    {"between declarations", "<!DOCTYPE a [", "<!ELEMENT a ANY>]><a/>"},
    {"behind the subset", "<!DOCTYPE a [<!ELEMENT a ANY>]", "><a/>"},
    {"in a keyword", "<!DOCTYPE a [<!ELE", "MENT a ANY>]><a/>"},
    {"in a declared name", "<!DOCTYPE a [<!ELEMENT a", " ANY>]><a/>"},
    {"in a content keyword", "<!DOCTYPE a [<!ELEMENT a A", "Y>]><a/>"},
    {"at the start of a group", "<!DOCTYPE a [<!ELEMENT a (", "b)>]><a/>"},
    {"between particles", "<!DOCTYPE a [<!ELEMENT a (b", "c)>]><a><b/><c/></a>"},
    {"behind a particle", "<!DOCTYPE a [<!ELEMENT a (b", ", c)>]><a><b/><c/></a>"},
    {"behind a group", "<!DOCTYPE a [<!ELEMENT a (b|c)", ">]><a><b/></a>"},
    {"in mixed content", "<!DOCTYPE a [<!ELEMENT a (#PCDATA|b", ")*>]><a/>"},
    {"in #PCDATA", "<!DOCTYPE a [<!ELEMENT a (#PC", "DATA)>]><a/>"},
    {"behind a model", "<!DOCTYPE a [<!ELEMENT a ANY", ">]><a/>"},
    {"in a declared attribute", "<!DOCTYPE a [<!ATTLIST a b", " CDATA 'v'>]><a/>"},
    {"in an attribute type", "<!DOCTYPE a [<!ATTLIST a b CD", "ATA 'v'>]><a/>"},
    {"in a default", "<!DOCTYPE a [<!ATTLIST a b CDATA 'v", "w'>]><a/>"},
    {"in a default keyword", "<!DOCTYPE a [<!ATTLIST a b CDATA #", ">]><a/>"},
    {"behind a definition", "<!DOCTYPE a [<!ATTLIST a b CDATA 'v' ", ">]><a/>"},
    {"in an entity name", "<!DOCTYPE a [<!ENTITY e", " 'v'>]><a>&e;</a>"},
    {"in an entity value", "<!DOCTYPE a [<!ENTITY e 'v", "w'>]><a b='&e;'>&e;</a>"},
    {"in a comment among declarations", "<!DOCTYPE a [<!-- ", "--><!ELEMENT a ANY>]><a/>"},
    {"in an instruction among declarations", "<!DOCTYPE a [<?p ", "?><!ELEMENT a ANY>]><a/>"},
};

// Invalid, cut-off and unusual UTF-8.
const char* const kSequences[] = {
    "\xC0\x80", "\xED\xA0\x80", "\xE2\x82",         "\xF0\x9F\x98\x80",     "\xF4\x90\x80\x80",
    "\xFF\xFE", "\xEF\xBB\xBF", "\x80\x80\x80\x80", "\xF8\x88\x80\x80\x80",
};

class AnyByte : public testing::Test {
protected:
    /// What reading gives, and all that can be done with it.
    std::string lifeOf(Xml::InStream& in) {
        Xml::DocumentReader reader;
        std::string life = support::readingOf(reader, in, diagnostics);
        Xml::Document* document = reader.getDocument();
        if (document == nullptr) return life;
        life += std::to_string(document->validate());
        Xml::XPath query(document);
        for (const char* expression : {"//text", "//@*", "//element[@b = 'v']"}) {
            life += query.GetValueUTF8(expression) + '|';
        }
        const std::unique_ptr<Xml::Object> copy(document->clone());
        return life + support::written(*copy);
    }

    /// False when streams disagree, which is also reported.
    bool agreeOn(const std::string& text) {
        const auto life = [this](Xml::InStream& in) { return lifeOf(in); };
        EXPECT_EQ(support::differenceBetweenStreams(text, life), "")
            << testing::PrintToString(text);
        return !HasFailure();
    }

    support::Diagnostics diagnostics;
};

TEST_F(AnyByte, GivesTheSameAnswerFromEveryStreamWhereverItStands) {
    for (const auto& [name, before, behind] : kPlaces) {
        SCOPED_TRACE(name);
        for (int byte = 0; byte < 256; ++byte) {
            if (!agreeOn(before + std::string(1, static_cast<char>(byte)) + behind)) return;
        }
    }
}

TEST_F(AnyByte, GivesTheSameAnswerWhereADocumentEndsWithIt) {
    for (const auto& [name, before, behind] : kPlaces) {
        SCOPED_TRACE(name);
        for (int byte = 0; byte < 256; ++byte) {
            if (!agreeOn(before + std::string(1, static_cast<char>(byte)))) return;
        }
    }
}

TEST_F(AnyByte, GivesTheSameAnswerAsAPartOfMalformedSequences) {
    for (const auto& [name, before, behind] : kPlaces) {
        SCOPED_TRACE(name);
        for (const char* sequence : kSequences) {
            if (!agreeOn(std::string(before) + sequence + behind)) return;
        }
    }
}

// The texts of a document are bytes: all but those that mean something come through.
TEST_F(AnyByte, ComesThroughInTextsAndValues) {
    for (int byte = 0; byte < 256; ++byte) {
        SCOPED_TRACE(byte);
        const std::string plain(3, static_cast<char>(byte));
        Xml::Element element("a", plain);
        element.setAttribute("b", plain);
        Xml::StringInStream in(support::written(element));
        Xml::ElementReader reader(nullptr);
        ASSERT_TRUE(reader.parse(in)) << reader.getErrorMessage();
        EXPECT_EQ(std::string(reader.getRoot()->getAttributeValue("b")), plain);
        EXPECT_EQ(std::string(reader.getRoot()->getCharData()),
                  Xml::isWhite(plain[0]) ? "" : plain);
    }
}

struct Query {
    const char* before;
    const char* behind;
};

const Query kQueries[] = {
    {"", ""},
    {"", "/a"},
    {"/a", "b"},
    {"/a[", "]"},
    {"/a['", "']"},
    {"/a[@b = '", "']"},
    {"//", "text"},
    {"/a/@", "b"},
    {"/a[1", "]"},
    {"child::", "a"},
    {"ch", "ild::a"},
    {"/a ", " 1"},
    {"/a[position", "()]"},
    {"/a[last(", ")]"},
    {"/a[b]", ""},
    {"1", "2"},
    {"'x'", ""},
};

TEST_F(AnyByte, InAnExpressionGivesTheSameAnswerInBothEncodings) {
    Xml::Document document(new Xml::Element("a", "v\xFFw"));
    document.getRoot()->setAttribute("b", std::string("\0\xFF", 2));
    for (const auto& [before, behind] : kQueries) {
        for (int byte = 0; byte < 256; ++byte) {
            const std::string expression =
                before + std::string(1, static_cast<char>(byte)) + behind;
            Xml::XPath bytes(&document);
            Xml::XPath units(&document);
            const auto wide = VexSys::UTF8ToUni16Char(expression.data(), expression.size());
            ASSERT_EQ(bytes.GetValues(expression), units.GetValues(wide))
                << testing::PrintToString(expression);
            ASSERT_EQ(bytes.GetErrorStringUTF8(), units.GetErrorStringUTF8());
            ASSERT_EQ(bytes.GetErrorDetail(), units.GetErrorDetail());
            ASSERT_EQ(bytes.GetValueUTF8(0UL), VexSys::Uni16CharToUTF8(units.GetValue(0UL)));
        }
    }
}

}  // namespace
