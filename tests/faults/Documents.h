#pragma once

#include <string>

namespace faults {

/// A valid document with a bit of everything that can be read.
extern const char* const kBook;

/// So many that an element keeps them otherwise than a few.
std::string manyAttributes();

}  // namespace faults
