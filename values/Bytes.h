#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace Xml {

/// Comparing names, which are so short that a call takes longer than the comparison.
namespace Bytes {

template <class Word>
Word load(const char* bytes) {
    Word word;
    std::memcpy(&word, bytes, sizeof word);
    return word;
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

}  // namespace Bytes
}  // namespace Xml
