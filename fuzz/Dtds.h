#pragma once

#include <string>

#include "VexXml/Dtd.h"

namespace fuzz {

/// Whether what the DTD is written as reads back to be written the same.
bool isStable(Xml::Dtd& dtd);

/// Writes, reads and writes the DTD once more. Empty when it then is stable, or is known not to be.
std::string rewritingDifference(Xml::Dtd& dtd);

}  // namespace fuzz
