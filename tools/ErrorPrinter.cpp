#include "tools/ErrorPrinter.h"

#include <unistd.h>

#include <cstdlib>
#include <iostream>
#include <string_view>

#include "tools/Place.h"

namespace tools {
namespace {

// What the library says may quote the document, and so be of any length.
constexpr std::size_t kLongestText = 500;

constexpr std::string_view kBold = "\x1b[1m";
constexpr std::string_view kBoldRed = "\x1b[1;31m";
constexpr std::string_view kBoldMagenta = "\x1b[1;35m";
constexpr std::string_view kPlain = "\x1b[0m";

bool isSet(const char* variable) {
    const char* value = std::getenv(variable);
    return value != nullptr && *value != '\0';
}

bool usesColour() {
    static const bool uses = isatty(STDERR_FILENO) == 1 && !isSet("NO_COLOR");
    return uses;
}

std::string coloured(std::string_view colour, std::string_view text) {
    std::string out;
    if (usesColour()) out += colour;
    out += text;
    if (usesColour()) out += kPlain;
    return out;
}

std::string shortened(const std::string& text) {
    return text.size() <= kLongestText ? text : text.substr(0, kLongestText) + "...";
}

void printLine(const std::string& where, const std::string& kind, const std::string& text) {
    std::cerr << coloured(kBold, harmless(where) + ':') << ' ' << kind << ' '
              << harmless(shortened(text)) << '\n';
}

}  // namespace

void printError(const Source& source, std::size_t position, const std::string& text) {
    const Place place = locate(source.text, position);
    const std::string where =
        source.name + ':' + std::to_string(place.line) + ':' + std::to_string(place.column);
    printLine(where, coloured(kBoldRed, "error:"), text);
    std::cerr << excerpt(place);
}

void printError(const std::string& name, const std::string& text) {
    printLine(name, coloured(kBoldRed, "error:"), text);
}

void printWarning(const std::string& name, const std::string& text) {
    printLine(name, coloured(kBoldMagenta, "warning:"), text);
}

}  // namespace tools
