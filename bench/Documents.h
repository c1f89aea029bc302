#pragma once

/// The documents that the libraries read: generated ones, the same on every machine, and files of
/// Debian packages.

#include <string>
#include <vector>

namespace Bench {

/// What a document serves to measure.
enum class Use {
    All,
    AllButOutput,  ///< indented output would grow with the square of the depth
    Reading,       ///< parsing from memory and from a file
    Validation     ///< nothing else: not all libraries obey a DTD, so reading is no equal work
};

/// An expression of each kind, to be read alike by every library that answers queries; empty where
/// the document has nothing to select like that.
struct Queries {
    std::string childPath;
    std::string descendants;
    std::string attribute;
    std::string position;
};

struct DocumentInfo {
    std::string name;
    std::string source;     ///< of a file that a package installs; empty for a generated document
    std::string (*make)();  ///< null for a file
    Use use;
    Queries queries;
    bool hasCarriageReturns;  ///< each line feed gets a carriage return in front
};

/// All documents; a generated one is followed by its variant with carriage returns, "NAME-crlf".
const std::vector<DocumentInfo>& documents();
/// Null when there is no document of that name.
const DocumentInfo* findDocument(const std::string& name);
/// False when the package is not installed.
bool isAvailable(const DocumentInfo& info);
/// The text, without the document type declaration of a file: only few libraries obey it.
std::string textOf(const DocumentInfo& info);

}  // namespace Bench
