#pragma once

#include <string>
#include <vector>

namespace tools {

/// What the program exits with. Of several files the worst counts.
enum Status : int {
    Success = 0,
    BadDocument = 1,  ///< not well-formed or not valid
    Trouble = 2       ///< wrong usage, or a file that cannot be read or written
};

struct FormatOptions {
    std::string input;
    std::string output;  ///< empty for the standard output
    bool inPlace = false;
    bool noShortTags = false;
};

struct ValidateOptions {
    std::vector<std::string> inputs;
    std::string dtd;  ///< empty for the DTD of each document
    bool quiet = false;
};

/// Writes the document back, indented.
Status format(const FormatOptions& options);
/// Tells of each document whether it is valid.
Status validate(const ValidateOptions& options);
/// Writes the document type declaration of a document.
Status writeDtd(const std::string& input);

}  // namespace tools
