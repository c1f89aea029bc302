// How the time of a query grows with the document: every axis, from all nodes of a kind at once and
// as a predicate on each of them, on documents ten times as large from column to column. What costs
// in proportion to the document has a growth of about 10.
#include <benchmark/benchmark.h>

#include <iostream>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "VexXml/Dom.h"
#include "VexXml/XPath.h"
#include "bench/GrowthTable.h"
#include "bench/QueryDocuments.h"

namespace {

using Xml::Document;

// Numbers of records, or levels.
const std::vector<int> kSizes = {10000, 100000, 1000000};

// The documents are made once; nothing changes them.
Document& documentOf(bool isDeep, int size) {
    static std::map<std::pair<bool, int>, std::unique_ptr<Document>> documents;
    std::unique_ptr<Document>& document = documents[{isDeep, size}];
    if (!document) {
        document = isDeep ? Bench::makeDeepDocument(size) : Bench::makeFlatDocument(size);
    }
    return *document;
}

void runQuery(benchmark::State& state, const std::string& expression, bool isDeep, int size) {
    Xml::XPath query(&documentOf(isDeep, size));
    unsigned long results = 0;
    for (auto _ : state) benchmark::DoNotOptimize(results = query.GetValues(expression));
    const bool hasAnswer = query.GetErrorCode() == Xml::XPath::NoError ||
                           query.GetErrorCode() == Xml::XPath::NodeNotFound;
    if (!hasAnswer) state.SkipWithError(query.GetErrorStringUTF8().c_str());
    state.counters["results"] = static_cast<double>(results);
}

std::vector<std::string> columns() {
    std::vector<std::string> heads;
    heads.reserve(kSizes.size());
    for (const int size : kSizes) heads.push_back(std::to_string(size) + " ms");
    return heads;
}

// One line for each query: a column of milliseconds for each size, and the growth to the last one.
class Reporter : public benchmark::BenchmarkReporter {
public:
    bool ReportContext(const Context& /*context*/) override {
        mTable.printHead();
        return true;
    }

    void ReportRuns(const std::vector<Run>& runs) override {
        for (const Run& run : runs) add(run);
    }

private:
    void add(const Run& run) {
        if (run.error_occurred) {
            std::cout << run.run_name.function_name << ": " << run.error_message << '\n';
            return;
        }
        mTimes.push_back(run.GetAdjustedCPUTime());
        if (mTimes.size() < kSizes.size()) return;
        const auto results = static_cast<long>(run.counters.at("results").value);
        mTable.printLine(run.run_name.function_name, mTimes, mTimes.back() / *(mTimes.end() - 2),
                         {std::to_string(results)});
        mTimes.clear();
    }

    Bench::GrowthTable mTable{"query", columns(), {"results"}};
    std::vector<double> mTimes;
};

void registerQuery(const std::string& expression, bool isDeep) {
    const std::string name = (isDeep ? "deep " : "flat ") + expression;
    for (const int size : kSizes) {
        benchmark::RegisterBenchmark(name.c_str(), [=](benchmark::State& state) {
            runQuery(state, expression, isDeep, size);
        })->Unit(benchmark::kMillisecond);
    }
}

void registerQueries() {
    const char* const axes[] = {
        "attribute",        "child",     "descendant",        "parent",
        "ancestor",         "self",      "following",         "descendant-or-self",
        "ancestor-or-self", "preceding", "following-sibling", "preceding-sibling"};
    for (const bool isDeep : {false, true}) {
        for (const std::string axis : axes) {
            registerQuery("//a/" + axis + "::*", isDeep);
            registerQuery("//a[" + axis + "::*]", isDeep);
            registerQuery("//a[" + axis + "::none]", isDeep);
        }
        registerQuery("//a//b", isDeep);
        registerQuery("//a[2]", isDeep);
        registerQuery("//a[last()]", isDeep);
        registerQuery("//a[@id = 7]", isDeep);
        registerQuery("//a[b = '7']", isDeep);
        registerQuery("//a[b = //b]", isDeep);
        registerQuery("//a[b[text = 7]]/c", isDeep);
    }
}

}  // namespace

int main(int argc, char** argv) {
    registerQueries();
    benchmark::Initialize(&argc, argv);
    Reporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
}
