#include <memory>
#include <string>

#include "VexXml/Dom.h"
#include "tools/CommandLine.h"
#include "tools/Commands.h"
#include "tools/DocumentOutput.h"
#include "tools/Reading.h"

namespace tools {
namespace {

constexpr const char* kNotes =
    "What the library does not keep is not written either: comments, processing\n"
    "instructions, document type declarations with PUBLIC, the encoding declaration,\n"
    "and white space that stands alone between two tags. Levels are indented by tabs,\n"
    "also where a line begins inside an attribute value. A file is replaced as a\n"
    "whole, by a rename, so that it is never left half written.\n";

struct Options {
    std::string input;
    Destination destination;
    bool noShortTags = false;
    Xml::ReadLimits limits;
};

Status format(const Options& options) {
    checkDestination(options.destination, options.input);
    const DocumentReading reading = readDocument(options.input, options.limits);
    if (reading.status != Success) return reading.status;
    Xml::Element::setShortNotationForEmptyTags(!options.noShortTags);
    return writeDocument(reading, options.destination);
}

}  // namespace

void addFormat(const CommandLine& line) {
    const auto options = std::make_shared<Options>();
    Command command(line, {"format", "Write a document back, indented", kNotes, kStatuses},
                    options->limits);
    addDestination(command, options->destination);
    command.addFlag("--no-short-tags", options->noShortTags,
                    "Write <a></a> instead of <a/> for an empty element");
    command.addInput(options->input);
    command.run([options] { return format(*options); });
}

}  // namespace tools
