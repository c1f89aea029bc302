#pragma once

#include <string>
#include <vector>

#include "VexXml/Readers.h"

namespace tools {

/// What the program exits with. Of several files the worst counts.
enum Status : int {
    Success = 0,
    BadDocument = 1,  ///< not well-formed or not valid
    Trouble = 2,      ///< wrong usage, or a file that cannot be read or written

    /// A query selects nothing: then `Success` in one file is enough, and a bad document is
    /// `Trouble`, so that the answer is known from the status.
    NothingSelected = 1
};

struct FormatOptions {
    std::string input;
    std::string output;  ///< empty for the standard output
    bool inPlace = false;
    bool noShortTags = false;
    Xml::ReadLimits limits;
};

struct ValidateOptions {
    std::vector<std::string> inputs;
    std::string dtd;  ///< empty for the DTD of each document
    bool quiet = false;
    Xml::ReadLimits limits;
};

struct DtdOptions {
    std::string input;
    Xml::ReadLimits limits;
};

struct QueryOptions {
    std::string expression;
    std::vector<std::string> inputs;
    bool count = false;     ///< print how many results there are in place of the results
    bool asNode = false;    ///< print nodes as XML in place of their texts
    char separator = '\n';  ///< printed behind each result
    Xml::ReadLimits limits;
};

/// Writes the document back, indented.
Status format(const FormatOptions& options);
/// Tells of each document whether it is valid.
Status validate(const ValidateOptions& options);
/// Writes the document type declaration of a document.
Status writeDtd(const DtdOptions& options);
/// Prints what an XPath expression selects in each document.
Status query(const QueryOptions& options);

}  // namespace tools
