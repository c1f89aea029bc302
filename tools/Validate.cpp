#include <algorithm>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "VexXml/Dom.h"
#include "VexXml/Dtd.h"
#include "tools/CommandLine.h"
#include "tools/Commands.h"
#include "tools/Diagnostics.h"
#include "tools/ErrorPrinter.h"
#include "tools/Output.h"
#include "tools/Reading.h"

namespace tools {
namespace {

constexpr const char* kNotes =
    "Prints \"FILE: valid\" for each valid document. One without a document type\n"
    "declaration, or with a PUBLIC one, is valid when it is well-formed. With --dtd the\n"
    "document's own declaration is still read, but need not be kept to. All files are\n"
    "tried; the worst one decides the exit status.\n";

struct Options {
    std::vector<std::string> inputs;
    std::string dtd;  ///< empty for the DTD of each document
    bool quiet = false;
    Xml::ReadLimits limits;
};

// White space behind a document tells nothing about where it went wrong.
std::size_t endOf(const std::string& text) { return text.find_last_not_of(" \t\r\n") + 1; }

// As with its own DTD, all that is known is that the document as a whole does not keep to it.
Status judgeBy(const Xml::Dtd& dtd, const DocumentReading& reading) {
    Diagnostics diagnostics;
    const bool isValid = dtd.validate(reading.document->getRoot());
    diagnostics.printAsWarnings(reading.source.name);
    if (isValid) return Success;
    printError(reading.source, endOf(reading.source.text), "Doc could not be validated");
    return BadDocument;
}

Status validateOne(const std::string& input, const Xml::Dtd* dtd, const Xml::ReadLimits& limits) {
    const DocumentReading reading =
        readDocument(input, limits, dtd == nullptr ? OwnDtd::Obeyed : OwnDtd::Ignored);
    if (reading.status != Success || dtd == nullptr) return reading.status;
    return judgeBy(*dtd, reading);
}

Status validate(const Options& options) {
    std::unique_ptr<Xml::Dtd> dtd;
    if (!options.dtd.empty()) {
        DtdReading reading = readDtd(options.dtd, options.limits);
        if (reading.status != Success) return reading.status;
        dtd = std::move(reading.dtd);
    }
    Status worst = Success;
    for (const std::string& input : options.inputs) {
        Status status = validateOne(input, dtd.get(), options.limits);
        const bool isTold = status == Success && !options.quiet;
        if (isTold && !writeToStandardOutput(input + ": valid\n")) status = Trouble;
        worst = std::max(worst, status);
    }
    return worst;
}

}  // namespace

void addValidate(const CommandLine& line) {
    const auto options = std::make_shared<Options>();
    Command command(line, {"validate", "Tell whether documents are valid", kNotes, kStatuses},
                    options->limits);
    command.addText("--dtd", "DTD", options->dtd, "Judge by the declarations in this file alone");
    command.addFlag("--quiet", options->quiet, "Print nothing for valid documents");
    command.addInputs(options->inputs);
    command.run([options] { return validate(*options); });
}

}  // namespace tools
