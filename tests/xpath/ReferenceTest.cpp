#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "VexXml/XPath.h"
#include "support/QueryTwins.h"
#include "support/ReferenceXPath.h"
#include "support/Samples.h"
#include "support/ShortTexts.h"
#include "xpath/Expressions.h"

namespace {

using support::forEachText;
using support::ReferenceXPath;
using support::Sample;
using support::utf16;
using xpath::Expressions;

/// `support::QueryTwins` from a node of a sample, whose differences are failures.
class Twins {
public:
    Twins(const Sample& sample, std::size_t contextNode)
        : mTwins(sample, *sample.nodes()[contextNode]) {}

    /// False when they differ, which is also reported.
    bool agreeOn(const std::string& expression) {
        EXPECT_EQ(mTwins.differenceOn(expression), "");
        return !testing::Test::HasFailure();
    }

private:
    support::QueryTwins mTwins;
};

const Sample& anySample(Expressions& choice) {
    return *support::samples()[choice.below(support::samples().size())];
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
    return Twins(*support::samples()[2], 0).agreeOn(expression);
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
    for (const auto& sample : support::samples()) {
        for (std::size_t node = 0; node < sample->nodes().size(); ++node) {
            for (const std::string& step : steps) {
                if (!Twins(*sample, node).agreeOn(step)) return;
            }
        }
    }
}

// Within one path, where positions count over all of them, and in the next query.
TEST(XPathAgreesWithTheReference, OnEveryStepFromAllNodesAtOnce) {
    for (const auto& sample : support::samples()) {
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
                    if (!agreeFromManyNodes(*support::samples()[sample],
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
        support::QueryTwins twins(*support::samples()[0], lonely);
        EXPECT_EQ(twins.differenceOn(expression), "");
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
