#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

#include "values/ByteClass.h"
#include "values/Bytes.h"
#include "values/References.h"

namespace Xml {

/// What lines are made of - bytes, texts, and texts whose special characters become references -
/// and how to copy it: by words, where that is possible. A line feed is no part of a line.
namespace LinePart {

struct Escaped {
    std::string_view text;
};

/// So many bytes are copied at most.
inline std::size_t most(char) { return 1; }
inline std::size_t most(std::string_view text) { return text.size(); }
inline std::size_t most(Escaped escaped) {
    constexpr std::size_t kLongestReference = 6;
    return kLongestReference * escaped.text.size();
}

/// Two words, which overlap if need be. Needs: the text is as long as one, and not longer than two.
template <class Word>
char* copyWords(std::string_view text, char* to) {
    const std::size_t last = text.size() - sizeof(Word);
    const Word begin = Bytes::load<Word>(text.data());
    const Word end = Bytes::load<Word>(text.data() + last);
    Bytes::store(to, begin);
    Bytes::store(to + last, end);
    return Bytes::has(begin, '\n') || Bytes::has(end, '\n') ? nullptr : to + text.size();
}

inline char* copyLongText(std::string_view text, char* to) {
    if (text.find('\n') != std::string_view::npos) return nullptr;
    std::memcpy(to, text.data(), text.size());
    return to + text.size();
}

/// What comes behind the copy; null when there is a line feed.
inline char* copy(char c, char* to) {
    *to = c;
    return c == '\n' ? nullptr : to + 1;
}

inline char* copy(std::string_view text, char* to) {
    if (text.size() > 16) return copyLongText(text, to);
    if (text.size() >= 8) return copyWords<std::uint64_t>(text, to);
    if (text.size() >= 4) return copyWords<std::uint32_t>(text, to);
    for (const char c : text) {
        *to++ = c;
        if (c == '\n') return nullptr;
    }
    return to;
}

/// False only when each byte of the word is copied as it is. Each of the questions is about bytes
/// that differ in few bits; a "#" is taken for one of them.
template <class Word>
constexpr bool mayNeedCare(Word word) {
    return Bytes::hasZero((word | Bytes::repeated<Word>('"' ^ '\'')) ^
                          Bytes::repeated<Word>('\'')) ||
           Bytes::hasZero((word | Bytes::repeated<Word>('<' ^ '>')) ^ Bytes::repeated<Word>('>')) ||
           Bytes::has(word, '\n');
}

inline char* copyEscapedBytes(const char* from, std::size_t count, char* to) {
    for (const char* const end = from + count; from != end; ++from) {
        if (ByteClass::isSpecial(*from)) {
            to = copy(stdReference(*from), to);
        } else {
            *to++ = *from;
            if (*from == '\n') return nullptr;
        }
    }
    return to;
}

template <class Word>
char* copyEscapedWord(const char* from, char* to) {
    const Word word = Bytes::load<Word>(from);
    if (mayNeedCare(word)) return copyEscapedBytes(from, sizeof word, to);
    Bytes::store(to, word);
    return to + sizeof word;
}

/// Word by word. As long as no byte became a reference, the last word may overlap another.
template <class Word>
char* copyEscapedWords(std::string_view text, char* to) {
    const char* const begin = to;
    const char* from = text.data();
    std::size_t left = text.size();
    for (; left >= sizeof(Word) && to != nullptr; left -= sizeof(Word), from += sizeof(Word)) {
        to = copyEscapedWord<Word>(from, to);
    }
    if (to == nullptr) return nullptr;
    if (left > 0 && to - begin == from - text.data()) {
        const std::size_t back = sizeof(Word) - left;
        const Word word = Bytes::load<Word>(from - back);
        if (!mayNeedCare(word)) {
            Bytes::store(to - back, word);
            return to + left;
        }
    }
    return copyEscapedBytes(from, left, to);
}

inline char* copy(Escaped escaped, char* to) {
    const std::string_view text = escaped.text;
    if (text.size() >= 8) return copyEscapedWords<std::uint64_t>(text, to);
    if (text.size() >= 4) return copyEscapedWords<std::uint32_t>(text, to);
    return copyEscapedBytes(text.data(), text.size(), to);
}

}  // namespace LinePart
}  // namespace Xml
