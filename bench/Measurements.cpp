#include "bench/Measurements.h"

#include <benchmark/benchmark.h>

#include <cstdio>
#include <ctime>
#include <iostream>

#include "bench/Memory.h"

namespace Bench {

namespace {

using benchmark::State;

// The memory of smaller documents is lost between the pages of the process.
constexpr std::size_t kLeastBytes = 100000;
// By then the allocator has settled how much of what is freed it keeps.
constexpr int kWarmUps = 3;

// Fields of one JSON object.
class Fields {
public:
    Fields() { std::cout << "{"; }
    ~Fields() { std::cout << "}\n"; }
    Fields(const Fields&) = delete;
    Fields& operator=(const Fields&) = delete;

    template <class Value>
    void add(const std::string& name, const Value& value) {
        std::cout << mSeparator << '"' << name << "\": " << value;
        mSeparator = ", ";
    }

private:
    const char* mSeparator = "";
};

void addAnswers(Fields& fields, const Answers& answers) {
    fields.add("elements", answers.elements);
    fields.add("attributes", answers.attributes);
    fields.add("texts", answers.texts);
    fields.add("name bytes", answers.nameBytes);
    fields.add("value bytes", answers.valueBytes);
    fields.add("text bytes", answers.textBytes);
}

void addSelected(Fields& fields, Library& library, const std::string& name,
                 const std::string& expression) {
    if (expression.empty()) return;
    fields.add(name + " results", library.select(expression));
    fields.add(name + " bytes", library.selectedBytes(expression));
}

void addQueries(Fields& fields, const Subject& subject) {
    const Queries& queries = subject.document.queries;
    addSelected(fields, subject.library, "child path", queries.childPath);
    addSelected(fields, subject.library, "descendants", queries.descendants);
    addSelected(fields, subject.library, "attribute predicate", queries.attribute);
    addSelected(fields, subject.library, "position predicate", queries.position);
}

Answers answersOf(Library& library) {
    Answers answers;
    library.walk(answers);
    return answers;
}

bool hasOutput(const Subject& subject) {
    return subject.library.abilities().hasOutput && subject.document.use == Use::All;
}

// Whether what is written holds what was read.
bool writesTheSame(Library& library) {
    const Answers before = answersOf(library);
    const std::string text = library.write();
    library.clear();
    return library.parse(text) && answersOf(library).isLike(before);
}

bool readsTheSameFromFile(const Subject& subject) {
    const Answers before = answersOf(subject.library);
    subject.library.clear();
    return subject.library.parseFile(subject.path) && answersOf(subject.library).isLike(before);
}

double cpuSeconds() {
    timespec now{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + 1e-9 * static_cast<double>(now.tv_nsec);
}

using Operation = void (*)(State&, const Subject&);

void timeParse(State& state, const Subject& subject) {
    for (auto _ : state) {
        subject.library.parse(subject.text);
        subject.library.clear();
    }
}

void timeParseFile(State& state, const Subject& subject) {
    for (auto _ : state) {
        subject.library.parseFile(subject.path);
        subject.library.clear();
    }
}

void walkOnce(Library& library) {
    Sum sum;
    library.walk(sum);
    benchmark::DoNotOptimize(sum.total());
}

void timeParseAndWalk(State& state, const Subject& subject) {
    for (auto _ : state) {
        subject.library.parse(subject.text);
        walkOnce(subject.library);
        subject.library.clear();
    }
}

void timeFree(State& state, const Subject& subject) {
    for (auto _ : state) {
        state.PauseTiming();
        subject.library.parse(subject.text);
        state.ResumeTiming();
        subject.library.clear();
    }
}

// The rest works on a document that is there.
class Parsed {
public:
    explicit Parsed(const Subject& subject) : mLibrary(subject.library) {
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
    for (auto _ : state) walkOnce(subject.library);
}

void timeWrite(State& state, const Subject& subject) {
    const Parsed parsed(subject);
    for (auto _ : state) benchmark::DoNotOptimize(subject.library.writeToMemory());
}

void timeWriteFile(State& state, const Subject& subject) {
    const Parsed parsed(subject);
    const std::string path = subject.path + ".written";
    for (auto _ : state) subject.library.writeFile(path);
    std::remove(path.c_str());
}

void timeValidate(State& state, const Subject& subject) {
    const Parsed parsed(subject);
    for (auto _ : state) {
        state.PauseTiming();
        subject.library.prepareValidation();
        state.ResumeTiming();
        benchmark::DoNotOptimize(subject.library.validate());
    }
}

void timeSelect(State& state, const Subject& subject, const std::string& expression) {
    const Parsed parsed(subject);
    for (auto _ : state) benchmark::DoNotOptimize(subject.library.select(expression));
}

benchmark::internal::Benchmark* add(const char* name, Operation operation, const Subject& subject) {
    return benchmark::RegisterBenchmark(name, operation, subject)->Unit(benchmark::kMillisecond);
}

void addQuery(const char* name, const Subject& subject, const std::string& expression) {
    if (expression.empty()) return;
    benchmark::RegisterBenchmark(name, timeSelect, subject, expression)
        ->Unit(benchmark::kMillisecond);
}

void addTreeOperations(const Subject& subject) {
    add("parse and walk", timeParseAndWalk, subject);
    add("walk", timeWalk, subject);
    // Freeing takes next to no time in some, and each time there is a document to be read first.
    add("free", timeFree, subject)->Iterations(10);
    if (hasOutput(subject)) {
        add("write", timeWrite, subject);
        add("write file", timeWriteFile, subject);
    }
    if (subject.library.abilities().hasQueries) {
        const Queries& queries = subject.document.queries;
        addQuery("child path", subject, queries.childPath);
        addQuery("descendants", subject, queries.descendants);
        addQuery("attribute predicate", subject, queries.attribute);
        addQuery("position predicate", subject, queries.position);
    }
}

void addReading(const Subject& subject) {
    add("parse", timeParse, subject);
    if (subject.library.abilities().hasFiles) add("parse file", timeParseFile, subject);
}

void addOperations(const Subject& subject) {
    const Use use = subject.document.use;
    if (use == Use::Validation) {
        if (subject.library.abilities().hasValidation) add("validate", timeValidate, subject);
        return;
    }
    addReading(subject);
    if (use != Use::Reading && subject.library.abilities().hasTree) addTreeOperations(subject);
}

}  // namespace

bool printAnswers(const Subject& subject) {
    Library& library = subject.library;
    if (!library.parse(subject.text)) return false;
    Fields fields;
    if (!library.abilities().hasTree) return true;
    addAnswers(fields, answersOf(library));
    if (subject.document.use == Use::Validation) {
        if (library.abilities().hasValidation) fields.add("validate", library.validate());
        return true;
    }
    if (library.abilities().hasQueries && subject.document.use != Use::Reading) {
        addQueries(fields, subject);
    }
    if (library.abilities().hasFiles) fields.add("parse file", readsTheSameFromFile(subject));
    if (hasOutput(subject)) fields.add("write", writesTheSame(library));
    return true;
}

bool printFirst(const Subject& subject) {
    resetPeak();
    const std::size_t inUse = bytesInUse();
    const std::size_t resident = residentBytes();
    const double start = cpuSeconds();
    if (!subject.library.parse(subject.text)) return false;
    const double parsed = cpuSeconds();
    Fields fields;
    if (subject.library.abilities().hasTree && subject.text.size() >= kLeastBytes) {
        fields.add("heap", bytesInUse() - inUse);
        fields.add("peak", peakBytes() - resident);
    }
    const double again = cpuSeconds();
    subject.library.clear();
    fields.add("first parse", parsed - start + cpuSeconds() - again);
    return true;
}

bool runTimes(const Subject& subject, int argc, char** argv) {
    for (int i = 0; i < kWarmUps; ++i) {
        if (!subject.library.parse(subject.text)) return false;
        subject.library.clear();
    }
    addOperations(subject);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return true;
}

}  // namespace Bench
