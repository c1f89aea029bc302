#include "VexSys/FileIO.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <limits>
#include <string>
#include <system_error>
#include <type_traits>

#include "support/TempFolder.h"

namespace {

using VexSys::FileIO;
using VexSys::FileSpec;
using VexSys::kFileRead;
using VexSys::kFileWrite;
using VexSys::kSeekFromBeginning;

static_assert(std::is_copy_constructible_v<FileSpec>);
static_assert(std::is_copy_assignable_v<FileSpec>);
static_assert(std::is_move_constructible_v<FileSpec>);
static_assert(std::is_move_assignable_v<FileSpec>);
static_assert(std::has_virtual_destructor_v<VexSys::FileIOBase>);
static_assert(std::is_base_of_v<VexSys::FileIOBase, FileIO>);
static_assert(!std::is_copy_constructible_v<FileIO>);
static_assert(VexSys::kFileWrite == 0 && VexSys::kFileRead == 1);
static_assert(VexSys::kSeekFromBeginning == 0);

constexpr std::uint32_t kText = 0x54455854;
constexpr int kMoreThanABuffer = 200000;

/// A byte that differs at most places around its own.
unsigned char byteAt(int position) {
    return static_cast<unsigned char>(position * 7 + position / 251);
}

std::string bytes(int count) {
    std::string text;
    for (int i = 0; i < count; ++i) text += static_cast<char>(byteAt(i));
    return text;
}

bool writeText(FileIO& file, const std::string& text) {
    bool isWritten = true;
    for (const char c : text) isWritten &= file.WriteUInt8(static_cast<unsigned char>(c));
    return isWritten;
}

/// Takes the rights of root away from the process while it lives.
class PlainUser {
public:
    PlainUser() : mBefore(geteuid()) {
        constexpr uid_t kNobody = 65534;
        if (mBefore == 0 && seteuid(kNobody) != 0) ADD_FAILURE() << "cannot give up being root";
    }
    ~PlainUser() {
        if (seteuid(mBefore) != 0) ADD_FAILURE() << "cannot be root again";
    }
    PlainUser(const PlainUser&) = delete;
    PlainUser& operator=(const PlainUser&) = delete;

private:
    uid_t mBefore;
};

class FileIOTest : public ::testing::Test {
protected:
    FileSpec spec(const std::string& name) const { return FileSpec(mFolder.path(name)); }

    FileSpec write(const std::string& name, const std::string& text) const {
        return FileSpec(mFolder.write(name, text));
    }

    std::string contentsOf(const std::string& name) const {
        std::ifstream file(mFolder.path(name), std::ios_base::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }

    support::TempFolder mFolder;
};

TEST_F(FileIOTest, FileSpecGivesItsPath) { EXPECT_EQ(FileSpec("a/b").GetPath(), "a/b"); }

TEST_F(FileIOTest, IsNotOpenAtFirst) {
    FileIO file(write("f", "abc"));
    EXPECT_FALSE(file.IsOpened());
    EXPECT_EQ(file.GetFileLength(), 0U);
    EXPECT_EQ(file.GetFilePosition(), 0U);
    EXPECT_EQ(file.GetError(), std::error_code());
}

TEST_F(FileIOTest, FailsEveryOperationThatNeedsAnOpenFile) {
    FileIO file(write("f", "abc"));
    EXPECT_EQ(file.ReadUInt8(), 0);
    EXPECT_EQ(file.GetError(), std::errc::bad_file_descriptor);
    EXPECT_FALSE(file.WriteUInt8('x'));
    EXPECT_FALSE(file.Seek(0, kSeekFromBeginning));
    EXPECT_EQ(file.GetFilePosition(), 0U);
    EXPECT_TRUE(file.Flush());
    EXPECT_TRUE(file.Close());
    EXPECT_EQ(contentsOf("f"), "abc");
}

TEST_F(FileIOTest, ReadsByteAfterByte) {
    FileIO file(write("f", std::string("a\0\xFF", 3)));
    ASSERT_TRUE(file.Open(kFileRead));
    EXPECT_TRUE(file.IsOpened());
    EXPECT_EQ(file.GetFileLength(), 3U);
    EXPECT_EQ(file.GetFilePosition(), 0U);
    EXPECT_EQ(file.ReadUInt8(), 'a');
    EXPECT_EQ(file.GetFilePosition(), 1U);
    EXPECT_EQ(file.ReadUInt8(), 0);
    EXPECT_EQ(file.ReadUInt8(), 255);
    EXPECT_EQ(file.GetFilePosition(), 3U);
    EXPECT_EQ(file.GetError(), std::error_code());
}

TEST_F(FileIOTest, ReadsFilesThatAreLargerThanItsBuffer) {
    FileIO file(write("f", bytes(kMoreThanABuffer)));
    ASSERT_TRUE(file.Open(kFileRead));
    std::string text;
    for (int i = 0; i < kMoreThanABuffer; ++i) text += static_cast<char>(file.ReadUInt8());
    EXPECT_TRUE(text == bytes(kMoreThanABuffer));
    EXPECT_EQ(file.GetError(), std::error_code());
}

TEST_F(FileIOTest, ReadsFromWhereItWasMoved) {
    FileIO file(write("f", bytes(kMoreThanABuffer)));
    ASSERT_TRUE(file.Open(kFileRead));
    for (const int position : {0, 199999, 65535, 65536, 65534, 131072, 5, 100000, 99999, 99998}) {
        SCOPED_TRACE(position);
        EXPECT_TRUE(file.Seek(position, kSeekFromBeginning));
        EXPECT_EQ(file.GetFilePosition(), static_cast<std::uint64_t>(position));
        EXPECT_EQ(file.ReadUInt8(), byteAt(position));
    }
    EXPECT_EQ(file.GetError(), std::error_code());
}

TEST_F(FileIOTest, GivesZerosAndAdvancesBehindTheEnd) {
    FileIO file(write("f", "a"));
    ASSERT_TRUE(file.Open(kFileRead));
    file.ReadUInt8();
    EXPECT_EQ(file.GetError(), std::error_code());
    EXPECT_EQ(file.ReadUInt8(), 0);
    EXPECT_EQ(file.GetFilePosition(), 2U);
    EXPECT_EQ(file.GetError(), std::errc::no_message_available);
    EXPECT_TRUE(file.Seek(1000000, kSeekFromBeginning));
    EXPECT_EQ(file.ReadUInt8(), 0);
    EXPECT_EQ(file.GetFilePosition(), 1000001U);
    EXPECT_TRUE(file.Seek(0, kSeekFromBeginning));
    EXPECT_EQ(file.ReadUInt8(), 'a');
}

TEST_F(FileIOTest, ReadsFilesThatHaveNoLength) {
    FileIO file(FileSpec("/dev/zero"));
    ASSERT_TRUE(file.Open(kFileRead));
    EXPECT_EQ(file.GetFileLength(), 0U);
    EXPECT_EQ(file.ReadUInt8(), 0);
    EXPECT_EQ(file.GetError(), std::error_code());
}

TEST_F(FileIOTest, SeesAFileGrow) {
    FileIO file(write("f", "a"));
    ASSERT_TRUE(file.Open(kFileRead));
    mFolder.write("f", "abc");
    EXPECT_EQ(file.GetFileLength(), 3U);
}

TEST_F(FileIOTest, ReadsWhatAFileGrewByOnceItsLengthIsAskedFor) {
    FileIO file(write("f", "a"));
    ASSERT_TRUE(file.Open(kFileRead));
    EXPECT_EQ(file.ReadUInt8(), 'a');
    mFolder.write("f", "abc");
    EXPECT_EQ(file.GetFileLength(), 3U);
    EXPECT_EQ(file.ReadUInt8(), 'b');
    EXPECT_EQ(file.GetError(), std::error_code());
}

TEST_F(FileIOTest, OpensForNothingButReadingAndWriting) {
    FileIO file(write("f", "a"));
    EXPECT_FALSE(file.Open(static_cast<VexSys::FileAccessMode>(2)));
    EXPECT_FALSE(file.IsOpened());
    EXPECT_EQ(file.GetError(), std::errc::invalid_argument);
}

TEST_F(FileIOTest, DoesNotMoveInFrontOfTheStart) {
    FileIO file(write("f", "ab"));
    ASSERT_TRUE(file.Open(kFileRead));
    file.ReadUInt8();
    EXPECT_FALSE(file.Seek(-1, kSeekFromBeginning));
    EXPECT_EQ(file.GetError(), std::errc::invalid_argument);
    EXPECT_EQ(file.GetFilePosition(), 1U);
    EXPECT_EQ(file.ReadUInt8(), 'b');
}

TEST_F(FileIOTest, DoesNotMoveFromAnywhereButTheBeginning) {
    FileIO file(write("f", "ab"));
    ASSERT_TRUE(file.Open(kFileRead));
    EXPECT_FALSE(file.Seek(1, static_cast<VexSys::FileSeekMode>(1)));
    EXPECT_EQ(file.GetError(), std::errc::invalid_argument);
    EXPECT_EQ(file.GetFilePosition(), 0U);
}

TEST_F(FileIOTest, DoesNotReadBehindTheLargestPosition) {
    FileIO file(write("f", "ab"));
    ASSERT_TRUE(file.Open(kFileRead));
    ASSERT_TRUE(file.Seek(std::numeric_limits<std::int64_t>::max(), kSeekFromBeginning));
    EXPECT_EQ(file.ReadUInt8(), 0);
    EXPECT_EQ(file.ReadUInt8(), 0);
    EXPECT_NE(file.GetError(), std::error_code());
    EXPECT_EQ(file.GetFilePosition(), (std::uint64_t{1} << 63U) + 1);
}

TEST_F(FileIOTest, DoesNotWriteWhatIsOpenForReading) {
    FileIO file(write("f", "ab"));
    ASSERT_TRUE(file.Open(kFileRead));
    EXPECT_FALSE(file.WriteUInt8('x'));
    EXPECT_EQ(file.GetError(), std::errc::bad_file_descriptor);
    EXPECT_EQ(file.ReadUInt8(), 'a');
    EXPECT_TRUE(file.Close());
    EXPECT_EQ(contentsOf("f"), "ab");
}

TEST_F(FileIOTest, DoesNotReadWhatIsOpenForWriting) {
    FileIO file(write("f", "abcd"));
    ASSERT_TRUE(file.Open(kFileWrite));
    EXPECT_TRUE(file.WriteUInt8('x'));
    EXPECT_EQ(file.ReadUInt8(), 0);
    EXPECT_EQ(file.GetError(), std::errc::bad_file_descriptor);
    EXPECT_EQ(file.GetFilePosition(), 2U);
    EXPECT_TRUE(file.WriteUInt8('y'));
    EXPECT_TRUE(file.Close());
    EXPECT_EQ(contentsOf("f"), "xbyd");
}

TEST_F(FileIOTest, KeepsWhatAFileHoldsWhenOpenedForWriting) {
    FileIO file(write("f", "abcdef"));
    ASSERT_TRUE(file.Open(kFileWrite));
    EXPECT_TRUE(writeText(file, "xy"));
    EXPECT_EQ(file.GetFilePosition(), 2U);
    EXPECT_TRUE(file.Close());
    EXPECT_FALSE(file.IsOpened());
    EXPECT_EQ(contentsOf("f"), "xycdef");
}

TEST_F(FileIOTest, WritesFilesThatAreLargerThanItsBuffer) {
    {
        FileIO file(write("f", ""));
        ASSERT_TRUE(file.Open(kFileWrite));
        EXPECT_TRUE(writeText(file, bytes(kMoreThanABuffer)));
        EXPECT_EQ(file.GetFileLength(), static_cast<std::uint64_t>(kMoreThanABuffer));
    }
    EXPECT_TRUE(contentsOf("f") == bytes(kMoreThanABuffer));
}

TEST_F(FileIOTest, WritesWhereItWasMoved) {
    FileIO file(write("f", "abcdef"));
    ASSERT_TRUE(file.Open(kFileWrite));
    EXPECT_TRUE(writeText(file, "1"));
    EXPECT_TRUE(file.Seek(4, kSeekFromBeginning));
    EXPECT_TRUE(writeText(file, "2"));
    EXPECT_TRUE(file.Seek(0, kSeekFromBeginning));
    EXPECT_TRUE(writeText(file, "3"));
    EXPECT_TRUE(file.Seek(8, kSeekFromBeginning));
    EXPECT_TRUE(writeText(file, "4"));
    EXPECT_TRUE(file.Close());
    EXPECT_EQ(contentsOf("f"), std::string("3bcd2f\0\0"
                                           "4",
                                           9));
}

TEST_F(FileIOTest, CountsWhatWaitsToBeWrittenAsLength) {
    FileIO file(write("f", "abc"));
    ASSERT_TRUE(file.Open(kFileWrite));
    writeText(file, "xy");
    EXPECT_EQ(file.GetFileLength(), 3U);
    writeText(file, "zab");
    EXPECT_EQ(file.GetFileLength(), 5U);
    EXPECT_EQ(contentsOf("f"), "abc");
    EXPECT_TRUE(file.Flush());
    EXPECT_EQ(contentsOf("f"), "xyzab");
    EXPECT_EQ(file.GetFileLength(), 5U);
}

TEST_F(FileIOTest, WritesWhatWaitsWhenDestroyed) {
    {
        FileIO file(write("f", ""));
        ASSERT_TRUE(file.Open(kFileWrite));
        writeText(file, "abc");
    }
    EXPECT_EQ(contentsOf("f"), "abc");
}

TEST_F(FileIOTest, FailsToOpenAMissingFile) {
    for (const auto mode : {kFileRead, kFileWrite}) {
        SCOPED_TRACE(mode);
        FileIO file(spec("missing"));
        EXPECT_FALSE(file.Open(mode));
        EXPECT_FALSE(file.IsOpened());
        EXPECT_EQ(file.GetError(), std::errc::no_such_file_or_directory);
        EXPECT_FALSE(std::filesystem::exists(mFolder.path("missing")));
    }
}

TEST_F(FileIOTest, FailsToOpenAFolder) {
    for (const auto mode : {kFileRead, kFileWrite}) {
        SCOPED_TRACE(mode);
        FileIO file(spec(""));
        EXPECT_FALSE(file.Open(mode));
        EXPECT_FALSE(file.IsOpened());
        EXPECT_EQ(file.GetError(), std::errc::is_a_directory);
    }
}

TEST_F(FileIOTest, FailsToOpenWhatIsNotPermitted) {
    FileIO file(write("f", "abc"));
    ASSERT_EQ(chmod(mFolder.path("f").c_str(), 0), 0);
    const PlainUser plainUser;
    for (const auto mode : {kFileRead, kFileWrite}) {
        SCOPED_TRACE(mode);
        EXPECT_FALSE(file.Open(mode));
        EXPECT_FALSE(file.IsOpened());
        EXPECT_EQ(file.GetError(), std::errc::permission_denied);
    }
}

TEST_F(FileIOTest, OpensAgain) {
    FileIO file(write("f", "abc"));
    ASSERT_TRUE(file.Open(kFileRead));
    file.ReadUInt8();
    file.WriteUInt8('x');
    ASSERT_TRUE(file.Open(kFileWrite));
    EXPECT_EQ(file.GetError(), std::error_code());
    EXPECT_EQ(file.GetFilePosition(), 0U);
    EXPECT_TRUE(writeText(file, "12"));
    ASSERT_TRUE(file.Open(kFileRead));
    EXPECT_EQ(file.ReadUInt8(), '1');
    EXPECT_EQ(file.ReadUInt8(), '2');
    EXPECT_EQ(file.ReadUInt8(), 'c');
}

TEST_F(FileIOTest, KeepsTheFirstFailureUntilItIsOpenedAgain) {
    FileIO file(write("f", "a"));
    ASSERT_TRUE(file.Open(kFileRead));
    file.Seek(-1, kSeekFromBeginning);
    file.WriteUInt8('x');
    EXPECT_EQ(file.GetError(), std::errc::invalid_argument);
    EXPECT_TRUE(file.Close());
    EXPECT_EQ(file.GetError(), std::errc::invalid_argument);
    ASSERT_TRUE(file.Open(kFileRead));
    EXPECT_EQ(file.GetError(), std::error_code());
}

class FullDisk : public FileIOTest {
protected:
    void SetUp() override { ASSERT_TRUE(mFile.Open(kFileWrite)); }

    FileIO mFile{FileSpec("/dev/full")};
};

TEST_F(FullDisk, FailsTheFlushThatLosesBytes) {
    EXPECT_TRUE(writeText(mFile, "abc"));
    EXPECT_EQ(mFile.GetError(), std::error_code());
    EXPECT_FALSE(mFile.Flush());
    EXPECT_EQ(mFile.GetError(), std::errc::no_space_on_device);
    EXPECT_FALSE(mFile.Flush());
    EXPECT_FALSE(mFile.Close());
}

TEST_F(FullDisk, FailsTheCloseThatLosesBytes) {
    writeText(mFile, "abc");
    EXPECT_FALSE(mFile.Close());
    EXPECT_FALSE(mFile.IsOpened());
    EXPECT_EQ(mFile.GetError(), std::errc::no_space_on_device);
    EXPECT_TRUE(mFile.Close());
}

TEST_F(FullDisk, FailsTheWriteThatLosesBytes) {
    EXPECT_FALSE(writeText(mFile, bytes(kMoreThanABuffer)));
    EXPECT_EQ(mFile.GetError(), std::errc::no_space_on_device);
    EXPECT_LT(mFile.GetFilePosition(), static_cast<std::uint64_t>(kMoreThanABuffer));
}

TEST_F(FullDisk, FailsTheSeekThatLosesBytes) {
    writeText(mFile, "abc");
    EXPECT_FALSE(mFile.Seek(0, kSeekFromBeginning));
    EXPECT_EQ(mFile.GetError(), std::errc::no_space_on_device);
    EXPECT_EQ(mFile.GetFilePosition(), 3U);
}

TEST_F(FullDisk, FailsToOpenAgainWhenThatLosesBytes) {
    writeText(mFile, "abc");
    EXPECT_FALSE(mFile.Open(kFileRead));
    EXPECT_FALSE(mFile.IsOpened());
    EXPECT_EQ(mFile.GetError(), std::errc::no_space_on_device);
    EXPECT_TRUE(mFile.Open(kFileRead));
    EXPECT_TRUE(mFile.Close());
}

TEST_F(FullDisk, LosesNothingWhenNothingIsWritten) {
    EXPECT_TRUE(mFile.Seek(10, kSeekFromBeginning));
    EXPECT_TRUE(mFile.Flush());
    EXPECT_TRUE(mFile.Close());
    EXPECT_EQ(mFile.GetError(), std::error_code());
}

TEST_F(FileIOTest, WritesOnBehindALoss) {
    FileIO file(write("f", ""));
    ASSERT_TRUE(file.Open(kFileWrite));
    ASSERT_TRUE(file.Seek(std::numeric_limits<std::int64_t>::max(), kSeekFromBeginning));
    writeText(file, "a");
    EXPECT_FALSE(file.Flush());
    EXPECT_EQ(contentsOf("f"), "");
    EXPECT_TRUE(file.Seek(0, kSeekFromBeginning));
    EXPECT_TRUE(writeText(file, "bc"));
    EXPECT_FALSE(file.Close());
    EXPECT_EQ(contentsOf("f"), "bc");
}

TEST_F(FileIOTest, CreateFileMakesAnEmptyFile) {
    EXPECT_TRUE(VexSys::FileSpecFunctions::CreateFile(spec("f"), kText));
    EXPECT_TRUE(std::filesystem::is_regular_file(mFolder.path("f")));
    EXPECT_EQ(contentsOf("f"), "");
}

TEST_F(FileIOTest, CreateFileEmptiesTheFileThatIsThere) {
    EXPECT_TRUE(VexSys::FileSpecFunctions::CreateFile(write("f", "abc"), kText));
    EXPECT_EQ(contentsOf("f"), "");
}

TEST_F(FileIOTest, CreateFileFailsWhereThereCanBeNone) {
    EXPECT_FALSE(VexSys::FileSpecFunctions::CreateFile(spec(""), kText));
    EXPECT_FALSE(VexSys::FileSpecFunctions::CreateFile(spec("no/folder"), kText));
    const PlainUser plainUser;
    EXPECT_FALSE(VexSys::FileSpecFunctions::CreateFile(spec("f"), kText));
}

}  // namespace
