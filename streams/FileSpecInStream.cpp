#include <cstdint>
#include <memory>
#include <utility>

#include "VexSys/FileIO.h"
#include "VexXml/Streams.h"
#include "streams/SizeLimit.h"

namespace Xml {
namespace {

// By value rather than by name: a product's own file layer may name its modes otherwise.
constexpr auto kRead = static_cast<VexSys::FileAccessMode>(1);
constexpr auto kFromBeginning = static_cast<VexSys::FileSeekMode>(0);

}  // namespace

FileSpecInStream::FileSpecInStream(VexSys::FileIO& file)
    : mFile(&file), mOwnsFile(false), mLength(0) {
    takeLength();
}

FileSpecInStream::FileSpecInStream(const VexSys::FileSpec& spec)
    : mFile(nullptr), mOwnsFile(true), mLength(0) {
    auto file = std::make_unique<VexSys::FileIO>(spec);
    if (!file->Open(kRead)) return;
    mFile = file.release();
    takeLength();
}

FileSpecInStream::FileSpecInStream(const FileSpecInStream& other)
    : InStream(other), mFile(other.mFile), mOwnsFile(false), mLength(other.mLength) {}

FileSpecInStream::FileSpecInStream(FileSpecInStream&& other) noexcept
    : InStream(std::move(other)),
      mFile(std::exchange(other.mFile, nullptr)),
      mOwnsFile(std::exchange(other.mOwnsFile, false)),
      mLength(std::exchange(other.mLength, 0)) {}

// A stream that is assigned its own file, from a copy say, keeps it and goes on owning it.
FileSpecInStream& FileSpecInStream::operator=(const FileSpecInStream& other) {
    if (this == &other) return *this;
    if (mFile != other.mFile) close();
    InStream::operator=(other);
    mFile = other.mFile;
    mLength = other.mLength;
    return *this;
}

FileSpecInStream& FileSpecInStream::operator=(FileSpecInStream&& other) noexcept {
    if (this == &other) return *this;
    if (mFile != other.mFile) close();
    mFile = std::exchange(other.mFile, nullptr);
    mOwnsFile = std::exchange(other.mOwnsFile, false) || mOwnsFile;
    mLength = std::exchange(other.mLength, 0);
    InStream::operator=(std::move(other));
    return *this;
}

FileSpecInStream::~FileSpecInStream() { close(); }

// A file that was cut since its length was taken may stand still at its new end, and one that
// cannot be read may move to its own. That is the end then: every reader must come to one, and none
// may read on behind a gap.
bool FileSpecInStream::getChar(char& c) {
    if (eof()) return false;
    const std::uint64_t position = mFile->GetFilePosition();
    const unsigned char byte = mFile->ReadUInt8();
    if (mFile->GetFilePosition() != position + 1) {
        mLength = position;
        return false;
    }
    c = static_cast<char>(byte);
    return true;
}

int FileSpecInStream::getPosition() const {
    return mFile != nullptr ? static_cast<int>(mFile->GetFilePosition()) : -1;
}

void FileSpecInStream::setPosition(int position) {
    if (mFile != nullptr) mFile->Seek(position, kFromBeginning);
}

bool FileSpecInStream::eof() {
    return mFile == nullptr || !mFile->IsOpened() || mLength <= mFile->GetFilePosition();
}

void FileSpecInStream::close() {
    if (mOwnsFile) delete mFile;
    mFile = nullptr;
    mOwnsFile = false;
    mLength = 0;
}

void FileSpecInStream::takeLength() {
    mLength = mFile->GetFileLength();
    if (fitsPositions(mLength)) return;
    Message(std::string("<Xml::FileSpecInStream::FileSpecInStream> File too long"));
    close();
}

}  // namespace Xml
