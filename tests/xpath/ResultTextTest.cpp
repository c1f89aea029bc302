#include <gtest/gtest.h>

#include <clocale>
#include <limits>
#include <locale>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "VexXml/Dom.h"
#include "VexXml/XPath.h"
#include "support/Diagnostics.h"
#include "xpath/Queries.h"

namespace {

using VexSys::Uni16String;
using Xml::XPath;
using xpath::errorOf;

// The text of the first result, whole.
std::string textOf(const std::string& documentText, const std::string& expression) {
    const auto document = xpath::parsed(documentText);
    return XPath(document.get()).GetValueUTF8(expression);
}

class ResultWords : public ::testing::Test {
protected:
    /// What `GetValue` gives for the word of an attribute that holds the text; `error` is for both
    /// ways to ask.
    std::string word(const std::string& text, long index, const std::string& error) {
        element->setAttribute("x", text);
        XPath query(&document);
        std::string direct = query.GetValueUTF8("/r/@x", index);
        EXPECT_EQ(errorOf(query), error);
        EXPECT_EQ(query.GetValueUTF8(0, index), direct);
        EXPECT_EQ(errorOf(query), error);
        EXPECT_EQ(query.GetNrOfResults(), 1U);
        return direct;
    }

    Xml::Element* element = new Xml::Element("r");
    Xml::Document document{element};
};

TEST_F(ResultWords, OnlyTheFirstIsThere) {
    EXPECT_EQ(word("x y z", 0, ""), "x");
    EXPECT_EQ(word("x y z", 1, "error 1"), "");
    EXPECT_EQ(word("x y z", 2, "error 1"), "");
    EXPECT_EQ(word("x y z", 3, "error 1"), "");
    EXPECT_EQ(word("xyz", 0, ""), "xyz");
    EXPECT_EQ(word("xyz", 1, "error 1"), "");
}

TEST_F(ResultWords, ComeAllTogetherAtMinusOne) {
    EXPECT_EQ(word("x y z", -1, ""), "x y z");
    EXPECT_EQ(word(" x ", -1, ""), " x ");
    EXPECT_EQ(word("", -1, ""), "");
    EXPECT_EQ(word("x y z", 4294967295L, ""), "x y z");
    EXPECT_EQ(word("x y z", -2, "error 1"), "");
    EXPECT_EQ(word("x y z", 4294967294L, "error 1"), "");
}

TEST_F(ResultWords, AreParedByBlanksAlone) {
    EXPECT_EQ(word(" x y", 0, ""), "");
    EXPECT_EQ(word(" ", 0, ""), "");
    EXPECT_EQ(word("", 0, "error 1"), "");
    EXPECT_EQ(word("x\ty\nz w", 0, ""), "x\ty\nz");
    EXPECT_EQ(word("\xC3\xA9\xC2\xA0y z", 0, ""), "\xC3\xA9\xC2\xA0y");
    EXPECT_EQ(word(std::string("a\0b c", 5), 0, ""), std::string("a\0b", 3));
}

TEST_F(ResultWords, AreThoseOfAttributesAlone) {
    element->addChild(new Xml::CharData(std::string("a b")));
    XPath query(&document);
    for (const char* expression : {"/r", "/r/text", "'a b'"}) {
        for (const long index : {0L, 1L, 7L, -1L}) {
            EXPECT_EQ(query.GetValueUTF8(expression, index), "a b");
            EXPECT_EQ(errorOf(query), "");
        }
    }
    EXPECT_EQ(query.GetValueUTF8("1 + 1", 7), "2.000000");
    EXPECT_EQ(query.GetValueUTF8("1 = 1", 7), "1");
}

TEST(ResultText, OutOfBoundsIsAnErrorThatTheNextCallForgets) {
    const auto document = xpath::parsed("<r x='a'><a/></r>");
    XPath query(document.get());
    EXPECT_EQ(query.GetValues(std::string("/r/@x")), 1U);
    for (const unsigned long index : {1UL, 2UL, std::numeric_limits<unsigned long>::max()}) {
        EXPECT_EQ(query.GetValue(index), L"");
        EXPECT_EQ(errorOf(query), "error 1");
        EXPECT_EQ(query.GetValue(index, 0), L"");
        EXPECT_EQ(query.GetNrOfResults(), 1U);
    }
    EXPECT_EQ(query.GetValue(0), L"a");
    EXPECT_EQ(errorOf(query), "");
    query.GetValues(std::string("/q"));
    EXPECT_EQ(query.GetValue(0), L"");
    EXPECT_EQ(query.GetErrorCode(), XPath::IndexOutOfBounds);
}

const std::pair<const char*, const char*> kRendered[] = {
    {"1 + 1", "2.000000"},
    {"2", "2.000000"},
    {"0 - 1", "-1.000000"},
    {"1 div 3", "0.333333"},
    {"2 div 3", "0.666667"},
    {"0.0000005", "0.000000"},
    {"0.0000015", "0.000002"},
    {"1 div 0", "inf"},
    {"'-1' div 0", "-inf"},
    {"0 * '-1'", "-0.000000"},
    {"10000000000000000000000", "10000000000000000000000.000000"},
    {"'1e22' * '1e22'", "100000000000000008821361405306422640701865984.000000"},
    {"1 = 1", "1"},
    {"1 = 2", "0"},
    {"'a  b'", "a  b"},
    {"''", ""},
    {"/", ""},
};

TEST(ResultText, OfValuesIsRendered) {
    for (const auto& [expression, text] : kRendered) {
        EXPECT_EQ(textOf("<r/>", expression), text) << expression;
    }
}

TEST(ResultText, OfTheLargestNumberComesWhole) {
    const std::string largest = textOf("<r x='1.7976931348623157e308'/>", "/r/@x + 0");
    EXPECT_EQ(largest.size(), 309 + std::string(".000000").size());
    EXPECT_EQ(largest.substr(0, 18), "179769313486231570");
}

// Long enough that neither the digits nor the exponent alone tell the size.
TEST(ResultText, OfNumbersBeyondTheRangeIsInfiniteOrZero) {
    const std::string zeros(600, '0');
    const std::pair<std::string, const char*> numbers[] = {
        {"1" + zeros + "e-100", "inf"},         {"-1" + zeros + "e-100", "-inf"},
        {"." + zeros + "1e+100", "0.000000"},   {"0x1" + zeros + "p-700", "inf"},
        {"0x." + zeros + "1p+700", "0.000000"}, {"1" + zeros + "e-600", "1.000000"},
        {"0x1" + zeros + "p-2400", "1.000000"},
    };
    for (const auto& [number, text] : numbers) {
        EXPECT_EQ(textOf("<r x='" + number + "'/>", "/r/@x + 0"), text) << number;
    }
}

// Which sign it has depends on the processor.
TEST(ResultText, OfNotANumberSaysSo) {
    const std::string text = textOf("<r/>", "0 div 0");
    EXPECT_TRUE(text == "nan" || text == "-nan") << text;
}

const std::pair<const char*, const char*> kNodeTexts[] = {
    {"/r", "one"},
    {"/r/a", ""},
    {"/r/b", "2<3"},
    {"/r/c", "x]y"},
    {"/r/d", "\xC3\xA9&<>\"'"},
    {"/r/@x", "a&b<c>\"\xC2\xA9"},
    {"/r/@y", "a  b"},
    {"/r/text[2]", "two"},
    {"/r/d/text", "\xC3\xA9&<>\"'"},
};

TEST(ResultText, OfNodesIsPlain) {
    const std::string text =
        "<r y='a  b' x='a&amp;b&lt;c>&quot;\xC2\xA9'>one<a><a>deeper</a></a>two"
        "<b><![CDATA[2<3]]></b><c><a/>x]y<a/>z</c>"
        "<d>\xC3\xA9&amp;&lt;&gt;&quot;&apos;</d></r>";
    for (const auto& [expression, plain] : kNodeTexts) {
        EXPECT_EQ(textOf(text, expression), plain) << expression;
    }
}

TEST(ResultText, OfEntitiesIsWhatTheyStandFor) {
    const std::string text =
        "<!DOCTYPE r [<!ELEMENT r (#PCDATA)><!ENTITY e 'entity'>]><r>an &e;: &#65;</r>";
    EXPECT_EQ(textOf(text, "/r"), "an entity: A");
    EXPECT_EQ(textOf(text, "/r[text = 'an entity: A']/text"), "an entity: A");
}

TEST(ResultText, DoesNotKnowDefaultsOfAttributes) {
    const std::string text =
        "<!DOCTYPE r [<!ELEMENT r EMPTY><!ATTLIST r x CDATA 'default' y CDATA #IMPLIED>]>"
        "<r y='written'/>";
    const auto document = xpath::parsed(text);
    XPath query(document.get());
    EXPECT_EQ(xpath::answerTo(query, "/r/@*"), "@y=written");
    EXPECT_EQ(xpath::answerTo(query, "/r/@x"), "error 2: x");
    EXPECT_EQ(xpath::answerTo(query, "/r[@x = 'default']"), "error 2: x");
}

// Comments and processing instructions are no nodes; character data on their two sides are two.
TEST(ResultText, OfAnElementIsItsFirstCharacterData) {
    const auto document =
        xpath::parsed("<r><!-- no --><?no node?><a/>\nfirst<![CDATA[second]]><b/>third</r>");
    XPath query(document.get());
    EXPECT_EQ(query.GetValueUTF8("/r"), "\nfirst");
    EXPECT_EQ(query.GetValueUTF8("/r/text[1]"), "\nfirst");
    EXPECT_EQ(query.GetValueUTF8("/r/text[last()]"), "third");
}

// The bytes of an attribute, and how they come out: as UTF-16 and again as UTF-8.
struct Encoded {
    std::string bytes;
    Uni16String units;
    std::string again;
};

const Encoded kEncoded[] = {
    {"\xC3\xA9", L"\x00E9", "\xC3\xA9"},
    {"\xE2\x82\xAC", L"\x20AC", "\xE2\x82\xAC"},
    {"\xF0\x9F\x98\x80", {wchar_t{0xD83D}, wchar_t{0xDE00}}, "\xF0\x9F\x98\x80"},
    {"\xF0\x90\x80\x80", {wchar_t{0xD800}, wchar_t{0xDC00}}, "\xF0\x90\x80\x80"},
    {"\xF4\x8F\xBF\xBF", {wchar_t{0xDBFF}, wchar_t{0xDFFF}}, "\xF4\x8F\xBF\xBF"},
    {"\xEF\xBF\xBF", L"\xFFFF", "\xEF\xBF\xBF"},
    {"a\xFFz", L"a\xFFFDz", "a\xEF\xBF\xBDz"},
    {"\xC3", L"\xFFFD", "\xEF\xBF\xBD"},
    {"\xE2\x82z", L"\xFFFDz", "\xEF\xBF\xBDz"},
    {"\xC0\xAF", L"\xFFFD\xFFFD", "\xEF\xBF\xBD\xEF\xBF\xBD"},
    {"\xED\xA0\x80", L"\xFFFD\xFFFD\xFFFD", "\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD"},
    {"\xF4\x90\x80\x80", L"\xFFFD\xFFFD\xFFFD\xFFFD",
     "\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD"},
    {std::string("a\0b", 3), Uni16String(L"a\0b", 3), std::string("a\0b", 3)},
};

TEST(ResultText, IsDecodedFromUtf8) {
    for (const Encoded& row : kEncoded) {
        auto* root = new Xml::Element("r");
        Xml::Document document(root);
        root->setAttribute("x", row.bytes);
        root->addChild(new Xml::CharData(row.bytes));
        XPath query(&document);
        for (const wchar_t* expression : {L"/r/@x", L"/r/text", L"/r"}) {
            EXPECT_EQ(query.GetValue(Uni16String(expression)), row.units);
            EXPECT_EQ(query.GetValueUTF8(0), row.again);
        }
        const Uni16String asLiteral = L"/r[@x = '" + row.units + L"'][text = '" + row.units + L"']";
        EXPECT_EQ(query.GetValues(asLiteral), 1U) << row.again;
        EXPECT_EQ(query.GetValue(L"'" + row.units + L"'"), row.units);
    }
}

// Halves of surrogate pairs, which only UTF-16 can hold.
TEST(ResultText, KeepsUnitsThatAreNoCharacters) {
    const auto document = xpath::parsed("<r x='\xEF\xBF\xBD'/>");
    XPath query(document.get());
    for (const wchar_t unit :
         {wchar_t{0xD800}, wchar_t{0xDBFF}, wchar_t{0xDC00}, wchar_t{0xDFFF}}) {
        const Uni16String text = {L'a', unit};
        EXPECT_EQ(query.GetValue(L"'" + text + L"'"), text);
        EXPECT_EQ(query.GetValueUTF8(0), "a\xEF\xBF\xBD");
        query.GetValues(L"/r/@x = '" + Uni16String(1, unit) + L"'");
        EXPECT_EQ(query.GetValueUTF8(0), "0");
    }
}

// U+10000 is written with units below U+E000, so it comes before U+FFFF, unlike its bytes.
const std::pair<const char*, const char*> kOrder[] = {
    {"'\xF0\x90\x80\x80' < '\xEF\xBF\xBF'", "true"},
    {"'\xEF\xBF\xBF' < '\xF0\x90\x80\x80'", "false"},
    {"/r/@beyond < /r/@last", "true"},
    {"/r/@last < /r/@beyond", "false"},
    {"/r/@beyond < '\xEF\xBF\xBF'", "true"},
    {"'\xEF\xBF\xBF' < /r/@beyond", "false"},
    {"/r/@last > '\xF0\x90\x80\x80'", "true"},
    {"'\xF0\x90\x80\x80' > /r/@last", "false"},
    {"/r/@beyond != /r/@last", "true"},
    {"/r/@beyond = '\xF0\x90\x80\x80'", "true"},
    {"'\xED\x9F\xBF' < /r/@beyond", "true"},
    {"'\xEE\x80\x80' > /r/@beyond", "true"},
};

TEST(ResultText, IsOrderedByItsUtf16) {
    const auto document = xpath::parsed("<r beyond='\xF0\x90\x80\x80' last='\xEF\xBF\xBF'/>");
    XPath query(document.get());
    for (const auto& [expression, answer] : kOrder) {
        EXPECT_EQ(xpath::answerTo(query, expression), answer) << expression;
    }
}

TEST(ResultText, KeepsNulsApart) {
    const std::string text("a\0b", 3);
    auto* root = new Xml::Element("r");
    Xml::Document document(root);
    root->setAttribute("x", text);
    root->setAttribute("n", std::string("1\0"
                                        "2",
                                        3));
    XPath query(&document);
    EXPECT_EQ(xpath::answerTo(query, "/r/@x = '" + text + "'"), "true");
    EXPECT_EQ(xpath::answerTo(query, "/r/@x = 'a'"), "false");
    EXPECT_EQ(xpath::answerTo(query, "/r/@x > 'a'"), "true");
    EXPECT_EQ(xpath::answerTo(query, std::string("'a\0b' < 'a\0c'", 13)), "true");
    EXPECT_EQ(xpath::answerTo(query, "/r/@n + 0"), "1.000000");
    EXPECT_EQ(xpath::answerTo(query, text), "error 12: " + text);
    EXPECT_EQ(xpath::answerTo(query, std::string("/r[\0]", 5)),
              "error 12: " + std::string(1, '\0'));
}

// A name whose characters pass by their low bytes is compared whole.
TEST(ResultText, OfAttributesWithNamesBeyondAscii) {
    support::Diagnostics diagnostics;
    auto* root = new Xml::Element("r");
    Xml::Document document(root);
    root->setAttribute("\xC5\x81", std::string("U+0141"));
    root->setAttribute("n:\xC5\x81", std::string("n"));
    root->setAttribute("\xF0\xA0\x91\x81", std::string("U+20441"));
    root->setAttribute("\xC3\xA9", std::string("U+00E9"));
    XPath query(&document);
    EXPECT_EQ(query.GetValueUTF8("/r/@\xC5\x81"), "U+0141");
    EXPECT_EQ(query.GetValueUTF8("/r/@\xF0\xA0\x91\x81"), "U+20441");
    EXPECT_EQ(query.GetValueUTF8("/r/@*:\xC5\x81"), "n");
    EXPECT_EQ(query.GetValueUTF8("/r/@n:\xC5\x81"), "n");
    EXPECT_EQ(query.GetValueUTF8("/r/@A"), "");
    EXPECT_EQ(errorOf(query), "error 2: A");
    EXPECT_EQ(query.GetValueUTF8("/r/@\xC3\xA9"), "");
    EXPECT_EQ(errorOf(query), "error 11: \xC3\xA9");
}

class DecimalComma : public std::numpunct<char> {
    char do_decimal_point() const override { return ','; }
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\3"; }
};

/// Where numbers are written with a comma: always for C++, and for C where such a locale exists.
class InCommaLocale : public ::testing::Test {
protected:
    InCommaLocale() : mBefore(std::locale::global(std::locale(std::locale(), new DecimalComma))) {
        for (const char* name : {"de_DE.UTF-8", "de_DE", "fr_FR.UTF-8", "fr_FR", "German"}) {
            if (std::setlocale(LC_ALL, name) != nullptr) break;
        }
    }
    ~InCommaLocale() override {
        std::setlocale(LC_ALL, "C");
        std::locale::global(mBefore);
    }

private:
    std::locale mBefore;
};

TEST_F(InCommaLocale, NumbersKeepTheirPoint) {
    EXPECT_EQ(textOf("<r x='1.5'/>", "/r/@x + 0"), "1.500000");
    EXPECT_EQ(textOf("<r x='1,5'/>", "/r/@x + 0"), "1.000000");
    EXPECT_EQ(textOf("<r/>", "'2.5' * 2.5"), "6.250000");
    EXPECT_EQ(textOf("<r/>", "1234567.25"), "1234567.250000");
    EXPECT_EQ(textOf("<r><a/><a x='1'/></r>", "/r/a[1.5 + 0.5]/@x"), "1");
}

}  // namespace
