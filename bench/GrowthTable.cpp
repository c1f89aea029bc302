#include "bench/GrowthTable.h"

#include <iomanip>
#include <iostream>
#include <utility>

namespace Bench {
namespace {

constexpr int kNameWidth = 48;
constexpr int kWidth = 12;

}  // namespace

GrowthTable::GrowthTable(std::string cases, std::vector<std::string> sizes,
                         std::vector<std::string> others)
    : mCases(std::move(cases)), mSizes(std::move(sizes)), mOthers(std::move(others)) {}

void GrowthTable::printHead() const {
    std::cout << std::left << std::setw(kNameWidth) << mCases << std::right;
    for (const std::string& size : mSizes) std::cout << std::setw(kWidth) << size;
    std::cout << std::setw(kWidth) << "growth";
    for (const std::string& other : mOthers) std::cout << std::setw(kWidth) << other;
    std::cout << std::endl;
}

void GrowthTable::printLine(const std::string& name, const std::vector<double>& costs,
                            double growth, const std::vector<std::string>& others) const {
    std::cout << std::left << std::setw(kNameWidth) << name << std::right << std::fixed;
    for (const double cost : costs) {
        std::cout << std::setprecision(3) << std::setw(kWidth) << cost;
    }
    for (std::size_t i = costs.size(); i < mSizes.size(); ++i) {
        std::cout << std::setw(kWidth) << "-";
    }
    std::cout << std::setprecision(1) << std::setw(kWidth);
    costs.size() == mSizes.size() ? std::cout << growth : std::cout << "-";
    for (const std::string& other : others) std::cout << std::setw(kWidth) << other;
    std::cout << std::endl;
}

}  // namespace Bench
