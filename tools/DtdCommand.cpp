#include <algorithm>

#include "VexXml/Dtd.h"
#include "tools/Commands.h"
#include "tools/Diagnostics.h"
#include "tools/ErrorPrinter.h"
#include "tools/Output.h"
#include "tools/Reading.h"

namespace tools {

// The declarations are worth seeing most when the document does not keep to them.
Status writeDtd(const DtdOptions& options) {
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

}  // namespace tools
