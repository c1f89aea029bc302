#include <gtest/gtest.h>

#include <string>

#include "VexXml/Readers.h"
#include "readers/Reading.h"

namespace {

using reading::Failure;
using reading::kEnd;
using reading::read;

std::string words(int count) {
    std::string text;
    for (int i = 0; i < count; ++i) text += " a";
    return text;
}

std::string readDeclaration(const std::string& input) {
    Xml::VersionInfoReader reader;
    return read(reader, input);
}

const char* const kDeclarations[] = {
    "<?xml version=\"1.0\"?>",
    "<?xml version='1.0'?>",
    " <?xml\r\nversion = \"1.0\" ? >",
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>",
    "<?xml version='1.0' encoding = 'UTF-8' ?>",
    "<?xml version=\"1.0\"encoding=\"UTF-8\"?>",
    "<?xml version='1.0' encoding='UTF-8' standalone='no'?>",
    "<?xml version='1.0'?/>?'a'>",
};

TEST(VersionInfoReader, ReadsADeclarationOfVersionOne) {
    for (const std::string input : kDeclarations) {
        EXPECT_EQ(readDeclaration(input + " <a/>"), "true at " + std::to_string(input.size()))
            << input;
    }
}

// None of them has a message.
const Failure kRefused[] = {
    {"<?php version='1.0'?>", 2, nullptr},
    {"<!xml version='1.0'?>", 5, nullptr},
    {"<?axml version='1.0'?>", 6, nullptr},
    {"<?xml?>", 6, nullptr},
    {"<?xml Version='1.0'?>", 13, nullptr},
    {"<?xml encoding='UTF-8'?>", 14, nullptr},
    {"<?xml version '1.0'?>", 19, nullptr},
    {"<?xml version='1.1'?>", 19, nullptr},
    {"<?xml version=1.0?>", 17, nullptr},
    {"<?xml version=' 1.0'?>", 20, nullptr},
    {"<?xml version='1.0' standalone='yes'?>", 30, nullptr},
    {"<?xml version='1.0'>", 20, nullptr},
    {"<?xml version='1.0'/>", 21, nullptr},
};

TEST(VersionInfoReader, RefusesAnythingElseWithoutAMessage) {
    reading::expectFailures(kRefused, "", [] { return Xml::VersionInfoReader(); });
}

const Failure kCutOff[] = {
    {"", 0, kEnd},
    {"<?xml", 5, kEnd},
    {"<?xml version", 13, kEnd},
    {"<?xml version=", 14, kEnd},
    {"<?xml version='1.0", 18, kEnd},
    {"<?xml version='1.0'", 19, kEnd},
    {"<?xml version='1.0'?", 20, kEnd},
    {"<?xml version='1.0' encoding", 28, kEnd},
    {"<?xml version='1.0' encoding 'UTF-8'?>", 36, "\"=\" expected"},
    {"<?xml version='1.0' encoding=", 29, kEnd},
    {"<?xml version='1.0' encoding='UTF-8'", 36, kEnd},
    {"<?xml version='1.0' encoding='UTF-8'?", 37, kEnd},
};

TEST(VersionInfoReader, ReportsWhatTheStreamMissed) {
    reading::expectFailures(kCutOff, "Xml::VersionInfoReader",
                            [] { return Xml::VersionInfoReader(); });
}

struct Encoding {
    const char* value;
    int position;
};

const Encoding kEncodings[] = {
    {"\"utf-8\"", 36}, {"'utf-8'", 36}, {"'UTF8'", 35},   {"\"UTF-8 \"", 37},
    {"UTF-8", 34},     {"''", 31},      {"'UTF-16'", 37},
};

TEST(VersionInfoReader, ReportsAnotherEncodingThanUtf8ButReadsOn) {
    for (const auto& [value, position] : kEncodings) {
        const std::string input = std::string("<?xml version='1.0' encoding=") + value + "?>";
        EXPECT_EQ(readDeclaration(input),
                  "true at " + std::to_string(input.size()) + " " +
                      reading::messageAt(position, std::string("Unsupported encoding: ") + value,
                                         "Xml::VersionInfoReader"));
    }
}

TEST(VersionInfoReader, ReplacesTheReportOfAnEncodingWhenItFails) {
    EXPECT_EQ(readDeclaration("<?xml version='1.0' encoding='x'?"),
              "false at 33 (line = 1, column = 33) Unexpected end of stream "
              "<Xml::VersionInfoReader>");
}

// Deliberate: the token behind the encoding is dropped whatever it is, so a ">" there ends nothing.
TEST(VersionInfoReader, DropsTheTokenBehindTheEncodingUnchecked) {
    EXPECT_EQ(readDeclaration("<?xml version='1.0' encoding='UTF-8'> a >b"), "true at 41");
}

// The first five tokens are checked; the ">" must be among the fifteen behind them.
TEST(VersionInfoReader, LooksForTheEndAmongTwentyTokens) {
    const std::string start = "<?xml version='1.0'?";
    EXPECT_EQ(readDeclaration(start + words(14) + ">"), "true at 49");
    EXPECT_EQ(readDeclaration(start + words(15) + ">"), "false at 50");
    EXPECT_EQ(readDeclaration(start + words(14)),
              "false at 48 (line = 1, column = 48) Unexpected end of stream "
              "<Xml::VersionInfoReader>");
}

TEST(VersionInfoReader, CountsAnEncodingAsOneToken) {
    const std::string start = "<?xml version='1.0' encoding='UTF-8'?";
    EXPECT_EQ(readDeclaration(start + words(14) + ">"), "true at 66");
    EXPECT_EQ(readDeclaration(start + words(15) + ">"), "false at 67");
}

}  // namespace
