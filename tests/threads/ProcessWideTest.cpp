#include <gtest/gtest.h>

#include <atomic>
#include <string>
#include <thread>

#include "VexSys/Localization.h"
#include "VexXml/VexXml.h"
#include "support/Dump.h"
#include "threads/Together.h"

namespace {

using Xml::Message;

std::atomic<int> reports{0};

void count(const char* text, ...) { reports += text[0] == 'm' ? 1 : 0; }
void ignore(const char*, ...) {}

/// Puts back what the tests set.
class ProcessWide : public testing::Test {
protected:
    ProcessWide() {
        reports = 0;
        Message::InstallMessageHandler(&ignore);
    }
    ~ProcessWide() override {
        Message::InstallMessageHandler(&ignore);
        Message::disableOutput(true);
        VexSys::Localization::InstallTranslator(nullptr);
        Xml::setFloatPrecision(2);
        Xml::Object::setRWOptimization(false);
        Xml::Element::setShortNotationForEmptyTags(true);
    }
};

TEST_F(ProcessWide, EveryMessageReachesTheHandler) {
    Message::InstallMessageHandler(&count);
    threads::together([](int) {
        for (int i = 0; i < 1000; ++i) Message(std::string("message"));
    });
    EXPECT_EQ(reports, threads::kThreads * 1000);
}

TEST_F(ProcessWide, TheLastMessageIsAlwaysAWholeOne) {
    threads::together([](int number) {
        const std::string own(50U + 10U * static_cast<unsigned>(number),
                              static_cast<char>('a' + number));
        for (int i = 0; i < 1000; ++i) {
            if (i % 2 == 0) Message{own};
            const std::string& last = Message::getLastMessage();
            ASSERT_NE(last, "");
            ASSERT_EQ(last, std::string(50U + 10U * static_cast<unsigned>(last[0] - 'a'), last[0]));
        }
    });
}

TEST_F(ProcessWide, TheLastMessageIsThatOfWhateverThread) {
    Message(std::string("of this thread"));
    std::thread([] {
        EXPECT_EQ(Message::getLastMessage(), "of this thread");
        Message(std::string("of another"));
    }).join();
    EXPECT_EQ(Message::getLastMessage(), "of another");
}

TEST_F(ProcessWide, WhatTheLastMessageRefersToChangesByItsOwnThreadAlone) {
    Message(std::string("one"));
    const std::string& last = Message::getLastMessage();
    std::thread([] { Message(std::string("two")); }).join();
    EXPECT_EQ(last, "one");
    EXPECT_EQ(&Message::getLastMessage(), &last);
    EXPECT_EQ(last, "two");
    Message(std::string("three"));
    EXPECT_EQ(last, "three");
}

/// Reports when its thread has ended but for such as this one.
struct ReportsLate {
    ~ReportsLate() {
        Message(std::string("late"));
        seen() = Message::getLastMessage();
    }
    static std::string& seen() {
        static std::string text;
        return text;
    }
};

TEST_F(ProcessWide, AMessageMayComeAtTheVeryEndOfAThread) {
    std::thread([] {
        static thread_local ReportsLate late;
        static_cast<void>(&late);
        Message(std::string("early"));
    }).join();
    EXPECT_EQ(ReportsLate::seen(), "late");
    EXPECT_EQ(Message::getLastMessage(), "late");
}

TEST_F(ProcessWide, HandlersAreExchangedWhileMessagesCome) {
    threads::together([](int number) {
        for (int i = 0; i < 1000; ++i) {
            if (number == 0) Message::InstallMessageHandler(i % 2 == 0 ? &ignore : &count);
            if (number == 1) Message::disableOutput(i % 2 == 0);
            if (number > 1) Message(std::string("message"));
        }
    });
    EXPECT_LE(reports, (threads::kThreads - 2) * 1000);
    EXPECT_EQ(Message::getLastMessage(), "message");
}

TEST_F(ProcessWide, SettingsAreChangedWhileOthersWrite) {
    threads::together([](int number) {
        for (int i = 0; i < 300; ++i) {
            if (number == 0) Xml::setFloatPrecision(i % 3);
            if (number == 0) Xml::Object::setRWOptimization(i % 2 == 0);
            if (number == 0) Xml::Element::setShortNotationForEmptyTags(i % 2 == 0);
            Xml::Element element("a");
            const std::string text = support::written(element);
            ASSERT_TRUE(text == "<a/>" || text == "<a></a>") << text;
            const std::string half = Xml::toString(0.5);
            ASSERT_TRUE(half == "0.5" || half == "0") << half;
        }
    });
}

VexSys::Uni16String translated(const char* /*key*/, const char* /*module*/) {
    return VexSys::UTF8ToUni16Char("translated");
}

TEST_F(ProcessWide, TheTranslatorIsExchangedWhileTextsAreAskedFor) {
    threads::together([](int number) {
        for (int i = 0; i < 300; ++i) {
            if (number == 0) {
                VexSys::Localization::InstallTranslator(i % 2 == 0 ? &translated : nullptr);
            }
            Xml::Element element("a");
            Xml::Document document(new Xml::Element(element));
            Xml::XPath query(&document);
            query.GetValues(std::string("//b"));
            const std::string text = query.GetErrorStringUTF8();
            ASSERT_TRUE(text == "translated --> b" || text == "no such node was found --> b")
                << text;
        }
    });
}

}  // namespace
