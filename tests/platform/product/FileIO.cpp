#include "VexSys/FileIO.h"

#include <map>

namespace VexSys {
namespace {

struct File {
    std::string contents;
    std::uint32_t type;
};

std::map<std::string, File>& files() {
    static std::map<std::string, File> all;
    return all;
}

int living = 0;

}  // namespace

FileIOBase::~FileIOBase() = default;

bool FileIOBase::IsOpened() { return mIsOpen; }

unsigned char FileIOBase::ReadUInt8() {
    const std::string& contents = contentsOf(mName);
    if (mPosition >= contents.size()) return 0;
    return static_cast<unsigned char>(contents[mPosition++]);
}

long FileIOBase::WriteUInt8(unsigned char byte) {
    std::string& contents = contentsOf(mName);
    if (mPosition >= contents.size()) contents.resize(mPosition + 1);
    contents[mPosition++] = static_cast<char>(byte);
    return 1;
}

void FileIOBase::Seek(std::int64_t offset, FileSeekMode mode) {
    const auto distance = static_cast<std::uint64_t>(offset);
    mPosition = mode == FileSeekMode::Absolute ? distance : mPosition + distance;
}

FileIO::FileIO(const FileSpec& spec) {
    mName = spec.Name();
    ++living;
}

FileIO::~FileIO() { --living; }

bool FileIO::Open(FileAccessMode) { return mIsOpen = files().count(mName) > 0; }

std::uint64_t FileIO::GetFileLength() { return contentsOf(mName).size(); }

std::uint64_t FileIO::GetFilePosition() const { return mPosition; }

void FileSpecFunctions::CreateFile(const FileSpec& spec, std::uint32_t type) {
    if (!spec.Name().empty()) files()[spec.Name()] = {"", type};
}

std::string& contentsOf(const std::string& name) { return files()[name].contents; }

std::uint32_t typeOf(const std::string& name) { return files()[name].type; }

int livingFiles() { return living; }

}  // namespace VexSys
