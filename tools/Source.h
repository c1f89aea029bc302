#pragma once

#include <cstdint>
#include <string>

namespace tools {

/// A text with the name it goes by in reports.
struct Source {
    std::string name;
    std::string text;
};

/// Reads the file, or the standard input for "-". Prints why when it cannot be read, and answers
/// false; so it does for 2 GiB or more, which is beyond the library's positions.
///
/// Of more than `limit` bytes, those and one more are read: enough for a reader with that limit to
/// tell, and a stranger's pipe need not come to an end.
bool readSource(const std::string& name, std::uint64_t limit, Source& source);

}  // namespace tools
