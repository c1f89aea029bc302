#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <limits>
#include <string>

#include "VexSys/FileIO.h"
#include "VexXml/Readers.h"
#include "support/Diagnostics.h"
#include "support/Dump.h"
#include "support/TempFolder.h"

namespace {

constexpr std::int64_t kTwoGiB = std::int64_t{1} << 31;

/// What stands in front of the text reads as blanks. Positions that an `int` does not hold wrap
/// around, as callers' streams are apt to let them.
class FarInStream : public Xml::InStream {
public:
    FarInStream(std::int64_t start, std::string text)
        : mText(std::move(text)), mStart(start), mPosition(start) {}

    bool getChar(char& c) override {
        if (FarInStream::eof()) return false;
        const std::int64_t place = mPosition++ - mStart;
        c = place < 0 ? ' ' : mText[static_cast<std::size_t>(place)];
        return true;
    }
    int getPosition() const override { return static_cast<int>(mPosition); }
    void setPosition(int position) override { mPosition = static_cast<std::uint32_t>(position); }
    bool eof() override { return mPosition >= mStart + static_cast<std::int64_t>(mText.size()); }

private:
    std::string mText;
    std::int64_t mStart;
    std::int64_t mPosition;
};

// Columns count from the first line end, so that they are the same wherever the text stands.
const char* const kDocuments[] = {
    "\r\n<?xml version='1.0'?><!-- c --><a b='1'>text &lt; <c/><d>x</d><![CDATA[y]]><?p q?></a>  ",
    "\r\n<!DOCTYPE a [<!ELEMENT a (b|c)*>\r\n<!ENTITY e 'w'><!--d-->]><a><b>&e;</b></a><!--e-->",
    "\r\n<!DOCTYPE a [<!ATTLIST a x CDATA 'v'>\r\n<!ELEMENT b ANY>]><a>\r\n<b>x</b>\r\n <b/> </a>",
    "\r\n<a>\r\n<b></c></a>",
    "\r\n<a>\r\n<b x=1></b></a>",
    "\r\n<!DOCTYPE a [<!ELEMENT a (b,>]><a/>",
    "\r\n<a><!-- never ends",
    "\r\n<a",
};

std::string readingOf(Xml::InStream& in, const Xml::ReadLimits& limits = {}) {
    Xml::DocumentReader reader;
    reader.setLimits(limits);
    std::string reading = reader.parse(in) ? "true " : "false ";
    reading += reader.getErrorMessage() + ' ' + std::to_string(in.getLine());
    if (reader.getDocument() != nullptr) reading += ' ' + support::dump(*reader.getDocument());
    return reading;
}

class FarPositions : public testing::Test {
protected:
    /// A file of that size that ends with the text, and takes no more room than that.
    std::string makeSparse(const std::string& text, std::int64_t size) const {
        std::string path = folder.write("sparse", "start");
        std::filesystem::resize_file(path, static_cast<std::uintmax_t>(size));
        std::fstream file(path, std::ios::in | std::ios::out | std::ios::binary);
        file.seekp(size - static_cast<std::int64_t>(text.size()));
        file << text;
        return path;
    }

    support::TempFolder folder;
    support::Diagnostics diagnostics;
};

TEST_F(FarPositions, ReadTheSame) {
    for (const char* document : kDocuments) {
        const std::string text = document;
        FarInStream near(0, text);
        const std::string expected = readingOf(near);
        for (const std::int64_t start :
             {kTwoGiB - 1000, kTwoGiB - 1 - static_cast<std::int64_t>(text.size())}) {
            FarInStream far(start, text);
            EXPECT_EQ(readingOf(far), expected) << testing::PrintToString(text) << start;
        }
    }
}

TEST_F(FarPositions, ReadTheSameUnderLimits) {
    const Xml::ReadLimits limits = Xml::ReadLimits::untrusted();
    for (const char* document : kDocuments) {
        const std::string text = document;
        FarInStream near(0, text);
        FarInStream far(kTwoGiB - 1000, text);
        EXPECT_EQ(readingOf(far, limits), readingOf(near, limits)) << testing::PrintToString(text);
    }
}

// No position is known behind the limit, so nobody can say what is read there: but reading ends.
TEST_F(FarPositions, ComeToAnEndBehindTheLimit) {
    for (const char* document : kDocuments) {
        const std::string text = document;
        for (std::int64_t place = 0; place <= static_cast<std::int64_t>(text.size()); ++place) {
            for (const bool isLimited : {false, true}) {
                FarInStream across(kTwoGiB - place, text);
                const auto limits = isLimited ? Xml::ReadLimits::untrusted() : Xml::ReadLimits();
                EXPECT_NE(readingOf(across, limits), "");
                EXPECT_GT(across.getLine(), 0);
                across.setPosition(std::numeric_limits<int>::max());
                EXPECT_GE(across.getColumn(), 0);
            }
        }
    }
}

// Behind the root stands something more, so that the end of the file, where the streams differ, is
// met by what is cut off alone.
TEST_F(FarPositions, InAFileReadTheSame) {
    for (const char* document : kDocuments) {
        const std::string text = std::string(document) + " <z/>";
        Xml::StringInStream string(text);
        const std::string expected = readingOf(string);
        const std::string path = makeSparse(text, kTwoGiB - 1);
        const auto start = static_cast<int>(kTwoGiB - 1 - static_cast<std::int64_t>(text.size()));

        Xml::FileSpecInStream named{VexSys::FileSpec(path)};
        named.setPosition(start);
        EXPECT_EQ(readingOf(named), expected) << testing::PrintToString(text);
        std::ifstream source;
        Xml::FileInStream file(path, &source);
        file.setPosition(start);
        const bool isCutOff = expected.find("Unexpected end") != std::string::npos;
        const std::string found = readingOf(file);
        EXPECT_EQ(isCutOff ? found.substr(0, 5) : found, isCutOff ? "false" : expected);
    }
}

TEST_F(FarPositions, BehindTwoGiBAreRefusedWithTheFile) {
    for (const std::int64_t size : {kTwoGiB, kTwoGiB + 1, 2 * kTwoGiB, 2 * kTwoGiB + 100}) {
        const std::string path = makeSparse("<a/>", size);
        Xml::FileSpecInStream named{VexSys::FileSpec(path)};
        named.setPosition(static_cast<int>(kTwoGiB - 1));
        char c = 'x';
        EXPECT_FALSE(named.getChar(c));
        EXPECT_EQ(c, 'x');
        std::ifstream source;
        Xml::FileInStream file(path, &source);
        EXPECT_FALSE(file.getChar(c));
        EXPECT_EQ(
            diagnostics.take(),
            (std::vector<std::string>{"<Xml::FileSpecInStream::FileSpecInStream> File too long",
                                      "<Xml::FileInStream::FileInStream> File too long: " + path}));
    }
}

TEST_F(FarPositions, OfLimitsAreNoLimits) {
    const std::string text = "<a><b/></a>";
    for (const std::uint64_t bytes :
         {std::uint64_t{text.size()}, std::uint64_t{kTwoGiB - 1}, std::uint64_t{kTwoGiB},
          std::uint64_t{1} << 63, ~std::uint64_t{0} - 1, ~std::uint64_t{0}}) {
        Xml::ReadLimits limits;
        for (auto limit : {&Xml::ReadLimits::totalBytes, &Xml::ReadLimits::valueLength,
                           &Xml::ReadLimits::textLength, &Xml::ReadLimits::declarationBytes,
                           &Xml::ReadLimits::validationSteps, &Xml::ReadLimits::elementDepth}) {
            limits.*limit = bytes;
        }
        Xml::StringInStream in("\r\n" + text);
        in.setPosition(2);
        EXPECT_EQ(readingOf(in, limits), "true  1 a(b())") << bytes;
        FarInStream far(kTwoGiB - 1 - static_cast<std::int64_t>(text.size()), text);
        EXPECT_EQ(readingOf(far, limits), "true  1 a(b())") << bytes;
    }
}

}  // namespace
