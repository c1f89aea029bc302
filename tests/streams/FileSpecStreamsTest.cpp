#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <limits>
#include <memory>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "VexSys/FileIO.h"
#include "VexXml/Streams.h"
#include "support/Diagnostics.h"
#include "support/TempFolder.h"

namespace {

using VexSys::FileIO;
using VexSys::FileSpec;
using Xml::FileSpecInStream;
using Xml::FileSpecOutStream;
using Texts = std::vector<std::string>;

static_assert(std::is_copy_constructible_v<FileSpecInStream>);
static_assert(std::is_copy_assignable_v<FileSpecInStream>);
static_assert(std::is_nothrow_move_constructible_v<FileSpecInStream>);
static_assert(std::is_nothrow_move_assignable_v<FileSpecInStream>);
static_assert(std::is_copy_constructible_v<FileSpecOutStream>);
static_assert(std::is_copy_assignable_v<FileSpecOutStream>);
static_assert(std::is_nothrow_move_constructible_v<FileSpecOutStream>);
static_assert(std::is_nothrow_move_assignable_v<FileSpecOutStream>);
static_assert(!std::is_convertible_v<FileSpec, FileSpecInStream>);
static_assert(!std::is_convertible_v<FileSpec, FileSpecOutStream>);

constexpr std::uintmax_t kTwoGiB = std::uintmax_t{1} << 31U;

/// The bytes not yet read.
std::string restOf(Xml::InStream& in) {
    std::string rest;
    char c = 0;
    while (in.getChar(c)) rest += c;
    return rest;
}

/// What a stream answers that has nothing to give, for comparison as a whole.
std::string state(FileSpecInStream& in) {
    char c = 0;
    std::string text = in.getChar(c) ? "reads" : "reads nothing";
    text += in.eof() ? ", at the end" : ", not at the end";
    return text + ", position " + std::to_string(in.getPosition());
}

class FileSpecStreams : public ::testing::Test {
protected:
    FileSpec spec(const std::string& name) const { return FileSpec(mFolder.path(name)); }

    FileSpec write(const std::string& name, const std::string& bytes) const {
        return FileSpec(mFolder.write(name, bytes));
    }

    FileSpec makeSparse(std::uintmax_t size) const {
        const std::string path = mFolder.write("long", "start");
        std::filesystem::resize_file(path, size);
        return FileSpec(path);
    }

    std::string contentsOf(const std::string& name) const {
        std::ifstream file(mFolder.path(name), std::ios_base::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }

    support::TempFolder mFolder;
    support::Diagnostics mDiagnostics;
};

using FileSpecInStreamTest = FileSpecStreams;
using FileSpecOutStreamTest = FileSpecStreams;

TEST_F(FileSpecInStreamTest, ReadsTheBytesOfAFile) {
    const std::string text("a\r\n\0\xFF\x1A z", 8);
    FileSpecInStream in(write("f", text));
    EXPECT_EQ(in.getPosition(), 0);
    EXPECT_FALSE(in.eof());
    EXPECT_EQ(restOf(in), text);
    EXPECT_EQ(state(in), "reads nothing, at the end, position 8");
    EXPECT_EQ(mDiagnostics.take(), Texts{});
}

TEST_F(FileSpecInStreamTest, IsAtItsEndWithTheLastByte) {
    FileSpecInStream in(write("f", "abc"));
    std::string token;
    EXPECT_TRUE(in.getToken(token));
    EXPECT_EQ(token, "abc");
    EXPECT_TRUE(in.eof());
}

TEST_F(FileSpecInStreamTest, IsEmptyOverAFileThatCannotBeOpened) {
    for (const char* name : {"missing", "", "no/folder"}) {
        SCOPED_TRACE(name);
        FileSpecInStream in(spec(name));
        in.setPosition(1);
        EXPECT_EQ(state(in), "reads nothing, at the end, position -1");
        std::string token;
        EXPECT_FALSE(in.getToken(token));
        EXPECT_EQ(in.getErrorMessage(), "Unexpected end of stream");
    }
    EXPECT_EQ(mDiagnostics.take(), Texts{});
}

TEST_F(FileSpecInStreamTest, MovesToAnyPositionAndReadsAgain) {
    FileSpecInStream in(write("f", "abcdef"));
    restOf(in);
    for (const int position : {4, 0, 5, 6, 2}) {
        in.setPosition(position);
        EXPECT_EQ(in.getPosition(), position);
    }
    EXPECT_EQ(restOf(in), "cdef");
}

TEST_F(FileSpecInStreamTest, IsAtItsEndWhenMovedBehindTheEnd) {
    FileSpecInStream in(write("f", "abc"));
    in.setPosition(10);
    EXPECT_EQ(state(in), "reads nothing, at the end, position 10");
    in.setPosition(2);
    EXPECT_EQ(restOf(in), "c");
}

TEST_F(FileSpecInStreamTest, StaysWhenMovedInFrontOfTheStart) {
    FileSpecInStream in(write("f", "abc"));
    in.setPosition(1);
    in.setPosition(-1);
    EXPECT_EQ(in.getPosition(), 1);
}

TEST_F(FileSpecInStreamTest, ReadsACallersFileFromWhereItStandsAndLeavesItOpen) {
    FileIO file(write("f", "abcd"));
    ASSERT_TRUE(file.Open(VexSys::kFileRead));
    file.Seek(2, VexSys::kSeekFromBeginning);
    {
        FileSpecInStream in(file);
        char c = 0;
        EXPECT_EQ(in.getPosition(), 2);
        EXPECT_TRUE(in.getChar(c));
        EXPECT_EQ(c, 'c');
    }
    EXPECT_TRUE(file.IsOpened());
    EXPECT_EQ(file.ReadUInt8(), 'd');
}

TEST_F(FileSpecInStreamTest, IsAtItsEndOverACallersFileThatIsNotOpen) {
    FileIO file(write("f", "abc"));
    FileSpecInStream in(file);
    EXPECT_EQ(state(in), "reads nothing, at the end, position 0");
}

TEST_F(FileSpecInStreamTest, IsAtItsEndOnceTheCallerClosesTheFile) {
    FileIO file(write("f", "abc"));
    ASSERT_TRUE(file.Open(VexSys::kFileRead));
    FileSpecInStream in(file);
    EXPECT_FALSE(in.eof());
    file.Close();
    EXPECT_TRUE(in.eof());
    EXPECT_EQ(state(in), "reads nothing, at the end, position 0");
}

TEST_F(FileSpecInStreamTest, DoesNotReadWhatIsAppendedLater) {
    FileSpecInStream in(write("f", "abc"));
    mFolder.write("f", "abcdef");
    EXPECT_EQ(restOf(in), "abc");
    EXPECT_TRUE(in.eof());
}

TEST_F(FileSpecInStreamTest, ComesToAnEndWhenTheFileShrinks) {
    const std::size_t size = 300000;
    FileSpecInStream in(write("f", std::string(size, 'x')));
    char c = 0;
    EXPECT_TRUE(in.getChar(c));
    std::filesystem::resize_file(mFolder.path("f"), 10);
    EXPECT_LT(restOf(in).size(), size);
    EXPECT_TRUE(in.eof());
}

TEST_F(FileSpecInStreamTest, RefusesAFileOfTwoGiB) {
    FileSpecInStream in(makeSparse(kTwoGiB));
    EXPECT_EQ(mDiagnostics.take(),
              Texts{"<Xml::FileSpecInStream::FileSpecInStream> File too long"});
    EXPECT_EQ(state(in), "reads nothing, at the end, position -1");
}

TEST_F(FileSpecInStreamTest, RefusesACallersFileOfTwoGiBAndLeavesItAsItIs) {
    FileIO file(makeSparse(2 * kTwoGiB + 5));
    ASSERT_TRUE(file.Open(VexSys::kFileRead));
    file.Seek(1, VexSys::kSeekFromBeginning);
    {
        FileSpecInStream in(file);
        EXPECT_EQ(mDiagnostics.take(),
                  Texts{"<Xml::FileSpecInStream::FileSpecInStream> File too long"});
        EXPECT_EQ(state(in), "reads nothing, at the end, position -1");
    }
    EXPECT_TRUE(file.IsOpened());
    EXPECT_EQ(file.ReadUInt8(), 't');
}

TEST_F(FileSpecInStreamTest, TakesAFileThatIsOneByteShorter) {
    constexpr int kLongest = std::numeric_limits<int>::max();
    FileSpecInStream in(makeSparse(kTwoGiB - 1));
    EXPECT_EQ(mDiagnostics.take(), Texts{});
    in.setPosition(kLongest - 1);
    EXPECT_EQ(restOf(in), std::string(1, '\0'));
    EXPECT_EQ(in.getPosition(), kLongest);
}

TEST_F(FileSpecInStreamTest, CopiesReadTheSameFileAndNeverDeleteIt) {
    FileSpecInStream in(write("f", "abcd"));
    char c = 0;
    {
        FileSpecInStream copy(in);
        EXPECT_TRUE(copy.getChar(c));
        FileSpecInStream assigned(spec("missing"));
        assigned = copy;
        EXPECT_TRUE(assigned.getChar(c));
        EXPECT_EQ(c, 'b');
    }
    EXPECT_EQ(restOf(in), "cd");
}

TEST_F(FileSpecInStreamTest, ReadsAnotherFileOnceAssigned) {
    FileIO file(write("other", "other"));
    ASSERT_TRUE(file.Open(VexSys::kFileRead));
    FileSpecInStream other(file);
    FileSpecInStream in(write("f", "abcd"));
    in = other;
    EXPECT_EQ(restOf(in), "other");
    in = FileSpecInStream(write("third", "third"));
    EXPECT_EQ(restOf(in), "third");
    EXPECT_TRUE(file.IsOpened());
}

TEST_F(FileSpecInStreamTest, KeepsItsFileWhenAssignedItselfOrItsCopy) {
    FileSpecInStream in(write("f", "abcd"));
    FileSpecInStream& same = in;
    in = same;
    in = std::move(same);
    in = FileSpecInStream(in);
    const FileSpecInStream copy(in);
    in = copy;
    EXPECT_EQ(restOf(in), "abcd");
}

TEST_F(FileSpecInStreamTest, IsEmptyOnceMovedFrom) {
    auto source = std::make_unique<FileSpecInStream>(write("f", "abcd"));
    FileSpecInStream moved(std::move(*source));
    source->setPosition(2);
    EXPECT_EQ(state(*source), "reads nothing, at the end, position -1");
    source.reset();
    EXPECT_EQ(restOf(moved), "abcd");
}

TEST_F(FileSpecOutStreamTest, WritesBytesIntoANewFile) {
    const std::string text("a\r\n\0\xFF\x1A z", 8);
    {
        FileSpecOutStream out(spec("f"));
        EXPECT_TRUE(out.isValid());
        EXPECT_EQ(out.getPosition(), 0);
        out << text;
        EXPECT_EQ(out.getPosition(), 8);
    }
    EXPECT_EQ(contentsOf("f"), text);
}

TEST_F(FileSpecOutStreamTest, DropsWhatTheFileHeld) {
    { FileSpecOutStream out(write("f", "a long text")); }
    EXPECT_EQ(contentsOf("f"), "");
}

TEST_F(FileSpecOutStreamTest, DropsEveryByteSilentlyWithoutAFile) {
    for (const char* name : {"", "no/folder"}) {
        SCOPED_TRACE(name);
        FileSpecOutStream out(spec(name));
        EXPECT_FALSE(out.isValid());
        out << "text";
        out.writeDataHolder("text");
        out.setPosition(1);
        EXPECT_EQ(out.getPosition(), -1);
    }
    EXPECT_EQ(mDiagnostics.take(), Texts{});
}

TEST_F(FileSpecOutStreamTest, OverwritesWhereItWasMoved) {
    {
        FileSpecOutStream out(spec("f"));
        out << "abcd";
        out.setPosition(1);
        EXPECT_EQ(out.getPosition(), 1);
        out << "xy";
        EXPECT_EQ(out.getPosition(), 3);
    }
    EXPECT_EQ(contentsOf("f"), "axyd");
}

TEST_F(FileSpecOutStreamTest, WritesACallersFileFromWhereItStandsAndLeavesItOpen) {
    FileIO file(write("f", "abcdef"));
    ASSERT_TRUE(file.Open(VexSys::kFileWrite));
    file.Seek(2, VexSys::kSeekFromBeginning);
    {
        FileSpecOutStream out(file);
        EXPECT_EQ(out.getPosition(), 2);
        out << "xy";
    }
    EXPECT_TRUE(file.IsOpened());
    EXPECT_TRUE(file.Close());
    EXPECT_EQ(contentsOf("f"), "abxyef");
}

TEST_F(FileSpecOutStreamTest, LetsTheCallerSeeAFullDisk) {
    FileIO file(FileSpec("/dev/full"));
    ASSERT_TRUE(file.Open(VexSys::kFileWrite));
    FileSpecOutStream out(file);
    out << "text";
    EXPECT_FALSE(file.Close());
    EXPECT_EQ(file.GetError(), std::errc::no_space_on_device);
}

TEST_F(FileSpecOutStreamTest, CopiesWriteTheSameFileAndNeverDeleteIt) {
    {
        FileSpecOutStream out(spec("f"));
        out.incTab();
        out << "a\n";
        {
            FileSpecOutStream copy(out);
            copy << "b\n";
            FileSpecOutStream assigned(spec("no/folder"));
            assigned = copy;
            assigned << "c\n";
        }
        out << "d";
    }
    EXPECT_EQ(contentsOf("f"), "\ta\n\tb\n\tc\n\td");
}

TEST_F(FileSpecOutStreamTest, ClosesItsFileWhenAssignedAnother) {
    FileSpecOutStream other(spec("other"));
    FileSpecOutStream out(spec("f"));
    out << "first";
    out = other;
    EXPECT_EQ(contentsOf("f"), "first");
    out = FileSpecOutStream(spec("third"));
    out << "third";
    other << "second";
    out = FileSpecOutStream(spec("no/folder"));
    EXPECT_EQ(contentsOf("third"), "third");
    EXPECT_FALSE(out.isValid());
}

TEST_F(FileSpecOutStreamTest, KeepsItsFileWhenAssignedItselfOrItsCopy) {
    {
        FileSpecOutStream out(spec("f"));
        FileSpecOutStream& same = out;
        out = same;
        out = std::move(same);
        out = FileSpecOutStream(out);
        const FileSpecOutStream copy(out);
        out = copy;
        out << "text";
    }
    EXPECT_EQ(contentsOf("f"), "text");
}

TEST_F(FileSpecOutStreamTest, HasNoFileOnceMovedFrom) {
    auto source = std::make_unique<FileSpecOutStream>(spec("f"));
    {
        FileSpecOutStream moved(std::move(*source));
        EXPECT_FALSE(source->isValid());
        *source << "lost";
        EXPECT_EQ(source->getPosition(), -1);
        source.reset();
        moved << "kept";
    }
    EXPECT_EQ(contentsOf("f"), "kept");
}

}  // namespace
