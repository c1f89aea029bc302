#pragma once

/// The file layer of a product: it differs from ours wherever it may. Files live in memory, modes
/// are scoped and named otherwise, nothing is virtual but the destructor, and a read behind the end
/// stands still.

#include <cstdint>
#include <string>

namespace VexSys {

enum class FileAccessMode { ForWriting, ForReading };
enum class FileSeekMode { Absolute, Relative };

class FileSpec {
public:
    explicit FileSpec(const char* name) : mName(name) {}
    const std::string& Name() const { return mName; }

private:
    std::string mName;
};

class FileIOBase {
public:
    virtual ~FileIOBase();
    bool IsOpened();
    unsigned char ReadUInt8();
    long WriteUInt8(unsigned char byte);
    void Seek(std::int64_t offset, FileSeekMode mode);

protected:
    std::string mName;
    bool mIsOpen = false;
    std::uint64_t mPosition = 0;
};

class FileIO : public FileIOBase {
public:
    explicit FileIO(const FileSpec& spec);
    ~FileIO() override;
    bool Open(FileAccessMode mode);
    std::uint64_t GetFileLength();
    std::uint64_t GetFilePosition() const;
};

namespace FileSpecFunctions {

void CreateFile(const FileSpec& spec, std::uint32_t type);

}  // namespace FileSpecFunctions

/// What a file holds, which the test may change behind everybody's back.
std::string& contentsOf(const std::string& name);

/// The type that the file was created with.
std::uint32_t typeOf(const std::string& name);

/// How many file objects are alive.
int livingFiles();

}  // namespace VexSys
