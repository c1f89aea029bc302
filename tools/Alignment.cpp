#include "tools/Alignment.h"

#include <algorithm>
#include <optional>
#include <unordered_map>

namespace tools {
namespace {

using Matches = std::vector<Match>;

constexpr int kMostLeftOver = 200;

/// A part of a sequence.
struct Part {
    const std::uint64_t* begin;
    int size;

    std::uint64_t operator[](int index) const { return begin[index]; }
};

// The shortest way of leaving out numbers of both sequences until the same is left, found by how
// far each number of steps leads on each diagonal (Myers 1986). A diagonal is the index in the left
// part less that in the right one.
class ShortestEdit {
public:
    ShortestEdit(Part left, Part right) : mLeft(left), mRight(right) {}

    /// None when more than `kMostLeftOver` steps are needed.
    std::optional<Matches> find() {
        std::vector<int> reached(2 * kMostLeftOver + 3, 0);
        for (int steps = 0; steps <= kMostLeftOver; ++steps) {
            if (goOn(steps, reached)) return matchesBack(steps);
            mReached.push_back(reached);
        }
        return std::nullopt;
    }

private:
    static std::size_t at(int diagonal) {
        const int place = diagonal + kMostLeftOver + 1;
        return static_cast<std::size_t>(place);
    }

    // Whether the best way to a diagonal leaves out a number of the right part.
    static bool comesFromRight(int diagonal, int steps, const std::vector<int>& reached) {
        return diagonal == -steps ||
               (diagonal != steps && reached[at(diagonal - 1)] < reached[at(diagonal + 1)]);
    }

    // With one more step. Whether that leads to the end of both.
    bool goOn(int steps, std::vector<int>& reached) const {
        for (int diagonal = -steps; diagonal <= steps; diagonal += 2) {
            int left = comesFromRight(diagonal, steps, reached) ? reached[at(diagonal + 1)]
                                                                : reached[at(diagonal - 1)] + 1;
            int right = left - diagonal;
            while (left < mLeft.size && right < mRight.size && mLeft[left] == mRight[right]) {
                ++left;
                ++right;
            }
            reached[at(diagonal)] = left;
            if (left >= mLeft.size && right >= mRight.size) return true;
        }
        return false;
    }

    Matches matchesBack(int steps) const {
        Matches matches;
        int left = mLeft.size;
        int right = mRight.size;
        for (; steps >= 0; --steps) {
            int previousLeft = 0;
            int previousRight = 0;
            if (steps > 0) {
                const std::vector<int>& reached = mReached[static_cast<std::size_t>(steps) - 1];
                const int diagonal = left - right;
                const int previous =
                    comesFromRight(diagonal, steps, reached) ? diagonal + 1 : diagonal - 1;
                previousLeft = reached[at(previous)];
                previousRight = previousLeft - previous;
            }
            while (left > previousLeft && right > previousRight)
                matches.emplace_back(--left, --right);
            left = previousLeft;
            right = previousRight;
        }
        std::reverse(matches.begin(), matches.end());
        return matches;
    }

    Part mLeft;
    Part mRight;
    std::vector<std::vector<int>> mReached;  ///< by the number of steps
};

// Pairs of numbers that stand once in either part, in the order of the left one.
Matches uniqueMatches(Part left, Part right) {
    struct Places {
        int left = 0;
        int right = 0;
        int leftCount = 0;
        int rightCount = 0;
    };
    std::unordered_map<std::uint64_t, Places> places;
    for (int i = 0; i < left.size; ++i) {
        Places& place = places[left[i]];
        place.left = i;
        ++place.leftCount;
    }
    for (int i = 0; i < right.size; ++i) {
        Places& place = places[right[i]];
        place.right = i;
        ++place.rightCount;
    }
    Matches matches;
    for (const auto& [number, place] : places) {
        if (place.leftCount == 1 && place.rightCount == 1) {
            matches.emplace_back(place.left, place.right);
        }
    }
    std::sort(matches.begin(), matches.end());
    return matches;
}

// The longest part of the matches that ascends on the right too: each is appended to the longest
// row that it can end, and of rows of one length the one that ends furthest left is kept.
Matches longestAscending(const Matches& matches) {
    constexpr std::size_t kNone = static_cast<std::size_t>(-1);
    std::vector<std::size_t> ends;  // by the length of the row, less one
    std::vector<std::size_t> previous(matches.size(), kNone);
    for (std::size_t i = 0; i < matches.size(); ++i) {
        const auto place = std::lower_bound(
            ends.begin(), ends.end(), matches[i].second,
            [&](std::size_t end, std::size_t right) { return matches[end].second < right; });
        if (place != ends.begin()) previous[i] = *(place - 1);
        if (place == ends.end()) {
            ends.push_back(i);
        } else {
            *place = i;
        }
    }
    Matches row;
    for (std::size_t i = ends.empty() ? kNone : ends.back(); i != kNone; i = previous[i]) {
        row.push_back(matches[i]);
    }
    std::reverse(row.begin(), row.end());
    return row;
}

Matches alignParts(Part left, Part right) {
    if (left.size == 0 || right.size == 0) return {};
    if (auto matches = ShortestEdit(left, right).find()) return *std::move(matches);
    return longestAscending(uniqueMatches(left, right));
}

}  // namespace

Matches align(const std::vector<std::uint64_t>& left, const std::vector<std::uint64_t>& right) {
    const std::size_t shorter = std::min(left.size(), right.size());
    std::size_t first = 0;
    while (first < shorter && left[first] == right[first]) ++first;
    std::size_t last = 0;
    while (last < shorter - first &&
           left[left.size() - 1 - last] == right[right.size() - 1 - last]) {
        ++last;
    }
    Matches matches;
    for (std::size_t i = 0; i < first; ++i) matches.emplace_back(i, i);
    const Part leftPart{left.data() + first, static_cast<int>(left.size() - first - last)};
    const Part rightPart{right.data() + first, static_cast<int>(right.size() - first - last)};
    for (const auto& [l, r] : alignParts(leftPart, rightPart)) {
        matches.emplace_back(l + first, r + first);
    }
    for (std::size_t i = last; i > 0; --i) matches.emplace_back(left.size() - i, right.size() - i);
    return matches;
}

}  // namespace tools
