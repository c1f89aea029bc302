#include "tools/Digest.h"

#include <cstring>
#include <random>

namespace tools {
namespace {

struct Key {
    std::uint64_t first;
    std::uint64_t second;
};

std::uint64_t random64(std::random_device& device) {
    return std::uint64_t{device()} << 32U | device();
}

const Key& key() {
    static const Key drawn = [] {
        std::random_device device;
        return Key{random64(device), random64(device)};
    }();
    return drawn;
}

std::uint64_t rotated(std::uint64_t number, unsigned bits) {
    return number << bits | number >> (64U - bits);
}

}  // namespace

// SipHash-1-3, of words of 64 bits.
Digest::Digest()
    : mState{key().first ^ 0x736f6d6570736575U, key().second ^ 0x646f72616e646f6dU,
             key().first ^ 0x6c7967656e657261U, key().second ^ 0x7465646279746573U} {}

void Digest::add(std::string_view text) {
    add(std::uint64_t{text.size()});
    for (std::size_t at = 0; at < text.size(); at += sizeof(std::uint64_t)) {
        std::uint64_t word = 0;
        const std::string_view bytes = text.substr(at, sizeof word);
        std::memcpy(&word, bytes.data(), bytes.size());
        add(word);
    }
}

void Digest::add(std::uint64_t number) {
    mState[3] ^= number;
    round();
    mState[0] ^= number;
}

std::uint64_t Digest::value() const {
    Digest end = *this;
    end.mState[2] ^= 0xffU;
    for (int i = 0; i < 3; ++i) end.round();
    return end.mState[0] ^ end.mState[1] ^ end.mState[2] ^ end.mState[3];
}

void Digest::round() {
    auto& [a, b, c, d] = mState;
    a += b;
    c += d;
    b = rotated(b, 13) ^ a;
    d = rotated(d, 16) ^ c;
    a = rotated(a, 32);
    c += b;
    a += d;
    b = rotated(b, 17) ^ c;
    d = rotated(d, 21) ^ a;
    c = rotated(c, 32);
}

}  // namespace tools
