#include <algorithm>

#include "fuzz/Checks.h"
#include "support/QueryTwins.h"
#include "support/Samples.h"

namespace fuzz {
namespace {

// The reference takes everything apart again for each context node: its time grows by their number
// with each predicate inside another.
bool isQuickForReference(std::string_view expression) {
    constexpr std::ptrdiff_t kMostBrackets = 6;
    return std::count(expression.begin(), expression.end(), '[') <= kMostBrackets;
}

std::size_t numberFrom(char byte) { return static_cast<unsigned char>(byte); }

}  // namespace

std::string checkXPath(std::string_view input) {
    if (input.size() < 2) return "";
    const auto& samples = support::samples();
    const support::Sample& sample = *samples[numberFrom(input[0]) % samples.size()];
    support::QueryTwins twins(sample,
                              *sample.nodes()[numberFrom(input[1]) % sample.nodes().size()]);
    for (std::string_view rest = input.substr(2); !rest.empty();) {
        const std::size_t end = std::min(rest.find('\n'), rest.size());
        const std::string_view expression = rest.substr(0, end);
        if (!isQuickForReference(expression)) return "";
        std::string difference = twins.differenceOn(std::string(expression));
        if (!difference.empty()) return difference;
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
    return "";
}

}  // namespace fuzz
