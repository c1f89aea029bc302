#include "VexXml/XPath.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>

#include "VexXml/Dom.h"
#include "xpath/Queries.h"

namespace {

using VexSys::Uni16String;
using Xml::XPath;
using xpath::answerTo;
using xpath::errorOf;

const char* const kList = "<l><i id='1'>x</i><i id='2'/><i id='3'>y</i><o id='4'/></l>";

class XPathTest : public ::testing::Test {
protected:
    /// A query whose results are the three elements i.
    XPath afterItems() const {
        XPath query(document.get());
        query.GetValues(std::string("/l/i"));
        return query;
    }

    std::unique_ptr<Xml::Document> document = xpath::parsed(kList);
};

// What the query holds, in the notation of answers; it may hold nodes alone.
std::string held(XPath& query) {
    XPath copy = query;
    return copy.GetNrOfResults() == 0 ? "nothing" : answerTo(copy, "self::*");
}

TEST_F(XPathTest, BeginsWithItsContextNodeAsTheOnlyResult) {
    XPath items = afterItems();
    Xml::Object* item = items.GetResults()[0].node;
    for (Xml::Object* node : {static_cast<Xml::Object*>(document.get()), item}) {
        const XPath query(node);
        ASSERT_EQ(query.GetNrOfResults(), 1U);
        EXPECT_EQ(query.GetResults()[0].node, node);
        EXPECT_EQ(query.GetResults()[0].kind, XPath::Node);
        EXPECT_EQ(query.GetResults()[0].tag, -1);
        EXPECT_EQ(query.GetErrorCode(), XPath::NoError);
    }
}

TEST_F(XPathTest, FindsTheDocumentFromNodesOfEveryKind) {
    for (const char* path : {"/", "/l", "/l/i[1]", "/l/i[1]/@id", "/l/i[1]/text"}) {
        XPath finder(document.get());
        ASSERT_EQ(finder.GetValues(std::string(path)), 1U) << path;
        Xml::Object* node = finder.GetResults()[0].node;
        XPath absolute(node);
        EXPECT_EQ(answerTo(absolute, "/l/o"), "o#4") << path;
        XPath relative(node);
        ASSERT_EQ(relative.GetValues(std::string("self::*")), 1U) << path;
        EXPECT_EQ(relative.GetResults()[0].node, node) << path;
    }
}

TEST_F(XPathTest, AnswersOnADocumentWithoutARoot) {
    Xml::Document empty;
    XPath query(&empty);
    EXPECT_EQ(answerTo(query, "/"), "/");
    EXPECT_EQ(answerTo(query, "//*"), "error 2: *");
    EXPECT_EQ(answerTo(query, "//self::*"), "/");
    EXPECT_EQ(answerTo(query, "1 + 1"), "2.000000");
}

// Queries nodes that are in no document, or none at all.
void expectNothingIsTouched(Xml::Object* node) {
    XPath query(node);
    EXPECT_FALSE(query.SyntaxOK(std::string("a/")));
    const unsigned long before = query.GetNrOfResults();
    EXPECT_EQ(query.GetValues(std::string("/")), 0U);
    EXPECT_EQ(query.GetValues(std::string("1")), 0U);
    EXPECT_EQ(query.GetValues(std::string("")), 0U);
    EXPECT_TRUE(query.GetValue(Uni16String(L"/"), 0).empty());
    EXPECT_TRUE(query.GetValueUTF8("/").empty());
    EXPECT_EQ(errorOf(query), "error 14: a/");
    EXPECT_EQ(query.GetNrOfResults(), before);
}

TEST_F(XPathTest, DoesNothingWithoutADocument) {
    Xml::Element element("a");
    element.setAttribute("x", std::string("1"));
    element.addChild(new Xml::Element("b"));
    Xml::CharData text(std::string("t"));
    expectNothingIsTouched(nullptr);
    expectNothingIsTouched(&element);
    expectNothingIsTouched(element.getAttribute("x"));
    expectNothingIsTouched(element.getChild(0));
    expectNothingIsTouched(&text);
}

TEST_F(XPathTest, ChecksExpressionsWithoutADocument) {
    XPath query(nullptr);
    EXPECT_EQ(query.GetNrOfResults(), 1U);
    EXPECT_TRUE(query.SyntaxOK(std::string("a/b[last()]")));
    EXPECT_TRUE(query.SyntaxOK(std::string("self::*")));
    EXPECT_EQ(query.GetNrOfResults(), 1U);
    EXPECT_TRUE(query.GetValueUTF8(0).empty());
    EXPECT_EQ(query.GetErrorCode(), XPath::NoError);
    EXPECT_FALSE(query.SyntaxOK(std::string("a[")));
    EXPECT_EQ(errorOf(query), "error 20: [");
}

TEST_F(XPathTest, ChainsRelativeQueries) {
    XPath query(document.get());
    EXPECT_EQ(answerTo(query, "l"), "l");
    EXPECT_EQ(answerTo(query, "i"), "i#1 i#2 i#3");
    EXPECT_EQ(answerTo(query, "following-sibling::*"), "i#2 i#3 o#4");
    EXPECT_EQ(answerTo(query, "self::i"), "i#2 i#3");
    EXPECT_EQ(answerTo(query, "text"), "\"y\"");
    EXPECT_EQ(answerTo(query, "parent::i/@id"), "@id=3");
    EXPECT_EQ(answerTo(query, "/l/i[2]"), "i#2");
}

TEST_F(XPathTest, NeedsAnAbsoluteQueryOnceNothingIsLeft) {
    XPath query = afterItems();
    EXPECT_EQ(answerTo(query, "q"), "error 2: q");
    EXPECT_EQ(answerTo(query, " i [ 1 ] / text"), "error 13: i[ 1 ]/text");
    EXPECT_EQ(query.GetErrorStringUTF8().substr(query.GetErrorStringUTF8().find(" --> ")),
              " --> i[ 1 ]/text");
    EXPECT_EQ(answerTo(query, "1"), "error 13: 1");
    EXPECT_EQ(answerTo(query, "/l/o"), "o#4");
    EXPECT_EQ(answerTo(query, "self::o"), "o#4");
}

struct Aftermath {
    const char* expression;
    const char* error;
    const char* held;  ///< behind the query, if the three elements i were there before
};

const Aftermath kAfterQueries[] = {
    {"self::i[1]", "", "i#1 i#2 i#3"},
    {"self::*[@id = 2]", "", "i#2"},
    {"/l/o", "", "o#4"},
    {"/", "", "/"},
    {"q", "error 2: q", "nothing"},
    {"/q", "error 2: q", "nothing"},
    {"i/", "error 14: i/", "nothing"},
    {"/i/", "error 14: i/", "nothing"},
    {"i[", "error 20: [", "nothing"},
    {"/i[", "error 20: [", "nothing"},
    {"'a", "error 19: 'a", "nothing"},
    {"", "error 5", "nothing"},
    {" \t", "error 5", "nothing"},
};

TEST_F(XPathTest, KeepsNoResultsWhenItFails) {
    for (const Aftermath& row : kAfterQueries) {
        SCOPED_TRACE(row.expression);
        XPath query = afterItems();
        query.GetValues(std::string(row.expression));
        EXPECT_EQ(errorOf(query), row.error);
        EXPECT_EQ(held(query), row.held);
    }
}

const Aftermath kAfterChecks[] = {
    {"q", "", "i#1 i#2 i#3"},
    {"self::i[9]", "", "i#1 i#2 i#3"},
    {"1 + 1", "", "i#1 i#2 i#3"},
    {"/l/o", "", "nothing"},
    {"//q", "", "nothing"},
    {"/ = 1", "", "nothing"},
    {"/", "", "i#1 i#2 i#3"},
    {" / ", "", "i#1 i#2 i#3"},
    {"i/", "error 14: i/", "nothing"},
    {"i[", "error 20: [", "nothing"},
    {"'a", "error 19: 'a", "nothing"},
    {"/i/", "error 14: i/", "i#1 i#2 i#3"},
    {"//", "error 4: //", "i#1 i#2 i#3"},
    {"/i[", "error 20: [", "i#1 i#2 i#3"},
    {"", "error 5", "i#1 i#2 i#3"},
    {" \t", "error 5", "i#1 i#2 i#3"},
};

// A relative expression takes the results away to start from, an absolute one puts others in their
// place when all is well: there are none, as nothing was selected.
TEST_F(XPathTest, ChangesItsResultsWhenItChecksAnExpression) {
    for (const Aftermath& row : kAfterChecks) {
        SCOPED_TRACE(row.expression);
        XPath query = afterItems();
        EXPECT_EQ(query.SyntaxOK(std::string(row.expression)), *row.error == '\0');
        EXPECT_EQ(errorOf(query), row.error);
        EXPECT_EQ(held(query), row.held);
    }
}

TEST_F(XPathTest, RefusesToCheckARelativeExpressionWithoutResults) {
    XPath query = afterItems();
    query.GetValues(std::string("/q"));
    EXPECT_FALSE(query.SyntaxOK(std::string("i")));
    EXPECT_EQ(errorOf(query), "error 13: i");
    EXPECT_TRUE(query.SyntaxOK(std::string("/i")));
    EXPECT_EQ(errorOf(query), "");
}

TEST_F(XPathTest, ChecksExpressionsBehindValuesToo) {
    for (const char* expression : {"a", "@a/b", "position()", "last() + a", "a[b]//c"}) {
        XPath query(document.get());
        EXPECT_EQ(answerTo(query, "1 + 1"), "2.000000");
        EXPECT_TRUE(query.SyntaxOK(std::string(expression))) << expression;
        EXPECT_EQ(query.GetValueUTF8(0), "2.000000");
        EXPECT_EQ(answerTo(query, expression), "error 26") << expression;
        EXPECT_EQ(query.GetNrOfResults(), 0U);
    }
}

struct BehindValue {
    const char* expression;
    const char* answer;     ///< when a value is the only result before
    const char* malformed;  ///< the verdict on how it is written
};

const BehindValue kBehindValues[] = {
    {"a/5", "error 26", "error 12: 5"},         {"a//", "error 26", "error 4: //"},
    {"a[5x]", "error 26", "error 9: 5x"},       {"a + 5x", "error 26", "error 9: 5x"},
    {"last() + 5x", "error 26", "error 9: 5x"}, {"a/", "error 14: a/", "error 14: a/"},
    {"5x + a", "error 9: 5x", "error 9: 5x"},
};

// A step cannot be taken from the value, so what stands behind it is not looked at.
TEST_F(XPathTest, MeetsAValueBeforeWhatStandsBehind) {
    for (const BehindValue& row : kBehindValues) {
        SCOPED_TRACE(row.expression);
        XPath query(document.get());
        query.GetValues(std::string("1"));
        XPath unseen = query;
        EXPECT_EQ(answerTo(query, row.expression), row.answer);
        EXPECT_FALSE(unseen.SyntaxOK(std::string(row.expression)));
        EXPECT_EQ(errorOf(unseen), row.malformed);
    }
}

TEST_F(XPathTest, ForgetsTheErrorOfTheQueryBefore) {
    XPath query(document.get());
    EXPECT_EQ(answerTo(query, "/l/q/w/e"), "error 2: e");
    EXPECT_EQ(answerTo(query, "/l/q"), "error 2: q");
    EXPECT_EQ(answerTo(query, "/l/o"), "o#4");
    EXPECT_EQ(errorOf(query), "");
    EXPECT_FALSE(query.SyntaxOK(std::string("/l/")));
    EXPECT_TRUE(query.SyntaxOK(std::string("/l")));
    EXPECT_EQ(errorOf(query), "");
}

TEST_F(XPathTest, GivesTheFirstOfManyResults) {
    XPath query(document.get());
    EXPECT_EQ(query.GetValueUTF8("/l/i"), "x");
    EXPECT_EQ(query.GetNrOfResults(), 3U);
    EXPECT_EQ(query.GetValueUTF8("@id"), "1");
    EXPECT_EQ(query.GetValueUTF8("/l/q"), "");
    EXPECT_EQ(errorOf(query), "error 2: q");
    EXPECT_EQ(query.GetValueUTF8("/l/"), "");
    EXPECT_EQ(errorOf(query), "error 14: l/");
}

TEST_F(XPathTest, GivesNoValueWithoutResultsOrError) {
    XPath query(document.get());
    EXPECT_EQ(query.GetValueUTF8("/l/q + /l"), "");
    EXPECT_EQ(errorOf(query), "");
    EXPECT_EQ(query.GetNrOfResults(), 0U);
}

TEST_F(XPathTest, TakesUtf16AsItTakesUtf8) {
    XPath query(document.get());
    EXPECT_EQ(query.GetValues(Uni16String(L"/l/i")), 3U);
    EXPECT_EQ(query.GetValue(Uni16String(L"@id"), -1), L"1");
    EXPECT_EQ(query.GetValue(1), L"2");
    EXPECT_TRUE(query.SyntaxOK(Uni16String(L"a[1]")));
    EXPECT_FALSE(query.SyntaxOK(Uni16String(L"a[1")));
    EXPECT_EQ(query.GetErrorDetail(), L"[1");
}

TEST_F(XPathTest, CopiesShareNothingButTheDocument) {
    XPath query = afterItems();
    query.SyntaxOK(std::string("/l/"));
    XPath copy = query;
    XPath assigned(nullptr);
    assigned = query;
    EXPECT_EQ(answerTo(query, "/l/o"), "o#4");
    for (XPath* other : {&copy, &assigned}) {
        EXPECT_EQ(errorOf(*other), "error 14: l/");
        EXPECT_EQ(held(*other), "i#1 i#2 i#3");
        EXPECT_EQ(answerTo(*other, "text"), "\"x\" \"y\"");
    }
}

TEST_F(XPathTest, MovesLeaveAnEmptyQueryBehind) {
    XPath query = afterItems();
    query.SyntaxOK(std::string("/l/"));
    XPath moved = std::move(query);
    XPath assigned(nullptr);
    EXPECT_EQ(held(moved), "i#1 i#2 i#3");
    EXPECT_EQ(errorOf(moved), "error 14: l/");
    assigned = std::move(moved);
    EXPECT_EQ(held(assigned), "i#1 i#2 i#3");
    EXPECT_EQ(errorOf(assigned), "error 14: l/");
    // NOLINTNEXTLINE(bugprone-use-after-move): what is left is specified
    for (XPath* left : {&query, &moved}) {
        EXPECT_EQ(left->GetNrOfResults(), 0U);
        EXPECT_EQ(errorOf(*left), "");
        EXPECT_EQ(left->GetValues(std::string("/")), 0U);
        *left = assigned;
        EXPECT_EQ(held(*left), "i#1 i#2 i#3");
    }
}

TEST_F(XPathTest, SurvivesAssignmentToItself) {
    XPath query = afterItems();
    query.SyntaxOK(std::string("/l/"));
    XPath& same = query;
    query = same;
    EXPECT_EQ(held(query), "i#1 i#2 i#3");
    query = std::move(same);
    EXPECT_EQ(held(query), "i#1 i#2 i#3");
    EXPECT_EQ(errorOf(query), "error 14: l/");
}

TEST_F(XPathTest, RunsItsOwnErrorDetail) {
    XPath query = afterItems();
    EXPECT_EQ(answerTo(query, "self::*[@id = 7]"), "error 2: *[@id = 7]");
    query.GetValues(std::string("/l"));
    query.SyntaxOK(std::string("i[1]x"));
    EXPECT_EQ(query.GetErrorDetail(), L"[1]");
    query.GetValues(query.GetErrorDetail());
    EXPECT_EQ(errorOf(query), "error 13: [1]");
    query.GetValues(std::string("/l/i/texts"));
    EXPECT_FALSE(query.SyntaxOK(query.GetErrorDetail()));
    EXPECT_EQ(errorOf(query), "error 13: texts");
    EXPECT_TRUE(query.GetValue(query.GetErrorDetail(), -1).empty());
    EXPECT_EQ(errorOf(query), "error 13: texts");
}

TEST_F(XPathTest, RunsItsOwnResult) {
    XPath query(document.get());
    EXPECT_EQ(answerTo(query, "'/l/o'"), "'/l/o'");
    EXPECT_EQ(query.GetValues(query.GetResults()[0].text), 1U);
    EXPECT_EQ(held(query), "o#4");
    EXPECT_EQ(answerTo(query, "'1 + 1'"), "'1 + 1'");
    EXPECT_EQ(query.GetValue(query.GetResults()[0].text, -1), L"2.000000");
    EXPECT_EQ(answerTo(query, "'5x'"), "'5x'");
    EXPECT_FALSE(query.SyntaxOK(query.GetResults()[0].text));
    EXPECT_EQ(errorOf(query), "error 9: 5x");
}

TEST_F(XPathTest, SeesChangesOfTheTree) {
    XPath query(document.get());
    EXPECT_EQ(answerTo(query, "/l/i[last()]/@id"), "@id=3");
    document->getRoot()->addElement("i", std::string("z"))->setAttribute("id", std::string("5"));
    delete document->getRoot()->extractChild(0);
    EXPECT_EQ(answerTo(query, "/l/i[last()]/@id"), "@id=5");
    EXPECT_EQ(answerTo(query, "/l/i[1]/@id"), "@id=2");
}

Xml::Element* numberedElement() {
    auto* element = new Xml::Element("n");
    element->setAttribute("id", "1");
    return element;
}

struct Arrival {
    const char* name;
    void (*bring)(Xml::Element& into);  ///< an element n#1, into one that holds only text
};

const Arrival kArrivals[] = {
    {"added", [](Xml::Element& into) { into.addChild(numberedElement()); }},
    {"added with a text",
     [](Xml::Element& into) { into.addElement("n", "x")->setAttribute("id", "1"); }},
    {"inserted", [](Xml::Element& into) { into.insertChild(into.getChild(0), numberedElement()); }},
    {"copied",
     [](Xml::Element& into) {
         Xml::Element other("o");
         other.addChild(numberedElement());
         into = other;
     }},
    {"moved",
     [](Xml::Element& into) {
         Xml::Element other("o");
         other.addChild(numberedElement());
         into = std::move(other);
     }},
    {"with an element around it",
     [](Xml::Element& into) {
         Xml::Element other("o");
         other.addChild(numberedElement());
         into.addChild(other.clone());
     }},
};

TEST_F(XPathTest, FindsElementsHoweverTheyCameIntoTheTree) {
    for (const Arrival& arrival : kArrivals) {
        SCOPED_TRACE(arrival.name);
        const auto changed = xpath::parsed("<l><i>x</i></l>");
        arrival.bring(*changed->getRoot()->getChild(0)->toElement());
        XPath query(changed.get());
        EXPECT_EQ(answerTo(query, "//n"), "n#1");
    }
}

}  // namespace
