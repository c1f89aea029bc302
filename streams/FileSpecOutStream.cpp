#include <cstdint>
#include <memory>
#include <utility>

#include "VexSys/FileIO.h"
#include "VexXml/Streams.h"

namespace Xml {
namespace {

// By value rather than by name: a product's own file layer may name its modes otherwise.
constexpr auto kWrite = static_cast<VexSys::FileAccessMode>(0);
constexpr auto kFromBeginning = static_cast<VexSys::FileSeekMode>(0);
constexpr std::uint32_t kTextType = 0x54455854;  // "TEXT"

}  // namespace

FileSpecOutStream::FileSpecOutStream(VexSys::FileIO& file) : mFile(&file), mOwnsFile(false) {}

FileSpecOutStream::FileSpecOutStream(const VexSys::FileSpec& spec)
    : mFile(nullptr), mOwnsFile(true) {
    // Whether that succeeded shows when the file is opened.
    VexSys::FileSpecFunctions::CreateFile(spec, kTextType);
    auto file = std::make_unique<VexSys::FileIO>(spec);
    if (file->Open(kWrite)) mFile = file.release();
}

FileSpecOutStream::FileSpecOutStream(const FileSpecOutStream& other)
    : OutStream(other), mFile(other.mFile), mOwnsFile(false) {}

FileSpecOutStream::FileSpecOutStream(FileSpecOutStream&& other) noexcept
    : OutStream(other),
      mFile(std::exchange(other.mFile, nullptr)),
      mOwnsFile(std::exchange(other.mOwnsFile, false)) {}

// A stream that is assigned its own file, from a copy say, keeps it and goes on owning it.
FileSpecOutStream& FileSpecOutStream::operator=(const FileSpecOutStream& other) {
    if (this == &other) return *this;
    if (mFile != other.mFile) close();
    OutStream::operator=(other);
    mFile = other.mFile;
    return *this;
}

FileSpecOutStream& FileSpecOutStream::operator=(FileSpecOutStream&& other) noexcept {
    if (this == &other) return *this;
    if (mFile != other.mFile) close();
    OutStream::operator=(other);
    mFile = std::exchange(other.mFile, nullptr);
    mOwnsFile = std::exchange(other.mOwnsFile, false) || mOwnsFile;
    return *this;
}

FileSpecOutStream::~FileSpecOutStream() { close(); }

bool FileSpecOutStream::isValid() const { return mFile != nullptr; }

void FileSpecOutStream::putChar(char c) {
    if (isValid()) mFile->WriteUInt8(static_cast<unsigned char>(c));
}

int FileSpecOutStream::getPosition() const {
    return isValid() ? static_cast<int>(mFile->GetFilePosition()) : -1;
}

void FileSpecOutStream::setPosition(int position) {
    if (isValid()) mFile->Seek(position, kFromBeginning);
}

void FileSpecOutStream::close() {
    if (mOwnsFile) delete mFile;
    mFile = nullptr;
    mOwnsFile = false;
}

}  // namespace Xml
