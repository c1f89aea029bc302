#include <gtest/gtest.h>

#include <memory>
#include <set>
#include <string>
#include <vector>

#include "VexSys/Localization.h"
#include "VexXml/Dom.h"
#include "VexXml/XPath.h"
#include "xpath/Queries.h"

namespace {

using VexSys::Uni16String;
using Xml::XPath;

struct Failure {
    std::vector<const char*> expressions;  ///< one after another; the last fails
    XPath::ErrorCode code;
    const char* key;
    const char* detail;  ///< null where the text shows none
};

// Every code that is ever set.
const Failure kFailures[] = {
    {{"/a"}, XPath::NoError, "xpat/xerr/NONE", nullptr},
    {{"/q"}, XPath::NodeNotFound, "xpat/xerr/NODE NOT FOUND", "q"},
    {{"/a//"}, XPath::DoubleSlashAtEnd, "xpat/xerr/DOUBLE SLASH AT THE END NOT ALLOWED", "//"},
    {{" \t\r\n"}, XPath::NoXPathSpecified, "xpat/xerr/NO XPATH SPECIFIED", nullptr},
    {{"a[]"}, XPath::NoXPathSpecified, "xpat/xerr/NO XPATH SPECIFIED", nullptr},
    {{"'b'c"},
     XPath::IllegalCharAfterLiteral,
     "xpat/xerr/ILLEGAL CHAR AFTER ATTRIBUTEVALUE",
     "'b'c"},
    {{"last()c"},
     XPath::IllegalCharAfterFunction,
     "xpat/xerr/ILLEGAL CHAR AFTER FUNCTION",
     "last()c"},
    {{"text()"},
     XPath::IllegalCharAfterKindTest,
     "xpat/xerr/ILLEGAL CHAR AFTER KINDTEST",
     "text()"},
    {{"1.2.3"}, XPath::IllegalCharInNumber, "xpat/xerr/ILLEGAL CHAR IN NUMBER", "1.2.3"},
    {{"a[1]x"}, XPath::IllegalCharAfterPredicate, "xpat/xerr/ILLEGAL CHAR AFTER PREDICATE", "[1]"},
    {{"@5"}, XPath::NoValidAttributeName, "xpat/xerr/NO VALID ATTRIBUTE NAME", "5"},
    {{"*x"}, XPath::NoValidNameOrTest, "xpat/xerr/NO VALID NAME OR TEST", "*x"},
    {{"/q", " a / b "},
     XPath::NoContextNodes,
     "xpat/xerr/RELATIVE XPATH EXPRESSION NOT ALLOWED WITHOUT CONTEXT NODES",
     "a/b"},
    {{"b/"}, XPath::SlashAtEnd, "xpat/xerr/SLASH AT END NOT ALLOWED", "b/"},
    {{"foo::bar"}, XPath::NoValidAxis, "xpat/xerr/NO VALID AXIS", "foo::bar"},
    {{"'b"}, XPath::MissingClosingQuote, "xpat/xerr/MISSING QUOTE AFTER ATTRIBUTE VALUE", "'b"},
    {{"a[1"},
     XPath::MissingClosingBracket,
     "xpat/xerr/MISSING CLOSING BRACKET AFTER PREDICATE",
     "[1"},
    {{"last(x"},
     XPath::MissingFunctionClose,
     "xpat/xerr/MISSING CLOSING PARENTHESE AFTER FUNCTION",
     "last(x"},
    {{"position"},
     XPath::MissingFunctionOpen,
     "xpat/xerr/MISSING OPENING PARENTHESE AFTER FUNCTION",
     "position"},
    {{"text(x"},
     XPath::MissingKindTestClose,
     "xpat/xerr/MISSING CLOSING PARENTHESE AFTER KIND TEST",
     "text(x"},
    {{"texts"},
     XPath::MissingKindTestOpen,
     "xpat/xerr/MISSING OPENING PARENTHESE AFTER KIND TEST",
     "texts"},
    {{"1", "a"}, XPath::ContextIsNotANode, "xpat/xerr/CONTEXT IS NOT A NODE", nullptr},
};

class QueryErrors : public ::testing::Test {
protected:
    XPath queryBehind(const std::vector<const char*>& expressions) const {
        XPath query(document.get());
        for (const char* expression : expressions) query.GetValues(std::string(expression));
        return query;
    }

    std::unique_ptr<Xml::Document> document = xpath::parsed("<a x='1'/>");
};

// The text for the key, and behind it the piece of the expression, if it is shown.
Uni16String expectedText(const char* key, const char* detail) {
    const Uni16String text = VexSys::Localization::GetString(key, "XPath", "");
    return detail == nullptr
               ? text
               : text + VexSys::UTF8ToUni16Char((" --> " + std::string(detail)).c_str());
}

TEST_F(QueryErrors, AreTextsOfTheirCodesWithThePiece) {
    for (const Failure& failure : kFailures) {
        SCOPED_TRACE(failure.expressions.back());
        const XPath query = queryBehind(failure.expressions);
        EXPECT_EQ(query.GetErrorCode(), failure.code);
        EXPECT_EQ(query.GetErrorString(), expectedText(failure.key, failure.detail));
        EXPECT_EQ(query.GetErrorStringUTF8(),
                  VexSys::Uni16CharToUTF8(expectedText(failure.key, failure.detail)));
    }
}

TEST_F(QueryErrors, SpeakEnglish) {
    EXPECT_EQ(queryBehind({"/a"}).GetErrorStringUTF8(), "no error");
    EXPECT_EQ(queryBehind({"/a/q[1]"}).GetErrorStringUTF8(), "no such node was found --> q");
    EXPECT_EQ(queryBehind({"/a[ 1"}).GetErrorStringUTF8(),
              "a closing bracket is missing after a predicate --> [ 1");
    EXPECT_EQ(queryBehind({"1", "b"}).GetErrorStringUTF8(),
              "a step can only start from nodes, not from a value");
}

// The index alone is at fault then; the detail of the failure before it stays out of the text.
TEST_F(QueryErrors, ShowNoPieceForAnIndex) {
    XPath query = queryBehind({"/a/q"});
    EXPECT_EQ(query.GetErrorDetail(), L"q");
    query.GetValue(0);
    EXPECT_EQ(query.GetErrorCode(), XPath::IndexOutOfBounds);
    EXPECT_EQ(query.GetErrorString(), expectedText("xpat/xerr/INDEX OUT OF BOUNDS", nullptr));
    XPath none = queryBehind({"/a/q", "/a"});
    none.GetValue(0);
    EXPECT_EQ(none.GetErrorString(), expectedText("xpat/xerr/NONE", nullptr));
}

TEST_F(QueryErrors, KeepThePieceInUtf16) {
    const XPath query = queryBehind({"\xF0\x9F\x98\x80"});
    EXPECT_EQ(query.GetErrorDetail(), (Uni16String{wchar_t{0xD83D}, wchar_t{0xDE00}}));
    EXPECT_EQ(query.GetErrorString(),
              expectedText("xpat/xerr/NO VALID NAME OR TEST", "\xF0\x9F\x98\x80"));
}

Uni16String translate(const char* key, const char* module) {
    return VexSys::UTF8ToUni16Char((std::string(module) + "/" + key + " \xC3\xA9").c_str());
}

TEST_F(QueryErrors, AreTranslated) {
    VexSys::Localization::InstallTranslator(&translate);
    EXPECT_EQ(queryBehind({"/a/"}).GetErrorStringUTF8(),
              "XPath/xpat/xerr/SLASH AT END NOT ALLOWED \xC3\xA9 --> a/");
    EXPECT_EQ(queryBehind({"a"}).GetErrorStringUTF8(), "XPath/xpat/xerr/NONE \xC3\xA9");
    VexSys::Localization::InstallTranslator(nullptr);
}

// The table above and the lines of queries set all codes but those that nothing sets.
TEST_F(QueryErrors, AreAllCovered) {
    std::set<XPath::ErrorCode> codes = {XPath::IndexOutOfBounds};
    for (const Failure& failure : kFailures) codes.insert(failure.code);
    for (const XPath::ErrorCode unused :
         {XPath::NodeContainsNoData, XPath::NoValidInitialAxis, XPath::NoValidComparison,
          XPath::MissingOpeningQuote, XPath::NoPositionArgument}) {
        EXPECT_TRUE(codes.insert(unused).second) << unused;
    }
    EXPECT_EQ(codes.size(), XPath::ContextIsNotANode + 1U);
}

}  // namespace
