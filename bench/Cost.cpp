// How costs grow with the input where somebody made it up to be costly: the time for each byte, or
// other item, on inputs of four sizes. What is linear has a growth of about 1, what is quadratic
// one of about 8. Arguments choose the cases whose names contain one of them.
#include <algorithm>
#include <string>
#include <vector>

#include "VexXml/Values.h"
#include "bench/CostCases.h"
#include "bench/CpuTime.h"
#include "bench/GrowthTable.h"

namespace {

constexpr std::size_t kFactors[] = {1, 2, 4, 8};
constexpr int kRuns = 3;
// A size at which a run takes longer is the last one.
constexpr double kLongestRun = 1;

// What is left of a run is freed between the measurements.
double secondsOf(const Bench::CostCase& measured, std::size_t size, std::size_t& items) {
    double least = 0;
    for (int i = 0; i < kRuns; ++i) {
        const Bench::CostRun run = measured.prepare(size);
        const double start = Bench::cpuSeconds();
        run.work();
        const double seconds = Bench::cpuSeconds() - start;
        items = run.items;
        least = i == 0 ? seconds : std::min(least, seconds);
        if (seconds > kLongestRun) break;
    }
    return least;
}

void measure(const Bench::CostCase& measured, const Bench::GrowthTable& table) {
    std::vector<double> costs;
    std::size_t items = 0;
    for (const std::size_t factor : kFactors) {
        const double seconds = secondsOf(measured, measured.smallest * factor, items);
        costs.push_back(1e9 * seconds / static_cast<double>(items));
        if (seconds > kLongestRun) break;
    }
    table.printLine(measured.name, costs, costs.back() / costs.front(),
                    {std::to_string(items), measured.item});
}

bool isChosen(const std::string& name, const std::vector<std::string>& choices) {
    return choices.empty() ||
           std::any_of(choices.begin(), choices.end(), [&](const std::string& choice) {
               return name.find(choice) != std::string::npos;
           });
}

}  // namespace

int main(int argc, char** argv) {
    Xml::Message::disableOutput(false);
    const Bench::GrowthTable table("ns for each item", {"n", "2n", "4n", "8n"}, {"8n =", "item"});
    table.printHead();
    for (const auto& cases :
         {Bench::costsOfReading(), Bench::costsOfTrees(), Bench::costsOfQueries()}) {
        for (const Bench::CostCase& measured : cases) {
            if (isChosen(measured.name, {argv + 1, argv + argc})) measure(measured, table);
        }
    }
}
