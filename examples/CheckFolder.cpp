// check_folder FOLDER: reads all XML files below a folder and tells which of them are valid.
//
// Files come from anybody, so they are read within limits, and may use no DTD but those in the
// folder itself.

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <string>
#include <system_error>
#include <vector>

#include "VexXml/VexXml.h"

namespace {

namespace fs = std::filesystem;

// In the order of their names. What cannot be looked into is passed over, and `failure` tells.
std::vector<fs::path> xmlFilesIn(const fs::path& folder, std::error_code& failure) {
    std::vector<fs::path> files;
    fs::recursive_directory_iterator entry(folder, failure);
    for (; !failure && entry != fs::recursive_directory_iterator(); entry.increment(failure)) {
        if (entry->path().extension() == ".xml") files.push_back(entry->path());
    }
    std::sort(files.begin(), files.end());
    return files;
}

// Empty when all is well, else what is wrong.
std::string problemWith(const fs::path& path, const Xml::ReadLimits& limits) {
    std::ifstream file;
    Xml::FileInStream in(path.string(), &file);
    if (!file.is_open()) return "cannot be opened";
    Xml::DocumentReader reader;
    reader.setLimits(limits);
    if (!reader.parse(in)) return reader.getErrorMessage();
    in.eatWhite();
    if (!in.eof()) return "there is more behind the root element";
    if (reader.getDocument()->getDtd() == nullptr) return "has no DTD";
    return {};
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::cerr << "usage: check_folder FOLDER\n";
        return 2;
    }
    std::error_code failure;
    fs::current_path(argv[1], failure);  // from where files that documents name are looked for
    std::vector<fs::path> files;
    if (!failure) files = xmlFilesIn(".", failure);
    if (failure) {
        std::cerr << argv[1] << ": " << failure.message() << '\n';
        return 2;
    }
    Xml::ReadLimits limits = Xml::ReadLimits::untrusted();
    limits.mayOpenFiles = true;
    limits.folder = ".";
    int bad = 0;
    for (const fs::path& file : files) {
        const std::string problem = problemWith(file, limits);
        std::cout << file.lexically_normal().string() << ": "
                  << (problem.empty() ? "valid" : problem) << '\n';
        if (!problem.empty()) ++bad;
    }
    std::cout << files.size() << " files, " << bad << " with problems\n";
    return bad == 0 ? 0 : 1;
}
