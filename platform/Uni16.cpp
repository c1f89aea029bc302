#include "VexSys/Uni16.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

namespace VexSys {
namespace {

using CodePoint = std::uint32_t;

constexpr CodePoint kReplacement = 0xFFFD;
constexpr CodePoint kFirstBeyondUnits = 0x10000;
constexpr CodePoint kFirstHigh = 0xD800;  ///< the first half of a surrogate pair
constexpr CodePoint kFirstLow = 0xDC00;   ///< the second half
constexpr CodePoint kLastLow = 0xDFFF;

CodePoint byteOf(char byte) { return static_cast<unsigned char>(byte); }

bool isAscii(char byte) { return byteOf(byte) < 0x80; }

bool isContinuation(char byte) { return (byteOf(byte) & 0xC0U) == 0x80U; }

const char* endOfAscii(const char* at, const char* end) {
    constexpr std::uint64_t kHighBits = 0x8080808080808080U;
    std::uint64_t eight = 0;
    for (; end - at >= static_cast<std::ptrdiff_t>(sizeof eight); at += sizeof eight) {
        std::memcpy(&eight, at, sizeof eight);
        if ((eight & kHighBits) != 0) break;
    }
    return std::find_if_not(at, end, isAscii);
}

// What the first byte of a character tells.
struct Lead {
    int length;         ///< 1 for a byte that begins no character
    CodePoint bits;     ///< those that it contributes
    CodePoint lowest;   ///< limits of the second byte, which keep out overlong forms, surrogates
    CodePoint highest;  ///< and what is above U+10FFFF
};

Lead leadOf(char first) {
    const CodePoint byte = byteOf(first);
    if (byte < 0xC2 || byte > 0xF4) return {1, kReplacement, 0, 0};
    if (byte < 0xE0) return {2, byte & 0x1FU, 0x80, 0xBF};
    if (byte < 0xF0) {
        return {3, byte & 0x0FU, byte == 0xE0 ? 0xA0U : 0x80U, byte == 0xED ? 0x9FU : 0xBFU};
    }
    return {4, byte & 0x07U, byte == 0xF0 ? 0x90U : 0x80U, byte == 0xF4 ? 0x8FU : 0xBFU};
}

// The character beyond ASCII at `at`, which moves behind it; of a malformed one behind what could
// still have begun a character.
CodePoint decode(const char*& at, const char* end) {
    const Lead lead = leadOf(*at++);
    CodePoint point = lead.bits;
    for (int i = 1; i < lead.length; ++i, ++at) {
        if (at == end || !isContinuation(*at)) return kReplacement;
        const CodePoint byte = byteOf(*at);
        if (i == 1 && (byte < lead.lowest || byte > lead.highest)) return kReplacement;
        point = point << 6U | (byte & 0x3FU);
    }
    return point;
}

wchar_t* put(CodePoint point, wchar_t* out) {
    if (point < kFirstBeyondUnits) {
        *out++ = static_cast<wchar_t>(point);
        return out;
    }
    const CodePoint offset = point - kFirstBeyondUnits;
    *out++ = static_cast<wchar_t>(kFirstHigh + (offset >> 10U));
    *out++ = static_cast<wchar_t>(kFirstLow + (offset & 0x3FFU));
    return out;
}

CodePoint pointOf(wchar_t unit) { return Core::uni16char_traits::to_int_type(unit); }

bool isHigh(CodePoint unit) { return unit >= kFirstHigh && unit < kFirstLow; }

bool isLow(CodePoint unit) { return unit >= kFirstLow && unit <= kLastLow; }

CodePoint joined(CodePoint high, CodePoint low) {
    return kFirstBeyondUnits + ((high - kFirstHigh) << 10U) + (low - kFirstLow);
}

// The character at `at`, which moves behind it.
CodePoint takeCharacter(const wchar_t*& at, const wchar_t* end) {
    const CodePoint unit = pointOf(*at++);
    if (isHigh(unit) && at != end && isLow(pointOf(*at))) return joined(unit, pointOf(*at++));
    return isHigh(unit) || isLow(unit) || unit >= kFirstBeyondUnits ? kReplacement : unit;
}

void encode(CodePoint point, std::string& out) {
    const auto put = [&out](CodePoint byte) { out += static_cast<char>(byte); };
    const auto putRest = [put, point](unsigned shift) { put(0x80U | ((point >> shift) & 0x3FU)); };
    if (point < 0x80) return put(point);
    if (point < 0x800) {
        put(0xC0U | point >> 6U);
    } else if (point < kFirstBeyondUnits) {
        put(0xE0U | point >> 12U);
        putRest(6);
    } else {
        put(0xF0U | point >> 18U);
        putRest(12);
        putRest(6);
    }
    putRest(0);
}

}  // namespace

std::size_t Uni16CharGetLength(const wchar_t* text) { return Core::uni16char_traits::length(text); }

int Uni16CharCompare(const Uni16String& left, const Uni16String& right) {
    return left.compare(right);
}

int Uni16CharPartialCompare(const wchar_t* left, const wchar_t* right, std::size_t count) {
    return Core::uni16char_traits::compare(left, right, count);
}

std::size_t Uni16CharPartialFindCharacter(const wchar_t* text, wchar_t unit, std::size_t count) {
    return static_cast<std::size_t>(std::find(text, text + count, unit) - text);
}

Uni16String UTF8ToUni16Char(const char* text) { return UTF8ToUni16Char(text, std::strlen(text)); }

Uni16String UTF8ToUni16Char(const char* bytes, std::size_t size) {
    Uni16String decoded(size, L'\0');  // no character has more units than bytes
    const char* const end = bytes + size;
    wchar_t* out = decoded.data();
    while (bytes != end) {
        const char* const start = bytes;
        bytes = endOfAscii(bytes, end);
        out = std::copy(start, bytes, out);
        while (bytes != end && !isAscii(*bytes)) out = put(decode(bytes, end), out);
    }
    decoded.resize(static_cast<std::size_t>(out - decoded.data()));
    return decoded;
}

std::string Uni16CharToUTF8(const Uni16String& text) {
    std::string encoded;
    encoded.reserve(text.size());
    const wchar_t* const end = text.data() + text.size();
    for (const wchar_t* at = text.data(); at != end;) encode(takeCharacter(at, end), encoded);
    return encoded;
}

Uni16String PlatformCStringToUni16Char(const char* text) { return UTF8ToUni16Char(text); }

void Uni16CharToPlatformCString(const Uni16String& text, char* buffer, std::size_t size) {
    const std::string encoded = Uni16CharToUTF8(text.substr(0, text.find(L'\0')));
    std::size_t length = std::min(encoded.size(), size - 1);
    while (length < encoded.size() && isContinuation(encoded[length])) --length;
    *std::copy_n(encoded.data(), length, buffer) = '\0';
}

}  // namespace VexSys
