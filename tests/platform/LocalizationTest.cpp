#include "VexSys/Localization.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

namespace {

using VexSys::Uni16String;
using VexSys::Localization::GetString;
using VexSys::Localization::InstallTranslator;

std::string textFor(const char* key, const char* fallback = "") {
    return VexSys::Uni16CharToUTF8(GetString(key, "XPath", fallback));
}

// The keys of the texts about queries, in the order of the error codes.
const char* const kKeys[] = {
    "xpat/xerr/NONE",
    "xpat/xerr/INDEX OUT OF BOUNDS",
    "xpat/xerr/NODE NOT FOUND",
    "xpat/xerr/NODE CONTAINS NO DATA",
    "xpat/xerr/DOUBLE SLASH AT THE END NOT ALLOWED",
    "xpat/xerr/NO XPATH SPECIFIED",
    "xpat/xerr/ILLEGAL CHAR AFTER ATTRIBUTEVALUE",
    "xpat/xerr/ILLEGAL CHAR AFTER FUNCTION",
    "xpat/xerr/ILLEGAL CHAR AFTER KINDTEST",
    "xpat/xerr/ILLEGAL CHAR IN NUMBER",
    "xpat/xerr/ILLEGAL CHAR AFTER PREDICATE",
    "xpat/xerr/NO VALID ATTRIBUTE NAME",
    "xpat/xerr/NO VALID NAME OR TEST",
    "xpat/xerr/RELATIVE XPATH EXPRESSION NOT ALLOWED WITHOUT CONTEXT NODES",
    "xpat/xerr/SLASH AT END NOT ALLOWED",
    "xpat/xerr/NO VALID AXIS",
    "xpat/xerr/NO VALID INITIAL AXIS",
    "xpat/xerr/NO VALID COMPARISON OPERATOR",
    "xpat/xerr/MISSING QUOTE BEFORE ATTRIBUTE VALUE",
    "xpat/xerr/MISSING QUOTE AFTER ATTRIBUTE VALUE",
    "xpat/xerr/MISSING CLOSING BRACKET AFTER PREDICATE",
    "xpat/xerr/MISSING CLOSING PARENTHESE AFTER FUNCTION",
    "xpat/xerr/MISSING OPENING PARENTHESE AFTER FUNCTION",
    "xpat/xerr/MISSING CLOSING PARENTHESE AFTER KIND TEST",
    "xpat/xerr/MISSING OPENING PARENTHESE AFTER KIND TEST",
    "xpat/xerr/FIRST LAST OR NUMBER AFTER POSITION EXPECTED",
    "xpat/xerr/CONTEXT IS NOT A NODE",
};

TEST(Localization, HasATextOfItsOwnForEveryKey) {
    std::set<std::string> texts;
    for (const char* key : kKeys) {
        const std::string text = textFor(key);
        EXPECT_NE(text, key);
        EXPECT_TRUE(texts.insert(text).second) << key << " has a text twice: " << text;
    }
    EXPECT_EQ(texts.size(), 27U);
}

TEST(Localization, SpeaksEnglish) {
    EXPECT_EQ(textFor("xpat/xerr/NONE"), "no error");
    EXPECT_EQ(textFor("xpat/xerr/NODE NOT FOUND"), "no such node was found");
    EXPECT_EQ(textFor("xpat/xerr/MISSING CLOSING BRACKET AFTER PREDICATE"),
              "a closing bracket is missing after a predicate");
    EXPECT_EQ(textFor("xpat/xerr/CONTEXT IS NOT A NODE"),
              "a step can only start from nodes, not from a value");
}

TEST(Localization, KeepsTheFallbackForUnknownKeys) {
    EXPECT_EQ(textFor("unknown", "\xC3\xA4hnlich"), "\xC3\xA4hnlich");
    EXPECT_EQ(textFor("xpat/xerr/NONE", "fallback"), "no error");
}

TEST(Localization, GivesAnUnknownKeyItselfWithoutAFallback) {
    for (const char* key : {"unknown", "", "xpat/xerr/none", "xpat/xerr/NON", "xpat/xerr/NONE "}) {
        EXPECT_EQ(textFor(key), key);
    }
}

// Knows one key, and says which module asked.
Uni16String translate(const char* key, const char* module) {
    if (std::string(key) != "xpat/xerr/NONE") return {};
    return VexSys::UTF8ToUni16Char(module) + Uni16String(L": kein Fehler");
}

class TranslatorTest : public ::testing::Test {
protected:
    TranslatorTest() { InstallTranslator(&translate); }
    ~TranslatorTest() override { InstallTranslator(nullptr); }
};

TEST_F(TranslatorTest, IsAskedFirst) {
    EXPECT_EQ(textFor("xpat/xerr/NONE", "fallback"), "XPath: kein Fehler");
}

TEST_F(TranslatorTest, LeavesToEnglishWhatItDeclines) {
    EXPECT_EQ(textFor("xpat/xerr/NODE NOT FOUND"), "no such node was found");
    EXPECT_EQ(textFor("unknown", "fallback"), "fallback");
}

TEST_F(TranslatorTest, IsAskedForAnyModule) {
    EXPECT_EQ(VexSys::Uni16CharToUTF8(GetString("xpat/xerr/NONE", "Menu", "")),
              "Menu: kein Fehler");
}

TEST_F(TranslatorTest, IsGivenBackByItsSuccessor) {
    const auto other = [](const char*, const char*) { return Uni16String(L"other"); };
    EXPECT_EQ(InstallTranslator(other), &translate);
    EXPECT_EQ(textFor("xpat/xerr/NONE"), "other");
    EXPECT_EQ(InstallTranslator(&translate), static_cast<VexSys::Localization::Translator>(other));
}

TEST_F(TranslatorTest, IsRemovedByNull) {
    EXPECT_EQ(InstallTranslator(nullptr), &translate);
    EXPECT_EQ(textFor("xpat/xerr/NONE"), "no error");
    EXPECT_EQ(InstallTranslator(nullptr), nullptr);
}

}  // namespace
