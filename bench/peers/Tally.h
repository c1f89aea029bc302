#pragma once

/// What a walk over a tree adds up. Adapters walk for both of these by one template.

#include <cstddef>
#include <cstring>

namespace Bench {

/// The lengths of all names, values and texts: what the timed walk asks for.
class Lengths {
public:
    void element(const char* /*name*/, std::size_t length) { mTotal += length; }
    void attribute(const char* /*name*/, std::size_t nameLength, const char* /*value*/,
                   std::size_t valueLength) {
        mTotal += nameLength + valueLength;
    }
    void text(const char* /*text*/, std::size_t length) { mTotal += length; }

    std::size_t total() const { return mTotal; }

private:
    std::size_t mTotal = 0;
};

/// What all libraries must find in a document alike.
///
/// Texts of white space alone do not count, as not every library can be told to drop all of them,
/// nor do carriage returns, which some keep in front of a line feed.
class Answers {
public:
    void element(const char* /*name*/, std::size_t length) {
        ++elements;
        nameBytes += length;
    }
    void attribute(const char* /*name*/, std::size_t nameLength, const char* value,
                   std::size_t valueLength) {
        ++attributes;
        nameBytes += nameLength;
        attributeBytes += valueLength - count(value, valueLength, "\r");
    }
    void text(const char* text, std::size_t length) {
        const std::size_t white = count(text, length, " \t\r\n");
        if (white == length) return;
        ++texts;
        textBytes += length - count(text, length, "\r");
        inkBytes += length - white;
    }

    /// Whether a document is the same but for white space around texts.
    bool isLike(const Answers& other) const {
        return elements == other.elements && attributes == other.attributes &&
               nameBytes == other.nameBytes && attributeBytes == other.attributeBytes &&
               inkBytes == other.inkBytes;
    }

    std::size_t elements = 0;
    std::size_t attributes = 0;
    std::size_t texts = 0;
    std::size_t nameBytes = 0;
    std::size_t attributeBytes = 0;
    std::size_t textBytes = 0;
    std::size_t inkBytes = 0;  ///< of texts, without white space

private:
    static std::size_t count(const char* bytes, std::size_t length, const char* wanted) {
        std::size_t found = 0;
        for (std::size_t i = 0; i < length; ++i) {
            if (bytes[i] != '\0' && std::strchr(wanted, bytes[i]) != nullptr) ++found;
        }
        return found;
    }
};

}  // namespace Bench
