#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <istream>
#include <streambuf>
#include <typeinfo>
#include <utility>

#include "VexXml/Streams.h"
#include "streams/SizeLimit.h"

namespace Xml {
namespace {

// Opens the file and reports one that cannot be opened. Only regular files can: a folder fails when
// it is read, a device may never end, and a pipe cannot be read again where the lexer looked ahead.
bool open(std::ifstream& file, const std::string& path) {
    if (file.is_open()) file.close();
    std::error_code ignored;
    if (std::filesystem::is_regular_file(path, ignored)) {
        file.open(path, std::ios_base::in | std::ios_base::binary);
    } else {
        file.setstate(std::ios_base::failbit);
    }
    if (file.is_open()) return true;
    Message("<Xml::FileInStream::FileInStream> Could not open file: " + path);
    return false;
}

bool isWithinReach(std::streambuf& buffer) {
    constexpr auto kIn = std::ios_base::in;
    const std::streampos kUnknown(std::streamoff{-1});
    const std::streampos here = buffer.pubseekoff(0, std::ios_base::cur, kIn);
    if (here == kUnknown) return true;
    const std::streampos end = buffer.pubseekoff(0, std::ios_base::end, kIn);
    buffer.pubseekpos(here, kIn);
    return end == kUnknown || fitsPositions(static_cast<std::uint64_t>(std::streamoff{end}));
}

// Whether positions reach the end of the source. One that cannot be measured, such as a pipe, is
// taken to fit. The buffer is asked, not the stream, so that the stream's state stays as it is, and
// what the buffer throws is kept from the caller as the stream would keep it.
bool isWithinReach(std::istream& stream) {
    try {
        return stream.rdbuf() == nullptr || isWithinReach(*stream.rdbuf());
    } catch (...) {
        return true;
    }
}

/// The memory that a standard buffer takes bytes from, which only derived classes may ask for.
struct GetArea : std::streambuf {
    static bool hasBytesBefore(const std::streambuf& buffer) {
        return (buffer.*&GetArea::gptr)() != (buffer.*&GetArea::eback)();
    }
};

// Moves back inside the stream's buffer; false, having moved anywhere, where that does not reach or
// the buffer throws.
bool stepsBack(std::streambuf& buffer, std::streamoff count) {
    using Traits = std::streambuf::traits_type;
    try {
        while (count > 0 && !Traits::eq_int_type(buffer.sungetc(), Traits::eof())) --count;
    } catch (...) {
        return false;
    }
    return count == 0;
}

}  // namespace

FileInStream::FileInStream(const std::string& path, std::ifstream* file)
    : mStream(file), mOpened(file != nullptr) {
    if (file == nullptr || !open(*file, path) || isWithinReach(*file)) return;
    Message("<Xml::FileInStream::FileInStream> File too long: " + path);
    close();
}

FileInStream::FileInStream(std::istream* stream) : mStream(stream), mOpened(false) {
    if (stream == nullptr || isWithinReach(*stream)) return;
    Message(std::string("<Xml::FileInStream::FileInStream> File too long"));
    close();
}

FileInStream::FileInStream(const FileInStream& other)
    : InStream(other), mStream(other.mStream), mOpened(false) {}

FileInStream::FileInStream(FileInStream&& other) noexcept
    : InStream(std::move(other)),
      mStream(std::exchange(other.mStream, nullptr)),
      mOpened(std::exchange(other.mOpened, false)) {}

// A stream that is assigned its own file, from a copy say, keeps it and goes on owning it.
FileInStream& FileInStream::operator=(const FileInStream& other) {
    if (this == &other) return *this;
    if (mStream != other.mStream) close();
    InStream::operator=(other);
    mStream = other.mStream;
    return *this;
}

FileInStream& FileInStream::operator=(FileInStream&& other) noexcept {
    if (this == &other) return *this;
    if (mStream != other.mStream) close();
    mStream = std::exchange(other.mStream, nullptr);
    mOpened = std::exchange(other.mOpened, false) || mOpened;
    InStream::operator=(std::move(other));
    return *this;
}

FileInStream::~FileInStream() { close(); }

// The read that meets the end still succeeds and leaves `c` alone. Deliberate: callers rely on it.
bool FileInStream::getChar(char& c) {
    if (mStream == nullptr || !mStream->good()) return false;
    mStream->get(c);
    return true;
}

int FileInStream::getPosition() const {
    return mStream != nullptr ? static_cast<int>(mStream->tellg()) : -1;
}

// Readers step back all the time, by a byte or a token. A seek would throw the stream's buffer away
// and read it again, so short steps are taken inside the buffer.
void FileInStream::setPosition(int position) {
    constexpr std::streamoff kShort = 64;
    if (mStream == nullptr) return;
    if (mStream->good() && position >= 0) {
        const std::streamoff count = std::streamoff{mStream->tellg()} - position;
        if (count >= 0 && count <= kShort && stepsBack(*mStream->rdbuf(), count)) return;
    }
    mStream->seekg(position);
}

// The buffer is asked, not the stream, so that the stream's state stays as it is. Whatever the
// buffer throws, it throws again when the stream comes to that place.
bool FileInStream::readAhead(std::size_t position, std::size_t count, std::string& ahead) {
    if (mStream == nullptr || !mStream->good() || typeid(*this) != typeid(FileInStream)) {
        return false;
    }
    const std::size_t kept = ahead.size();
    std::streamsize found = 0;
    ahead.resize(kept + count);
    try {
        std::streambuf& buffer = *mStream->rdbuf();
        const std::streampos place(static_cast<std::streamoff>(position));
        if (buffer.pubseekpos(place, std::ios_base::in) == place) {
            found = buffer.sgetn(&ahead[kept], static_cast<std::streamsize>(count));
        }
    } catch (...) {
        found = 0;
    }
    ahead.resize(kept + static_cast<std::size_t>(std::max<std::streamsize>(found, 0)));
    return true;
}

// For a file that this stream has opened itself: it is a regular one, so the position is known, and
// nobody else has a say in where it is.
bool FileInStream::stepBack() {
    if (!mOpened || !mStream->good() || typeid(*this) != typeid(FileInStream)) return false;
    std::streambuf& buffer = *mStream->rdbuf();
    return typeid(buffer) == typeid(std::filebuf) && GetArea::hasBytesBefore(buffer) &&
           stepsBack(buffer, 1);
}

bool FileInStream::eof() { return mStream == nullptr || mStream->eof(); }

void FileInStream::close() {
    auto* file = mOpened ? static_cast<std::ifstream*>(mStream) : nullptr;
    mStream = nullptr;
    mOpened = false;
    try {
        if (file != nullptr) file->close();
    } catch (const std::ios_base::failure&) {
        // The stream's state shows it; its owner asked for the exception, but not in a destructor.
    }
}

}  // namespace Xml
