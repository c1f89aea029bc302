#include <gtest/gtest.h>

#include <cstdlib>
#include <iostream>
#include <sstream>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "VexXml/Values.h"
#include "support/Diagnostics.h"

namespace {

using Xml::Message;
using Texts = std::vector<std::string>;

static_assert(std::is_copy_constructible_v<Message>);
static_assert(std::is_copy_assignable_v<Message>);
static_assert(std::is_move_constructible_v<Message>);
static_assert(std::is_move_assignable_v<Message>);
static_assert(!std::is_convertible_v<std::string, Message>);
static_assert(!std::is_convertible_v<const char*, Message>);

class Messages : public ::testing::Test {
protected:
    support::Diagnostics mDiagnostics;
};

/// Where `keepBehindLength` leaves the length byte and the text behind it.
std::pair<int, std::string> keptBehindLength;

void keepBehindLength(const char* text, ...) {
    keptBehindLength = {static_cast<unsigned char>(text[0]), text + 1};
}

std::string lastMessageSeen;

void keepLastMessage(const char* /*text*/, ...) { lastMessageSeen = Message::getLastMessage(); }

/// Ends the process with what the default handler printed to the standard error stream.
[[noreturn]] void reportAndExit(const std::string& text) {
    std::ostringstream printed;
    std::streambuf* const before = std::cerr.rdbuf(printed.rdbuf());
    Message{text};
    std::cerr.rdbuf(before);
    std::cerr << "[" << printed.str() << "]";
    std::exit(0);
}

// In a process of its own, where no other handler has been installed.
TEST(MessageDeathTest, PrintsOneLineToTheStandardErrorStreamAtFirst) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(reportAndExit("100% x"), ::testing::ExitedWithCode(0), "^\\[100% x\n\\]$");
}

TEST_F(Messages, HandTheTextOver) {
    Message(std::string("text"));
    EXPECT_EQ(mDiagnostics.take(), Texts{"text"});
}

TEST_F(Messages, DoNotFormatAString) {
    Message(std::string("%s %d %n"));
    EXPECT_EQ(mDiagnostics.take(), Texts{"%s %d %n"});
    EXPECT_EQ(Message::getLastMessage(), "%s %d %n");
}

TEST_F(Messages, FormatTheirArgumentsBehindALengthByte) {
    Message("%d items in %s", 3, "x");
    EXPECT_EQ(mDiagnostics.take(), Texts{"\x0C"
                                         "3 items in x"});
}

TEST_F(Messages, KeepTheFormatAsTheLastMessage) {
    Message("%d items", 3);
    EXPECT_EQ(Message::getLastMessage(), "%d items");
}

TEST_F(Messages, OfAnyLengthComeWholeBehindTheirLengthModulo256) {
    Message::InstallMessageHandler(&keepBehindLength);
    for (const int size : {0, 1, 254, 255, 256, 257, 100000}) {
        SCOPED_TRACE(size);
        const std::string text(static_cast<std::size_t>(size), 'x');
        Message("%s", text.c_str());
        EXPECT_EQ(keptBehindLength.first, size % 256);
        EXPECT_EQ(keptBehindLength.second, text);
    }
}

TEST_F(Messages, ThatCannotBeFormattedAreEmptyBehind255) {
    Message::InstallMessageHandler(&keepBehindLength);
    const wchar_t unknown[] = {static_cast<wchar_t>(0x7FFFFFFF), 0};
    Message("%ls", unknown);
    EXPECT_EQ(keptBehindLength.first, 255);
    EXPECT_EQ(keptBehindLength.second, "");
    EXPECT_EQ(Message::getLastMessage(), "%ls");
}

TEST_F(Messages, AreTheLastMessageAlreadyInTheHandler) {
    Message::InstallMessageHandler(&keepLastMessage);
    Message(std::string("one"));
    EXPECT_EQ(lastMessageSeen, "one");
    Message("%s", "two");
    EXPECT_EQ(lastMessageSeen, "%s");
}

TEST_F(Messages, AreKeptButNotHandedOverWhileOutputIsOff) {
    EXPECT_TRUE(Message::disableOutput(false));
    Message(std::string("one"));
    EXPECT_EQ(Message::getLastMessage(), "one");
    Message("%d", 2);
    EXPECT_EQ(Message::getLastMessage(), "%d");
    EXPECT_EQ(mDiagnostics.take(), Texts{});
    EXPECT_FALSE(Message::disableOutput(true));
    EXPECT_TRUE(Message::disableOutput(true));
    Message(std::string("three"));
    EXPECT_EQ(mDiagnostics.take(), Texts{"three"});
}

TEST_F(Messages, MayRepeatTheLastMessage) {
    Message(std::string("some text that is too long to be kept in place"));
    Message{Message::getLastMessage()};
    EXPECT_EQ(Message::getLastMessage(), "some text that is too long to be kept in place");
    Message{Message::getLastMessage().c_str()};
    EXPECT_EQ(Message::getLastMessage(), "some text that is too long to be kept in place");
    const std::string text = "some text that is too long to be kept in place";
    EXPECT_EQ(mDiagnostics.take(), (Texts{text, text, static_cast<char>(text.size()) + text}));
}

TEST_F(Messages, ReportNothingWhenCopied) {
    const Message original(std::string("text"));
    mDiagnostics.take();
    Message copy(original);
    copy = original;
    copy = Message(copy);
    EXPECT_EQ(mDiagnostics.take(), Texts{});
}

}  // namespace
