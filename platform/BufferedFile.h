#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <system_error>
#include <vector>

namespace VexSys {

/// A file of the operating system, byte by byte, with one stretch of it in memory.
///
/// Keeps no position in the operating system, so that moving costs nothing while reading.
class BufferedFile {
public:
    enum class Mode { Read, Write };

    BufferedFile() = default;
    BufferedFile(const BufferedFile&) = delete;
    BufferedFile& operator=(const BufferedFile&) = delete;
    /// Closes the file if it is open.
    ~BufferedFile();

    /// Closes what was open; false if that lost a byte, or if the file cannot be opened.
    bool open(const std::string& path, Mode mode);
    bool isOpen() const;
    bool close();
    bool flush();

    /// Gives 0 and fails where there is no byte; advances in any case, to the end of the file where
    /// the byte cannot be read.
    unsigned char read();
    bool write(unsigned char byte);
    bool seek(std::int64_t position);

    /// What waits to be written included.
    std::uint64_t length();
    std::uint64_t position() const;

    /// Keeps the first failure since the file was opened; always false.
    bool fail(int systemError);
    std::error_code error() const;

private:
    bool openDescriptor(const std::string& path);
    bool closeDescriptor();
    void fill();
    bool writePending();

    int mDescriptor = -1;  ///< -1 when not open
    Mode mMode = Mode::Read;
    std::vector<unsigned char> mBuffer;
    std::uint64_t mPosition = 0;  ///< of the next byte
    std::uint64_t mStart = 0;     ///< the position of the buffer's first byte
    std::size_t mFilled = 0;      ///< reading: how many bytes the buffer holds
    std::size_t mAsked = 0;       ///< reading: how many it would hold if the file were long enough
    std::size_t mPending = 0;     ///< writing: how many bytes wait in the buffer
    bool mLostBytes = false;      ///< writing: whether some could not be written
    std::error_code mError;
};

}  // namespace VexSys
