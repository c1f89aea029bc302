#pragma once

#include <map>
#include <string>
#include <vector>

namespace support {

/// What stands between two fences, such as "```cpp" and "```".
struct Block {
    std::string language;
    std::string text;  ///< with the line feed at its end
};

std::vector<Block> blocksOf(const std::string& document);
/// The text of the index-th block of that language, counted from 0.
std::string block(const std::string& document, const std::string& language, int index = 0);

/// Where the links of a document lead, as far as that is within the project.
std::vector<std::string> linksOf(const std::string& document);
/// What a link behind "#" may name: the headings, as forges turn them into names.
std::vector<std::string> anchorsOf(const std::string& document);

/// A piece of a source that a document shows: what stands between two lines "//! [name]", or, in a
/// source without such lines, all of it, without a name.
struct Snippet {
    std::string name;
    std::string text;  ///< without the indentation that all its lines share
    bool isRun;        ///< it is indented, so it stands in a function, or it is a whole program
};

std::vector<Snippet> snippetsOf(const std::string& source);

/// What a program printed behind each line "=== name"; without such lines, all of it, without a
/// name.
std::map<std::string, std::string> outputsOf(const std::string& printed);

}  // namespace support
