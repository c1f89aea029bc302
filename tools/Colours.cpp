#include "tools/Colours.h"

#include <unistd.h>

#include <cstdlib>

namespace tools {
namespace {

bool isSet(const char* variable) {
    const char* value = std::getenv(variable);
    return value != nullptr && *value != '\0';
}

}  // namespace

bool usesColour(int file) { return isatty(file) == 1 && !isSet("NO_COLOR"); }

}  // namespace tools
