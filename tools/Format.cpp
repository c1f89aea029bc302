#include "VexXml/Dom.h"
#include "tools/Commands.h"
#include "tools/Diagnostics.h"
#include "tools/Output.h"
#include "tools/Reading.h"

namespace tools {

Status format(const FormatOptions& options) {
    const DocumentReading reading = readDocument(options.input);
    if (reading.status != Success) return reading.status;
    Xml::Element::setShortNotationForEmptyTags(!options.noShortTags);
    Diagnostics diagnostics;
    const std::string text = textOf(*reading.document);
    diagnostics.printAsWarnings(options.input);
    const std::string& output = options.inPlace ? options.input : options.output;
    const bool toFile = !output.empty() && output != "-";
    const bool isWritten = toFile ? writeToFile(output, text) : writeToStandardOutput(text);
    return isWritten ? Success : Trouble;
}

}  // namespace tools
