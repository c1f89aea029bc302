#pragma once

/// The one interface behind which the benchmark sees every library.

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "bench/peers/Tally.h"

namespace Bench {

/// What a library can do besides parsing from memory.
struct Abilities {
    bool hasFiles = true;  ///< parses from a path
    bool hasTree = true;
    bool hasOutput = true;
    bool hasQueries = false;
    bool hasValidation = false;
};

/// A library that holds one document at a time. What a library is not able to do is not called.
///
/// Equal work for all: references are resolved, texts of white space alone dropped, comments and
/// processing instructions leave no node, CDATA sections do, and the source stays as it is.
class Library {
public:
    virtual ~Library() = default;

    virtual Abilities abilities() const { return {}; }

    /// Reads the document and holds it. False when it is refused.
    virtual bool parse(const std::string& text) = 0;
    virtual bool parseFile(const std::string& /*path*/) { return false; }
    /// Frees the document.
    virtual void clear() = 0;

    /// Visits every element, attribute and text.
    virtual void walk(Sum& /*tally*/) {}
    virtual void walk(Answers& /*tally*/) {}

    /// Writes the document, indented, to memory.
    virtual std::string write() { return {}; }
    /// The number of bytes written to memory, which are dropped at once.
    virtual std::size_t writeToMemory() { return write().size(); }
    virtual bool writeFile(const std::string& /*path*/) { return false; }

    /// The number of nodes that the expression selects.
    virtual std::size_t select(const std::string& /*expression*/) { return 0; }
    /// The number of bytes in the values of the attributes and in the first texts of the elements
    /// that it selects.
    virtual std::size_t selectedBytes(const std::string& /*expression*/) { return 0; }

    /// Makes the document forget what an earlier validation found out.
    virtual void prepareValidation() {}
    virtual bool validate() { return false; }
};

/// What is known about a library before it is made.
struct LibraryInfo {
    enum class Kind { Ours, Tree, Events, Floor };

    std::string name;
    std::string version;
    Kind kind;
    std::function<std::unique_ptr<Library>()> make;
};

/// The libraries that were there when this was built.
std::vector<LibraryInfo>& libraries();
/// Null when there is no library of that name.
const LibraryInfo* findLibrary(const std::string& name);

/// Adds a library to the list: each adapter defines one of these.
struct Registration {
    explicit Registration(LibraryInfo info) { libraries().push_back(std::move(info)); }
};

}  // namespace Bench
