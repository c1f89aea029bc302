#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace Xml {

/// Comparing and copying names and the like, which are so short that a call takes longer than that.
namespace Bytes {

template <class Word>
Word load(const char* bytes) {
    Word word;
    std::memcpy(&word, bytes, sizeof word);
    return word;
}

template <class Word>
void store(char* bytes, Word word) {
    std::memcpy(bytes, &word, sizeof word);
}

/// A word all of whose bytes are `byte`.
template <class Word>
constexpr Word repeated(unsigned char byte) {
    return ~Word{0} / 255 * byte;
}

/// Whether some byte of the word is 0.
template <class Word>
constexpr bool hasZero(Word word) {
    return ((word - repeated<Word>(1)) & ~word & repeated<Word>(0x80)) != 0;
}

template <class Word>
constexpr bool has(Word word, unsigned char byte) {
    return hasZero(word ^ repeated<Word>(byte));
}

/// Words from the beginning and the end, which overlap if need be. Needs: at least one word.
template <class Word>
bool haveSameEnds(const char* a, const char* b, std::size_t size) {
    const std::size_t last = size - sizeof(Word);
    return load<Word>(a) == load<Word>(b) && load<Word>(a + last) == load<Word>(b + last);
}

inline bool areEqual(const char* a, const char* b, std::size_t size) {
    if (size > 16) return std::memcmp(a, b, size) == 0;
    if (size >= 8) return haveSameEnds<std::uint64_t>(a, b, size);
    if (size >= 4) return haveSameEnds<std::uint32_t>(a, b, size);
    if (size >= 2) return haveSameEnds<std::uint16_t>(a, b, size);
    return size == 0 || *a == *b;
}

template <class Word>
void copyEnds(char* to, const char* from, std::size_t size) {
    const std::size_t last = size - sizeof(Word);
    const Word begin = load<Word>(from);
    const Word end = load<Word>(from + last);
    store(to, begin);
    store(to + last, end);
}

/// Needs: not more than 16 bytes.
inline void copyFew(char* to, const char* from, std::size_t size) {
    if (size >= 8) return copyEnds<std::uint64_t>(to, from, size);
    if (size >= 4) return copyEnds<std::uint32_t>(to, from, size);
    if (size >= 2) return copyEnds<std::uint16_t>(to, from, size);
    if (size == 1) *to = *from;
}

}  // namespace Bytes
}  // namespace Xml
