#include "support/TempFolder.h"

#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <system_error>

namespace support {

TempFolder::TempFolder()
    : mPath((std::filesystem::temp_directory_path() / "vexxml-XXXXXX").string()) {
    if (mkdtemp(mPath.data()) == nullptr) throw std::runtime_error("cannot make a folder");
}

TempFolder::~TempFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(mPath, ignored);
}

std::string TempFolder::path(const std::string& name) const { return mPath + "/" + name; }

std::string TempFolder::write(const std::string& name, const std::string& bytes) const {
    std::ofstream file(path(name), std::ios::binary);
    file << bytes;
    return path(name);
}

}  // namespace support
