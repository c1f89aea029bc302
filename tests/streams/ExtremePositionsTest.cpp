#include <gtest/gtest.h>

#include <cstdint>
#include <fstream>
#include <functional>
#include <limits>
#include <memory>
#include <sstream>
#include <string>

#include "VexSys/FileIO.h"
#include "VexXml/Streams.h"
#include "support/Diagnostics.h"
#include "support/PlainInStream.h"
#include "support/TempFolder.h"

namespace {

constexpr int kLeast = std::numeric_limits<int>::min();
constexpr int kMost = std::numeric_limits<int>::max();
constexpr int kPositions[] = {kLeast, kLeast + 1, -2, -1, 6, kMost - 1, kMost};

const char* const kText = "\r\n\r\nab";

class ExtremePositions : public testing::Test {
protected:
    void forEachStream(const std::function<void(Xml::InStream&)>& visit) {
        Xml::StringInStream string(kText);
        visit(string);
        std::istringstream source(kText);
        Xml::FileInStream file(&source);
        visit(file);
        Xml::FileSpecInStream named{VexSys::FileSpec(folder.write("f", kText))};
        visit(named);
    }

    support::TempFolder folder;
    support::Diagnostics diagnostics;
};

TEST_F(ExtremePositions, HaveNoBytes) {
    for (const int position : kPositions) {
        SCOPED_TRACE(position);
        forEachStream([&](Xml::InStream& in) {
            std::string token = "before";
            EXPECT_TRUE(in.getToken(token));
            in.setPosition(position);
            std::string none = "before";
            Xml::DataHolder text("before");
            EXPECT_FALSE(in.skip("x"));
            EXPECT_FALSE(in.getString(none));
            EXPECT_FALSE(in.checkToken("x"));
            EXPECT_EQ(none, "before");
            in.putBackChar();
            in.eatWhite();
            EXPECT_GT(in.getLine(), 0);
        });
    }
}

TEST_F(ExtremePositions, HaveColumns) {
    Xml::StringInStream in(kText);
    std::string token;
    in.getToken(token);
    const std::pair<int, int> kColumns[] = {{kLeast, kLeast}, {-1, -1}, {0, 0}, {2, 2},
                                            {3, 1},           {4, 2},   {5, 1}, {kMost, kMost - 4}};
    for (const auto& [position, column] : kColumns) {
        in.setPosition(position);
        EXPECT_EQ(in.getColumn(), column) << position;
    }
}

/// The text at positions below 0, as no stream should have it.
class BelowZero : public support::PlainInStream {
public:
    using PlainInStream::PlainInStream;
    int getPosition() const override {
        return mIsMoved ? mMoved : PlainInStream::getPosition() + kLeast;
    }
    void setPosition(int position) override {
        mIsMoved = true;
        mMoved = position;
    }

private:
    bool mIsMoved = false;
    int mMoved = 0;
};

// The distance is more than an `int` holds.
TEST_F(ExtremePositions, HaveTheLargestColumnBehindLinesBelowZero) {
    BelowZero in(kText);
    char c = 0;
    while (in.get(c)) continue;
    in.setPosition(kMost);
    EXPECT_EQ(in.getColumn(), kMost);
    in.setPosition(kLeast);
    EXPECT_EQ(in.getColumn(), kLeast);
}

TEST_F(ExtremePositions, OfSinksAreTakenOrRefused) {
    for (const int position : kPositions) {
        SCOPED_TRACE(position);
        std::ostringstream text;
        Xml::FileOutStream plain(&text);
        plain << std::string("abcdef");
        if (position < 100) {
            plain.setPosition(position);
            EXPECT_EQ(plain.getPosition(), position == 6 ? 6 : -1);
        }

        VexSys::FileSpec spec(folder.path("out"));
        {
            Xml::FileSpecOutStream named(spec);
            named << std::string("abcdef");
            named.setPosition(position);
            EXPECT_EQ(named.getPosition(), position < 0 ? 6 : position);
        }
        VexSys::FileIO file(spec);
        ASSERT_TRUE(file.Open(VexSys::kFileRead));
        EXPECT_EQ(file.GetFileLength(), 6U);
    }
}

TEST_F(ExtremePositions, OfFilesReadAsNothing) {
    VexSys::FileIO file{VexSys::FileSpec(folder.write("f", kText))};
    ASSERT_TRUE(file.Open(VexSys::kFileRead));
    constexpr auto kFirst = std::numeric_limits<std::int64_t>::min();
    constexpr auto kLast = std::numeric_limits<std::int64_t>::max();
    for (const std::int64_t offset : {kFirst, kFirst + 1, std::int64_t{-1}}) {
        EXPECT_FALSE(file.Seek(offset, VexSys::kSeekFromBeginning));
        EXPECT_EQ(file.GetFilePosition(), 0U);
    }
    for (const std::int64_t offset : {std::int64_t{kMost} + 1, kLast - 1, kLast}) {
        EXPECT_TRUE(file.Seek(offset, VexSys::kSeekFromBeginning));
        EXPECT_EQ(file.ReadUInt8(), 0);
        EXPECT_EQ(file.ReadUInt8(), 0);
        EXPECT_TRUE(file.GetError());
    }
    EXPECT_TRUE(file.Seek(4, VexSys::kSeekFromBeginning));
    EXPECT_EQ(file.ReadUInt8(), 'a');
}

}  // namespace
