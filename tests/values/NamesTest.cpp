#include <gtest/gtest.h>

#include <string>
#include <utility>

#include "VexXml/Values.h"

namespace {

const std::string kDigits = "0123456789";
const std::string kLetters = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";

/// All bytes that are in the class, in ascending order.
template <typename IsMember>
std::string membersOf(IsMember isMember) {
    std::string members;
    for (int byte = 0; byte < 256; ++byte) {
        const char c = static_cast<char>(static_cast<unsigned char>(byte));
        if (isMember(c)) members += c;
    }
    return members;
}

TEST(CharacterClasses, WhiteSpaceIsFourBytes) { EXPECT_EQ(membersOf(Xml::isWhite), "\t\n\r "); }

TEST(CharacterClasses, DigitsAreTheTenOfAscii) { EXPECT_EQ(membersOf(Xml::isDigit), kDigits); }

TEST(CharacterClasses, LettersAreThoseOfAscii) { EXPECT_EQ(membersOf(Xml::isLetter), kLetters); }

TEST(CharacterClasses, NameCharactersAreLettersDigitsAndFourMarks) {
    const std::string upper = kLetters.substr(0, 26);
    const std::string lower = kLetters.substr(26);
    EXPECT_EQ(membersOf(Xml::isNameChar), "-." + kDigits + ":" + upper + "_" + lower);
}

TEST(Names, BeginWithALetterAnUnderscoreOrAColon) {
    const auto isWholeName = [](char c) { return Xml::isName(std::string(1, c)); };
    const std::string upper = kLetters.substr(0, 26);
    const std::string lower = kLetters.substr(26);
    EXPECT_EQ(membersOf(isWholeName), ":" + upper + "_" + lower);
}

TEST(Names, ContinueWithNameCharacters) {
    for (const std::size_t place : {1U, 2U, 5U}) {
        SCOPED_TRACE(place);
        const auto isNameWith = [place](char c) {
            std::string name = "abcdef";
            name[place] = c;
            return Xml::isName(name);
        };
        EXPECT_EQ(membersOf(isNameWith), membersOf(Xml::isNameChar));
    }
}

// A text, and whether it is a name.
const std::pair<std::string, bool> kNames[] = {
    {"", false},
    {"x", true},
    {"_", true},
    {":a", true},
    {"1a", false},
    {"-a", false},
    {"a-b.c_d:e", true},
    {"a b", false},
    {"a ", false},
    {" a", false},
    {std::string("a\0", 2), false},
    {"\xC3\xA4", false},
};

TEST(Names, AreToldTheSameFromBytesAndFromStrings) {
    for (const auto& [text, isName] : kNames) {
        SCOPED_TRACE(text);
        EXPECT_EQ(Xml::isName(text), isName);
        EXPECT_EQ(Xml::isName(text.data(), static_cast<int>(text.size())), isName);
    }
}

TEST(Names, LookAtTheGivenNumberOfBytesOnly) {
    EXPECT_TRUE(Xml::isName("ab c", 2));
    EXPECT_FALSE(Xml::isName("ab c", 3));
}

TEST(Names, HaveAtLeastOneByte) {
    EXPECT_FALSE(Xml::isName("abc", 0));
    EXPECT_FALSE(Xml::isName("abc", -1));
    EXPECT_FALSE(Xml::isName(nullptr, 0));
}

}  // namespace
