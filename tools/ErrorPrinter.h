#pragma once

#include <cstddef>
#include <string>

#include "tools/Source.h"

namespace tools {

/// Prints `FILE:LINE:COLUMN: error: TEXT` on the standard error stream, and below it the source
/// line with a caret under the place. `position` is a byte offset into the source.
void printError(const Source& source, std::size_t position, const std::string& text);
/// Prints `FILE: error: TEXT`.
void printError(const std::string& name, const std::string& text);
/// Prints `FILE: warning: TEXT`.
void printWarning(const std::string& name, const std::string& text);

}  // namespace tools
