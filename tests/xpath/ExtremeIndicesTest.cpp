#include <gtest/gtest.h>

#include <limits>
#include <string>

#include "VexXml/Dom.h"
#include "VexXml/XPath.h"

namespace {

constexpr long kLeast = std::numeric_limits<long>::min();
constexpr long kMost = std::numeric_limits<long>::max();
constexpr long kLeastInt = std::numeric_limits<int>::min();
constexpr long kMostInt = std::numeric_limits<int>::max();

class ExtremeIndices : public testing::Test {
protected:
    ExtremeIndices() {
        document.getRoot()->setAttribute("b", "one two");
        query.GetValues(std::string("/a/@b"));
    }

    Xml::Document document{new Xml::Element("a", "text")};
    Xml::XPath query{&document};
};

TEST_F(ExtremeIndices, OfResultsAreOutOfBounds) {
    for (const unsigned long index :
         {1UL, static_cast<unsigned long>(kMostInt), static_cast<unsigned long>(kMostInt) + 1,
          0xFFFFFFFFUL, static_cast<unsigned long>(kMost), ~0UL}) {
        SCOPED_TRACE(index);
        EXPECT_EQ(query.GetValueUTF8(index), "");
        EXPECT_EQ(query.GetErrorCode(), Xml::XPath::IndexOutOfBounds);
    }
}

TEST_F(ExtremeIndices, OfWordsAreOutOfBounds) {
    for (const long index : {kLeast, kLeast + 1, kLeastInt, -2L, 1L, kMostInt, kMost - 1}) {
        SCOPED_TRACE(index);
        EXPECT_EQ(query.GetValueUTF8(0UL, index), "");
        EXPECT_EQ(query.GetErrorCode(), Xml::XPath::IndexOutOfBounds);
        EXPECT_EQ(query.GetValueUTF8(std::string("/a/@b"), index), "");
        EXPECT_EQ(query.GetErrorCode(), Xml::XPath::IndexOutOfBounds);
    }
}

struct Case {
    const char* expression;
    unsigned long count;
};

const Case kNumbers[] = {
    {"/a[2147483647]", 0},
    {"/a[2147483648]", 0},
    {"/a[4294967297]", 0},
    {"/a[18446744073709551617]", 0},
    {"/a[99999999999999999999999999999999999999999999]", 0},
    {"/a[0]", 0},
    {"/a[1.5]", 0},
    {"/a[position() = 4294967297]", 0},
    {"/a[position() < 18446744073709551617]", 1},
    {"/a[1 - 9999999999999999999]", 0},
    {"/a[1 div 0]", 0},
    {"/a[0 div 0]", 0},
    {"/a[1.0000000000000000000000000000000000001]", 1},
};

TEST_F(ExtremeIndices, InPredicatesSelectWhatHasThatPosition) {
    for (const auto& [expression, count] : kNumbers) {
        EXPECT_EQ(query.GetValues(std::string(expression)), count)
            << expression << ": " << query.GetErrorStringUTF8();
    }
}

}  // namespace
