#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <memory>
#include <sstream>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "VexXml/Streams.h"
#include "support/Diagnostics.h"
#include "support/TempFolder.h"

namespace {

using Xml::FileOutStream;
using Texts = std::vector<std::string>;

static_assert(std::is_copy_constructible_v<FileOutStream>);
static_assert(std::is_copy_assignable_v<FileOutStream>);
static_assert(std::is_nothrow_move_constructible_v<FileOutStream>);
static_assert(std::is_nothrow_move_assignable_v<FileOutStream>);
static_assert(!std::is_convertible_v<std::ostream*, FileOutStream>);

class FileOutStreamTest : public ::testing::Test {
protected:
    std::string contentsOf(const std::string& name) const {
        std::ifstream file(mFolder.path(name), std::ios_base::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }

    support::TempFolder mFolder;
    support::Diagnostics mDiagnostics;
    std::ofstream mFile;
};

std::ostream* const kNoStream = nullptr;

TEST_F(FileOutStreamTest, WritesBytesIntoItsFileAndClosesIt) {
    const std::string text("a\r\n\0\xFF\x1A z", 8);
    {
        FileOutStream out(mFolder.path("f"), &mFile);
        EXPECT_TRUE(out.isValid());
        out << text;
        EXPECT_TRUE(mFile.is_open());
    }
    EXPECT_FALSE(mFile.is_open());
    EXPECT_TRUE(mFile.good());
    EXPECT_EQ(contentsOf("f"), text);
    EXPECT_EQ(mDiagnostics.take(), Texts{});
}

TEST_F(FileOutStreamTest, DropsWhatTheFileHeld) {
    mFolder.write("f", "a long text");
    { FileOutStream out(mFolder.path("f"), &mFile); }
    EXPECT_EQ(contentsOf("f"), "");
}

TEST_F(FileOutStreamTest, ReportsAFileThatCannotBeOpenedAndDropsWhatIsWritten) {
    for (const std::string& path : {mFolder.path("no/folder"), mFolder.path("")}) {
        SCOPED_TRACE(path);
        FileOutStream out(path, &mFile);
        EXPECT_TRUE(mFile.fail());
        EXPECT_TRUE(out.isValid());
        out << "text";
        EXPECT_EQ(out.getPosition(), -1);
        EXPECT_EQ(mDiagnostics.take(),
                  Texts{"<Xml::FileOutStream::FileOutStream> Could not open file: " + path});
    }
}

TEST_F(FileOutStreamTest, ClosesWhatWasOpenBefore) {
    mFile.open(mFolder.path("first"));
    mFile << "first";
    {
        FileOutStream out(mFolder.path("second"), &mFile);
        out << "second";
    }
    EXPECT_EQ(contentsOf("first"), "first");
    EXPECT_EQ(contentsOf("second"), "second");
}

TEST_F(FileOutStreamTest, ClearsAFailureWhenItOpensAFile) {
    mFile.setstate(std::ios_base::failbit);
    FileOutStream out(mFolder.path("f"), &mFile);
    EXPECT_TRUE(mFile.good());
}

TEST_F(FileOutStreamTest, LeavesTheFailureOfAFullDiskInTheStandardStream) {
    {
        FileOutStream out("/dev/full", &mFile);
        out << "text";
        EXPECT_TRUE(mFile.good());
    }
    EXPECT_TRUE(mFile.fail());
}

TEST_F(FileOutStreamTest, ThrowsNothingWhenDestroyedOverAStreamThatThrows) {
    {
        FileOutStream out("/dev/full", &mFile);
        out << "text";
        mFile.exceptions(std::ios_base::failbit | std::ios_base::badbit);
    }
    EXPECT_TRUE(mFile.fail());
}

TEST_F(FileOutStreamTest, WritesACallersStreamFromWhereItStandsAndLeavesItOpen) {
    mFile.open(mFolder.path("f"));
    mFile << "ab";
    {
        FileOutStream out(&mFile);
        EXPECT_EQ(out.getPosition(), 2);
        out << "cd";
    }
    EXPECT_TRUE(mFile.is_open());
    mFile << "ef";
    mFile.close();
    EXPECT_EQ(contentsOf("f"), "abcdef");
}

TEST_F(FileOutStreamTest, WritesAnyStandardStream) {
    std::ostringstream text;
    FileOutStream out(&text);
    out << "abc";
    EXPECT_EQ(text.str(), "abc");
}

TEST_F(FileOutStreamTest, OverwritesWhereItWasMoved) {
    {
        FileOutStream out(mFolder.path("f"), &mFile);
        out << "abcd";
        EXPECT_EQ(out.getPosition(), 4);
        out.setPosition(1);
        EXPECT_EQ(out.getPosition(), 1);
        out << "xy";
        EXPECT_EQ(out.getPosition(), 3);
    }
    EXPECT_EQ(contentsOf("f"), "axyd");
}

TEST_F(FileOutStreamTest, DropsWhatIsWrittenWithoutAStream) {
    FileOutStream toNoStream(kNoStream);
    toNoStream << "text";
    toNoStream.setPosition(1);
    EXPECT_EQ(toNoStream.getPosition(), -1);
    FileOutStream toNoFile(mFolder.path("f"), nullptr);
    toNoFile << "text";
    EXPECT_EQ(toNoFile.getPosition(), -1);
    EXPECT_EQ(contentsOf("f"), "");
    EXPECT_EQ(mDiagnostics.take(), Texts{});
}

TEST_F(FileOutStreamTest, CopiesWriteTheSameFileAndNeverCloseIt) {
    {
        FileOutStream out(mFolder.path("f"), &mFile);
        out.incTab();
        out << "a\n";
        {
            FileOutStream copy(out);
            copy << "b\n";
            FileOutStream assigned(kNoStream);
            assigned = copy;
            assigned << "c\n";
        }
        EXPECT_TRUE(mFile.is_open());
        out << "d";
    }
    EXPECT_EQ(contentsOf("f"), "\ta\n\tb\n\tc\n\td");
}

TEST_F(FileOutStreamTest, ClosesItsFileWhenAssignedAnother) {
    std::ostringstream text;
    const FileOutStream other(&text);
    FileOutStream out(mFolder.path("f"), &mFile);
    out << "first";
    out = other;
    EXPECT_FALSE(mFile.is_open());
    out << "second";
    EXPECT_EQ(contentsOf("f"), "first");
    EXPECT_EQ(text.str(), "second");
}

TEST_F(FileOutStreamTest, ClosesItsFileWhenAnotherIsMovedIntoIt) {
    std::ofstream otherFile;
    {
        FileOutStream out(mFolder.path("f"), &mFile);
        out = FileOutStream(mFolder.path("other"), &otherFile);
        EXPECT_FALSE(mFile.is_open());
        EXPECT_TRUE(otherFile.is_open());
        out << "text";
    }
    EXPECT_FALSE(otherFile.is_open());
    EXPECT_EQ(contentsOf("other"), "text");
}

TEST_F(FileOutStreamTest, KeepsItsFileWhenAssignedItselfOrItsCopy) {
    {
        FileOutStream out(mFolder.path("f"), &mFile);
        FileOutStream& same = out;
        out = same;
        out = std::move(same);
        out = FileOutStream(out);
        const FileOutStream copy(out);
        out = copy;
        out << "text";
        EXPECT_TRUE(mFile.is_open());
    }
    EXPECT_FALSE(mFile.is_open());
    EXPECT_EQ(contentsOf("f"), "text");
}

TEST_F(FileOutStreamTest, DropsWhatIsWrittenOnceMovedFrom) {
    auto source = std::make_unique<FileOutStream>(mFolder.path("f"), &mFile);
    source->incTab();
    {
        FileOutStream moved(std::move(*source));
        *source << "lost";
        EXPECT_EQ(source->getPosition(), -1);
        source.reset();
        moved << "kept";
    }
    EXPECT_FALSE(mFile.is_open());
    EXPECT_EQ(contentsOf("f"), "\tkept");
}

}  // namespace
