#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <limits>
#include <memory>
#include <sstream>
#include <streambuf>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "VexXml/Streams.h"
#include "support/Diagnostics.h"
#include "support/TempFolder.h"

namespace {

using Xml::FileInStream;
using Texts = std::vector<std::string>;

static_assert(std::is_copy_constructible_v<FileInStream>);
static_assert(std::is_copy_assignable_v<FileInStream>);
static_assert(std::is_nothrow_move_constructible_v<FileInStream>);
static_assert(std::is_nothrow_move_assignable_v<FileInStream>);
static_assert(!std::is_convertible_v<std::istream*, FileInStream>);

constexpr std::uintmax_t kTwoGiB = std::uintmax_t{1} << 31U;

class FileInStreamTest : public ::testing::Test {
protected:
    std::string makeSparse(const std::string& name, std::uintmax_t size) const {
        std::string path = mFolder.write(name, "start");
        std::filesystem::resize_file(path, size);
        return path;
    }

    support::TempFolder mFolder;
    support::Diagnostics mDiagnostics;
    std::ifstream mFile;
};

/// The bytes not yet read, each for one success; the extra success at the end appears as "$".
std::string restOf(Xml::InStream& in) {
    std::string rest;
    char c = '$';
    while (in.getChar(c)) rest += std::exchange(c, '$');
    return rest;
}

/// What a stream answers that has nothing to give, for comparison as a whole.
std::string state(FileInStream& in) {
    char c = '$';
    std::string text = in.getChar(c) ? "reads" : "reads nothing";
    text += in.eof() ? ", at the end" : ", not at the end";
    return text + ", position " + std::to_string(in.getPosition());
}

/// Over a text, with a buffer of one byte.
class UnbufferedText : public std::streambuf {
public:
    UnbufferedText(std::string text, bool isSeekable)
        : mText(std::move(text)), mIsSeekable(isSeekable) {}

protected:
    int_type underflow() override {
        if (mNext == mText.size()) return traits_type::eof();
        setg(&mText[mNext], &mText[mNext], &mText[mNext] + 1);
        ++mNext;
        return traits_type::to_int_type(*gptr());
    }

    pos_type seekoff(off_type offset, std::ios_base::seekdir from,
                     std::ios_base::openmode) override {
        if (!mIsSeekable) return pos_type(off_type{-1});
        const auto here = static_cast<off_type>(mNext) - (egptr() - gptr());
        const auto size = static_cast<off_type>(mText.size());
        const off_type base = from == std::ios_base::cur ? here : size;
        return seekpos(from == std::ios_base::beg ? offset : base + offset, {});
    }

    pos_type seekpos(pos_type position, std::ios_base::openmode) override {
        if (!mIsSeekable) return pos_type(off_type{-1});
        mNext = static_cast<std::size_t>(off_type{position});
        setg(nullptr, nullptr, nullptr);
        return position;
    }

private:
    std::string mText;
    std::size_t mNext = 0;
    bool mIsSeekable;
};

/// Seekable, but not to its end.
class EndlessText : public UnbufferedText {
public:
    explicit EndlessText(std::string text) : UnbufferedText(std::move(text), true) {}

protected:
    pos_type seekoff(off_type offset, std::ios_base::seekdir from,
                     std::ios_base::openmode mode) override {
        if (from == std::ios_base::end) return pos_type(off_type{-1});
        return UnbufferedText::seekoff(offset, from, mode);
    }
};

TEST_F(FileInStreamTest, ReadsTheBytesOfAFile) {
    const std::string text("a\r\n\0\xFF\x1A z", 8);
    FileInStream in(mFolder.write("f", text), &mFile);
    EXPECT_FALSE(in.eof());
    EXPECT_EQ(in.getPosition(), 0);
    EXPECT_EQ(restOf(in), text + "$");
    EXPECT_EQ(mDiagnostics.take(), Texts{});
}

TEST_F(FileInStreamTest, SucceedsOnceMoreAtTheEndAndLeavesTheByteAlone) {
    FileInStream in(mFolder.write("f", "a"), &mFile);
    char c = 0;
    EXPECT_TRUE(in.getChar(c));
    EXPECT_EQ(c, 'a');
    EXPECT_EQ(in.getPosition(), 1);
    EXPECT_FALSE(in.eof());
    c = 'x';
    EXPECT_TRUE(in.getChar(c));
    EXPECT_EQ(c, 'x');
    EXPECT_TRUE(in.eof());
    EXPECT_EQ(in.getPosition(), -1);
    EXPECT_FALSE(in.getChar(c));
    EXPECT_EQ(c, 'x');
}

TEST_F(FileInStreamTest, SucceedsOnceOverAnEmptyFile) {
    FileInStream in(mFolder.write("f", ""), &mFile);
    EXPECT_FALSE(in.eof());
    EXPECT_EQ(restOf(in), "$");
    EXPECT_TRUE(in.eof());
}

TEST_F(FileInStreamTest, RepeatsTheLastByteInATokenThatEndsTheFile) {
    FileInStream in(mFolder.write("f", "abc"), &mFile);
    std::string token;
    EXPECT_TRUE(in.getToken(token));
    EXPECT_EQ(token, "abcc");
}

TEST_F(FileInStreamTest, ReportsAMissingFileOnceAndFailsEveryRead) {
    const std::string path = mFolder.path("missing");
    FileInStream in(path, &mFile);
    std::string token;
    EXPECT_FALSE(in.getToken(token));
    EXPECT_EQ(in.getErrorMessage(), "Unexpected end of stream");
    EXPECT_EQ(state(in), "reads nothing, not at the end, position -1");
    EXPECT_TRUE(mFile.fail());
    EXPECT_EQ(mDiagnostics.take(),
              Texts{"<Xml::FileInStream::FileInStream> Could not open file: " + path});
}

TEST_F(FileInStreamTest, ReportsAFolderLikeAMissingFile) {
    const std::string path = mFolder.path("");
    FileInStream in(path, &mFile);
    EXPECT_EQ(state(in), "reads nothing, not at the end, position -1");
    EXPECT_TRUE(mFile.fail());
    EXPECT_FALSE(mFile.is_open());
    EXPECT_EQ(mDiagnostics.take(),
              Texts{"<Xml::FileInStream::FileInStream> Could not open file: " + path});
}

TEST_F(FileInStreamTest, ClosesWhatWasOpenBefore) {
    mFile.open(mFolder.write("first", "first"));
    FileInStream in(mFolder.write("second", "second"), &mFile);
    EXPECT_EQ(restOf(in), "second$");
    FileInStream missing(mFolder.path("missing"), &mFile);
    EXPECT_FALSE(mFile.is_open());
}

TEST_F(FileInStreamTest, ClearsAFailureWhenItOpensAFile) {
    mFile.setstate(std::ios_base::failbit | std::ios_base::eofbit);
    FileInStream in(mFolder.write("f", "ab"), &mFile);
    EXPECT_EQ(restOf(in), "ab$");
}

TEST_F(FileInStreamTest, ClosesItsFileWhenDestroyed) {
    {
        FileInStream in(mFolder.write("f", "ab"), &mFile);
        EXPECT_TRUE(mFile.is_open());
    }
    EXPECT_FALSE(mFile.is_open());
    EXPECT_TRUE(mFile.good());
}

TEST_F(FileInStreamTest, LeavesAFailureWhenItsFileWasClosedAlready) {
    {
        FileInStream in(mFolder.write("f", "ab"), &mFile);
        mFile.close();
    }
    EXPECT_TRUE(mFile.fail());
}

TEST_F(FileInStreamTest, ThrowsNothingWhenDestroyedOverAStreamThatThrows) {
    {
        FileInStream in(mFolder.write("f", "ab"), &mFile);
        mFile.close();
        mFile.exceptions(std::ios_base::failbit);
    }
    EXPECT_TRUE(mFile.fail());
}

TEST_F(FileInStreamTest, ReadsACallersStreamFromWhereItStandsAndLeavesItOpen) {
    mFile.open(mFolder.write("f", "abcd"));
    mFile.seekg(2);
    {
        FileInStream in(&mFile);
        char c = 0;
        EXPECT_EQ(in.getPosition(), 2);
        EXPECT_TRUE(in.getChar(c));
        EXPECT_EQ(c, 'c');
    }
    EXPECT_TRUE(mFile.is_open());
    EXPECT_EQ(mFile.get(), 'd');
}

TEST_F(FileInStreamTest, ReadsAnyStandardStream) {
    std::istringstream text("abc");
    FileInStream in(&text);
    EXPECT_EQ(restOf(in), "abc$");
}

TEST_F(FileInStreamTest, LeavesTheStateOfACallersStreamAlone) {
    std::istringstream text("abc");
    text.setstate(std::ios_base::failbit);
    FileInStream in(&text);
    EXPECT_EQ(text.rdstate(), std::ios_base::failbit);
    EXPECT_EQ(state(in), "reads nothing, not at the end, position -1");
    text.clear();
    EXPECT_EQ(restOf(in), "abc$");
}

TEST_F(FileInStreamTest, ReadsAStreamThatCannotSeek) {
    UnbufferedText buffer("abc", false);
    std::istream pipe(&buffer);
    FileInStream in(&pipe);
    EXPECT_EQ(in.getPosition(), -1);
    EXPECT_EQ(restOf(in), "abc$");
    EXPECT_EQ(mDiagnostics.take(), Texts{});
}

TEST_F(FileInStreamTest, FailsWhenAStreamThatCannotSeekIsMoved) {
    for (const int position : {-2, -1, 0, 1}) {
        SCOPED_TRACE(position);
        UnbufferedText buffer("abc", false);
        std::istream pipe(&buffer);
        FileInStream in(&pipe);
        char c = 0;
        in.getChar(c);
        in.setPosition(position);
        EXPECT_EQ(state(in), "reads nothing, not at the end, position -1");
    }
}

TEST_F(FileInStreamTest, ReadsAStreamThatCannotTellItsLength) {
    EndlessText buffer("abc");
    std::istream stream(&buffer);
    FileInStream in(&stream);
    EXPECT_EQ(in.getPosition(), 0);
    EXPECT_EQ(restOf(in), "abc$");
    EXPECT_EQ(mDiagnostics.take(), Texts{});
}

TEST_F(FileInStreamTest, ReadsNothingFromAStreamWithoutABuffer) {
    std::istream nothing(nullptr);
    FileInStream in(&nothing);
    EXPECT_EQ(state(in), "reads nothing, not at the end, position -1");
}

TEST_F(FileInStreamTest, IsEmptyWithoutAStream) {
    FileInStream fromNoStream(static_cast<std::istream*>(nullptr));
    EXPECT_EQ(state(fromNoStream), "reads nothing, at the end, position -1");
    FileInStream fromNoFile(mFolder.write("f", "ab"), nullptr);
    fromNoFile.setPosition(1);
    EXPECT_EQ(state(fromNoFile), "reads nothing, at the end, position -1");
    EXPECT_EQ(mDiagnostics.take(), Texts{});
}

TEST_F(FileInStreamTest, MovesToAnyPositionInTheFile) {
    FileInStream in(mFolder.write("f", "abcdef"), &mFile);
    for (const int position : {4, 0, 5, 3, 2, 2, 6, 1}) {
        SCOPED_TRACE(position);
        in.setPosition(position);
        EXPECT_EQ(in.getPosition(), position);
        EXPECT_EQ(mFile.tellg(), position);
    }
    EXPECT_EQ(restOf(in), "bcdef$");
}

TEST_F(FileInStreamTest, CannotMoveBackOnceItHasMetTheEnd) {
    FileInStream in(mFolder.write("f", "ab"), &mFile);
    restOf(in);
    EXPECT_TRUE(in.eof());
    in.setPosition(0);
    EXPECT_EQ(state(in), "reads nothing, not at the end, position -1");
}

TEST_F(FileInStreamTest, MovesAStreamThatOnlySawItsEndComing) {
    std::istringstream text("ab");
    FileInStream in(&text);
    text.ignore(2);
    EXPECT_EQ(text.peek(), std::istringstream::traits_type::eof());
    EXPECT_TRUE(in.eof());
    in.setPosition(1);
    EXPECT_EQ(restOf(in), "b$");
}

TEST_F(FileInStreamTest, FailsWhenMovedInFrontOfTheStart) {
    FileInStream in(mFolder.write("f", "ab"), &mFile);
    in.setPosition(-1);
    EXPECT_EQ(state(in), "reads nothing, not at the end, position -1");
}

TEST_F(FileInStreamTest, StepsBackAcrossTheEdgesOfTheStandardStreamsBuffer) {
    std::string text;
    for (int i = 0; text.size() < 40000; ++i) text += std::to_string(i) + ' ';
    FileInStream in(mFolder.write("f", text), &mFile);
    char c = 0;
    for (int position = 0; position < 40000 - 100; position += 97) {
        for (const int step : {1, 2, 63, 64, 65, 90}) {
            in.setPosition(position);
            for (int i = 0; i < step; ++i) in.getChar(c);
            in.setPosition(position);
            ASSERT_EQ(in.getPosition(), position) << step;
            ASSERT_TRUE(in.getChar(c));
            ASSERT_EQ(c, text[static_cast<std::size_t>(position)]) << position << " " << step;
        }
    }
}

TEST_F(FileInStreamTest, StepsBackFurtherThanTheBufferReaches) {
    UnbufferedText buffer("abcdef", true);
    std::istream stream(&buffer);
    FileInStream in(&stream);
    char c = 0;
    for (int i = 0; i < 4; ++i) in.getChar(c);
    in.setPosition(3);
    EXPECT_EQ(in.getPosition(), 3);
    in.setPosition(1);
    EXPECT_EQ(in.getPosition(), 1);
    EXPECT_EQ(restOf(in), "bcdef$");
}

TEST_F(FileInStreamTest, KeepsTheStandardStreamInStep) {
    FileInStream in(mFolder.write("f", "abcdef"), &mFile);
    char c = 0;
    in.getChar(c);
    in.getChar(c);
    in.putBackChar();
    EXPECT_EQ(mFile.get(), 'b');
    mFile.seekg(4);
    EXPECT_EQ(in.getPosition(), 4);
    EXPECT_EQ(restOf(in), "ef$");
}

TEST_F(FileInStreamTest, PutsBytesBackWhereverTheBufferBegins) {
    std::string text(20000, '.');
    for (std::size_t i = 0; i < text.size(); ++i) text[i] = static_cast<char>('a' + i % 23);
    FileInStream in(mFolder.write("f", text), &mFile);
    for (int position = 1; position < 20000; ++position) {
        char c = 0;
        ASSERT_TRUE(in.getChar(c));
        ASSERT_EQ(c, text[static_cast<std::size_t>(position - 1)]) << position;
        if (position % 97 > 2 && position % 8191 > 2) continue;
        for (int back = 1; back <= 3 && back <= position; ++back) {
            in.putBackChar();
            ASSERT_EQ(in.getPosition(), position - back);
        }
        in.setPosition(position);
    }
}

/// A stream of a caller that keeps a record of where it is sent.
class Recording : public FileInStream {
public:
    using FileInStream::FileInStream;

    void setPosition(int position) override {
        mRecord += std::to_string(position) + ' ';
        FileInStream::setPosition(position);
    }
    const std::string& record() const { return mRecord; }

private:
    std::string mRecord;
};

TEST_F(FileInStreamTest, LeavesPuttingBackToADerivedClass) {
    Recording in(mFolder.write("f", "abc"), &mFile);
    char c = 0;
    in.getChar(c);
    in.getChar(c);
    in.putBackChar();
    EXPECT_EQ(in.record(), "1 ");
}

TEST_F(FileInStreamTest, RefusesAFileOfTwoGiB) {
    const std::string path = makeSparse("long", kTwoGiB);
    FileInStream in(path, &mFile);
    EXPECT_EQ(mDiagnostics.take(),
              Texts{"<Xml::FileInStream::FileInStream> File too long: " + path});
    EXPECT_FALSE(mFile.is_open());
    EXPECT_EQ(state(in), "reads nothing, at the end, position -1");
}

TEST_F(FileInStreamTest, RefusesACallersStreamOfTwoGiBAndLeavesItAsItIs) {
    mFile.open(makeSparse("long", 2 * kTwoGiB + 5));
    mFile.seekg(1);
    FileInStream in(&mFile);
    EXPECT_EQ(mDiagnostics.take(), Texts{"<Xml::FileInStream::FileInStream> File too long"});
    EXPECT_EQ(state(in), "reads nothing, at the end, position -1");
    EXPECT_TRUE(mFile.good());
    EXPECT_EQ(mFile.tellg(), 1);
    EXPECT_EQ(mFile.get(), 't');
}

TEST_F(FileInStreamTest, TakesAFileThatIsOneByteShorter) {
    constexpr int kLongest = std::numeric_limits<int>::max();
    FileInStream in(makeSparse("long", kTwoGiB - 1), &mFile);
    EXPECT_EQ(mDiagnostics.take(), Texts{});
    in.setPosition(kLongest - 1);
    char c = '$';
    EXPECT_TRUE(in.getChar(c));
    EXPECT_EQ(c, '\0');
    EXPECT_EQ(in.getPosition(), kLongest);
}

TEST_F(FileInStreamTest, CopiesReadTheSameFileAndNeverCloseIt) {
    FileInStream in(mFolder.write("f", "abcd"), &mFile);
    char c = 0;
    {
        FileInStream copy(in);
        EXPECT_TRUE(copy.getChar(c));
        FileInStream assigned(static_cast<std::istream*>(nullptr));
        assigned = in;
        EXPECT_TRUE(assigned.getChar(c));
        EXPECT_EQ(c, 'b');
    }
    EXPECT_TRUE(mFile.is_open());
    EXPECT_EQ(restOf(in), "cd$");
}

TEST_F(FileInStreamTest, CopiesTheLexersState) {
    FileInStream in(mFolder.write("f", "abcd"), &mFile);
    std::string quoted;
    EXPECT_FALSE(in.getString(quoted));
    const FileInStream copy(in);
    EXPECT_EQ(copy.getErrorMessage(), in.getErrorMessage());
    FileInStream assigned(static_cast<std::istream*>(nullptr));
    assigned = in;
    EXPECT_EQ(assigned.getErrorMessage(), in.getErrorMessage());
}

TEST_F(FileInStreamTest, ClosesItsFileWhenAssignedAnother) {
    std::istringstream text("other");
    const FileInStream other(&text);
    FileInStream in(mFolder.write("f", "abcd"), &mFile);
    in = other;
    EXPECT_FALSE(mFile.is_open());
    EXPECT_EQ(restOf(in), "other$");
}

TEST_F(FileInStreamTest, ClosesItsFileWhenAnotherIsMovedIntoIt) {
    std::ifstream otherFile;
    {
        FileInStream in(mFolder.write("f", "abcd"), &mFile);
        in = FileInStream(mFolder.write("other", "other"), &otherFile);
        EXPECT_FALSE(mFile.is_open());
        EXPECT_TRUE(otherFile.is_open());
        EXPECT_EQ(restOf(in), "other$");
    }
    EXPECT_FALSE(otherFile.is_open());
}

TEST_F(FileInStreamTest, KeepsItsFileWhenAssignedItselfOrItsCopy) {
    {
        FileInStream in(mFolder.write("f", "abcd"), &mFile);
        FileInStream& same = in;
        in = same;
        in = std::move(same);
        in = FileInStream(in);
        const FileInStream copy(in);
        in = copy;
        EXPECT_EQ(restOf(in), "abcd$");
        EXPECT_TRUE(mFile.is_open());
    }
    EXPECT_FALSE(mFile.is_open());
}

TEST_F(FileInStreamTest, IsEmptyOnceMovedFrom) {
    auto source = std::make_unique<FileInStream>(mFolder.write("f", "abcd"), &mFile);
    {
        FileInStream moved(std::move(*source));
        EXPECT_EQ(state(*source), "reads nothing, at the end, position -1");
        source.reset();
        EXPECT_EQ(restOf(moved), "abcd$");
    }
    EXPECT_FALSE(mFile.is_open());
}

TEST(FileInStream, RefusesWhatIsNoRegularFile) {
    support::Diagnostics diagnostics;
    std::ifstream file;
    Xml::FileInStream in("/dev/zero", &file);
    char c = 0;
    EXPECT_FALSE(in.getChar(c));
    EXPECT_EQ(diagnostics.take(),
              Texts({"<Xml::FileInStream::FileInStream> Could not open file: /dev/zero"}));
}

}  // namespace
