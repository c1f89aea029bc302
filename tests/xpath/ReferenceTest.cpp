#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "VexXml/XPath.h"
#include "support/ReferenceXPath.h"
#include "support/ShortTexts.h"
#include "xpath/Expressions.h"
#include "xpath/Samples.h"

namespace {

using support::forEachText;
using support::ReferenceXPath;
using xpath::Expressions;
using xpath::Sample;

VexSys::Uni16String utf16(const std::string& text) {
    return VexSys::UTF8ToUni16Char(text.data(), text.size());
}

std::string utf8(const VexSys::Uni16String& text) {
    return testing::PrintToString(VexSys::Uni16CharToUTF8(text));
}

/// What stands in a result, in front of its texts.
std::string kindOf(const Xml::XPath::ResultItem& item, const Sample& sample) {
    switch (item.kind) {
        case Xml::XPath::Node:
            return sample.nameOf(item.node);
        case Xml::XPath::String:
            return "string";
        case Xml::XPath::Number:
            return "number";
        case Xml::XPath::Boolean:
            return "boolean";
    }
    return "?";
}

/// The results, each as a whole and as words, with the error that asking for each left.
template <class Query>
std::string resultsOf(Query query, const Sample& sample) {
    std::string text;
    for (std::size_t index = 0; index < query.GetResults().size(); ++index) {
        const Xml::XPath::ResultItem item = query.GetResults()[index];
        text += "\n  " + kindOf(item, sample) + " tagged " + std::to_string(item.tag);
        for (const long word : {-1L, 0L, 1L}) {
            text += ' ' + utf8(query.GetValue(index, word));
            text += ' ' + std::to_string(query.GetErrorCode());
        }
    }
    query.GetValue(query.GetResults().size(), -1);
    return text + "\n  behind them " + std::to_string(query.GetErrorCode());
}

/// All that can be seen of a query behind one expression.
template <class Query>
std::string outcomeOf(const Query& query, unsigned long answer, const Sample& sample) {
    return "answer " + std::to_string(answer) + ", error " + std::to_string(query.GetErrorCode()) +
           ' ' + utf8(query.GetErrorDetail()) + resultsOf(query, sample);
}

template <class Query>
std::string outcomeOfSyntaxOK(Query query, const std::string& expression, const Sample& sample) {
    const bool answer = query.SyntaxOK(utf16(expression));
    return outcomeOf(query, answer ? 1 : 0, sample);
}

template <class Query>
std::string outcomeOfGetValues(Query& query, const std::string& expression, const Sample& sample) {
    const unsigned long answer = query.GetValues(utf16(expression));
    return outcomeOf(query, answer, sample);
}

/// Whether the error of `GetValues` tells that the expression cannot be read, and not only that
/// nothing can be found by it.
bool isMalformed(const Xml::XPath& query) {
    switch (query.GetErrorCode()) {
        case Xml::XPath::NoError:
        case Xml::XPath::NodeNotFound:
        case Xml::XPath::NoContextNodes:
        case Xml::XPath::ContextIsNotANode:
            return false;
        default:
            return true;
    }
}

/// The library and the reference, asked the same, one expression after the other.
class Twins {
public:
    Twins(const Sample& sample, std::size_t contextNode)
        : mSample(sample),
          mQuery(sample.nodes()[contextNode]),
          mReference(sample.nodes()[contextNode]),
          mStory(sample.text() + "\nfrom " + sample.nameOf(sample.nodes()[contextNode])) {}

    /// False when they differ, which is also reported.
    bool agreeOn(const std::string& expression) {
        mStory += "\n" + testing::PrintToString(expression);
        const Xml::XPath before = mQuery;
        EXPECT_EQ(outcomeOfSyntaxOK(mQuery, expression, mSample),
                  outcomeOfSyntaxOK(mReference, expression, mSample))
            << "SyntaxOK: " << mStory;
        EXPECT_EQ(outcomeOfGetValues(mQuery, expression, mSample),
                  outcomeOfGetValues(mReference, expression, mSample))
            << mStory;
        checkSyntax(before, expression);
        return !testing::Test::HasFailure();
    }

private:
    // An expression is well-formed or not whatever there is to be found by it. Whether it is cannot
    // be told where another error came first.
    void checkSyntax(Xml::XPath before, const std::string& expression) const {
        const auto error = mQuery.GetErrorCode();
        if (error == Xml::XPath::NoContextNodes || error == Xml::XPath::ContextIsNotANode) return;
        EXPECT_EQ(before.SyntaxOK(utf16(expression)), !isMalformed(mQuery)) << mStory;
        if (!isMalformed(mQuery)) return;
        EXPECT_EQ(before.GetErrorCode(), error) << mStory;
        EXPECT_EQ(utf8(before.GetErrorDetail()), utf8(mQuery.GetErrorDetail())) << mStory;
    }

    const Sample& mSample;
    Xml::XPath mQuery;
    ReferenceXPath mReference;
    std::string mStory;
};

const Sample& anySample(Expressions& choice) {
    return *xpath::samples()[choice.below(xpath::samples().size())];
}

/// Half of the time the document.
std::size_t anyNodeOf(const Sample& sample, Expressions& choice) {
    return choice.below(2) == 0 ? 0 : choice.below(sample.nodes().size());
}

/// Asks `times` times for what `expression` gives, from any node or from many.
template <class MakeExpression>
void agreeOnChains(unsigned seed, int times, const MakeExpression& expression) {
    Expressions choice(seed);
    for (int time = 0; time < times; ++time) {
        const Sample& sample = anySample(choice);
        Twins twins(sample, anyNodeOf(sample, choice));
        if (choice.below(4) == 0) twins.agreeOn("//*");
        for (std::size_t length = 1 + choice.below(3); length > 0; --length) {
            if (!twins.agreeOn(expression(choice))) return;
        }
    }
}

bool agreeOnMixedContent(const std::string& expression) {
    return Twins(*xpath::samples()[2], 0).agreeOn(expression);
}

TEST(XPathAgreesWithTheReference, OnWellFormedExpressions) {
    agreeOnChains(1, 4000, [](Expressions& choice) { return choice.wellFormed(); });
}

TEST(XPathAgreesWithTheReference, OnMangledExpressions) {
    agreeOnChains(2, 6000, [](Expressions& choice) { return choice.mangled(choice.wellFormed()); });
}

TEST(XPathAgreesWithTheReference, OnEveryPrefix) {
    Expressions choice(3);
    for (int time = 0; time < 100; ++time) {
        const std::string whole = choice.wellFormed();
        for (std::size_t size = 0; size <= whole.size(); ++size) {
            if (!agreeOnMixedContent(whole.substr(0, size))) return;
        }
    }
}

TEST(XPathAgreesWithTheReference, OnEveryShortText) {
    forEachText({"a", "/", "[", "]", "'", "@", "*", "::", " ", "=", "1", "(", ".", "self", "last()",
                 "position", "text", "n:", "+"},
                3, agreeOnMixedContent);
}

// Brackets that close more than was opened, and slashes behind them.
TEST(XPathAgreesWithTheReference, OnEveryOrderOfBracketsQuotesAndSlashes) {
    forEachText({"a", "/", "[", "]", "'", "1"}, 5, agreeOnMixedContent);
}

TEST(XPathAgreesWithTheReference, OnWhiteSpaceAroundSigns) {
    forEachText({" ", "\t", "*", "-", "div", "1", "a", "="}, 4, agreeOnMixedContent);
}

/// Each axis with each test, and some with positions.
std::vector<std::string> everyStep() {
    std::vector<std::string> steps;
    for (const std::string axis :
         {"", "@", "descendant::", "parent::", "ancestor::", "following-sibling::",
          "preceding-sibling::", "following::", "preceding::", "descendant-or-self::",
          "ancestor-or-self::", "self::", "self::node//"}) {
        for (const char* test :
             {"*", "b", "*:a", "*:b", "n:*", "element", "attribute", "text", "document-node",
              "*[2]", "*[last()]", "b[a]", "*[@x][2]", "*[b][@x='1'][1]", "*[1][@x]"}) {
            steps.push_back(axis + test);
        }
    }
    return steps;
}

TEST(XPathAgreesWithTheReference, OnEveryStepFromEveryNode) {
    const std::vector<std::string> steps = everyStep();
    for (const auto& sample : xpath::samples()) {
        for (std::size_t node = 0; node < sample->nodes().size(); ++node) {
            for (const std::string& step : steps) {
                if (!Twins(*sample, node).agreeOn(step)) return;
            }
        }
    }
}

// Within one path, where positions count over all of them, and in the next query.
TEST(XPathAgreesWithTheReference, OnEveryStepFromAllNodesAtOnce) {
    for (const auto& sample : xpath::samples()) {
        for (const std::string& step : everyStep()) {
            Twins twins(*sample, 0);
            if (!twins.agreeOn("//*/" + step) || !twins.agreeOn("//*") || !twins.agreeOn(step)) {
                return;
            }
        }
    }
}

// Trees large enough for what is remembered from one context node to the next to matter.
TEST(XPathAgreesWithTheReference, OnTreesByChance) {
    Expressions choice(5);
    const std::vector<std::string> steps = everyStep();
    for (int time = 0; time < 100; ++time) {
        const Sample sample(choice.document());
        for (const std::string start : {"//*/", "//b/", "//b[2]/", "//@x/", "//text/"}) {
            const std::string& step = steps[choice.below(steps.size())];
            const std::string& next = steps[choice.below(steps.size())];
            Twins twins(sample, choice.below(sample.nodes().size()));
            if (!twins.agreeOn(next) || !twins.agreeOn(start + step) || !twins.agreeOn(next))
                return;
            if (!twins.agreeOn(choice.wellFormed())) return;
        }
    }
}

/// Inside a predicate over all elements, and from all elements.
bool agreeFromManyNodes(const Sample& sample, const std::string& expression) {
    Twins twins(sample, 0);
    return twins.agreeOn("//*[" + expression + "]") && twins.agreeOn("//*") &&
           twins.agreeOn(expression);
}

TEST(XPathAgreesWithTheReference, OnEveryPairOfOperandsOverManyNodes) {
    const std::vector<std::string> operands = {
        "0", "1",  "2.",   "''",   "'1'", "'nan'", "'x y'", "last()", "position()",
        "b", "@x", "text", "/zzz", "zzz", "//@x",  "/",     "@x=1",   "c"};
    for (const std::size_t sample : {2U, 4U}) {
        for (const std::string& left : operands) {
            for (const std::string& right : operands) {
                for (const std::string op : {"=", "!=", " lt ", " div "}) {
                    if (!agreeFromManyNodes(*xpath::samples()[sample],
                                            std::string(left).append(op).append(right)))
                        return;
                }
            }
        }
    }
}

TEST(XPathAgreesWithTheReference, OutsideAnyDocument) {
    Xml::Element lonely("a");
    for (const std::string expression : {"a", "/", "/a", "", "self::a", "a["}) {
        Xml::XPath query(&lonely);
        ReferenceXPath reference(&lonely);
        const Sample& none = *xpath::samples()[0];
        EXPECT_EQ(outcomeOfGetValues(query, expression, none),
                  outcomeOfGetValues(reference, expression, none))
            << expression;
        EXPECT_EQ(outcomeOfSyntaxOK(query, expression, none),
                  outcomeOfSyntaxOK(reference, expression, none))
            << expression;
    }
}

// Or the tests above would compare nothing but errors.
TEST(ExpressionsByChance, AreWellFormedAndFindSomethingUnlessMangled) {
    Expressions choice(4);
    int found = 0;
    int mangledAndWrong = 0;
    for (int time = 0; time < 2000; ++time) {
        const std::string expression = choice.wellFormed();
        ReferenceXPath reference(anySample(choice).nodes()[0]);
        EXPECT_TRUE(reference.SyntaxOK(utf16(expression))) << testing::PrintToString(expression);
        found += reference.GetValues(utf16(expression)) > 0 ? 1 : 0;
        mangledAndWrong += reference.SyntaxOK(utf16(choice.mangled(expression))) ? 0 : 1;
    }
    EXPECT_GT(found, 600);
    EXPECT_GT(mangledAndWrong, 600);
}

}  // namespace
