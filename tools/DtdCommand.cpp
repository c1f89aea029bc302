#include <algorithm>
#include <memory>
#include <string>

#include "VexXml/Dtd.h"
#include "tools/CommandLine.h"
#include "tools/Commands.h"
#include "tools/Diagnostics.h"
#include "tools/ErrorPrinter.h"
#include "tools/Output.h"
#include "tools/Reading.h"

namespace tools {
namespace {

constexpr const char* kDescription =
    "Write a document's type declaration as the library understood it";
constexpr const char* kNotes =
    "The declaration is also written when the document does not keep to it.\n";

struct Options {
    std::string input;
    Xml::ReadLimits limits;
};

// The declarations are worth seeing most when the document does not keep to them.
Status writeDtd(const Options& options) {
    const std::string& input = options.input;
    const DocumentReading reading = readDocument(input, options.limits);
    if (reading.document == nullptr) return reading.status;
    Xml::Dtd* dtd = reading.document->getDtd();
    if (dtd == nullptr) {
        printError(input, "no document type declaration (one with PUBLIC is not read)");
        return std::max(reading.status, BadDocument);
    }
    Diagnostics diagnostics;
    const std::string text = textOf(*dtd);
    diagnostics.printAsWarnings(input);
    return writeToStandardOutput(text) ? reading.status : Trouble;
}

}  // namespace

void addDtd(const CommandLine& line) {
    const auto options = std::make_shared<Options>();
    Command command(line, {"dtd", kDescription, kNotes, kStatuses}, options->limits);
    command.addInput(options->input);
    command.run([options] { return writeDtd(*options); });
}

}  // namespace tools
