#include <algorithm>
#include <cstddef>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "VexXml/Dom.h"
#include "tools/CommandLine.h"
#include "tools/Commands.h"
#include "tools/Output.h"
#include "tools/Place.h"
#include "tools/PrintEach.h"
#include "tools/Shown.h"
#include "tools/Walk.h"

namespace tools {
namespace {

constexpr const char* kNotes =
    "Counts are of what the library keeps: comments, processing instructions and texts\n"
    "of white space alone do not count, and a CDATA section counts as a text. Bytes are\n"
    "those of texts and values with their references replaced. Names come in the order\n"
    "of how often they occur, those of attributes with \"@\" in front. With several files\n"
    "each table has \"FILE:\" above it. The document's own DTD need not be kept to. All\n"
    "files are tried; the worst one decides the exit status.\n";

struct Options {
    std::vector<std::string> inputs;
    std::size_t top = 10;  ///< of the names
    bool all = false;
    Xml::ReadLimits limits;
};

constexpr std::size_t kAllNames = static_cast<std::size_t>(-1);

struct Counts {
    std::size_t elements = 0;
    std::size_t attributes = 0;
    std::size_t texts = 0;
    std::size_t depth = 0;
    std::size_t mostChildren = 0;
    std::size_t textBytes = 0;
    std::size_t valueBytes = 0;
    // The names belong to the document.
    std::map<std::string_view, std::size_t> elementNames;
    std::map<std::string_view, std::size_t> attributeNames;
};

void countElement(const Xml::Element& element, Counts& counts) {
    ++counts.elements;
    ++counts.elementNames[element.getName()];
    const auto children = static_cast<std::size_t>(element.getChildCount());
    counts.mostChildren = std::max(counts.mostChildren, children);
    for (int i = 0; i < element.getAttributeCount(); ++i) {
        const Xml::Attribute& attribute = *element.getAttribute(i);
        ++counts.attributes;
        ++counts.attributeNames[attribute.getName()];
        counts.valueBytes += bytesOf(attribute.getValue()).size();
    }
}

Counts countAll(const Xml::Element& root) {
    Counts counts;
    Walk walk(root);
    while (const Xml::Object* node = walk.next()) {
        if (node->isElement()) {
            counts.depth = std::max(counts.depth, walk.level());
            countElement(*node->toElement(), counts);
        } else {
            ++counts.texts;
            counts.textBytes += plainText(*node->toCharData()).size();
        }
    }
    return counts;
}

using Row = std::pair<std::string, std::size_t>;

// The most frequent first; of those that are equally frequent attributes first, then by their
// bytes.
std::vector<Row> namesOf(const Counts& counts) {
    std::vector<Row> rows;
    for (const auto& [name, count] : counts.attributeNames) {
        rows.emplace_back("@" + harmless(name), count);
    }
    for (const auto& [name, count] : counts.elementNames) rows.emplace_back(harmless(name), count);
    std::stable_sort(rows.begin(), rows.end(),
                     [](const Row& left, const Row& right) { return left.second > right.second; });
    return rows;
}

void write(const std::string& number, const std::string& text, BlockWriter& out) {
    constexpr std::size_t kWidth = 12;
    out.write(std::string(kWidth - std::min(kWidth, number.size()), ' '));
    out.write(number + "  " + text + '\n');
}

void write(const std::vector<Row>& rows, std::size_t top, BlockWriter& out) {
    const std::size_t shown = std::min(top, rows.size());
    for (std::size_t i = 0; i < shown; ++i) {
        write(std::to_string(rows[i].second), rows[i].first, out);
    }
    if (shown < rows.size()) {
        write("...", "and " + std::to_string(rows.size() - shown) + " more", out);
    }
}

void write(const Counts& counts, std::size_t top, BlockWriter& out) {
    const std::vector<Row> rows = {
        {"elements", counts.elements},
        {"attributes", counts.attributes},
        {"texts", counts.texts},
        {"levels", counts.depth},
        {"bytes of texts", counts.textBytes},
        {"bytes of values", counts.valueBytes},
        {"most children", counts.mostChildren},
    };
    write(rows, rows.size(), out);
    out.write("\n");
    write(namesOf(counts), top, out);
}

Status stat(const Options& options) {
    const std::size_t top = options.all ? kAllNames : options.top;
    return printEach(
        options.inputs, options.limits,
        [&](const Xml::Element& root, BlockWriter& out) { write(countAll(root), top, out); });
}

}  // namespace

void addStat(const CommandLine& line) {
    const auto options = std::make_shared<Options>();
    Command command(line, {"stat", "Count what documents consist of", kNotes, kStatuses},
                    options->limits);
    command.addNumber("--top", 0, options->top, "List so many names; without it 10");
    command.addFlag("--all", options->all, "List all names");
    command.exclude("--all", "--top");
    command.addInputs(options->inputs);
    command.run([options] { return stat(*options); });
}

}  // namespace tools
