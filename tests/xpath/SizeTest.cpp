#include <gtest/gtest.h>

#include <cstddef>
#include <memory>
#include <string>
#include <utility>

#include "VexXml/Dom.h"
#include "VexXml/XPath.h"
#include "support/Dump.h"
#include "xpath/Queries.h"

// Trees and expressions as large as they may get, in a thread whose stack would not hold a frame
// for each level. Nothing is timed: whatever cost grows with the square of the size would not end.

namespace {

using Xml::XPath;

constexpr int kDepth = 1'000'000;
constexpr unsigned long kWidth = 100'000;

std::string repeated(const std::string& piece, int count) {
    std::string all;
    for (int i = 0; i < count; ++i) all += piece;
    return all;
}

std::string repeated(const std::string& head, int count, const std::string& tail) {
    return repeated(head, count) + repeated(tail, count);
}

struct Count {
    const char* expression;
    unsigned long results;
};

/// What the queries select from the results of another.
template <std::size_t N>
void expectCounts(Xml::Document& document, const std::string& from, const Count (&counts)[N]) {
    XPath start(&document);
    start.GetValues(from);
    for (const Count& count : counts) {
        SCOPED_TRACE(from + " and then " + count.expression);
        XPath query = start;
        EXPECT_EQ(query.GetValues(count.expression), count.results);
        const bool hasFound = count.results > 0;
        EXPECT_EQ(query.GetErrorCode(), hasFound ? XPath::NoError : XPath::NodeNotFound);
    }
}

/// The chain, the last element of which has an attribute and a text.
Xml::Document deepDocument() {
    Xml::Element* bottom = support::makeChain(kDepth);
    Xml::Document document(bottom);
    while (Xml::Element* child = bottom->getElement(0)) bottom = child;
    bottom->setAttribute("x", std::string("1"));
    bottom->addChild(new Xml::CharData(std::string("t")));
    return document;
}

const Count kFromTop[] = {
    {"child::*", 1},
    {"descendant::*", kDepth + 1},
    {"descendant-or-self::*", kDepth + 2},
    {"//@x", 1},
    {"//e//e", kDepth - 1},
    {"//e[text]", 1},
    {"//e[500000]", 1},
    {"//e[last()]", 1},
    {"//e[e][position() < 11]", 10},
};

const Count kFromBottom[] = {
    {"self::*", 1},
    {"child::*", 1},
    {"attribute::*", 1},
    {"parent::*", 1},
    {"ancestor::*", kDepth},
    {"ancestor::e[1]", 1},
    {"ancestor-or-self::*", kDepth + 1},
    {"ancestor-or-self::e[last()]", 1},
    {"@x/ancestor::*", kDepth + 1},
    {"text/ancestor::e", kDepth},
    {"descendant::*", 1},
    {"descendant-or-self::*", 2},
    {"following::*", 0},
    {"preceding::*", 0},
    {"text/preceding::*", 0},
    {"following-sibling::*", 0},
    {"preceding-sibling::*", 0},
};

// From many at once, which all find the same nodes above and below themselves.
constexpr int kMany = 100'000;

const Count kFromMany[] = {
    {"self::*", kMany},          {"child::*", kMany},
    {"attribute::*", 1},         {"parent::*", kMany},
    {"ancestor::*", kDepth},     {"ancestor-or-self::*", kDepth + 1},
    {"descendant::*", kMany},    {"descendant-or-self::*", kMany + 1},
    {"following::*", 0},         {"preceding::*", 0},
    {"following-sibling::*", 0}, {"preceding-sibling::*", 0},
};

TEST(XPathSize, TreesMayBeAMillionDeep) {
    support::runOnSmallStack([] {
        Xml::Document document = deepDocument();
        expectCounts(document, "/", kFromTop);
    });
}

TEST(XPathSize, QueriesMayStartAMillionDeep) {
    support::runOnSmallStack([] {
        Xml::Document document = deepDocument();
        expectCounts(document, "//e[@x]", kFromBottom);
        XPath down(&document);
        EXPECT_EQ(down.GetValues("//e[@x]"), 1U);
        XPath up(down.GetResults()[0].node);
        EXPECT_EQ(up.GetValues("/e"), 1U);
    });
}

TEST(XPathSize, DeepNodesMayBeFoundFromMany) {
    support::runOnSmallStack([] {
        Xml::Document document = deepDocument();
        expectCounts(document, "//e[position() > 900000]", kFromMany);
    });
}

/// A root with `kWidth` pairs of a text and an element, which has an attribute and a child.
Xml::Document wideDocument() {
    auto* root = new Xml::Element("r");
    Xml::Document document(root);
    for (unsigned long i = 0; i < kWidth; ++i) {
        root->addChild(new Xml::CharData(std::string("t")));
        auto* element = new Xml::Element("a");
        element->setAttribute("x", std::to_string(i));
        element->addChild(new Xml::Element("b"));
        root->addChild(element);
    }
    return document;
}

const Count kFromAllChildren[] = {
    {"self::*", 2 * kWidth},
    {"child::*", kWidth},
    {"attribute::*", kWidth},
    {"parent::*", 1},
    {"ancestor::*", 2},
    {"ancestor-or-self::*", 2 * kWidth + 2},
    {"descendant::*", kWidth},
    {"descendant-or-self::*", 3 * kWidth},
    {"following::*", 3 * kWidth - 1},
    {"preceding::*", 3 * kWidth - 2},
    {"following-sibling::*", 2 * kWidth - 1},
    {"preceding-sibling::*", 2 * kWidth - 1},
    {"b/following::*", 0},
    {"b/preceding::*", 3 * kWidth},
    {"@x/preceding::*", 3 * kWidth},
};

// Each with a predicate that looks at every one of them.
const Count kWidePredicates[] = {
    {"/r/a[b]", kWidth},
    {"/r/a[position() > 50000]", kWidth - 50'000},
    {"/r/a[last()]", 1},
    {"/r/a[@x = 7]", 1},
    {"/r/a[@x = /r/a/@x]", kWidth},
    {"/r/a[/r/a/@x < @x]", kWidth - 1},
    {"/r/a[following-sibling::a]", kWidth - 1},
    {"/r/a[preceding-sibling::a]", kWidth - 1},
    {"/r/a[following::b]", kWidth - 1},
    {"/r/a[preceding::b]", kWidth - 1},
    {"/r/a[following-sibling::q]", 0},
    {"/r/a[preceding-sibling::q]", 0},
    {"/r/a[following::q]", 0},
    {"/r/a[preceding::q]", 0},
    {"/r/a[parent::r]", kWidth},
    {"/r/a[ancestor::r]", kWidth},
    {"/r/*/preceding-sibling::a[last()]", 1},
};

TEST(XPathSize, ElementsMayHaveManyChildren) {
    Xml::Document document = wideDocument();
    expectCounts(document, "/r/*", kFromAllChildren);
    expectCounts(document, "/", kWidePredicates);
}

// Runs the expression on `<e x="1"><e>t</e></e>`, and the syntax check with it.
std::string answerOnSmallTree(const std::string& expression) {
    const auto document = xpath::parsed("<e x='1'><e>t</e></e>");
    XPath unseen(document.get());
    XPath query(document.get());
    const bool isWellFormed = unseen.SyntaxOK(expression);
    std::string answer = xpath::answerTo(query, expression);
    const bool isRefused =
        query.GetErrorCode() != XPath::NoError && query.GetErrorCode() != XPath::NodeNotFound;
    EXPECT_EQ(isWellFormed, !isRefused);
    return answer;
}

TEST(XPathSize, ExpressionsMayHaveManySteps) {
    support::runOnSmallStack([] {
        EXPECT_EQ(answerOnSmallTree("/e" + repeated("/self::e", 10'000)), "e");
        EXPECT_EQ(answerOnSmallTree("/e" + repeated("/q", 10'000)), "error 2: q");
        EXPECT_EQ(answerOnSmallTree("/e" + repeated("/child::e/parent::e", 10'000)), "e");
        EXPECT_EQ(answerOnSmallTree("/e" + repeated("//self::e", 10'000)), "e e");
        EXPECT_EQ(answerOnSmallTree(repeated("/", 100'000) + "text"), "\"t\"");
        EXPECT_EQ(answerOnSmallTree("/e" + repeated("/self::e", 10'000) + "/"),
                  "error 14: self::e/");
    });
}

TEST(XPathSize, ExpressionsMayHaveManyPredicates) {
    support::runOnSmallStack([] {
        EXPECT_EQ(answerOnSmallTree("/e" + repeated("[@x]", 10'000)), "e");
        EXPECT_EQ(answerOnSmallTree("/e" + repeated("[1 = 1]", 10'000) + "[2]/q"), "error 2: q");
        EXPECT_EQ(answerOnSmallTree("/e" + repeated("[1]", 10'000) + "x"), "error 10: [1]");
    });
}

TEST(XPathSize, PredicatesMayNestDeeply) {
    support::runOnSmallStack([] {
        EXPECT_EQ(answerOnSmallTree("/e" + repeated("[self::e", 10'000, "]")), "e");
        EXPECT_EQ(answerOnSmallTree("/e" + repeated("[/e", 10'000, "]")), "e");
        EXPECT_EQ(answerOnSmallTree("/e" + repeated("[1 = ", 10'000, "]")), "error 12");
        EXPECT_EQ(
            answerOnSmallTree("/e" + repeated("[self::e", 10'000) + "[]" + repeated("]", 10'000)),
            "error 5");
        EXPECT_EQ(answerOnSmallTree(repeated("[", 100'000)), "error 20: " + repeated("[", 100'000));
        EXPECT_EQ(answerOnSmallTree("e" + repeated("]", 100'000)),
                  "error 12: e" + repeated("]", 100'000));
    });
}

TEST(XPathSize, ExpressionsMayHaveManyOperators) {
    support::runOnSmallStack([] {
        EXPECT_EQ(answerOnSmallTree("1" + repeated(" + 1", 100'000)), "100001.000000");
        EXPECT_EQ(answerOnSmallTree("1" + repeated(" * 1", 100'000)), "1.000000");
        EXPECT_EQ(answerOnSmallTree("1" + repeated(" = 1", 100'000)), "true");
        EXPECT_EQ(answerOnSmallTree("0" + repeated(" lt 1", 100'000)), "false");
        EXPECT_EQ(answerOnSmallTree("0" + repeated(" + 1 * 1 - 1 div 1", 25'000)), "0.000000");
        EXPECT_EQ(answerOnSmallTree("e" + repeated(" + /e/@x", 20'000)), "20000.000000");
        EXPECT_EQ(answerOnSmallTree("e[@x" + repeated(" + @x", 20'000) + " = 20001]"), "e");
        EXPECT_EQ(answerOnSmallTree("1" + repeated("=", 100'000)), "error 12");
    });
}

TEST(XPathSize, TokensMayBeLong) {
    support::runOnSmallStack([] {
        const std::string text = repeated("abcdefgh", 125'000);
        EXPECT_EQ(answerOnSmallTree("'" + text + "'"), "'" + text + "'");
        EXPECT_EQ(answerOnSmallTree("'" + text), "error 19: '" + text);
        EXPECT_EQ(answerOnSmallTree("/e['" + text + "' = '" + text + "']"), "e");
        EXPECT_EQ(answerOnSmallTree(text), "error 2: " + text);
        EXPECT_EQ(answerOnSmallTree(text + "::a"), "error 15: " + text + "::a");
        EXPECT_EQ(answerOnSmallTree(repeated(" ", 1'000'000) + "e"), "e");
        EXPECT_EQ(answerOnSmallTree("0." + repeated("0", 1'000'000) + "1 + 1"), "1.000000");
        EXPECT_EQ(answerOnSmallTree(repeated("9", 1'000'000)), "inf");
        EXPECT_EQ(answerOnSmallTree(repeated("'a'", 100'000)),
                  "error 6: " + repeated("'a'", 100'000));
    });
}

}  // namespace
