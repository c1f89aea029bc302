#include <exception>
#include <fstream>
#include <ostream>
#include <typeinfo>
#include <utility>

#include "VexXml/Streams.h"

namespace Xml {
namespace {

// For what a buffer throws when it is asked for its position or moved, which a standard stream lets
// through, unlike what it throws when it is written to. An owner who asked for exceptions gets it.
// Needs: to be called where it is caught.
void keepFailure(std::ostream& stream) {
    if (stream.exceptions() != std::ios_base::goodbit) {
        std::rethrow_exception(std::current_exception());
    }
    stream.setstate(std::ios_base::badbit);
}

}  // namespace

FileOutStream::FileOutStream(const std::string& path, std::ofstream* file)
    : mStream(file), mOpened(file != nullptr) {
    if (file == nullptr) return;
    if (file->is_open()) file->close();
    file->open(path, std::ios_base::out | std::ios_base::trunc | std::ios_base::binary);
    if (!file->is_open()) {
        Message("<Xml::FileOutStream::FileOutStream> Could not open file: " + path);
    }
}

FileOutStream::FileOutStream(std::ostream* stream) : mStream(stream), mOpened(false) {}

FileOutStream::FileOutStream(const FileOutStream& other)
    : OutStream(other), mStream(other.mStream), mOpened(false) {}

FileOutStream::FileOutStream(FileOutStream&& other) noexcept
    : OutStream(other),
      mStream(std::exchange(other.mStream, nullptr)),
      mOpened(std::exchange(other.mOpened, false)) {}

// A stream that is assigned its own file, from a copy say, keeps it and goes on owning it.
FileOutStream& FileOutStream::operator=(const FileOutStream& other) {
    if (this == &other) return *this;
    if (mStream != other.mStream) close();
    OutStream::operator=(other);
    mStream = other.mStream;
    return *this;
}

FileOutStream& FileOutStream::operator=(FileOutStream&& other) noexcept {
    if (this == &other) return *this;
    if (mStream != other.mStream) close();
    OutStream::operator=(other);
    mStream = std::exchange(other.mStream, nullptr);
    mOpened = std::exchange(other.mOpened, false) || mOpened;
    return *this;
}

FileOutStream::~FileOutStream() { close(); }

void FileOutStream::putChar(char c) {
    if (mStream != nullptr) mStream->put(c);
}

int FileOutStream::getPosition() const {
    if (mStream == nullptr) return -1;
    try {
        return static_cast<int>(mStream->tellp());
    } catch (...) {
        keepFailure(*mStream);
        return -1;
    }
}

void FileOutStream::setPosition(int position) {
    if (mStream == nullptr) return;
    try {
        mStream->seekp(position);
    } catch (...) {
        keepFailure(*mStream);
    }
}

// A class that a caller derived may write otherwise.
std::ostream* FileOutStream::standardStream() {
    return typeid(*this) == typeid(FileOutStream) ? mStream : nullptr;
}

void FileOutStream::close() {
    auto* file = mOpened ? static_cast<std::ofstream*>(mStream) : nullptr;
    mStream = nullptr;
    mOpened = false;
    try {
        if (file != nullptr) file->close();
    } catch (const std::ios_base::failure&) {
        // The stream's state shows it; its owner asked for the exception, but not in a destructor.
    }
}

}  // namespace Xml
