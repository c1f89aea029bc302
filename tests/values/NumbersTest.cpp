#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <tuple>
#include <utility>

#include "VexXml/Values.h"

namespace {

constexpr int kMaxInt = std::numeric_limits<int>::max();
constexpr int kMinInt = std::numeric_limits<int>::min();

/// The number as text under another precision.
std::string textWith(int precision, double number) {
    const int previous = Xml::setFloatPrecision(precision);
    std::string text = Xml::toString(number);
    Xml::setFloatPrecision(previous);
    return text;
}

// A text, and the integer at its start.
const std::pair<std::string, int> kIntegers[] = {
    {" 12xyz", 12},
    {"", 0},
    {"  ", 0},
    {"abc", 0},
    {"-7", -7},
    {"+7", 7},
    {"- 7", 0},
    {"007", 7},
    {"0x41", 0},
    {"1.9", 1},
    {"1e3", 1},
    {"\t\r\n5", 5},
    {std::string("1\0002", 3), 1},
    {"2147483647", kMaxInt},
    {"2147483648", kMaxInt},
    {"-2147483648", kMinInt},
    {"-2147483649", kMinInt},
    {"99999999999999999999999999", kMaxInt},
};

TEST(Numbers, IntegersAreReadFromTheStartOfAText) {
    for (const auto& [text, number] : kIntegers) {
        EXPECT_EQ(Xml::toInt(text), number) << text;
    }
}

// A text, and the number at its start.
const std::pair<std::string, double> kDoubles[] = {
    {"1e3", 1000.0},
    {"", 0.0},
    {"abc", 0.0},
    {" -2.5x", -2.5},
    {"+0.125", 0.125},
    {".5", 0.5},
    {"7.", 7.0},
    {"1 2", 1.0},
    {"inf", 0.0},
    {"nan", 0.0},
    {"1e999", std::numeric_limits<double>::max()},
    {"-1e999", std::numeric_limits<double>::lowest()},
};

TEST(Numbers, DoublesAreReadFromTheStartOfAText) {
    for (const auto& [text, number] : kDoubles) {
        EXPECT_EQ(Xml::toDouble(text), number) << text;
    }
}

// An integer, and its text.
const std::pair<int, const char*> kIntegerTexts[] = {
    {0, "0"}, {12, "12"}, {-12, "-12"}, {kMaxInt, "2147483647"}, {kMinInt, "-2147483648"},
};

TEST(Numbers, IntegersAreWrittenInDecimal) {
    for (const auto& [number, text] : kIntegerTexts) EXPECT_EQ(Xml::toString(number), text);
}

// A number, and its text under the precision that is set at first.
const std::pair<double, const char*> kDoubleTexts[] = {
    {2.5, "2.5"},
    {2.0, "2"},
    {0.0, "0"},
    {-0.001, "-0"},
    {3.14159, "3.14"},
    {1.10, "1.1"},
    {100.0, "100"},
    {10.0, "10"},
    {-1.25, "-1.25"},
    {0.999, "1"},
    {-100.5, "-100.5"},
    {0.05, "0.05"},
    {1e21, "1000000000000000000000"},
};

TEST(Numbers, DoublesAreWrittenWithoutZerosAtTheirEnd) {
    for (const auto& [number, text] : kDoubleTexts) EXPECT_EQ(Xml::toString(number), text);
}

// A precision, a number, and its text. Without a point even the zeros of whole numbers go.
const std::tuple<int, double, const char*> kPrecisions[] = {
    {0, 100.0, "1"},   {0, 10.0, "1"},      {0, 0.0, "0"},
    {0, 105.0, "105"}, {0, 2.6, "3"},       {0, -0.3, "-"},
    {1, 100.0, "100"}, {1, 2.25, "2.2"},    {5, 3.14159265, "3.14159"},
    {20, 0.5, "0.5"},  {3, 1000.0, "1000"},
};

TEST(Numbers, DoublesAreRoundedToThePrecision) {
    for (const auto& [precision, number, text] : kPrecisions) {
        EXPECT_EQ(textWith(precision, number), text) << precision;
    }
}

TEST(Numbers, DoublesOfAnyLengthComeWhole) {
    const double max = std::numeric_limits<double>::max();
    const std::string text = Xml::toString(max);
    EXPECT_EQ(text.size(), 309U);
    EXPECT_EQ(Xml::toDouble(text), max);
    EXPECT_EQ(textWith(400, 0.1).substr(0, 12), "0.1000000000");
}

TEST(Numbers, PrecisionIsTwoAtFirst) { EXPECT_EQ(Xml::getFloatPrecision(), 2); }

TEST(Numbers, SettingThePrecisionGivesThePreviousOne) {
    EXPECT_EQ(Xml::setFloatPrecision(7), 2);
    EXPECT_EQ(Xml::getFloatPrecision(), 7);
    EXPECT_EQ(Xml::setFloatPrecision(0), 7);
    EXPECT_EQ(Xml::setFloatPrecision(2), 0);
}

TEST(Numbers, NegativePrecisionChangesNothing) {
    EXPECT_EQ(Xml::setFloatPrecision(-1), 2);
    EXPECT_EQ(Xml::getFloatPrecision(), 2);
}

}  // namespace
