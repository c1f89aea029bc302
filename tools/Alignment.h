#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

namespace tools {

/// An index in one sequence and one in another.
using Match = std::pair<std::size_t, std::size_t>;

/// Pairs of equal numbers of two sequences, ascending in both: as many as there can be, if not more
/// than 200 numbers are left over; else those that stand once in either sequence, as far as they
/// are in the same order, and what begins and ends both sequences.
///
/// Costs in proportion to the lengths, and at most 400 times that.
std::vector<Match> align(const std::vector<std::uint64_t>& left,
                         const std::vector<std::uint64_t>& right);

}  // namespace tools
