#include "VexSys/FileIO.h"

#include <cerrno>

#include "platform/BufferedFile.h"

namespace VexSys {

struct FileIOBase::State {
    std::string path;
    BufferedFile file;
};

FileIOBase::FileIOBase() : mState(std::make_unique<State>()) {}
FileIOBase::~FileIOBase() = default;

bool FileIOBase::IsOpened() const { return mState->file.isOpen(); }

unsigned char FileIOBase::ReadUInt8() { return mState->file.read(); }

bool FileIOBase::WriteUInt8(unsigned char byte) { return mState->file.write(byte); }

bool FileIOBase::Seek(std::int64_t offset, FileSeekMode mode) {
    if (mode != kSeekFromBeginning) return mState->file.fail(EINVAL);
    return mState->file.seek(offset);
}

bool FileIOBase::Flush() { return mState->file.flush(); }

bool FileIOBase::Close() { return mState->file.close(); }

std::error_code FileIOBase::GetError() const { return mState->file.error(); }

FileIO::FileIO(const FileSpec& spec) { mState->path = spec.GetPath(); }
FileIO::~FileIO() = default;

bool FileIO::Open(FileAccessMode mode) {
    if (mode != kFileRead && mode != kFileWrite) return mState->file.fail(EINVAL);
    const auto access = mode == kFileRead ? BufferedFile::Mode::Read : BufferedFile::Mode::Write;
    return mState->file.open(mState->path, access);
}

std::uint64_t FileIO::GetFileLength() { return mState->file.length(); }

std::uint64_t FileIO::GetFilePosition() const { return mState->file.position(); }

}  // namespace VexSys
