#include <cstddef>

#include "fuzz/Checks.h"
#include "support/Diagnostics.h"
#include "support/Play.h"

namespace fuzz {

std::string checkTree(std::string_view input) {
    const support::Diagnostics diagnostics;
    model::Play play;
    for (std::size_t place = 0; place + 1 < input.size(); place += 2) {
        const unsigned high = static_cast<unsigned char>(input[place]);
        const unsigned low = static_cast<unsigned char>(input[place + 1]);
        play.step(high << 8U | low);
        const std::string difference = play.difference();
        if (!difference.empty()) return play.story() + "so " + difference;
    }
    return "";
}

}  // namespace fuzz
