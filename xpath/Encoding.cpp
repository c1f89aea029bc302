#include "xpath/Encoding.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace Xml {
namespace {

constexpr std::uint32_t kReplacement = 0xFFFD;

bool isLead(std::uint32_t unit) { return unit >= 0xD800 && unit < 0xDC00; }

bool isTrail(std::uint32_t unit) { return unit >= 0xDC00 && unit < 0xE000; }

void push(std::string& bytes, std::uint32_t byte) { bytes.push_back(static_cast<char>(byte)); }

// The lower bits, six to a byte, for as many bytes as are told.
void pushRest(std::string& bytes, std::uint32_t code, unsigned count) {
    while (count-- > 0) push(bytes, 0x80 | (code >> 6 * count & 0x3F));
}

// Needs: below 0x110000.
void encode(std::string& bytes, std::uint32_t code) {
    if (code < 0x80) {
        push(bytes, code);
    } else if (code < 0x800) {
        push(bytes, 0xC0 | code >> 6);
        pushRest(bytes, code, 1);
    } else if (code < 0x10000) {
        push(bytes, 0xE0 | code >> 12);
        pushRest(bytes, code, 2);
    } else {
        push(bytes, 0xF0 | code >> 18);
        pushRest(bytes, code, 3);
    }
}

// What is no UTF-16 unit at all, but fits a wider wchar_t. It comes behind all units.
void encodeWide(std::string& bytes, std::uint32_t value) {
    push(bytes, 0xFF);
    for (const unsigned shift : {24U, 16U, 8U, 0U}) push(bytes, value >> shift & 0xFF);
}

std::uint32_t unitAt(Uni16View text, std::size_t at) {
    return at < text.size() ? static_cast<std::uint32_t>(text[at]) : 0;
}

bool isASCII(Uni16View text) {
    return std::all_of(text.begin(), text.end(),
                       [](wchar_t unit) { return static_cast<std::uint32_t>(unit) < 0x80; });
}

// Needs: ASCII.
std::string narrowed(Uni16View text) {
    std::string bytes(text.size(), '\0');
    std::transform(text.begin(), text.end(), bytes.begin(),
                   [](wchar_t unit) { return static_cast<char>(unit); });
    return bytes;
}

}  // namespace

std::string toUTF8(Uni16View text) {
    if (isASCII(text)) return narrowed(text);
    std::string bytes;
    bytes.reserve(text.size());
    for (std::size_t at = 0; at < text.size(); ++at) {
        const std::uint32_t unit = unitAt(text, at);
        if (isLead(unit) && isTrail(unitAt(text, at + 1))) {
            encode(bytes, 0x10000 + ((unit - 0xD800) << 10) + (unitAt(text, ++at) - 0xDC00));
        } else {
            const bool isCharacter = unit < 0x10000 && !isLead(unit) && !isTrail(unit);
            encode(bytes, isCharacter ? unit : kReplacement);
        }
    }
    return bytes;
}

std::string comparisonKey(Uni16View text) {
    if (isASCII(text)) return narrowed(text);
    std::string key;
    key.reserve(text.size());
    for (std::size_t at = 0; at < text.size(); ++at) {
        const std::uint32_t unit = unitAt(text, at);
        if (unit < 0x10000) {
            encode(key, unit);
        } else {
            encodeWide(key, unit);
        }
    }
    return key;
}

}  // namespace Xml
