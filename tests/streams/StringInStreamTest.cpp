#include <gtest/gtest.h>

#include <limits>
#include <memory>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "VexXml/Streams.h"
#include "support/Diagnostics.h"

namespace {

using Xml::StringInStream;
using Texts = std::vector<std::string>;

static_assert(std::is_copy_constructible_v<StringInStream>);
static_assert(std::is_copy_assignable_v<StringInStream>);
static_assert(std::is_nothrow_move_constructible_v<StringInStream>);
static_assert(std::is_nothrow_move_assignable_v<StringInStream>);
static_assert(!std::is_convertible_v<std::string, StringInStream>);

/// The bytes not yet read.
std::string restOf(Xml::InStream& in) {
    std::string rest;
    char c = 0;
    while (in.getChar(c)) rest += c;
    return rest;
}

TEST(StringInStream, ReadsByteAfterByte) {
    StringInStream in("ab");
    char c = 0;
    EXPECT_EQ(in.getPosition(), 0);
    EXPECT_FALSE(in.eof());
    EXPECT_TRUE(in.getChar(c));
    EXPECT_EQ(c, 'a');
    EXPECT_EQ(in.getPosition(), 1);
    EXPECT_TRUE(in.getChar(c));
    EXPECT_EQ(c, 'b');
    EXPECT_EQ(in.getPosition(), 2);
    EXPECT_TRUE(in.eof());
    EXPECT_FALSE(in.getChar(c));
    EXPECT_EQ(c, 'b');
    EXPECT_EQ(in.getPosition(), 2);
}

TEST(StringInStream, IsAtItsEndAtOnceOverNothing) {
    StringInStream in("");
    char c = 'x';
    EXPECT_TRUE(in.eof());
    EXPECT_FALSE(in.getChar(c));
    EXPECT_EQ(c, 'x');
}

TEST(StringInStream, ReadsBytesOfAnyValue) {
    std::string text;
    for (int byte = 0; byte < 256; ++byte) {
        text += static_cast<char>(static_cast<unsigned char>(byte));
    }
    StringInStream in(text + text);
    EXPECT_EQ(restOf(in), text + text);
}

TEST(StringInStream, KeepsACopyOfTheText) {
    std::string text = "abc";
    StringInStream in(text);
    text = "xyz";
    EXPECT_EQ(restOf(in), "abc");
}

TEST(StringInStream, ReadsOnFromWhereItWasMoved) {
    StringInStream in("abc");
    restOf(in);
    in.setPosition(1);
    EXPECT_FALSE(in.eof());
    EXPECT_EQ(restOf(in), "bc");
}

TEST(StringInStream, IsAtItsEndBehindTheEnd) {
    StringInStream in("abc");
    for (const int position : {3, 4, std::numeric_limits<int>::max()}) {
        SCOPED_TRACE(position);
        in.setPosition(position);
        EXPECT_EQ(in.getPosition(), position);
        EXPECT_TRUE(in.eof());
        EXPECT_EQ(restOf(in), "");
        EXPECT_EQ(in.getPosition(), position);
    }
    in.setPosition(2);
    EXPECT_FALSE(in.eof());
    EXPECT_EQ(restOf(in), "c");
}

TEST(StringInStream, ReadsNothingInFrontOfTheStart) {
    StringInStream in("abc");
    for (const int position : {-1, std::numeric_limits<int>::min()}) {
        SCOPED_TRACE(position);
        in.setPosition(position);
        EXPECT_EQ(in.getPosition(), position);
        EXPECT_FALSE(in.eof());
        EXPECT_EQ(restOf(in), "");
        EXPECT_EQ(in.getPosition(), position);
    }
}

TEST(StringInStream, GivesTheLexersErrorAtItsEnd) {
    StringInStream in("");
    std::string token;
    EXPECT_FALSE(in.getToken(token));
    EXPECT_EQ(in.getErrorMessage(), "Unexpected end of stream");
}

TEST(StringInStream, EndsATokenWithTheText) {
    StringInStream in("abc");
    std::string token;
    EXPECT_TRUE(in.getToken(token));
    EXPECT_EQ(token, "abc");
}

TEST(StringInStream, CopiesReadOnTheirOwn) {
    StringInStream in("abc");
    std::string name;
    EXPECT_FALSE(in.getString(name));
    StringInStream copy(in);
    EXPECT_EQ(copy.getErrorMessage(), in.getErrorMessage());
    EXPECT_EQ(restOf(copy), "bc");
    EXPECT_EQ(in.getPosition(), 1);
    StringInStream assigned("else");
    assigned = in;
    EXPECT_EQ(assigned.getErrorMessage(), in.getErrorMessage());
    EXPECT_EQ(restOf(assigned), "bc");
    EXPECT_EQ(restOf(in), "bc");
}

TEST(StringInStream, IsEmptyOnceMovedFrom) {
    const std::string text = "a text that is too long to be kept in place";
    const auto source = std::make_unique<StringInStream>(text);
    source->setPosition(2);
    const auto moved = std::make_unique<StringInStream>(std::move(*source));
    EXPECT_EQ(source->getPosition(), 0);
    EXPECT_TRUE(source->eof());
    EXPECT_EQ(restOf(*source), "");
    StringInStream assigned("else");
    assigned = std::move(*moved);
    EXPECT_TRUE(moved->eof());
    EXPECT_EQ(moved->getPosition(), 0);
    EXPECT_EQ(assigned.getPosition(), 2);
    EXPECT_EQ(restOf(assigned), text.substr(2));
}

TEST(StringInStream, SurvivesAssignmentToItself) {
    StringInStream in("abc");
    StringInStream& same = in;
    in.setPosition(1);
    in = same;
    EXPECT_EQ(in.getPosition(), 1);
    in = std::move(same);
    EXPECT_EQ(in.getPosition(), 1);
    EXPECT_EQ(restOf(in), "bc");
}

TEST(StringInStream, RefusesATextOfTwoGiB) {
    support::Diagnostics diagnostics;
    const std::size_t tooLong = std::size_t{1} << 31U;
    StringInStream in(std::string(tooLong, 'x'));
    EXPECT_EQ(diagnostics.take(), Texts{"<Xml::StringInStream::StringInStream> File too long"});
    char c = 0;
    EXPECT_TRUE(in.eof());
    EXPECT_FALSE(in.getChar(c));
    EXPECT_EQ(in.getPosition(), 0);
}

TEST(StringInStream, KeepsTheStateOfTheLexerWhenMovedOntoItself) {
    Xml::StringInStream in("\r\r1 2");
    std::string ignored;
    in.getName(ignored);
    Xml::StringInStream& same = in;
    in = std::move(same);
    EXPECT_EQ(in.getErrorMessage(), "not a name: 1");
    EXPECT_EQ(in.getColumn(), 1);
}

}  // namespace
