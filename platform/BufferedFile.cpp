#include "platform/BufferedFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

namespace VexSys {
namespace {

constexpr std::size_t kBufferSize = std::size_t{64} * 1024;

bool isFolder(int descriptor) {
    struct stat status {};
    return fstat(descriptor, &status) == 0 && S_ISDIR(status.st_mode);
}

}  // namespace

BufferedFile::~BufferedFile() { close(); }

bool BufferedFile::open(const std::string& path, Mode mode) {
    if (!close()) return false;
    mBuffer.resize(kBufferSize);
    mPosition = mStart = 0;
    mLostBytes = false;
    mError.clear();
    mMode = mode;
    return openDescriptor(path);
}

bool BufferedFile::openDescriptor(const std::string& path) {
    const int access = mMode == Mode::Read ? O_RDONLY : O_WRONLY;
    mDescriptor = ::open(path.c_str(), access | O_CLOEXEC);
    if (mDescriptor < 0) return fail(errno);
    if (!isFolder(mDescriptor)) return true;
    closeDescriptor();
    return fail(EISDIR);
}

bool BufferedFile::isOpen() const { return mDescriptor >= 0; }

bool BufferedFile::close() {
    if (!isOpen()) return true;
    writePending();
    // Some file systems write, and fail, only now.
    if (!closeDescriptor() && mMode == Mode::Write) mLostBytes = true;
    mFilled = mAsked = 0;
    return !mLostBytes;
}

// The descriptor is gone whatever `close` answers, so it is never tried again.
bool BufferedFile::closeDescriptor() {
    const int failure = ::close(mDescriptor);
    mDescriptor = -1;
    return failure == 0 || errno == EINTR || fail(errno);
}

bool BufferedFile::flush() {
    writePending();
    return !mLostBytes;
}

unsigned char BufferedFile::read() {
    // In front of the buffer the difference wraps around, which is far behind it just as well.
    if (mPosition - mStart >= mAsked) fill();
    const std::uint64_t place = mPosition++ - mStart;
    if (place < mFilled) return mBuffer[place];
    if (isOpen() && mMode == Mode::Read && mAsked == mFilled) {
        // Not the end, but an error. What stands behind it must not be taken for what comes next.
        mPosition = std::max(mPosition, length());
    }
    fail(ENODATA);
    return 0;
}

// Brings the stretch from the position on into memory. Being told that nothing is left ends it, not
// a short answer: some files come in pieces. An error ends it where it is, to be met again.
void BufferedFile::fill() {
    if (!isOpen() || mMode != Mode::Read) {
        fail(EBADF);
        return;
    }
    mStart = mPosition;
    mFilled = mAsked = 0;
    while (mFilled < mBuffer.size()) {
        const ssize_t count = pread(mDescriptor, mBuffer.data() + mFilled, mBuffer.size() - mFilled,
                                    static_cast<off_t>(mStart + mFilled));
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) fail(errno);
        mAsked = count < 0 ? mFilled : mBuffer.size();
        if (count <= 0) return;
        mFilled += static_cast<std::size_t>(count);
    }
}

bool BufferedFile::write(unsigned char byte) {
    if (!isOpen() || mMode != Mode::Write) return fail(EBADF);
    if (mPending == mBuffer.size() || mPosition != mStart + mPending) {
        if (!writePending()) return false;
        mStart = mPosition;
    }
    mBuffer[mPending++] = byte;
    ++mPosition;
    return true;
}

// False when bytes were lost, which are not kept for another try: where they belong may be full for
// good, and what is written later has its own place.
bool BufferedFile::writePending() {
    std::size_t written = 0;
    while (written < mPending) {
        const ssize_t count = pwrite(mDescriptor, mBuffer.data() + written, mPending - written,
                                     static_cast<off_t>(mStart + written));
        if (count < 0 && errno == EINTR) continue;
        if (count <= 0) {
            mPending = 0;
            mLostBytes = true;
            return fail(count < 0 ? errno : EIO);
        }
        written += static_cast<std::size_t>(count);
    }
    mPending = 0;
    return true;
}

bool BufferedFile::seek(std::int64_t position) {
    if (!isOpen()) return fail(EBADF);
    if (position < 0) return fail(EINVAL);
    if (!writePending()) return false;
    mPosition = static_cast<std::uint64_t>(position);
    return true;
}

std::uint64_t BufferedFile::length() {
    if (!isOpen()) return 0;
    struct stat status {};
    if (fstat(mDescriptor, &status) != 0) {
        fail(errno);
        return 0;
    }
    const auto size = static_cast<std::uint64_t>(status.st_size);
    // What has been added behind the buffer's last byte is asked for anew.
    if (mMode == Mode::Read && size > mStart + mFilled) mAsked = mFilled;
    return mPending > 0 ? std::max(size, mStart + mPending) : size;
}

std::uint64_t BufferedFile::position() const { return isOpen() ? mPosition : 0; }

bool BufferedFile::fail(int systemError) {
    if (!mError) mError.assign(systemError, std::generic_category());
    return false;
}

std::error_code BufferedFile::error() const { return mError; }

}  // namespace VexSys
