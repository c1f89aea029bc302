#include "tools/Place.h"

#include <algorithm>
#include <utility>

#include "tools/Utf8.h"

namespace tools {
namespace {

constexpr std::size_t kLongestLine = 160;  ///< in bytes, to be shown whole
constexpr std::size_t kShownBefore = 100;
constexpr std::size_t kShownBehind = 50;

bool isWithin(std::string_view character, std::string_view first, std::string_view last) {
    return character.size() == first.size() && character >= first && character <= last;
}

// Control characters, stray bytes, and what reorders the text around it or cannot be seen.
bool isHarmful(std::string_view character) {
    if (character.size() == 1) {
        const auto byte = static_cast<unsigned char>(character.front());
        return byte < 0x20 || byte >= 0x7F;
    }
    return isWithin(character, "\xC2\x80", "\xC2\x9F") ||          // C1 controls
           isWithin(character, "\xE2\x80\x8B", "\xE2\x80\x8F") ||  // zero width, direction marks
           isWithin(character, "\xE2\x80\xA8", "\xE2\x80\xAE") ||  // line ends, direction overrides
           isWithin(character, "\xE2\x81\xA0", "\xE2\x81\xAF") ||  // invisible, isolates
           isWithin(character, "\xEF\xBB\xBF", "\xEF\xBB\xBF");    // byte order mark
}

// The part of the line to be shown, cut between characters.
std::pair<std::size_t, std::size_t> shownPart(const Place& place) {
    const std::string_view line = place.source;
    if (line.size() <= kLongestLine) return {0, line.size()};
    std::size_t first = place.offset > kShownBefore ? place.offset - kShownBefore : 0;
    std::size_t end = std::min(line.size(), place.offset + kShownBehind);
    while (first < place.offset && isContinuation(line[first])) ++first;
    while (end < line.size() && isContinuation(line[end])) ++end;
    return {first, end};
}

}  // namespace

Place locate(std::string_view text, std::size_t position) {
    std::size_t line = 1;
    std::size_t start = 0;
    for (std::size_t i = 0; i < position; ++i) {
        const bool isEnd =
            text[i] == '\n' || (text[i] == '\r' && (i + 1 == text.size() || text[i + 1] != '\n'));
        if (!isEnd) continue;
        ++line;
        start = i + 1;
    }
    const std::size_t end = std::min(text.find_first_of("\r\n", start), text.size());
    const std::string_view source = text.substr(start, end - start);
    std::size_t column = 1;
    for (std::size_t i = start; i < position; ++column) i += firstCharacter(text.substr(i)).size();
    return {line, column, source, std::min(position - start, source.size())};
}

std::string excerpt(const Place& place) {
    const auto [first, end] = shownPart(place);
    const std::string_view gap = "...";
    std::string source(first > 0 ? gap : "");
    std::string caret(source.size(), ' ');
    for (std::size_t i = first; i < end;) {
        const std::string_view character = firstCharacter(place.source.substr(i));
        const bool isTab = character == "\t";
        source += isTab || !isHarmful(character) ? character : "?";
        if (i < place.offset) caret += isTab ? '\t' : ' ';
        i += character.size();
    }
    if (end < place.source.size()) source += gap;
    return source + '\n' + caret + "^\n";
}

std::string harmless(std::string_view text) {
    std::string out;
    while (!text.empty()) {
        const std::string_view character = firstCharacter(text);
        out += isHarmful(character) ? "?" : character;
        text.remove_prefix(character.size());
    }
    return out;
}

}  // namespace tools
