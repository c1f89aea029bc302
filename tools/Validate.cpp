#include <algorithm>
#include <memory>

#include "VexXml/Dom.h"
#include "VexXml/Dtd.h"
#include "tools/Commands.h"
#include "tools/Diagnostics.h"
#include "tools/ErrorPrinter.h"
#include "tools/Output.h"
#include "tools/Reading.h"

namespace tools {
namespace {

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

}  // namespace

Status validate(const ValidateOptions& options) {
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

}  // namespace tools
