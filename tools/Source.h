#pragma once

#include <string>

namespace tools {

/// A text with the name it goes by in reports.
struct Source {
    std::string name;
    std::string text;
};

/// Reads the whole file, or the standard input for "-". Prints why when it cannot be read, and
/// answers false; so it does for 2 GiB or more, which is beyond the library's positions.
bool readSource(const std::string& name, Source& source);

}  // namespace tools
