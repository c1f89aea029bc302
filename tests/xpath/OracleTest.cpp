#include <gtest/gtest.h>
#include <libxml/parser.h>
#include <libxml/xpath.h>

#include <cstdio>
#include <map>
#include <memory>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "VexXml/XPath.h"
#include "support/Samples.h"

// Queries against another implementation of XPath, where both promise the same answer. Left out, as
// ours answers otherwise on purpose:
// - kind tests with parentheses, which fail here (`text()`), and with them `.` and `..`; bare ones
//   are compared with the standard's form, so `text` with `text()` and `*`, which takes text as
//   well, with `node()`;
// - `following` and `preceding`, which look at the node's siblings alone or at too much;
// - positions among nodes that come from several context nodes: they count over all of these, so
//   they are compared with the standard's `(path)[1]`, and only where both are in document order;
// - the order of results, which is the order of finding: all node-sets are compared as sets;
// - texts of elements with children, which are not joined here;
// - what is not a number (0 here) and numbers with a sign or exponent that the standard refuses,
//   missing operands of arithmetic, and the order of two texts, which goes by their characters
//   here;
// - booleans compared with anything else, which are 1 or 0 here;
// - `and`, `or`, `|`, variables and all functions but `position` and `last`, which do not exist.
namespace {

using support::Sample;

/// One query in both notations.
struct Both {
    std::string ours;
    std::string standard;

    // NOLINTBEGIN(google-explicit-constructor): most pieces are written alike
    Both(const char* text) : ours(text), standard(text) {}
    Both(const std::string& text) : ours(text), standard(text) {}
    // NOLINTEND(google-explicit-constructor)
    Both(const std::string& oursOnly, const std::string& standardOnly)
        : ours(oursOnly), standard(standardOnly) {}
};

Both operator+(const Both& left, const Both& right) {
    return {left.ours + right.ours, left.standard + right.standard};
}

/// Numbers the nodes of a tree of libxml2 as `Sample` numbers those of ours.
class OracleTree {
public:
    explicit OracleTree(const std::string& text)
        : mDocument(xmlReadMemory(text.data(), static_cast<int>(text.size()), nullptr, nullptr, 0),
                    xmlFreeDoc) {
        number(reinterpret_cast<xmlNode*>(mDocument.get()));
    }

    /// The answer to a query that begins at the node of that number.
    std::string answer(const std::string& expression, std::size_t from) const {
        const std::unique_ptr<xmlXPathContext, decltype(&xmlXPathFreeContext)> context(
            xmlXPathNewContext(mDocument.get()), xmlXPathFreeContext);
        context->node = mNodes[from];
        const std::unique_ptr<xmlXPathObject, decltype(&xmlXPathFreeObject)> result(
            xmlXPathEval(reinterpret_cast<const xmlChar*>(expression.c_str()), context.get()),
            xmlXPathFreeObject);
        return result == nullptr ? "malformed" : shown(*result);
    }

    std::size_t size() const { return mNodes.size(); }

private:
    // NOLINTNEXTLINE(misc-no-recursion): the documents are small
    void number(xmlNode* node) {
        mNumbers[node] = mNodes.size();
        mNodes.push_back(node);
        if (node->type == XML_ELEMENT_NODE) {
            for (xmlAttr* at = node->properties; at != nullptr; at = at->next) {
                mNumbers[reinterpret_cast<xmlNode*>(at)] = mNodes.size();
                mNodes.push_back(reinterpret_cast<xmlNode*>(at));
            }
        }
        if (node->type == XML_TEXT_NODE) return;
        for (xmlNode* child = node->children; child != nullptr; child = child->next) number(child);
    }

    std::string shown(const xmlXPathObject& result) const {
        if (result.type == XPATH_BOOLEAN) return result.boolval != 0 ? "true" : "false";
        if (result.type == XPATH_NUMBER) return std::to_string(result.floatval);
        std::set<std::size_t> found;
        const xmlNodeSet* const nodes = result.nodesetval;
        for (int i = 0; nodes != nullptr && i < nodes->nodeNr; ++i) {
            found.insert(mNumbers.at(nodes->nodeTab[i]));
        }
        return testing::PrintToString(found);
    }

    std::unique_ptr<xmlDoc, decltype(&xmlFreeDoc)> mDocument;
    std::vector<xmlNode*> mNodes;
    std::map<const xmlNode*, std::size_t> mNumbers;
};

/// The results of a query of ours, as `OracleTree` shows them.
std::string answerOf(const Xml::XPath& query, const Sample& sample) {
    std::set<std::size_t> found;
    for (const Xml::XPath::ResultItem& item : query.GetResults()) {
        if (item.kind == Xml::XPath::Boolean) return item.flag ? "true" : "false";
        if (item.kind == Xml::XPath::Number) return std::to_string(item.number);
        found.insert(sample.numberOf(item.node));
    }
    const bool isMalformed = query.GetErrorCode() != Xml::XPath::NoError &&
                             query.GetErrorCode() != Xml::XPath::NodeNotFound;
    return isMalformed ? "malformed" : testing::PrintToString(found);
}

// Attributes in the order of their names, as ours are numbered; the elements v and w hold a number.
const char* const kDocuments[] = {
    "<r x='1' y='2'/>",
    "<r x='2'><a x='1'><v>1</v><w>2.5</w></a><a y='1'>text<b x='2'/>more</a><b><v>2</v></b></r>",
    "<r x='1'><a><a x='1'><a><v>1</v></a><v>2</v></a><v>3</v></a><b><a><v>10</v></a>x</b></r>",
    "<r x='1'>x<v>1</v><v>2</v>y<w>2</w><a s='x' x='2' "
    "y='2'/><w>3</w><v>1</v>z<b><b><b/></b></b></r>",
    "<r x='3'><b x='1'><v>1</v></b><b x='2'><v>-2</v><v>1.50</v></b><b s='y' "
    "x='3'><a><w>3</w></a></b>"
    "<a s='x'/></r>",
};

/// What both know, by chance, the same in every run.
class CommonExpressions {
public:
    Both query() {
        switch (below(8)) {
            case 0:
                return number() + anyOf({" = ", " != ", " < ", " <= ", " > ", " >= "}) + number();
            case 1:
                return number() + " + " + term();
            case 2:
                return Both("/r") + condition();
            case 3:
            case 4:
                return position() + rest();
            default:
                return Both("/r") + rest();
        }
    }

    /// A path from a single node, not from the document.
    Both relativeQuery() { return relativePath(2); }

private:
    std::size_t below(std::size_t limit) { return mRandom() % limit; }
    bool oneIn(std::size_t count) { return below(count) == 0; }
    Both anyOf(const std::vector<Both>& choices) { return choices[below(choices.size())]; }

    // NOLINTBEGIN(misc-no-recursion): as deep as predicates are to be nested
    Both rest() { return oneIn(5) ? Both("") : anyOf({"/", "/", "//"}) + relativePath(2); }

    Both relativePath(int depth) {
        if (oneIn(6)) return attribute();
        Both path = step(depth);
        while (oneIn(3)) path = path + anyOf({"/", "//"}) + step(depth);
        return oneIn(8) ? path + "/" + attribute() : path;
    }

    Both attribute() { return anyOf({"@x", "@y", "@s", "@*", "attribute::x", {"@node", "@*"}}); }

    Both step(int depth) {
        Both text = axis() + test();
        while (depth > 0 && oneIn(4)) text = text + predicate(depth - 1);
        return text;
    }

    Both axis() {
        if (oneIn(2)) return "";
        return anyOf(
            {"child::", "descendant::", "parent::", "ancestor::", "following-sibling::",
             "preceding-sibling::", "descendant-or-self::", "ancestor-or-self::", "self::"});
    }

    Both test() {
        if (oneIn(2)) return anyOf({"a", "a", "b", "b", "v", "w"});
        return anyOf({{"*", "node()"}, {"node", "node()"}, {"element", "*"}, {"text", "text()"}});
    }

    Both predicate(int depth) {
        return oneIn(2) ? condition() : Both("[") + relativePath(depth) + "]";
    }
    // NOLINTEND(misc-no-recursion)

    Both condition() {
        const Both equality = anyOf({"=", "!="});
        const Both order = anyOf({"=", "!=", "<", "<=", ">", ">="});
        switch (below(5)) {
            case 0:
                return Both("[") + value() + order + number() + "]";
            case 1:
                return Both("[") + number() + order + value() + "]";
            case 2:
                return Both("[") + value() + equality + value() + "]";
            case 3:
                return Both("[") + anyOf({"@s", {"text", "text()"}}) + equality +
                       anyOf({"'x'", "\"y\"", "'more'"}) + "]";
            default:
                return Both("[") + value() + anyOf({" + ", " - ", " * "}) + number() +
                       anyOf({"=", "<", "<=", ">", ">="}) + number() + "]";
        }
    }

    /// Nodes whose text is a number.
    Both value() {
        return anyOf({"@x",
                      "@x",
                      "@y",
                      "v",
                      "v[1]",
                      "v[2]",
                      "w",
                      "a/v",
                      "descendant::v",
                      "/r/@x",
                      "/r/a/v",
                      "v/ancestor::a/@x",
                      {"v/text", "v/text()"}});
    }

    Both number() {
        Both sum = term();
        while (oneIn(4)) sum = sum + anyOf({" + ", " - "}) + term();
        return sum;
    }

    Both term() {
        Both product = anyOf({"1", "2", "3", "0.5", "10", "'1'", "'2.5'", "/r/@x"});
        while (oneIn(5)) product = product + anyOf({" * 2", " * /r/@x", " div 4", " div 0.5"});
        return product;
    }

    /// One or more nodes by their place among what `path` finds in document order.
    Both position() {
        const Both path = Both("/r") + anyOf({"", "/a", "/b"}) + "/" + test();
        const Both place = anyOf({"[1]", "[2]", "[3]", "[last()]", "[position()=2]",
                                  "[position()<3]", "[position() = last() - 1]", "[last() > 1]"});
        Both found = {path.ours + place.ours, "(" + path.standard + ")" + place.standard};
        if (oneIn(2) || place.ours != "[1]") return found;
        return found +
               anyOf({"/ancestor::", "/preceding-sibling::", "/following-sibling::",
                      "/ancestor-or-self::", "/descendant::"}) +
               test() + anyOf({"[1]", "[2]", "[last()]", "[position()>1]"});
    }

    std::mt19937 mRandom{1};
};

/// One document in both libraries.
class Twins {
public:
    explicit Twins(const char* text) : mSample(text), mOracle(text) {}

    std::size_t size() const { return mOracle.size(); }

    /// False when they differ, which is also reported.
    bool agreeOn(const Both& expression, std::size_t from = 0) const {
        Xml::XPath query(mSample.nodes()[from]);
        query.GetValues(expression.ours);
        const std::string expected = mOracle.answer(expression.standard, from);
        EXPECT_EQ(answerOf(query, mSample), expected)
            << expression.ours << " against " << expression.standard << " from "
            << mSample.nameOf(mSample.nodes()[from]) << " of " << mSample.text();
        return !testing::Test::HasFailure();
    }

    /// What one query finds from what another found is what the joined path finds.
    bool agreeOnChain(const Both& first, const Both& second) const {
        Xml::XPath query(mSample.nodes()[0]);
        if (query.GetValues(first.ours) == 0) return true;
        query.GetValues(second.ours);
        const std::string joined = first.standard + "/" + second.standard;
        EXPECT_EQ(answerOf(query, mSample), mOracle.answer(joined, 0))
            << first.ours << ", then " << second.ours << " in " << mSample.text();
        return !testing::Test::HasFailure();
    }

private:
    Sample mSample;
    OracleTree mOracle;
};

const Both kQueries[] = {
    "/r",
    "/r/a/b",
    "/r//v",
    "//r",
    "//v",
    "//@x",
    "/descendant::v",
    "/r/@x",
    "/r/a[@x]",
    "/r/a[@x='1']",
    "/r/b[@x=2]/v",
    "/r/b[v=1][@x]",
    "//a[v]",
    "//a[descendant::v>1]",
    "/r[1 + 2 * 3 = 7]",
    "/r[8 div 4 div 2 = 1]",
    "/r[7 - 2 - 1 = 4]",
    "/r['10' = 10.0]",
    "/r[@x = /r/a/@x]",
    "//a[@x=/r/@x]/v",
    "//v/ancestor::a",
    "//w/preceding-sibling::v",
    "//v[following-sibling::w]",
    {"/r/*", "/r/node()"},
    {"//text", "//text()"},
    {"/r/element[2]", "/r/*[2]"},
    {"//v/ancestor-or-self::element", "//v/ancestor-or-self::*"},
    {"/r/a[1]/ancestor::*[last()]", "/r/a[1]/ancestor::node()[last()]"},
    "2 * 3 + 4",
    "/r/@x = 1",
};

TEST(XPathAgreesWithAnotherLibrary, OnATableOfQueries) {
    for (const char* text : kDocuments) {
        const Twins twins(text);
        for (const Both& expression : kQueries) EXPECT_TRUE(twins.agreeOn(expression));
    }
}

TEST(XPathAgreesWithAnotherLibrary, OnQueriesByChance) {
    CommonExpressions expressions;
    for (const char* text : kDocuments) {
        const Twins twins(text);
        for (int time = 0; time < 600; ++time) {
            if (!twins.agreeOn(expressions.query())) return;
        }
    }
}

TEST(XPathAgreesWithAnotherLibrary, OnPathsFromEveryNode) {
    CommonExpressions expressions;
    for (const char* text : kDocuments) {
        const Twins twins(text);
        for (std::size_t node = 1; node < twins.size(); ++node) {
            for (int time = 0; time < 40; ++time) {
                if (!twins.agreeOn(expressions.relativeQuery(), node)) return;
            }
        }
    }
}

TEST(XPathAgreesWithAnotherLibrary, OnQueriesOneBehindTheOther) {
    CommonExpressions expressions;
    for (const char* text : kDocuments) {
        const Twins twins(text);
        for (int time = 0; time < 300; ++time) {
            const Both first = Both("/r//") + expressions.relativeQuery();
            if (!twins.agreeOnChain(first, expressions.relativeQuery())) return;
        }
    }
}

}  // namespace
