#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "VexXml/Dom.h"
#include "VexXml/XPath.h"
#include "xpath/Queries.h"

// An expression that is asked again must give what it gave the first time.

namespace {

using Xml::XPath;
using xpath::answerTo;
using xpath::parsed;

unsigned long countOf(Xml::Document& document, const std::string& expression) {
    return XPath(&document).GetValues(expression);
}

TEST(RepeatedQueries, AreAskedAboutEachDocumentAnew) {
    const auto one = parsed("<l><i/></l>");
    const auto two = parsed("<l><i/><i/></l>");
    for (int round = 0; round < 2; ++round) {
        EXPECT_EQ(countOf(*one, "/l/i"), 1U);
        EXPECT_EQ(countOf(*two, "/l/i"), 2U);
    }
}

TEST(RepeatedQueries, FindNamesThatNoDocumentHadTheFirstTime) {
    const auto without = parsed("<l/>");
    EXPECT_EQ(countOf(*without, "/l/notYetThere[@neitherThis]"), 0U);
    const auto with = parsed("<l><notYetThere neitherThis='1'/></l>");
    EXPECT_EQ(countOf(*with, "/l/notYetThere[@neitherThis]"), 1U);
}

TEST(RepeatedQueries, GiveTheSameWhenThereAreManyOfThem) {
    constexpr unsigned long kMany = 40;
    const auto document = parsed("<l><i/><i/><i/></l>");
    for (int round = 0; round < 3; ++round) {
        for (unsigned long i = 1; i <= kMany; ++i) {
            const unsigned long expected = i <= 3 ? 1 : 0;
            EXPECT_EQ(countOf(*document, "/l/i[" + std::to_string(i) + "]"), expected) << i;
        }
    }
}

TEST(RepeatedQueries, TellAgainWhatIsToBlame) {
    const auto document = parsed("<l/>");
    for (const char* expression : {"/l/absent", "/l[", "/l[2]"}) {
        XPath first(document.get());
        EXPECT_EQ(first.GetValues(std::string(expression)), 0U);
        XPath second(document.get());
        EXPECT_EQ(second.GetValues(std::string(expression)), 0U);
        EXPECT_EQ(second.GetErrorCode(), first.GetErrorCode()) << expression;
        EXPECT_EQ(second.GetErrorStringUTF8(), first.GetErrorStringUTF8()) << expression;
        EXPECT_NE(second.GetErrorCode(), XPath::NoError) << expression;
    }
}

TEST(RepeatedQueries, AreRefusedForValues) {
    const auto document = parsed("<l><i/></l>");
    XPath fromNode(document.get());
    EXPECT_EQ(fromNode.GetValues(std::string("l")), 1U);
    XPath fromValue(document.get());
    EXPECT_EQ(fromValue.GetValues(std::string("'text'")), 1U);
    EXPECT_EQ(fromValue.GetValues(std::string("l")), 0U);
    EXPECT_EQ(fromValue.GetErrorCode(), XPath::ContextIsNotANode);
    EXPECT_EQ(countOf(*document, "l"), 1U);
}

TEST(RepeatedQueries, TellUnitsFromTheSameBytesInUTF8) {
    const auto document = parsed("<l/>");
    const VexSys::Uni16String units = L"/l";
    const std::string bytes(reinterpret_cast<const char*>(units.data()),
                            units.size() * sizeof(wchar_t));
    EXPECT_EQ(XPath(document.get()).GetValues(units), 1U);
    EXPECT_EQ(countOf(*document, bytes), 0U);
    EXPECT_EQ(XPath(document.get()).GetValues(units), 1U);
}

TEST(RepeatedQueries, AreTakenInEitherEncoding) {
    const auto document = parsed("<l><i/></l>");
    for (int round = 0; round < 2; ++round) {
        EXPECT_EQ(countOf(*document, "/l/i"), 1U);
        EXPECT_EQ(XPath(document.get()).GetValues(VexSys::Uni16String(L"/l/i")), 1U);
    }
}

// Asks the query that it is being selected by, about another document.
class AskingText : public Xml::CharData {
public:
    AskingText(Xml::Document& other, unsigned long& answer) : mOther(other), mAnswer(answer) {}

    bool isCharData() const override {
        mAnswer = countOf(mOther, "/l/text");
        return true;
    }

private:
    Xml::Document& mOther;
    unsigned long& mAnswer;
};

TEST(RepeatedQueries, MayBeAskedInsideOneAnother) {
    const auto other = parsed("<l>x<i/>y</l>");
    const auto document = parsed("<l/>");
    unsigned long inner = 0;
    document->getRoot()->addChild(new AskingText(*other, inner));
    for (int round = 0; round < 2; ++round) {
        inner = 0;
        EXPECT_EQ(countOf(*document, "/l/text"), 1U);
        EXPECT_EQ(inner, 2U);
    }
}

// Asks at the end of its thread.
class LateQuery {
public:
    LateQuery(Xml::Document& document, unsigned long& answer)
        : mDocument(document), mAnswer(answer) {}
    LateQuery(const LateQuery&) = delete;
    LateQuery& operator=(const LateQuery&) = delete;
    ~LateQuery() { mAnswer = countOf(mDocument, "/l/i"); }

private:
    Xml::Document& mDocument;
    unsigned long& mAnswer;
};

TEST(RepeatedQueries, MayBeAskedAtTheEndOfAThread) {
    const auto document = parsed("<l><i/></l>");
    unsigned long atTheEnd = 0;
    std::thread([&] {
        static thread_local LateQuery late(*document, atTheEnd);
        EXPECT_EQ(countOf(*document, "/l/i"), 1U);
    }).join();
    EXPECT_EQ(atTheEnd, 1U);
}

}  // namespace
