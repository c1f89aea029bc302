#include <fcntl.h>
#include <unistd.h>

#include <utility>

#include "VexSys/FileIO.h"

namespace VexSys {

FileSpec::FileSpec(std::string path) : mPath(std::move(path)) {}

const std::string& FileSpec::GetPath() const { return mPath; }

// Files carry no type code here.
bool FileSpecFunctions::CreateFile(const FileSpec& spec, std::uint32_t /*type*/) {
    constexpr mode_t kForAll = 0666;  // less what the user's mask takes away
    const int descriptor =
        open(spec.GetPath().c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, kForAll);
    return descriptor >= 0 && close(descriptor) == 0;
}

}  // namespace VexSys
