#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <stdexcept>
#include <string>

#include "VexXml/Values.h"

namespace {

constexpr int kLeast = std::numeric_limits<int>::min();
constexpr int kMost = std::numeric_limits<int>::max();

TEST(ExtremeNumbers, AreWrittenAndRead) {
    for (const auto& [number, text] : {std::pair<int, const char*>{kLeast, "-2147483648"},
                                       {-1, "-1"},
                                       {0, "0"},
                                       {kMost, "2147483647"}}) {
        EXPECT_EQ(Xml::toString(number), text);
        EXPECT_EQ(std::string(Xml::DataHolder(number)), text);
        EXPECT_EQ(Xml::DataHolder(number).toInt(), number);
    }
    EXPECT_EQ(Xml::toInt("-2147483649"), kLeast);
    EXPECT_EQ(Xml::toInt("2147483648"), kMost);
    EXPECT_EQ(Xml::toInt("99999999999999999999999999"), kMost);
}

TEST(ExtremeNumbers, OfBytesBelowOneAreNone) {
    Xml::DataHolder text("text");
    for (const int count : {kLeast, kLeast + 1, -1, 0}) {
        SCOPED_TRACE(count);
        text.append("more", count);
        text.append(nullptr, count);
        EXPECT_EQ(std::string(text), "text");
        EXPECT_FALSE(Xml::isName("name", count));
    }
}

TEST(ExtremeNumbers, OfBytesThatNoTextHasAreRefused) {
    Xml::DataHolder text("text");
    for (const std::uint64_t size :
         {std::uint64_t{1} << 31, std::uint64_t{1} << 32, std::uint64_t{1} << 63,
          ~std::uint64_t{0} - 1, ~std::uint64_t{0}}) {
        SCOPED_TRACE(size);
        EXPECT_THROW(text.setSize(size), std::length_error);
        EXPECT_THROW(text.reserve(size), std::length_error);
        EXPECT_THROW(Xml::DataHolder("text", size), std::length_error);
        EXPECT_EQ(std::string(text), "text");
    }
}

/// Puts the precision back.
class ExtremePrecisions : public testing::Test {
protected:
    ~ExtremePrecisions() override { Xml::setFloatPrecision(2); }
};

TEST_F(ExtremePrecisions, BelowZeroChangeNothing) {
    for (const int digits : {kLeast, kLeast + 1, -1}) {
        EXPECT_EQ(Xml::setFloatPrecision(digits), 2);
        EXPECT_EQ(Xml::getFloatPrecision(), 2);
    }
}

// No number has as many digits: that they are not written either takes no memory.
TEST_F(ExtremePrecisions, GiveEveryDigitThereIs) {
    for (const int digits : {1074, 100000, kMost - 1, kMost}) {
        SCOPED_TRACE(digits);
        Xml::setFloatPrecision(digits);
        EXPECT_EQ(Xml::getFloatPrecision(), digits);
        EXPECT_EQ(Xml::toString(0.5), "0.5");
        EXPECT_EQ(Xml::toString(-3.0), "-3");
        const std::string least = Xml::toString(std::numeric_limits<double>::denorm_min());
        EXPECT_EQ(least.size(), 2U + 1074U);
        EXPECT_EQ(least.substr(least.size() - 6), "265625");
    }
}

}  // namespace
