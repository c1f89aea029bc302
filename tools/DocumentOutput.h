#pragma once

#include <string>

#include "tools/CommandLine.h"
#include "tools/Reading.h"
#include "tools/Status.h"

namespace tools {

/// Where a command writes the document that it has read.
struct Destination {
    std::string file;      ///< empty or "-" for the standard output
    bool inPlace = false;  ///< to where the document was read from
};

void addDestination(Command& command, Destination& destination);
/// Refuses the arguments where the document comes from the standard input and is to be written
/// there.
void checkDestination(const Destination& destination, const std::string& input);

/// Writes the document. Prints why when that fails, and warns of what others will not be able to
/// read.
Status writeDocument(const DocumentReading& reading, const Destination& destination);

}  // namespace tools
