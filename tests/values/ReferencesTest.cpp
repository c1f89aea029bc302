#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

#include "VexXml/Dtd.h"
#include "VexXml/Values.h"
#include "support/Diagnostics.h"

namespace {

using Xml::DataHolder;

std::string replaced(const std::string& text, const Xml::Dtd* dtd = nullptr) {
    DataHolder holder(text);
    return Xml::replaceEntities(holder, dtd);
}

std::string escaped(const std::string& text) {
    DataHolder holder(text);
    return Xml::insertStdEntities(holder);
}

/// A DTD that declares entities: some of their own, one with a predefined name, one with a number.
class ReferencesIntoADtd : public ::testing::Test {
protected:
    ReferencesIntoADtd() {
        mDtd.setEntity("copy", "(c) 2001");
        mDtd.setEntity("nested", "&copy;&lt;");
        mDtd.setEntity("amp", "never used");
        mDtd.setEntity("#0", "zero");
        mDtd.setEntity("empty", "");
        mDtd.setEntity("tag", "<");
    }

    Xml::Dtd mDtd{"doc"};
};

// A text with references, and what they stand for without a DTD.
const std::pair<std::string, std::string> kReplacements[] = {
    {"", ""},
    {"plain", "plain"},
    {"a &lt; b &amp;&amp; c", "a < b && c"},
    {"&lt;&gt;&amp;&quot;&apos;", "<>&\"'"},
    {"&#65;", "A"},
    {"&#x41;", "A"},
    {"&#x6a;&#x6A;", "jj"},
    {"&#X41;", "&#X41;"},
    {"&#321;", "A"},
    {"&#-191;", "A"},
    {"&# 65;", "A"},
    {"&#+65;", "A"},
    {"&#65x;", "A"},
    {"&#000000065;", "A"},
    {"&#0000000065;", "A"},
    {"&#65", "A"},
    {"&#x0x41;", "A"},
    {"&#0;", "&#0;"},
    {"&#256;", "&#256;"},
    {"&#zz;", "&#zz;"},
    {"&#x;", "&#x;"},
    {"&#;", "&#;"},
    {"&unknown;", "&unknown;"},
    {"&LT;", "&LT;"},
    {"&lt ;", "&lt ;"},
    {"&;", "&;"},
    {"&amp;lt;", "&lt;"},
    {"a&b", "a&b;"},
    {"a&", "a&;"},
    {"a&lt", "a<"},
    {"a&apos", "a'"},
    {"a&apo", "a&apo;"},
    {"&lt;a&am;&gt;", "<a&am;>"},
    {"&ampx;&lt;", "&ampx;<"},
    {"&&lt;", "&&lt;"},
    {"&a&lt;b;", "&a&lt;b;"},
    {"x;y", "x;y"},
    {std::string("\0&lt;\0", 6), std::string("\0<\0", 3)},
    {"\xE4&gt;\xFF", "\xE4>\xFF"},
};

TEST(References, AreReplacedByWhatTheyStandFor) {
    for (const auto& [text, expected] : kReplacements) {
        EXPECT_EQ(replaced(text), expected) << text;
    }
}

// Short texts are put together in another way than long ones.
TEST(References, AreReplacedInTextsOfAnyLength) {
    for (std::size_t length = 0; length < 600; ++length) {
        const std::string padding(length, 'x');
        EXPECT_EQ(replaced(padding + "&lt;&#65;x"), padding + "<Ax") << length;
        EXPECT_EQ(replaced(padding + "&#x41;&a"), padding + "A&a;") << length;
    }
    const std::string padding(600, 'x');
    for (const auto& [text, expected] : kReplacements) {
        EXPECT_EQ(replaced(padding + text), padding + expected) << text;
    }
}

// The limits of 32-bit numbers; what lies beyond counts as 0, which is no character.
const std::pair<std::string, std::string> kLimits[] = {
    {"&#2147483647;", "\xFF"},
    {"&#2147483648;", "&#2147483648;"},
    {"&#-2147483647;", "\x01"},
    {"&#-2147483649;", "&#-2147483649;"},
    {"&#4294967361;", "&#4294967361;"},
    {"&#x7FFFFFFF;", "\xFF"},
    {"&#x80000041;", "&#x80000041;"},
    {"&#99999999999999999999999999;", "&#99999999999999999999999999;"},
    {"&#x10000000000000041;", "&#x10000000000000041;"},
};

TEST(References, WhoseNumberIsTooLargeStay) {
    for (const auto& [text, expected] : kLimits) EXPECT_EQ(replaced(text), expected) << text;
}

TEST(References, GiveBackTheHolderThatTheyWereReplacedIn) {
    DataHolder with("&lt;");
    DataHolder without("x");
    EXPECT_EQ(&Xml::replaceEntities(with, nullptr), &with);
    EXPECT_EQ(&Xml::replaceEntities(without, nullptr), &without);
    EXPECT_EQ(&Xml::insertStdEntities(with), &with);
    EXPECT_EQ(&Xml::insertStdEntities(without), &without);
}

TEST_F(ReferencesIntoADtd, AreReplacedByDeclaredValues) {
    EXPECT_EQ(replaced("&copy;!", &mDtd), "(c) 2001!");
    EXPECT_EQ(replaced("a&empty;b", &mDtd), "ab");
    EXPECT_EQ(replaced("&unknown;", &mDtd), "&unknown;");
}

TEST_F(ReferencesIntoADtd, AreNotSearchedForInReplacements) {
    EXPECT_EQ(replaced("&nested;", &mDtd), "&copy;&lt;");
}

TEST_F(ReferencesIntoADtd, PreferPredefinedEntities) { EXPECT_EQ(replaced("&amp;", &mDtd), "&"); }

TEST_F(ReferencesIntoADtd, FallBackToTheDtdForTheNumberZero) {
    EXPECT_EQ(replaced("&#0;", &mDtd), "zero");
    EXPECT_EQ(replaced("&#00;", &mDtd), "&#00;");
}

TEST_F(ReferencesIntoADtd, ReportNothingWhenTheyAreUnknown) {
    support::Diagnostics diagnostics;
    replaced("&unknown;", &mDtd);
    Xml::getEntityName("unknown", &mDtd);
    EXPECT_EQ(diagnostics.take(), std::vector<std::string>{});
}

// A text, and the same with its special characters as references.
const std::pair<std::string, std::string> kEscapes[] = {
    {"", ""},
    {"plain", "plain"},
    {"<a href='x'>", "&lt;a href=&apos;x&apos;&gt;"},
    {"&<>\"'", "&amp;&lt;&gt;&quot;&apos;"},
    {"&lt;", "&amp;lt;"},
    {"a&", "a&amp;"},
    {"\xE4\xFF", "\xE4\xFF"},
    {std::string("\0<\0", 3), std::string("\0&lt;\0", 6)},
};

TEST(SpecialCharacters, BecomeReferences) {
    for (const auto& [text, expected] : kEscapes) EXPECT_EQ(escaped(text), expected) << text;
}

TEST(SpecialCharacters, AreFiveOfAllBytes) {
    std::string changed;
    for (int byte = 0; byte < 256; ++byte) {
        const std::string text(1, static_cast<char>(static_cast<unsigned char>(byte)));
        if (escaped(text) != text) changed += text;
        EXPECT_EQ(replaced(escaped(text)), text);
    }
    EXPECT_EQ(changed, "\"&'<>");
}

TEST(SpecialCharacters, AreReferencesInXmlStrings) {
    const DataHolder text("a\"b");
    EXPECT_EQ(Xml::toXmlString(text), "\"a&quot;b\"");
    EXPECT_EQ(text, DataHolder("a\"b"));
    EXPECT_EQ(Xml::toXmlString(DataHolder()), "\"\"");
}

TEST(EntityValues, OfUnknownNamesAreTheirReferences) {
    EXPECT_EQ(Xml::getEntityValue("lt", nullptr), DataHolder("<"));
    EXPECT_EQ(Xml::getEntityValue("#65", nullptr), DataHolder("A"));
    EXPECT_EQ(Xml::getEntityValue("nix", nullptr), DataHolder("&nix;"));
    EXPECT_EQ(Xml::getEntityValue("#0", nullptr), DataHolder("&#0;"));
    EXPECT_EQ(Xml::getEntityValue("", nullptr), DataHolder("&;"));
}

TEST_F(ReferencesIntoADtd, GiveTheValuesOfDeclaredNames) {
    EXPECT_EQ(Xml::getEntityValue("copy", &mDtd), DataHolder("(c) 2001"));
    EXPECT_EQ(Xml::getEntityValue("amp", &mDtd), DataHolder("&"));
    EXPECT_EQ(Xml::getEntityValue("#0", &mDtd), DataHolder("zero"));
    EXPECT_EQ(Xml::getEntityValue("nix", &mDtd), DataHolder("&nix;"));
}

// A special character, and its name.
const std::pair<const char*, const char*> kPredefined[] = {
    {"&", "amp"}, {"<", "lt"}, {">", "gt"}, {"\"", "quot"}, {"'", "apos"},
};

TEST(EntityNames, OfSpecialCharactersAreKnown) {
    for (const auto& [character, name] : kPredefined) {
        SCOPED_TRACE(name);
        EXPECT_EQ(Xml::getEntityName(character, nullptr), name);
        EXPECT_TRUE(Xml::isEntityValue(character, nullptr));
        EXPECT_TRUE(Xml::isEntityName(name, nullptr));
        EXPECT_EQ(Xml::getEntityValue(name, nullptr), DataHolder(character));
    }
}

TEST(EntityNames, OfOtherTextsAreTheseTexts) {
    for (const char* text : {"", "ab", "A", "&&", "&amp;"}) {
        SCOPED_TRACE(text);
        EXPECT_EQ(Xml::getEntityName(text, nullptr), text);
        EXPECT_FALSE(Xml::isEntityValue(text, nullptr));
    }
}

TEST_F(ReferencesIntoADtd, GiveTheNamesOfDeclaredValues) {
    EXPECT_EQ(Xml::getEntityName("(c) 2001", &mDtd), "copy");
    EXPECT_EQ(Xml::getEntityName("<", &mDtd), "lt");
    EXPECT_EQ(Xml::getEntityName("ab", &mDtd), "ab");
    EXPECT_TRUE(Xml::isEntityValue("(c) 2001", &mDtd));
    EXPECT_TRUE(Xml::isEntityValue("", &mDtd));
    EXPECT_TRUE(Xml::isEntityValue("<", &mDtd));
    EXPECT_FALSE(Xml::isEntityValue("ab", &mDtd));
}

// A name, and whether it counts as one that can be expanded; numbers are not looked at.
const std::pair<const char*, bool> kEntityNames[] = {
    {"#zz", true}, {"#0", true}, {"#", false}, {"", false}, {"nix", false}, {"LT", false},
};

TEST(EntityNames, BeginWithANumberSignOrArePredefined) {
    for (const auto& [name, isName] : kEntityNames) {
        EXPECT_EQ(Xml::isEntityName(name, nullptr), isName) << name;
    }
}

TEST_F(ReferencesIntoADtd, KnowDeclaredNames) {
    EXPECT_TRUE(Xml::isEntityName("copy", &mDtd));
    EXPECT_TRUE(Xml::isEntityName("amp", &mDtd));
    EXPECT_FALSE(Xml::isEntityName("nix", &mDtd));
}

}  // namespace
