#pragma once

/// What is asked of a library about a document.

#include <string>

#include "bench/Documents.h"
#include "bench/peers/Library.h"

namespace Bench {

struct Subject {
    Library& tested;
    const DocumentInfo& document;
    std::string path;
    std::string text;  ///< what stands in the file
};

/// Whether the library can write the document.
inline bool hasOutput(const Subject& subject) {
    return subject.tested.abilities().hasOutput && subject.document.use == Use::All;
}

/// Prints what the library finds, in JSON, for comparison with others. False when it refuses the
/// document.
bool printAnswers(const Subject& subject);

/// Parses once, in a process that has not parsed before, and prints the seconds that took with
/// freeing, and the memory held and touched. False when the document is refused.
bool printFirst(const Subject& subject);

/// Times all operations that library and document allow with Google Benchmark, which takes the
/// arguments (the first is skipped) and prints the results.
bool runTimes(const Subject& subject, int argc, char** argv);

}  // namespace Bench
