// How the time of a query grows with the document: every axis, from all nodes of a kind at once and
// as a predicate on each of them, on documents ten times as large from column to column. What costs
// in proportion to the document has a growth of about 10.
#include <benchmark/benchmark.h>

#include <iomanip>
#include <iostream>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "VexXml/Dom.h"
#include "VexXml/XPath.h"

namespace {

using Xml::Document;
using Xml::Element;

// Numbers of records, or levels.
const std::vector<int> kSizes = {10000, 100000, 1000000};

Element* addChild(Element& parent, const char* name) {
    auto child = std::make_unique<Element>(name);
    parent.addChild(child.get());
    return child.release();
}

// Records side by side: <r><a id="7"><b>7</b><c/></a>…</r>
std::unique_ptr<Document> makeFlat(int records) {
    auto root = std::make_unique<Element>("r");
    for (int i = 0; i < records; ++i) {
        Element& record = *addChild(*root, "a");
        record.setAttribute("id", i);
        record.addElement("b", i);
        addChild(record, "c");
    }
    return std::make_unique<Document>(root.release());
}

// Records one inside another: <a id="0"><b>0</b><a id="1">…</a><c/></a>
std::unique_ptr<Document> makeDeep(int levels) {
    auto root = std::make_unique<Element>("r");
    std::vector<Element*> open{root.get()};
    for (int i = 0; i < levels; ++i) {
        Element& record = *addChild(*open.back(), "a");
        record.setAttribute("id", i);
        record.addElement("b", i);
        open.push_back(&record);
    }
    for (; open.size() > 1; open.pop_back()) addChild(*open.back(), "c");
    return std::make_unique<Document>(root.release());
}

// The documents are made once; nothing changes them.
Document& documentOf(bool isDeep, int size) {
    static std::map<std::pair<bool, int>, std::unique_ptr<Document>> documents;
    std::unique_ptr<Document>& document = documents[{isDeep, size}];
    if (!document) document = isDeep ? makeDeep(size) : makeFlat(size);
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

// One line for each query: a column of milliseconds for each size, and the growth to the last one.
class GrowthTable : public benchmark::BenchmarkReporter {
public:
    bool ReportContext(const Context& /*context*/) override {
        std::cout << std::left << std::setw(kNameWidth) << "query" << std::right;
        for (const int size : kSizes) std::cout << std::setw(kWidth - 3) << size << " ms";
        std::cout << std::setw(kWidth) << "growth" << std::setw(kWidth) << "results" << '\n';
        return true;
    }

    void ReportRuns(const std::vector<Run>& runs) override {
        for (const Run& run : runs) add(run);
    }

private:
    static constexpr int kNameWidth = 48;
    static constexpr int kWidth = 12;

    void add(const Run& run) {
        if (run.error_occurred) {
            std::cout << run.run_name.function_name << ": " << run.error_message << '\n';
            return;
        }
        mTimes.push_back(run.GetAdjustedCPUTime());
        if (mTimes.size() < kSizes.size()) return;
        std::cout << std::left << std::setw(kNameWidth) << run.run_name.function_name << std::right
                  << std::fixed;
        for (const double time : mTimes)
            std::cout << std::setprecision(3) << std::setw(kWidth) << time;
        std::cout << std::setprecision(1) << std::setw(kWidth)
                  << mTimes.back() / *(mTimes.end() - 2) << std::setprecision(0)
                  << std::setw(kWidth) << run.counters.at("results").value << std::endl;
        mTimes.clear();
    }

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
    GrowthTable table;
    benchmark::RunSpecifiedBenchmarks(&table);
}
