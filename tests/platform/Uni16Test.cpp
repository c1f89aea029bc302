#include "VexSys/Uni16.h"

#include <gtest/gtest.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <string>
#include <type_traits>
#include <utility>

namespace {

using VexSys::Uni16String;

static_assert(
    std::is_same_v<Uni16String, std::basic_string<wchar_t, VexSys::Core::uni16char_traits>>);

Uni16String decoded(const std::string& bytes) {
    return VexSys::UTF8ToUni16Char(bytes.data(), bytes.size());
}

std::string encoded(const Uni16String& text) { return VexSys::Uni16CharToUTF8(text); }

/// The code units in hexadecimal, with blanks between, so that a failure shows what was there.
std::string unitsOf(const Uni16String& text) {
    std::string units;
    for (const wchar_t unit : text) {
        std::array<char, 16> number{};
        std::snprintf(number.data(), number.size(), "%04X", static_cast<unsigned>(unit));
        units.append(units.empty() ? "" : " ").append(number.data());
    }
    return units;
}

int sign(int number) { return number < 0 ? -1 : number > 0 ? 1 : 0; }

// A text in UTF-8 and its code units.
struct Text {
    std::string bytes;
    const char* units;
};

const Text kWellFormed[] = {
    {"", ""},
    {"a", "0061"},
    {std::string(1, '\0'), "0000"},
    {"\x7F", "007F"},
    {"\xC2\x80", "0080"},
    {"\xDF\xBF", "07FF"},
    {"\xE0\xA0\x80", "0800"},
    {"\xE0\xBF\xBF", "0FFF"},
    {"\xE1\x80\x80", "1000"},
    {"\xEC\xBF\xBF", "CFFF"},
    {"\xED\x80\x80", "D000"},
    {"\xED\x9F\xBF", "D7FF"},
    {"\xEE\x80\x80", "E000"},
    {"\xEF\xBF\xBD", "FFFD"},
    {"\xEF\xBF\xBF", "FFFF"},
    {"\xF0\x90\x80\x80", "D800 DC00"},
    {"\xF0\x90\x8F\xBF", "D800 DFFF"},
    {"\xF0\xBF\xBF\xBF", "D8BF DFFF"},
    {"\xF1\x80\x80\x80", "D8C0 DC00"},
    {"\xF3\xBF\xBF\xBF", "DBBF DFFF"},
    {"\xF4\x80\x80\x80", "DBC0 DC00"},
    {"\xF4\x8F\xBF\xBF", "DBFF DFFF"},
    {"a\xC3\xA4z", "0061 00E4 007A"},
    {"\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80!", "00E4 20AC D83D DE00 0021"},
};

const Text kMalformed[] = {
    // bytes that begin nothing
    {"\x80", "FFFD"},
    {"\xBF", "FFFD"},
    {"\x80\xBF", "FFFD FFFD"},
    {"\xF5\x80\x80\x80", "FFFD FFFD FFFD FFFD"},
    {"\xFE", "FFFD"},
    {"\xFF", "FFFD"},
    // overlong
    {"\xC0\x80", "FFFD FFFD"},
    {"\xC1\xBF", "FFFD FFFD"},
    {"\xE0\x80\x80", "FFFD FFFD FFFD"},
    {"\xE0\x9F\xBF", "FFFD FFFD FFFD"},
    {"\xF0\x80\x80\x80", "FFFD FFFD FFFD FFFD"},
    {"\xF0\x8F\xBF\xBF", "FFFD FFFD FFFD FFFD"},
    // surrogates
    {"\xED\xA0\x80", "FFFD FFFD FFFD"},
    {"\xED\xBF\xBF", "FFFD FFFD FFFD"},
    // above U+10FFFF
    {"\xF4\x90\x80\x80", "FFFD FFFD FFFD FFFD"},
    // cut off by the end
    {"\xC3", "FFFD"},
    {"\xE2", "FFFD"},
    {"\xE2\x82", "FFFD"},
    {"\xF0", "FFFD"},
    {"\xF0\x9F", "FFFD"},
    {"\xF0\x9F\x98", "FFFD"},
    // cut off by what follows
    {"\xC3z", "FFFD 007A"},
    {"\xE2\x82z", "FFFD 007A"},
    {"\xF0\x9F\x98z", "FFFD 007A"},
    {"\xC3\xC3\xA4", "FFFD 00E4"},
    {"\xE2\x82\xC3\xA4", "FFFD 00E4"},
    {"\xF0\x9F\x98\xF0\x9F\x98\x80", "FFFD D83D DE00"},
    {"\xE2\x82\xFF", "FFFD FFFD"},
    {std::string("\xE2\x82\0z", 4), "FFFD 0000 007A"},
    // a second byte that another lead byte would take
    {"\xE0\x80z", "FFFD FFFD 007A"},
    {"\xF4\x90z", "FFFD FFFD 007A"},
};

TEST(Utf8ToUni16, GivesTheCodeUnits) {
    for (const auto& [bytes, units] : kWellFormed) EXPECT_EQ(unitsOf(decoded(bytes)), units);
}

TEST(Utf8ToUni16, ReplacesEachMalformedPart) {
    for (const auto& [bytes, units] : kMalformed) {
        SCOPED_TRACE(::testing::PrintToString(bytes));
        EXPECT_EQ(unitsOf(decoded(bytes)), units);
    }
}

// Long runs of ASCII take a way of their own.
TEST(Utf8ToUni16, FindsWhatIsNotAsciiAtAnyPlace) {
    for (std::size_t place = 0; place < 20; ++place) {
        std::string bytes(20, 'a');
        Uni16String text(20, L'a');
        EXPECT_EQ(unitsOf(decoded(bytes)), unitsOf(text));
        bytes.replace(place, 1, "\xC3\xA4");
        text[place] = 0xE4;
        EXPECT_EQ(unitsOf(decoded(bytes)), unitsOf(text));
    }
}

TEST(Utf8ToUni16, StopsAtTheNulWithoutASize) {
    const char text[] = "\xC3\xA4\0b";
    EXPECT_EQ(unitsOf(VexSys::UTF8ToUni16Char(text)), "00E4");
    EXPECT_EQ(unitsOf(VexSys::UTF8ToUni16Char("")), "");
}

TEST(Utf8ToUni16, ReadsPreciselyTheSize) {
    const char text[] = "a\0\xC3\xA4";
    EXPECT_EQ(unitsOf(VexSys::UTF8ToUni16Char(text, 3)), "0061 0000 FFFD");
    EXPECT_EQ(unitsOf(VexSys::UTF8ToUni16Char(text, 2)), "0061 0000");
    EXPECT_EQ(unitsOf(VexSys::UTF8ToUni16Char(nullptr, 0)), "");
}

TEST(Uni16ToUtf8, IsTheWayBack) {
    for (const auto& [bytes, units] : kWellFormed) {
        SCOPED_TRACE(units);
        EXPECT_EQ(encoded(decoded(bytes)), bytes);
    }
}

TEST(Uni16ToUtf8, IsTheWayBackForEveryCharacter) {
    for (unsigned long unit = 0; unit < 0x10000; ++unit) {
        if (unit >= 0xD800 && unit < 0xE000) continue;
        const Uni16String text(1, static_cast<wchar_t>(unit));
        ASSERT_EQ(unitsOf(decoded(encoded(text))), unitsOf(text));
    }
    for (unsigned long high = 0xD800; high < 0xDC00; ++high) {
        const Uni16String text = {static_cast<wchar_t>(high),
                                  static_cast<wchar_t>(0xDC00 + high % 0x400)};
        ASSERT_EQ(unitsOf(decoded(encoded(text))), unitsOf(text));
    }
}

// Code units, and the characters that come back.
TEST(Uni16ToUtf8, ReplacesWhatIsNoCharacter) {
    const std::pair<Uni16String, const char*> texts[] = {
        {{0xD800}, "FFFD"},
        {{0xDBFF}, "FFFD"},
        {{0xDC00}, "FFFD"},
        {{0xDFFF}, "FFFD"},
        {{0xD83D, L'a'}, "FFFD 0061"},
        {{0xDE00, L'a'}, "FFFD 0061"},
        {{0xDE00, 0xD83D}, "FFFD FFFD"},
        {{0xD83D, 0xD83D, 0xDE00}, "FFFD D83D DE00"},
        {{0xD83D, 0xDE00, 0xDE00}, "D83D DE00 FFFD"},
        {{0xD83D, 0xE000}, "FFFD E000"},
#if WCHAR_MAX > 0xFFFF
        {{static_cast<wchar_t>(0x10000)}, "FFFD"},
        {{static_cast<wchar_t>(0xFFFFFFFF)}, "FFFD"},
        {{0xD83D, static_cast<wchar_t>(0x1DE00)}, "FFFD FFFD"},
#endif
    };
    for (const auto& [text, back] : texts) {
        SCOPED_TRACE(unitsOf(text));
        EXPECT_EQ(unitsOf(decoded(encoded(text))), back);
    }
}

TEST(Uni16Length, CountsUpToTheNul) {
    EXPECT_EQ(VexSys::Uni16CharGetLength(L""), 0U);
    EXPECT_EQ(VexSys::Uni16CharGetLength(L"ab\0c"), 2U);
}

// Texts in ascending order.
const Uni16String kAscending[] = {
    {}, {0}, {L'A'}, {L'A', 0}, {L'A', L'B'}, {L'a'}, {0xE4}, {0xD800, 0xDC00}, {0xFFFF},
};

TEST(Uni16Compare, OrdersByCodeUnitsAndThenByLength) {
    int right = 0;
    for (const Uni16String& later : kAscending) {
        int left = 0;
        for (const Uni16String& earlier : kAscending) {
            SCOPED_TRACE(unitsOf(earlier) + " and " + unitsOf(later));
            EXPECT_EQ(sign(VexSys::Uni16CharCompare(earlier, later)), sign(left - right));
            ++left;
        }
        ++right;
    }
}

// Two texts of at least the count, and the sign of their comparison.
struct Comparison {
    const wchar_t* left;
    const wchar_t* right;
    std::size_t count;
    int result;
};

TEST(Uni16PartialCompare, LooksAtTheCountAlone) {
    const Comparison comparisons[] = {
        {L"a", L"b", 0, 0},       {L"a", L"b", 1, -1},     {L"b", L"a", 1, 1},
        {L"abx", L"aby", 2, 0},   {L"abx", L"aby", 3, -1}, {L"a\0x", L"a\0y", 3, -1},
        {L"a\0y", L"a\0x", 2, 0}, {L"ba", L"ab", 2, 1},
    };
    for (const auto& [left, right, count, result] : comparisons) {
        EXPECT_EQ(sign(VexSys::Uni16CharPartialCompare(left, right, count)), result)
            << unitsOf(left) << " and " << unitsOf(right) << ", " << count;
    }
}

TEST(Uni16PartialFind, GivesTheFirstPlaceOrTheCount) {
    EXPECT_EQ(VexSys::Uni16CharPartialFindCharacter(L"abab", L'a', 4), 0U);
    EXPECT_EQ(VexSys::Uni16CharPartialFindCharacter(L"abab", L'b', 4), 1U);
    EXPECT_EQ(VexSys::Uni16CharPartialFindCharacter(L"abab", L'b', 1), 1U);
    EXPECT_EQ(VexSys::Uni16CharPartialFindCharacter(L"abab", L'c', 4), 4U);
    EXPECT_EQ(VexSys::Uni16CharPartialFindCharacter(L"a\0b", L'b', 3), 2U);
    EXPECT_EQ(VexSys::Uni16CharPartialFindCharacter(L"a\0b", L'\0', 3), 1U);
    EXPECT_EQ(VexSys::Uni16CharPartialFindCharacter(L"", L'a', 0), 0U);
}

TEST(PlatformText, IsUtf8) {
    EXPECT_EQ(unitsOf(VexSys::PlatformCStringToUni16Char("\xC3\xA4\xF0\x9F\x98\x80\xFF")),
              "00E4 D83D DE00 FFFD");
    EXPECT_EQ(unitsOf(VexSys::PlatformCStringToUni16Char("")), "");
}

// What `Uni16CharToPlatformCString` leaves in a buffer of that size, the NUL and what is behind it
// included, between guards.
std::string buffered(const Uni16String& text, std::size_t size) {
    std::string buffer(size + 2, '#');
    VexSys::Uni16CharToPlatformCString(text, buffer.data() + 1, size);
    return buffer;
}

TEST(PlatformText, IsWrittenWithANul) {
    EXPECT_EQ(buffered(L"", 1), std::string("#\0#", 3));
    EXPECT_EQ(buffered(L"ab", 3), std::string("#ab\0#", 5));
    EXPECT_EQ(buffered(L"ab", 4), std::string("#ab\0##", 6));
    EXPECT_EQ(buffered({0xE4}, 3), std::string("#\xC3\xA4\0#", 5));
}

TEST(PlatformText, IsWrittenUpToItsFirstNul) {
    EXPECT_EQ(buffered({L'a', 0, L'b'}, 4), std::string("#a\0###", 6));
}

TEST(PlatformText, LeavesOutWholeCharactersWithoutRoom) {
    const Uni16String text = {L'a', 0x20AC, 0xD83D, 0xDE00};
    const std::string bytes = "a\xE2\x82\xAC\xF0\x9F\x98\x80";
    const std::size_t kept[] = {0, 1, 1, 1, 4, 4, 4, 4, 8, 8};
    std::size_t size = 1;
    for (const std::size_t length : kept) {
        const std::string behind(size - length, '#');
        EXPECT_EQ(buffered(text, size), '#' + bytes.substr(0, length) + '\0' + behind) << size;
        ++size;
    }
}

TEST(PlatformText, HasRoomInThreeBytesForEachUnitAndOne) {
    for (const Uni16String& text :
         {Uni16String{0xFFFF, 0xFFFF}, Uni16String{0xD800, 0xD800}, Uni16String{0xD83D, 0xDE00}}) {
        const std::string whole = encoded(text);
        EXPECT_EQ(buffered(text, 7).substr(0, whole.size() + 2), '#' + whole + '\0');
    }
}

}  // namespace
