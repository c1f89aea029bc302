#include "tools/DocumentOutput.h"

#include "VexXml/Dom.h"
#include "tools/Diagnostics.h"
#include "tools/ErrorPrinter.h"
#include "tools/Output.h"
#include "tools/Utf8.h"

namespace tools {
namespace {

// Other programs will take what is written for UTF-8, whatever the document said.
constexpr const char* kNotUtf8 = "what is written is not UTF-8, and no encoding is declared in it";

}  // namespace

void addDestination(Command& command, Destination& destination) {
    command.addText("-o,--output", "OUT", destination.file, "Write to this file");
    command.addFlag("--in-place", destination.inPlace, "Replace the file itself");
    command.exclude("--in-place", "--output");
}

void checkDestination(const Destination& destination, const std::string& input) {
    if (destination.inPlace && input == "-") {
        refuseArgument("--in-place", "needs a file, not the standard input");
    }
}

Status writeDocument(const DocumentReading& reading, const Destination& destination) {
    const std::string& input = reading.source.name;
    Diagnostics diagnostics;
    const std::string text = textOf(*reading.document);
    diagnostics.printAsWarnings(input);
    if (!isUtf8(text)) printWarning(input, kNotUtf8);
    const std::string& output = destination.inPlace ? input : destination.file;
    const bool toFile = !output.empty() && output != "-";
    const bool isWritten = toFile ? writeToFile(output, text) : writeToStandardOutput(text);
    return isWritten ? Success : Trouble;
}

}  // namespace tools
