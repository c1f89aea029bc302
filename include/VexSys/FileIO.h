#pragma once

/// Files of the product, addressed by file specifications.
///
/// A product that brings its own VexSys links that in place of this one; the XML library calls
/// nothing but what is marked as required.

#include <cstdint>
#include <memory>
#include <string>
#include <system_error>

#include "VexSys/Export.h"

namespace VexSys {

/// What an open file is for.
enum FileAccessMode : std::uint32_t { kFileWrite = 0, kFileRead = 1 };

/// Where an offset counts from.
enum FileSeekMode : std::uint32_t { kSeekFromBeginning = 0 };

/// Names a file by its path.
class VEXSYS_API FileSpec {
public:
    /// The file need not exist. A relative path counts from the current folder.
    explicit FileSpec(std::string path);
    /// The path as it was given.
    const std::string& GetPath() const;

private:
    std::string mPath;
};

/// What can be done with an open file, byte by byte. Positions count from 0.
///
/// Bytes are buffered on their way to and from the operating system. A failure is kept in
/// `GetError()` until the next `Open`; one that shows only when buffered bytes are written is
/// reported by the operation that wrote them, at the latest by `Flush` or `Close`.
class VEXSYS_API FileIOBase {
public:
    virtual ~FileIOBase();
    FileIOBase(const FileIOBase&) = delete;
    FileIOBase& operator=(const FileIOBase&) = delete;

    /// Required.
    bool IsOpened() const;
    /// Required. The next byte. When there is none: 0, an error in `GetError()`, and the position
    /// advances all the same, so that a reader of a shrinking file comes to an end. The same when
    /// it cannot be read, but then the position becomes the end of the file, so that nobody reads
    /// on behind a gap.
    unsigned char ReadUInt8();
    /// Required. Writes one byte; false when it is known not to have been written.
    bool WriteUInt8(unsigned char byte);
    /// Required. Moves to `offset`, which may lie behind the end; false when it is negative, the
    /// file is not open, or buffered bytes could not be written.
    bool Seek(std::int64_t offset, FileSeekMode mode);

    /// Hands buffered bytes to the operating system; false when a byte was lost.
    bool Flush();
    /// Flushes and closes; false when a byte was lost. A file that is not open closes well.
    bool Close();
    /// The first failure since `Open`; no error when there was none.
    std::error_code GetError() const;

protected:
    FileIOBase();

    struct State;
    /// Of the open file, with what is buffered.
    std::unique_ptr<State> mState;
};

/// A file of the operating system.
class VEXSYS_API FileIO : public FileIOBase {
public:
    /// Required. Names the file and opens nothing.
    explicit FileIO(const FileSpec& spec);
    /// Closes the file if it is open.
    ~FileIO() override;

    /// Required. Opens the file, which must exist, at its start; false with the reason in
    /// `GetError()` when it is missing, a folder or not permitted. What it holds is kept.
    bool Open(FileAccessMode mode);
    /// Required. The length in bytes, with what has been written but not flushed; 0 when not open.
    std::uint64_t GetFileLength();
    /// Required. 0 when not open.
    std::uint64_t GetFilePosition() const;
};

namespace FileSpecFunctions {

/// Required. Creates an empty file, or empties the one that is there; false when it cannot. `type`
/// is a four-character code such as 0x54455854 ("TEXT"), for platforms whose files carry one.
VEXSYS_API bool CreateFile(const FileSpec& spec, std::uint32_t type);

}  // namespace FileSpecFunctions
}  // namespace VexSys
