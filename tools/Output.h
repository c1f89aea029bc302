#pragma once

#include <string>

namespace tools {

/// Writes the text to the standard output. Prints why when that fails, and answers false.
bool writeToStandardOutput(const std::string& text);
/// Some file systems only tell at the end that a write has failed. Prints so, and answers false.
bool closeStandardOutput();

/// Makes the text what the file holds. Prints why when that fails, and answers false.
///
/// A regular file is replaced as a whole, keeping its permissions: after a failure it is as it was,
/// or still missing. Of a symbolic link the file that it names is replaced. Anything else that can
/// be written, such as a device or a pipe, is written to.
bool writeToFile(const std::string& path, const std::string& text);

}  // namespace tools
