#pragma once

#include <iosfwd>
#include <string>
#include <vector>

#include "support/TempFolder.h"

namespace support {

/// What a command came to.
struct Outcome {
    int status;       ///< the exit status; 128 and the signal's number when one ended the command
    std::string out;  ///< what the standard output got
    std::string err;  ///< what the standard error stream got
};

bool operator==(const Outcome& left, const Outcome& right);
std::ostream& operator<<(std::ostream& stream, const Outcome& outcome);

/// A folder to run the program in.
class Workplace {
public:
    Workplace();

    void write(const std::string& name, const std::string& bytes) const;
    std::string read(const std::string& name) const;
    /// The names in the folder, hidden ones included, sorted.
    std::vector<std::string> list() const;
    std::string path(const std::string& name) const;

    /// Runs a line of shell commands in the folder, in which `vexxml` is the program. The standard
    /// input is what is given.
    Outcome run(const std::string& commands, const std::string& input = {}) const;

private:
    TempFolder mFiles;
    TempFolder mStreams;
};

/// The command, run without root's right to pass over the permissions of files.
std::string bareOfPrivileges(const std::string& command);

}  // namespace support
