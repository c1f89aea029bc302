#pragma once

#include <string>
#include <vector>

namespace support {

/// The path of something in the source folder.
std::string sourcePath(const std::string& name);
/// What a file in the source folder holds.
std::string readSource(const std::string& name);
/// The C++ sources and headers below a folder in the source folder, as names in the latter, sorted.
std::vector<std::string> sourcesBelow(const std::string& folder);

}  // namespace support
