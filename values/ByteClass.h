#pragma once

#include <array>

namespace Xml {

/// What a byte may be to the lexer or in a text to be written, told by one look into a table.
namespace ByteClass {

enum Bits : unsigned char { White = 1, Delimiter = 2, NameStart = 4, NameChar = 8, Special = 16 };

inline constexpr std::array<unsigned char, 256> kTable = [] {
    std::array<unsigned char, 256> table{};
    const auto mark = [&table](const char* bytes, unsigned char bits) constexpr {
        for (; *bytes != '\0'; ++bytes) table[static_cast<unsigned char>(*bytes)] |= bits;
    };
    mark(" \t\r\n", White);
    mark("(),><=\"'[]*+?!|/\\", Delimiter);
    mark("abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ_:", NameStart | NameChar);
    mark("0123456789-.", NameChar);
    mark("&<>\"'", Special);
    return table;
}();

constexpr bool has(char byte, unsigned char bits) {
    return (kTable[static_cast<unsigned char>(byte)] & bits) != 0;
}

constexpr bool isWhite(char byte) { return has(byte, White); }
/// A byte that is a token of its own. No NUL is.
constexpr bool isDelimiter(char byte) { return has(byte, Delimiter); }
constexpr bool endsToken(char byte) { return has(byte, White | Delimiter); }
constexpr bool isNameStart(char byte) { return has(byte, NameStart); }
constexpr bool isNameChar(char byte) { return has(byte, NameChar); }
/// A byte that text holds as a reference.
constexpr bool isSpecial(char byte) { return has(byte, Special); }

}  // namespace ByteClass
}  // namespace Xml
