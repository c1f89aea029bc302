// The time of each operation, again and again on the same document.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <functional>

#include "bench/Measurements.h"
#include "bench/Memory.h"

namespace Bench {

namespace {

using benchmark::State;

// Freeing takes little time in some libraries, and each time there is a document to be read first.
// So this does not go on until some time is filled.
int freesOf(const Subject& subject) { return subject.text.size() > 20000000 ? 2 : 10; }

using Operation = void (*)(State&, const Subject&);

void timeParse(State& state, const Subject& subject) {
    for (auto _ : state) {
        subject.tested.parse(subject.text);
        subject.tested.clear();
    }
}

void timeParseAgain(State& state, const Subject& subject) {
    keepFreedMemory(true);
    subject.tested.parse(subject.text);
    subject.tested.clear();
    timeParse(state, subject);
    keepFreedMemory(false);
}

void timeParseFile(State& state, const Subject& subject) {
    for (auto _ : state) {
        subject.tested.parseFile(subject.path);
        subject.tested.clear();
    }
}

void walkOnce(Library& library) {
    Sum sum;
    library.walk(sum);
    benchmark::DoNotOptimize(sum.total());
}

void timeParseAndWalk(State& state, const Subject& subject) {
    for (auto _ : state) {
        subject.tested.parse(subject.text);
        walkOnce(subject.tested);
        subject.tested.clear();
    }
}

void timeFree(State& state, const Subject& subject) {
    for (auto _ : state) {
        state.PauseTiming();
        subject.tested.parse(subject.text);
        state.ResumeTiming();
        subject.tested.clear();
    }
}

// The rest works on a document that is there.
class Parsed {
public:
    explicit Parsed(const Subject& subject) : mLibrary(subject.tested) {
        mLibrary.parse(subject.text);
    }
    ~Parsed() { mLibrary.clear(); }
    Parsed(const Parsed&) = delete;
    Parsed& operator=(const Parsed&) = delete;

private:
    Library& mLibrary;
};

void timeWalk(State& state, const Subject& subject) {
    const Parsed parsed(subject);
    for (auto _ : state) walkOnce(subject.tested);
}

void timeWrite(State& state, const Subject& subject) {
    const Parsed parsed(subject);
    for (auto _ : state) benchmark::DoNotOptimize(subject.tested.writeToMemory());
}

void timeWriteFile(State& state, const Subject& subject) {
    const Parsed parsed(subject);
    const std::string path = subject.path + ".written";
    for (auto _ : state) subject.tested.writeFile(path);
    std::remove(path.c_str());
}

void timeValidate(State& state, const Subject& subject) {
    const Parsed parsed(subject);
    for (auto _ : state) {
        state.PauseTiming();
        subject.tested.prepareValidation();
        state.ResumeTiming();
        benchmark::DoNotOptimize(subject.tested.validate());
    }
}

void timeSelect(State& state, const Subject& subject, const std::string& expression) {
    const Parsed parsed(subject);
    for (auto _ : state) benchmark::DoNotOptimize(subject.tested.select(expression));
}

benchmark::internal::Benchmark* add(const char* name, Operation operation, const Subject& subject) {
    return benchmark::RegisterBenchmark(name, operation, std::cref(subject))
        ->Unit(benchmark::kMillisecond);
}

void addQuery(const char* name, const Subject& subject, const std::string& expression) {
    if (expression.empty()) return;
    benchmark::RegisterBenchmark(name, timeSelect, std::cref(subject), expression)
        ->Unit(benchmark::kMillisecond);
}

void addTreeOperations(const Subject& subject) {
    add("parse and walk", timeParseAndWalk, subject);
    add("walk", timeWalk, subject);
    add("free", timeFree, subject)->Iterations(freesOf(subject));
    if (hasOutput(subject)) {
        add("write", timeWrite, subject);
        add("write file", timeWriteFile, subject);
    }
    if (subject.tested.abilities().hasQueries) {
        const Queries& queries = subject.document.queries;
        addQuery("child path", subject, queries.childPath);
        addQuery("descendants", subject, queries.descendants);
        addQuery("attribute predicate", subject, queries.attribute);
        addQuery("position predicate", subject, queries.position);
    }
}

void addReading(const Subject& subject) {
    add("parse", timeParse, subject);
    add("parse again", timeParseAgain, subject);
    if (subject.tested.abilities().hasFiles) add("parse file", timeParseFile, subject);
}

void addOperations(const Subject& subject) {
    const Use use = subject.document.use;
    if (use == Use::Validation) {
        if (subject.tested.abilities().hasValidation) add("validate", timeValidate, subject);
        return;
    }
    addReading(subject);
    if (use != Use::Reading && subject.tested.abilities().hasTree) addTreeOperations(subject);
}

}  // namespace

bool runTimes(const Subject& subject, int argc, char** argv) {
    if (!subject.tested.parse(subject.text)) return false;
    subject.tested.clear();
    addOperations(subject);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return true;
}

}  // namespace Bench
