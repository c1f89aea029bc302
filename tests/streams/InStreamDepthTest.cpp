#include <gtest/gtest.h>

#include <string>

#include "VexXml/Streams.h"
#include "support/Dump.h"
#include "support/PlainInStream.h"

namespace {

std::string repeated(const std::string& opener, int times) {
    std::string text;
    for (int i = 0; i < times; ++i) text += opener;
    return text;
}

/// One token: its size and end, where it leaves the stream, and the error text.
std::string tokenOf(const std::string& input) {
    support::PlainInStream in(input);
    std::string token;
    if (!in.getToken(token)) return "none";
    return "token of " + std::to_string(token.size()) + " at " + std::to_string(in.getPosition()) +
           " " + in.getErrorMessage();
}

constexpr int kDepth = 100000;

TEST(InStreamDepth, DeclarationsInsideOneAnotherNeedNoStack) {
    support::runOnSmallStack(
        [] { EXPECT_EQ(tokenOf(repeated("<!", kDepth)), "token of 2 at 2 \"[\" expected"); });
}

TEST(InStreamDepth, InstructionsInsideOneAnotherNeedNoStack) {
    support::runOnSmallStack(
        [] { EXPECT_EQ(tokenOf(repeated("<?", kDepth)), "token of 2 at 2 not a name: <?"); });
}

TEST(InStreamDepth, SectionsInsideOneAnotherNeedNoStack) {
    support::runOnSmallStack(
        [] { EXPECT_EQ(tokenOf(repeated("<![", kDepth)), "token of 3 at 3 \"CDATA\" expected"); });
}

// Each "<![" that ends what stands behind a "<![CDATA" passes there for the "[".
TEST(InStreamDepth, CDataOpeningsInsideOneAnotherNeedNoStack) {
    support::runOnSmallStack([] {
        const int size = 8 * kDepth - 5;
        EXPECT_EQ(tokenOf(repeated("<![CDATA", kDepth)), "token of " + std::to_string(size) +
                                                             " at " + std::to_string(size) +
                                                             " Unexpected end of stream");
    });
}

TEST(InStreamDepth, OpenersOfAllKindsInsideOneAnotherNeedNoStack) {
    support::runOnSmallStack([] {
        EXPECT_EQ(tokenOf(repeated("<!<?", kDepth)), "token of 2 at 2 \"[\" expected");
        EXPECT_EQ(tokenOf(repeated("<!\r\n<?<![CDATA", kDepth)), "token of 2 at 2 \"[\" expected");
    });
}

TEST(InStreamDepth, NamesBehindOpenersInsideOneAnotherAreReported) {
    support::runOnSmallStack([] {
        support::PlainInStream in(repeated("<?", kDepth));
        std::string name;
        EXPECT_FALSE(in.getName(name));
        EXPECT_EQ(in.getErrorMessage(), "not a name: <?");
    });
}

}  // namespace
