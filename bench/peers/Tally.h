#pragma once

/// What a walk over a tree adds up. Adapters walk for both of these by one template.

#include <algorithm>
#include <cstddef>
#include <string_view>

namespace Bench {

/// The length and the first byte of all names, values and texts: what the timed walk asks for.
class Sum {
public:
    void element(std::string_view name) { add(name); }
    void attribute(std::string_view name, std::string_view value) {
        add(name);
        add(value);
    }
    void text(std::string_view text) { add(text); }

    std::size_t total() const { return mTotal; }

private:
    void add(std::string_view bytes) {
        mTotal += bytes.size();
        if (!bytes.empty()) mTotal += static_cast<unsigned char>(bytes[0]);
    }

    std::size_t mTotal = 0;
};

/// What all libraries must find in a document alike.
///
/// Texts of white space alone do not count, as not every library can be told to drop all of them,
/// nor do carriage returns, which some keep in front of a line feed.
class Answers {
public:
    void element(std::string_view name) {
        ++elements;
        nameBytes += name.size();
    }
    void attribute(std::string_view name, std::string_view value) {
        ++attributes;
        nameBytes += name.size();
        valueBytes += sizeWithout("\r", value);
    }
    void text(std::string_view text) {
        const std::size_t ink = sizeWithout(" \t\r\n", text);
        if (ink == 0) return;
        ++texts;
        textBytes += sizeWithout("\r", text);
        inkBytes += ink;
    }

    /// Whether a document is the same but for white space around texts.
    bool isLike(const Answers& other) const {
        return elements == other.elements && attributes == other.attributes &&
               nameBytes == other.nameBytes && valueBytes == other.valueBytes &&
               inkBytes == other.inkBytes;
    }

    std::size_t elements = 0;
    std::size_t attributes = 0;
    std::size_t texts = 0;
    std::size_t nameBytes = 0;
    std::size_t valueBytes = 0;
    std::size_t textBytes = 0;
    std::size_t inkBytes = 0;  ///< of texts, without white space

private:
    static std::size_t sizeWithout(std::string_view dropped, std::string_view bytes) {
        const auto isKept = [&](char c) { return dropped.find(c) == std::string_view::npos; };
        return static_cast<std::size_t>(std::count_if(bytes.begin(), bytes.end(), isKept));
    }
};

}  // namespace Bench
