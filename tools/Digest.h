#pragma once

#include <cstdint>
#include <string_view>

namespace tools {

/// Makes a number of a sequence of texts and numbers: the same of the same sequence, and different
/// ones of different sequences but for one pair in 2^64.
///
/// The numbers differ from one run of the program to the next, so nobody can make up a pair.
class Digest {
public:
    Digest();
    /// The same as adding its length and then its bytes, so that the next text cannot go on this.
    void add(std::string_view text);
    void add(std::uint64_t number);
    std::uint64_t value() const;

private:
    void round();

    std::uint64_t mState[4];
};

}  // namespace tools
