#pragma once

#include <string>
#include <string_view>

namespace tools {

/// Writes the text to the standard output. Prints why when that fails, and answers false.
bool writeToStandardOutput(const std::string& text);

/// Writes to the standard output in blocks: many short texts one by one would cost a system call
/// each, all at once memory. Once writing has failed, which is printed, nothing more is written.
class BlockWriter {
public:
    void write(std::string_view text);
    void flush();
    bool hasFailed() const { return mHasFailed; }

private:
    std::string mBlock;
    bool mHasFailed = false;
};

/// Some file systems only tell at the end that a write has failed. Prints so, and answers false.
bool closeStandardOutput();

/// Makes the text what the file holds. Prints why when that fails, and answers false.
///
/// A regular file is replaced as a whole, keeping its permissions: after a failure it is as it was,
/// or still missing. Of a symbolic link the file that it names is replaced. Anything else that can
/// be written, such as a device or a pipe, is written to.
bool writeToFile(const std::string& path, const std::string& text);

}  // namespace tools
