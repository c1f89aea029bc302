#pragma once

/// Input that somebody made up to take much time, and operations in an order that does. What is
/// linear costs the same for each item however many there are.

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace Bench {

/// Work to be done once, and the number of bytes or other items that it is about.
struct CostRun {
    std::size_t items;
    std::function<void()> work;
};

struct CostCase {
    std::string name;
    std::string item;      ///< "byte", say
    std::size_t smallest;  ///< the first size; the others are 2, 4 and 8 times as large
    std::function<CostRun(std::size_t size)> prepare;
};

/// Texts with the markup, or what looks like it, given `size` times.
std::vector<CostCase> costsOfReading();
/// Trees with `size` nodes, built, changed, copied, validated and written.
std::vector<CostCase> costsOfTrees();
/// Expressions over `size` nodes, or with as many parts.
std::vector<CostCase> costsOfQueries();

/// The piece `count` times.
std::string repeated(const std::string& piece, std::size_t count);
/// The piece `count` times, with the numbers from 0 on in place of each "#".
std::string numbered(const std::string& piece, std::size_t count);

}  // namespace Bench
