#pragma once

#include <string>
#include <vector>

namespace Bench {

/// A table on the standard output that tells how costs grow: a line for each case, and in it a
/// column for each size and one for the growth.
class GrowthTable {
public:
    /// `sizes` and `others`, which stand behind the growth, are the heads of the columns.
    GrowthTable(std::string cases, std::vector<std::string> sizes, std::vector<std::string> others);

    void printHead() const;
    /// `costs` may be fewer than the sizes: then the others took too long, and there is no growth.
    void printLine(const std::string& name, const std::vector<double>& costs, double growth,
                   const std::vector<std::string>& others) const;

private:
    std::string mCases;
    std::vector<std::string> mSizes;
    std::vector<std::string> mOthers;
};

}  // namespace Bench
