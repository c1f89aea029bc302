#pragma once

#include <string>

namespace support {

/// A folder of its own for the files of a test, gone with all it holds when this is destroyed.
class TempFolder {
public:
    TempFolder();
    ~TempFolder();
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;

    std::string path(const std::string& name) const;
    /// Makes the file hold just these bytes, and returns its path.
    std::string write(const std::string& name, const std::string& bytes) const;

private:
    std::string mPath;
};

}  // namespace support
