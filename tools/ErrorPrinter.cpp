#include "tools/ErrorPrinter.h"

#include <unistd.h>

#include <iostream>
#include <string_view>

#include "tools/Colours.h"
#include "tools/Place.h"

namespace tools {
namespace {

// What the library says may quote the document, and so be of any length.
constexpr std::size_t kLongestText = 500;

std::string coloured(std::string_view colour, std::string_view text) {
    static const bool isColoured = usesColour(STDERR_FILENO);
    std::string out;
    if (isColoured) out += colour;
    out += text;
    if (isColoured) out += kPlain;
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
