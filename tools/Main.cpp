#include <CLI/CLI.hpp>
#include <csignal>
#include <exception>
#include <iostream>
#include <sstream>
#include <string>

#include "tools/CommandLine.h"
#include "tools/Commands.h"
#include "tools/ErrorPrinter.h"
#include "tools/Output.h"

namespace tools {
namespace {

// Help and version end the parsing by an "error" whose status is 0.
Status endParsing(const CLI::App& app, const CLI::ParseError& end) {
    std::ostringstream out;
    std::ostringstream err;
    if (app.exit(end, out, err) == 0) return writeToStandardOutput(out.str()) ? Success : Trouble;
    std::cerr << "vexxml: " << err.str();
    return Trouble;
}

Status run(int argc, char** argv) {
    CLI::App app(
        "Reads XML documents: formats, validates, queries, outlines, edits, compares them.",
        "vexxml");
    app.set_version_flag("--version", kVersion, "Print the version and exit");
    app.require_subcommand(1);
    app.footer("\"vexxml COMMAND --help\" tells more about a command.\n" + std::string(kStatuses) +
               "\nFor query and edit: 0 something was selected, 1 nothing was, 2 trouble of any\n"
               "kind. For diff: 0 no difference, 1 some, 2 trouble of any kind.");
    Status status = Success;
    const CommandLine line{app, status};
    addFormat(line);
    addValidate(line);
    addDtd(line);
    addQuery(line);
    addTree(line);
    addStat(line);
    addEdit(line);
    addDiff(line);
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& end) {
        return endParsing(app, end);
    }
    return status;
}

}  // namespace
}  // namespace tools

int main(int argc, char** argv) {
    // A write beyond the limit for files is to fail like any other, not to end the program halfway.
    std::signal(SIGXFSZ, SIG_IGN);
    try {
        const tools::Status status = tools::run(argc, argv);
        return tools::closeStandardOutput() ? status : tools::Trouble;
    } catch (const std::exception& failure) {
        tools::printError("vexxml", failure.what());
        return tools::Trouble;
    }
}
