#include <gtest/gtest.h>

#include <cstdint>
#include <functional>
#include <memory>
#include <random>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "VexXml/Values.h"

namespace {

using Xml::DataHolder;

static_assert(std::is_copy_constructible_v<DataHolder>);
static_assert(std::is_copy_assignable_v<DataHolder>);
static_assert(std::is_nothrow_move_constructible_v<DataHolder>);
static_assert(std::is_nothrow_move_assignable_v<DataHolder>);
static_assert(!std::is_polymorphic_v<DataHolder>);
static_assert(std::is_convertible_v<const char*, DataHolder>);
static_assert(std::is_convertible_v<std::string, DataHolder>);
static_assert(std::is_convertible_v<int, DataHolder>);
static_assert(std::is_convertible_v<double, DataHolder>);
static_assert(std::is_convertible_v<DataHolder, std::string>);

const std::string kLong(100, 'x');

std::string textOf(const DataHolder& holder) { return holder; }

/// Whether the bytes are kept in the holder itself, as short texts are.
bool isKeptInside(const DataHolder& holder) {
    const std::less_equal<const void*> notBehind;
    return notBehind(&holder, holder.toCString()) && notBehind(holder.toCString(), &holder + 1);
}

TEST(DataHolder, IsEmptyAtFirst) {
    const DataHolder holder;
    EXPECT_TRUE(holder.isEmpty());
    EXPECT_EQ(holder.getSize(), 0);
    EXPECT_STREQ(holder.toCString(), "");
}

TEST(DataHolder, TakesAString) {
    EXPECT_EQ(textOf(DataHolder(std::string("a\0b", 3))), std::string("a\0b", 3));
}

TEST(DataHolder, TakesACStringUpToItsNul) { EXPECT_EQ(textOf(DataHolder("a\0b")), "a"); }

TEST(DataHolder, TakesANullCStringAsEmpty) {
    const char* nothing = nullptr;
    EXPECT_EQ(textOf(DataHolder(nothing)), "");
}

TEST(DataHolder, TakesBytesWithTheirNuls) {
    const DataHolder holder("a\0b", 3);
    EXPECT_EQ(holder.getSize(), 3);
    EXPECT_EQ(textOf(holder), std::string("a\0b", 3));
    EXPECT_NE(holder, DataHolder("a"));
}

TEST(DataHolder, TakesAnInteger) {
    EXPECT_EQ(textOf(DataHolder(-12)), "-12");
    EXPECT_EQ(textOf(DataHolder(0)), "0");
}

TEST(DataHolder, TakesAFloatingPointNumber) {
    EXPECT_EQ(textOf(DataHolder(2.5)), "2.5");
    EXPECT_EQ(textOf(DataHolder(0.0)), "0");
    EXPECT_EQ(textOf(DataHolder(2.0)), "2");
    EXPECT_EQ(textOf(DataHolder(-1.25)), "-1.25");
}

TEST(DataHolder, TakesAFloatingPointNumberUnderThePrecisionOfTheMoment) {
    const int previous = Xml::setFloatPrecision(4);
    const DataHolder holder(3.14159);
    Xml::setFloatPrecision(previous);
    EXPECT_EQ(textOf(holder), "3.1416");
}

TEST(DataHolder, CopiesTheText) {
    const DataHolder original("ab");
    DataHolder copy(original);
    copy.push('c');
    EXPECT_EQ(textOf(original), "ab");
    EXPECT_EQ(textOf(copy), "abc");
    DataHolder assigned;
    assigned = copy;
    EXPECT_EQ(textOf(assigned), "abc");
    EXPECT_EQ(textOf(copy), "abc");
}

TEST(DataHolder, IsEmptyOnceMovedFrom) {
    for (const std::string& text : {std::string("short"), kLong}) {
        SCOPED_TRACE(text);
        const auto source = std::make_unique<DataHolder>(text);
        const auto constructed = std::make_unique<DataHolder>(std::move(*source));
        EXPECT_EQ(textOf(*constructed), text);
        EXPECT_EQ(textOf(*source), "");
        DataHolder assigned("else");
        assigned = std::move(*constructed);
        EXPECT_EQ(textOf(assigned), text);
        EXPECT_EQ(textOf(*constructed), "");
    }
}

TEST(DataHolder, SurvivesAssignmentToItself) {
    DataHolder holder(kLong);
    DataHolder& same = holder;
    holder = same;
    EXPECT_EQ(textOf(holder), kLong);
    holder = std::move(same);
    EXPECT_EQ(textOf(holder), kLong);
}

TEST(DataHolder, AppendsTheFirstBytes) {
    DataHolder holder("a");
    holder.append("bcd", 2);
    holder.append("\0e", 2);
    EXPECT_EQ(textOf(holder), std::string("abc\0e", 5));
}

TEST(DataHolder, AppendsNothingForACountBelowOne) {
    DataHolder holder("a");
    holder.append("bcd", 0);
    holder.append("bcd", -1);
    holder.append(nullptr, 0);
    EXPECT_EQ(textOf(holder), "a");
}

TEST(DataHolder, AppendsItsOwnBytes) {
    DataHolder holder(kLong);
    holder.append(holder.toCString(), holder.getSize());
    EXPECT_EQ(textOf(holder), kLong + kLong);
}

TEST(DataHolder, IsAssignedAPartOfItself) {
    DataHolder holder("abcdefghijklmnopqrstuvwxyz");
    holder = DataHolder(holder.toCString() + 20);
    EXPECT_EQ(textOf(holder), "uvwxyz");
}

TEST(DataHolder, PushesAndPopsSingleBytes) {
    DataHolder holder;
    EXPECT_EQ(&holder.push('a'), &holder);
    holder.push('\0').push('b');
    EXPECT_EQ(textOf(holder), std::string("a\0b", 3));
    EXPECT_EQ(&holder.pop(), &holder);
    EXPECT_EQ(textOf(holder), std::string("a\0", 2));
}

TEST(DataHolder, ThrowsALengthErrorWhenAnEmptyOneIsPopped) {
    DataHolder holder;
    EXPECT_THROW(holder.pop(), std::length_error);
    EXPECT_EQ(textOf(holder), "");
}

TEST(DataHolder, Clears) {
    DataHolder holder("ab");
    holder.clear();
    EXPECT_TRUE(holder.isEmpty());
    EXPECT_EQ(textOf(holder), "");
}

TEST(DataHolder, HasRoomForWhatWasReserved) {
    DataHolder holder("a");
    EXPECT_TRUE(holder.reserve(1000));
    const char* const bytes = holder.toCString();
    for (int i = 0; i < 999; ++i) holder.push('b');
    EXPECT_EQ(holder.toCString(), bytes);
    EXPECT_EQ(textOf(holder), "a" + std::string(999, 'b'));
}

TEST(DataHolder, KeepsItsRoomForAReserveBelowItsLength) {
    DataHolder holder(kLong);
    const char* const bytes = holder.toCString();
    EXPECT_TRUE(holder.reserve(5));
    EXPECT_TRUE(holder.reserve(99));
    EXPECT_EQ(holder.toCString(), bytes);
    EXPECT_EQ(textOf(holder), kLong);
}

TEST(DataHolder, GivesGrownRoomBackForASmallReserve) {
    DataHolder holder(kLong);
    holder.setSize(10);
    EXPECT_FALSE(isKeptInside(holder));
    EXPECT_TRUE(holder.reserve(16));
    EXPECT_FALSE(isKeptInside(holder));
    EXPECT_TRUE(holder.reserve(15));
    EXPECT_TRUE(isKeptInside(holder));
    EXPECT_EQ(textOf(holder), "xxxxxxxxxx");
}

TEST(DataHolder, PassesOnTheStringsErrorForAnImpossibleReserve) {
    DataHolder holder("a");
    EXPECT_THROW(holder.reserve(~std::uint64_t{0}), std::length_error);
    EXPECT_EQ(textOf(holder), "a");
}

TEST(DataHolder, SetsItsSizeWithNulsOrACut) {
    DataHolder holder("ab");
    EXPECT_TRUE(holder.setSize(5));
    EXPECT_EQ(textOf(holder), std::string("ab\0\0\0", 5));
    EXPECT_TRUE(holder.setSize(1));
    EXPECT_EQ(textOf(holder), "a");
}

TEST(DataHolder, PassesOnTheStringsErrorForAnImpossibleSize) {
    DataHolder holder("a");
    EXPECT_THROW(holder.setSize(~std::uint64_t{0}), std::length_error);
    EXPECT_EQ(textOf(holder), "a");
}

TEST(DataHolder, Swaps) {
    DataHolder one("one");
    DataHolder other(kLong);
    one.swap(other);
    EXPECT_EQ(textOf(one), kLong);
    EXPECT_EQ(textOf(other), "one");
}

TEST(DataHolder, GivesItsBytesWithANulBehindThem) {
    const DataHolder holder("a\0b", 3);
    EXPECT_EQ(std::string(holder.toCString(), 4), std::string("a\0b\0", 4));
}

TEST(DataHolder, ReadsTheNumberAtItsStart) {
    EXPECT_EQ(DataHolder("42abc").toInt(), 42);
    EXPECT_EQ(DataHolder("abc").toInt(), 0);
    EXPECT_EQ(DataHolder(" -2.5e1x").toDouble(), -25.0);
    EXPECT_EQ(DataHolder("abc").toDouble(), 0.0);
}

TEST(DataHolder, ComparesByteByByte) {
    EXPECT_TRUE(DataHolder("ab") == DataHolder(std::string("ab")));
    EXPECT_FALSE(DataHolder("ab") != DataHolder("ab"));
    for (const char* other : {"", "a", "aB", "abc", "b"}) {
        SCOPED_TRACE(other);
        EXPECT_FALSE(DataHolder("ab") == DataHolder(other));
        EXPECT_TRUE(DataHolder("ab") != DataHolder(other));
    }
    EXPECT_FALSE(DataHolder("a\0b", 3) == DataHolder("a\0c", 3));
}

TEST(DataHolder, GivesAccessToSingleBytes) {
    DataHolder holder("abc");
    holder[1] = '\xFF';
    const DataHolder& same = holder;
    EXPECT_EQ(same[0], 'a');
    EXPECT_EQ(same[1], '\xFF');
    EXPECT_EQ(textOf(holder),
              "a\xFF"
              "c");
}

/// The same text as a holder and as the standard library has it.
struct Twin {
    DataHolder holder;
    std::string string;

    void append(const std::string& bytes) {
        holder.append(bytes.data(), static_cast<int>(bytes.size()));
        string += bytes;
    }
    void setSize(std::size_t size) {
        EXPECT_TRUE(holder.setSize(size));
        string.resize(size);
    }
    void expectSame() const {
        ASSERT_EQ(textOf(holder), string);
        ASSERT_EQ(holder.toCString()[string.size()], '\0');
    }
};

// Around 15 bytes a text leaves the holder, around 511 the sizes that many texts have.
TEST(DataHolder, HoldsTextsOfAllLengths) {
    for (std::size_t size = 0; size < 700; ++size) {
        SCOPED_TRACE(size);
        const std::string text(size, 'x');
        DataHolder holder(text);
        EXPECT_EQ(textOf(holder), text);
        EXPECT_EQ(holder.getSize(), static_cast<int>(size));
        DataHolder copy(holder);
        copy.append(holder.toCString(), holder.getSize());
        EXPECT_EQ(textOf(copy), text + text);
        holder.push('y');
        EXPECT_EQ(textOf(holder), text + 'y');
        copy = holder;
        EXPECT_EQ(textOf(copy), text + 'y');
        copy = std::move(holder);
        EXPECT_EQ(textOf(copy.pop()), text);
    }
}

// Texts of these lengths come in pages of their own, of which some are used again.
TEST(DataHolder, HoldsVeryLongTexts) {
    for (int round = 0; round < 2; ++round) {
        std::vector<Twin> twins;
        for (std::size_t size = 100000; size < 40000000; size *= 2) {
            const std::string text(size, static_cast<char>('a' + twins.size()));
            twins.push_back({DataHolder(text), text});
        }
        for (const Twin& twin : twins) twin.expectSame();
        for (Twin& twin : twins) twin.append("end");
        for (const Twin& twin : twins) twin.expectSame();
    }
}

TEST(DataHolder, RefusesATextOfTwoGiB) {
    DataHolder holder("a");
    EXPECT_THROW(holder.setSize(std::uint64_t{1} << 31), std::length_error);
    EXPECT_EQ(textOf(holder), "a");
}

TEST(DataHolder, HoldsWhatAStringHoldsAfterChangesByChance) {
    std::mt19937 random(1);
    std::vector<Twin> twins(8);
    for (int i = 0; i < 20000; ++i) {
        Twin& twin = twins[random() % twins.size()];
        const Twin& other = twins[random() % twins.size()];
        const std::size_t size = random() % 40 == 0 ? random() % 3000 : random() % 40;
        switch (random() % 6) {
            case 0:
                twin.append(std::string(size, static_cast<char>('a' + i % 26)));
                break;
            case 1:
                twin.setSize(size);
                break;
            case 2:
                EXPECT_TRUE(twin.holder.reserve(size));
                break;
            case 3:
                twin = other;
                break;
            case 4:
                twin = Twin(other);
                break;
            default:
                std::swap(twin, twins[0]);
        }
        twin.expectSame();
    }
}

}  // namespace
