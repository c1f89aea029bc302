// Runs one library on one document, in a process of its own.
//
//     bench_worker libraries                        NAME, KIND and VERSION of each
//     bench_worker documents                        NAME and USE of each that is available
//     bench_worker write DOCUMENT FILE              makes the document
//     bench_worker answers LIBRARY DOCUMENT FILE    what the library finds in it, as JSON
//     bench_worker first LIBRARY DOCUMENT FILE      first parse and memory, as JSON
//     bench_worker times LIBRARY DOCUMENT FILE [OPTION OF GOOGLE BENCHMARK...]
//
// The exit status is 0, or 1 when the library refuses the document.
#include <fstream>
#include <iostream>
#include <iterator>

#include "bench/Documents.h"
#include "bench/Measurements.h"
#include "bench/Memory.h"
#include "bench/peers/Library.h"

namespace {

using namespace Bench;

int listLibraries() {
    static const char* const kinds[] = {"ours", "tree", "events", "floor"};
    for (const LibraryInfo& info : libraries()) {
        std::cout << info.name << '\t' << kinds[static_cast<int>(info.kind)] << '\t' << info.version
                  << '\n';
    }
    return 0;
}

int listDocuments() {
    static const char* const uses[] = {"all", "all", "reading", "validation"};
    for (const DocumentInfo& info : documents()) {
        if (isAvailable(info)) {
            std::cout << info.name << '\t' << uses[static_cast<int>(info.use)] << '\n';
        }
    }
    return 0;
}

int writeDocument(const std::string& name, const std::string& path) {
    const DocumentInfo* info = findDocument(name);
    if (info == nullptr) return 2;
    return std::ofstream(path, std::ios::binary) << textOf(*info) ? 0 : 1;
}

std::string readFile(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

int measure(const std::string& command, int argc, char** argv) {
    const LibraryInfo* library = findLibrary(argv[2]);
    const DocumentInfo* document = findDocument(argv[3]);
    if (library == nullptr || document == nullptr) return 2;
    keepFreedMemory(false);
    const std::unique_ptr<Library> made = library->make();
    const Subject subject = {*made, *document, argv[4], readFile(argv[4])};
    if (command == "answers") return printAnswers(subject) ? 0 : 1;
    if (command == "first") return printFirst(subject) ? 0 : 1;
    return runTimes(subject, argc - 4, argv + 4) ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
    const std::string command = argc > 1 ? argv[1] : "";
    if (command == "libraries") return listLibraries();
    if (command == "documents") return listDocuments();
    if (command == "write" && argc == 4) return writeDocument(argv[2], argv[3]);
    if (argc >= 5) return measure(command, argc, argv);
    std::cerr << "usage: bench_worker libraries | documents | write DOCUMENT FILE |\n"
                 "       answers|first|times LIBRARY DOCUMENT FILE [OPTION...]\n";
    return 2;
}
