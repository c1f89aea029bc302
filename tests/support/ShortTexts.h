#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace support {

/// Calls `visit` with every text of up to `length` pieces, until it answers false.
template <class Visit>
void forEachText(const std::vector<std::string>& pieces, int length, const Visit& visit) {
    std::vector<std::size_t> digits;
    for (;;) {
        std::string text;
        for (const std::size_t digit : digits) text += pieces[digit];
        if (!visit(text)) return;
        std::size_t place = 0;
        while (place < digits.size() && ++digits[place] == pieces.size()) digits[place++] = 0;
        if (place < digits.size()) continue;
        if (static_cast<int>(digits.size()) == length) return;
        digits.push_back(0);
    }
}

}  // namespace support
