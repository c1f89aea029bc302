#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "VexXml/Streams.h"
#include "support/PlainInStream.h"

namespace {

using support::PlainInStream;

void readAll(Xml::InStream& in) {
    char c = 0;
    while (in.get(c)) continue;
}

/// Reads the one byte at `position`.
void readAt(Xml::InStream& in, int position) {
    char c = 0;
    in.setPosition(position);
    EXPECT_TRUE(in.get(c));
}

/// "line:column" at each position from 0 to `last`.
std::string places(Xml::InStream& in, int last) {
    std::string all;
    for (int position = 0; position <= last; ++position) {
        in.setPosition(position);
        all += std::to_string(in.getLine()) + ":" + std::to_string(in.getColumn()) + " ";
    }
    return all;
}

struct Text {
    const char* bytes;
    const char* places;  ///< line:column at each position once all has been read
};

// Deliberate: at a line start itself the line is already the one that begins there, but the column
// still counts from the line start before; behind the first line start the line is still 1.
const Text kTexts[] = {
    {"", "1:0 "},
    {"ab", "1:0 1:1 1:2 "},
    {"a\nb\n\nc", "1:0 1:1 1:2 1:3 1:4 1:5 1:6 "},
    {"a\rb\rc", "1:0 1:1 1:2 1:3 1:4 1:5 "},
    {"\n\r", "1:0 1:1 1:2 "},
    {"a\r\nb", "1:0 1:1 1:2 1:3 1:1 "},
    {"a\r\nb\r\nc", "2:0 2:1 2:2 1:3 2:1 2:2 2:3 2:1 "},
    {"\r\r", "1:0 1:1 1:2 "},
    {"\r\r\n", "2:0 2:1 1:2 2:1 "},
    {"\r\r\r\r", "3:0 3:1 1:2 2:1 3:1 "},
    {"\r\n\n\n", "1:0 1:1 1:2 1:1 1:2 "},
    {"\r\n\r\n", "2:0 2:1 1:2 2:1 2:2 "},
    {"\ra\n", "1:0 1:1 1:2 1:3 "},
};

TEST(InStreamLines, BeginBehindTheSecondOfTwoLineEndBytesTheFirstOfWhichIsACarriageReturn) {
    for (const auto& [bytes, expected] : kTexts) {
        SCOPED_TRACE(bytes);
        PlainInStream in(bytes);
        readAll(in);
        EXPECT_EQ(places(in, in.getPosition()), expected);
    }
}

TEST(InStreamLines, AreKnownOnlyAsFarAsTheTextWasRead) {
    PlainInStream in("a\r\nb\r\nc");
    EXPECT_EQ(places(in, 7), "1:0 1:1 1:2 1:3 1:4 1:5 1:6 1:7 ");
    in.setPosition(0);
    EXPECT_TRUE(in.skip("b"));
    EXPECT_EQ(places(in, 7), "1:0 1:1 1:2 1:3 1:1 1:2 1:3 1:4 ");
}

TEST(InStreamLines, AreRecordedOnceHoweverOftenTheTextIsRead) {
    PlainInStream in("a\r\nb\r\nc");
    for (int time = 0; time < 3; ++time) {
        in.setPosition(0);
        readAll(in);
    }
    EXPECT_EQ(places(in, 7), "2:0 2:1 2:2 1:3 2:1 2:2 2:3 2:1 ");
}

TEST(InStreamLines, StayRecordedWhenTheStreamGoesBack) {
    PlainInStream in("a\r\nb");
    readAt(in, 1);
    readAt(in, 2);
    in.putBackChar();
    EXPECT_EQ(places(in, 4), "1:0 1:1 1:2 1:3 1:1 ");
}

// Line starts keep the order found, and searches go by it: 6 before 3.
TEST(InStreamLines, AreSearchedInTheOrderFound) {
    PlainInStream in("a\r\nb\r\nc");
    readAt(in, 4);
    readAt(in, 5);
    readAt(in, 1);
    readAt(in, 2);
    EXPECT_EQ(places(in, 7), "2:0 2:1 2:2 2:3 2:4 2:5 1:6 2:4 ");
}

// Found as 4, 8, 6, 2: the column goes by the first of them that is not below the position, and
// counts from the one before that.
TEST(InStreamLines, KeepCountingByThatOrderWhenMoreAreFound) {
    PlainInStream in("\r\n\r\n\r\n\r\n\r\n");
    for (const int second : {3, 7, 5, 1}) {
        readAt(in, second - 1);
        readAt(in, second);
    }
    EXPECT_EQ(places(in, 10), "4:0 4:1 4:2 4:3 1:4 4:1 3:2 4:3 2:4 4:7 4:8 ");
}

// The carriage return that a line end follows need not stand in front of it.
TEST(InStreamLines, TakeACarriageReturnForTheLastByteReadWhereverTheStreamWent) {
    PlainInStream in("a\nb\r");
    readAt(in, 3);
    readAt(in, 1);
    EXPECT_EQ(places(in, 4), "1:0 1:1 1:2 1:1 1:2 ");
}

TEST(InStreamLines, TakeACarriageReturnForTheLastByteReadBehindAFailedRead) {
    PlainInStream in("\n\r");
    readAt(in, 1);
    char c = 0;
    EXPECT_FALSE(in.get(c));
    readAt(in, 0);
    EXPECT_EQ(places(in, 2), "1:0 1:1 1:1 ");
}

TEST(InStreamLines, TakeACarriageReturnForTheLastByteReadWhenItWasPutBack) {
    PlainInStream in("\ra");
    readAt(in, 0);
    in.putBackChar();
    readAt(in, 0);
    EXPECT_EQ(places(in, 2), "1:0 1:1 1:1 ");
}

TEST(InStreamLines, AreNotRecordedByPlainReads) {
    PlainInStream in("\r\n");
    char c = 0;
    while (in.getChar(c)) continue;
    EXPECT_EQ(places(in, 2), "1:0 1:1 1:2 ");
}

using Operation = void (*)(Xml::InStream&);

std::string text;
Xml::DataHolder data;

// Each reads "\r\n" on its way, at 1 and 2.
const std::pair<const char*, Operation> kOperations[] = {
    {" \r\n", [](Xml::InStream& in) { in.eatWhite(); }},
    {" \r\na ", [](Xml::InStream& in) { EXPECT_TRUE(in.getToken(text)); }},
    {"'\r\n'", [](Xml::InStream& in) { EXPECT_TRUE(in.getToken(text)); }},
    {"&\r\n;", [](Xml::InStream& in) { EXPECT_TRUE(in.getToken(text)); }},
    {" \r\na ", [](Xml::InStream& in) { EXPECT_TRUE(in.getName(text)); }},
    {" \r\n'a'", [](Xml::InStream& in) { EXPECT_TRUE(in.getString(text)); }},
    {"'\r\n'", [](Xml::InStream& in) { EXPECT_TRUE(in.getString(text)); }},
    {" \r\na ", [](Xml::InStream& in) { EXPECT_TRUE(in.checkToken("a")); }},
    {" \r\na ", [](Xml::InStream& in) { EXPECT_TRUE(in.skip("a")); }},
    {" \r\n<", [](Xml::InStream& in) { EXPECT_TRUE(in.getCharData(data)); }},
};

TEST(InStreamLines, AreRecordedByEveryOperation) {
    for (const auto& [input, operation] : kOperations) {
        SCOPED_TRACE(input);
        PlainInStream in(input);
        operation(in);
        in.setPosition(4);
        EXPECT_EQ(in.getColumn(), 1);
    }
}

TEST(InStreamLines, AreRecordedBehindAnOpenerThatTheTokenLeavesUnread) {
    PlainInStream in("<!\r\n1");
    std::string token;
    EXPECT_TRUE(in.getToken(token));
    EXPECT_EQ(token, "<!");
    EXPECT_EQ(places(in, 5), "1:0 1:1 1:2 1:3 1:4 1:1 ");
}

TEST(InStreamLines, CountToAHundredThousandInBothOrders) {
    const int lines = 100000;
    std::string crlf;
    for (int i = 0; i < lines; ++i) crlf += "\r\n";
    PlainInStream forwards(crlf);
    readAll(forwards);
    EXPECT_EQ(forwards.getLine(), lines);
    EXPECT_EQ(forwards.getColumn(), 2);
    PlainInStream backwards(crlf);
    for (int i = lines; i > 0; --i) {
        readAt(backwards, 2 * i - 2);
        readAt(backwards, 2 * i - 1);
    }
    EXPECT_EQ(backwards.getLine(), lines);
    EXPECT_EQ(backwards.getColumn(), 2);
}

}  // namespace
