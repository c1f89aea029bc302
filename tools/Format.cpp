#include "VexXml/Dom.h"
#include "tools/Commands.h"
#include "tools/Diagnostics.h"
#include "tools/ErrorPrinter.h"
#include "tools/Output.h"
#include "tools/Reading.h"
#include "tools/Utf8.h"

namespace tools {
namespace {

// Other programs will take what is written for UTF-8, whatever the document said.
constexpr const char* kNotUtf8 = "what is written is not UTF-8, and no encoding is declared in it";

}  // namespace

Status format(const FormatOptions& options) {
    const DocumentReading reading = readDocument(options.input, options.limits);
    if (reading.status != Success) return reading.status;
    Xml::Element::setShortNotationForEmptyTags(!options.noShortTags);
    Diagnostics diagnostics;
    const std::string text = textOf(*reading.document);
    diagnostics.printAsWarnings(options.input);
    if (!isUtf8(text)) printWarning(options.input, kNotUtf8);
    const std::string& output = options.inPlace ? options.input : options.output;
    const bool toFile = !output.empty() && output != "-";
    const bool isWritten = toFile ? writeToFile(output, text) : writeToStandardOutput(text);
    return isWritten ? Success : Trouble;
}

}  // namespace tools
