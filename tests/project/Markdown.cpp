#include "project/Markdown.h"

#include <algorithm>
#include <cctype>
#include <cstddef>
#include <limits>
#include <sstream>
#include <utility>

namespace support {
namespace {

constexpr const char* kFence = "```";
constexpr const char* kMark = "//! [";
constexpr const char* kOutputMark = "=== ";

std::vector<std::string> linesOf(const std::string& text) {
    std::istringstream stream(text);
    std::vector<std::string> lines;
    for (std::string line; std::getline(stream, line);) lines.push_back(line);
    return lines;
}

bool beginsWith(const std::string& text, const std::string& start) {
    return text.rfind(start, 0) == 0;
}

// "## What it is: `a`" gives "what-it-is-a".
std::string anchorOf(const std::string& heading) {
    std::string anchor;
    for (const char c : heading.substr(heading.find(' ') + 1)) {
        const auto byte = static_cast<unsigned char>(c);
        if (std::isalnum(byte) != 0 || c == '-' || c == '_') {
            anchor += static_cast<char>(std::tolower(byte));
        } else if (c == ' ') {
            anchor += '-';
        }
    }
    return anchor;
}

std::size_t indentationOf(const std::vector<std::string>& lines) {
    std::size_t least = std::numeric_limits<std::size_t>::max();
    for (const std::string& line : lines) {
        if (!line.empty()) least = std::min(least, line.find_first_not_of(' '));
    }
    return least;
}

Snippet snippetOf(const std::string& name, const std::vector<std::string>& lines) {
    const std::size_t indentation = indentationOf(lines);
    std::string text;
    for (const std::string& line : lines) {
        text.append(line.empty() ? line : line.substr(indentation)) += '\n';
    }
    return {name, text, indentation > 0};
}

}  // namespace

std::vector<Block> blocksOf(const std::string& document) {
    std::vector<Block> blocks;
    bool isInside = false;
    for (const std::string& line : linesOf(document)) {
        if (beginsWith(line, kFence)) {
            if (!isInside) blocks.push_back({line.substr(std::string(kFence).size()), {}});
            isInside = !isInside;
        } else if (isInside) {
            blocks.back().text.append(line) += '\n';
        }
    }
    return blocks;
}

std::string block(const std::string& document, const std::string& language, int index) {
    for (Block& block : blocksOf(document)) {
        if (block.language == language && index-- == 0) return std::move(block.text);
    }
    return "no such block of " + language;
}

std::vector<std::string> linksOf(const std::string& document) {
    std::vector<std::string> links;
    const std::string opening = "](";
    for (std::size_t at = document.find(opening); at != std::string::npos;
         at = document.find(opening, at + 1)) {
        const std::size_t start = at + opening.size();
        std::string link = document.substr(start, document.find(')', start) - start);
        if (link.find(':') == std::string::npos) links.push_back(std::move(link));
    }
    return links;
}

std::vector<std::string> anchorsOf(const std::string& document) {
    std::vector<std::string> anchors;
    bool isInside = false;
    for (const std::string& line : linesOf(document)) {
        if (beginsWith(line, kFence)) isInside = !isInside;
        if (!isInside && beginsWith(line, "#")) anchors.push_back(anchorOf(line));
    }
    return anchors;
}

std::vector<Snippet> snippetsOf(const std::string& source) {
    std::vector<Snippet> snippets;
    std::vector<std::string> shown;
    std::string name;
    for (const std::string& line : linesOf(source)) {
        const std::size_t mark = line.find(kMark);
        if (mark == std::string::npos) {
            if (!name.empty()) shown.push_back(line);
            continue;
        }
        const std::size_t start = mark + std::string(kMark).size();
        std::string marked = line.substr(start, line.find(']') - start);
        if (!name.empty()) snippets.push_back(snippetOf(name, std::exchange(shown, {})));
        name = name.empty() ? std::move(marked) : std::string();
    }
    if (snippets.empty()) snippets.push_back({"", source, true});
    return snippets;
}

std::map<std::string, std::string> outputsOf(const std::string& printed) {
    std::map<std::string, std::string> outputs;
    std::string name;
    for (const std::string& line : linesOf(printed)) {
        if (beginsWith(line, kOutputMark)) {
            name = line.substr(std::string(kOutputMark).size());
            outputs[name];
        } else {
            outputs[name].append(line) += '\n';
        }
    }
    return outputs;
}

}  // namespace support
