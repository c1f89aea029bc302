#include "tools/Utf8.h"

#include <algorithm>
#include <cstddef>

namespace tools {
namespace {

// The length that the first byte of a character announces; 0 when it cannot be the first.
std::size_t announcedLength(char first) {
    const auto byte = static_cast<unsigned char>(first);
    if (byte < 0x80) return 1;
    if (byte < 0xC2 || byte > 0xF4) return 0;
    return byte < 0xE0 ? 2 : byte < 0xF0 ? 3 : 4;
}

// 0 when the text does not begin with a whole character.
std::size_t characterLength(std::string_view text) {
    const std::size_t length = announcedLength(text.front());
    if (length == 0 || length > text.size()) return 0;
    const std::string_view rest = text.substr(1, length - 1);
    return std::all_of(rest.begin(), rest.end(), isContinuation) ? length : 0;
}

}  // namespace

bool isContinuation(char byte) { return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U; }

std::string_view firstCharacter(std::string_view text) {
    return text.substr(0, std::max<std::size_t>(characterLength(text), 1));
}

bool isUtf8(std::string_view text) {
    while (!text.empty()) {
        const std::size_t length = characterLength(text);
        if (length == 0) return false;
        text.remove_prefix(length);
    }
    return true;
}

}  // namespace tools
