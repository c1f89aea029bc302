#include "project/Files.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace support {

std::string sourcePath(const std::string& name) { return VEXXML_SOURCE_FOLDER "/" + name; }

std::string readSource(const std::string& name) {
    std::ifstream file(sourcePath(name), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

std::vector<std::string> sourcesBelow(const std::string& folder) {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(sourcePath(folder))) {
        const std::string ending = entry.path().extension();
        if (ending != ".cpp" && ending != ".h") continue;
        names.push_back(std::filesystem::relative(entry.path(), sourcePath("")).string());
    }
    std::sort(names.begin(), names.end());
    return names;
}

}  // namespace support
