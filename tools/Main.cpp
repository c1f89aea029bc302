#include <CLI/CLI.hpp>
#include <csignal>
#include <exception>
#include <sstream>
#include <string>

#include "tools/Commands.h"
#include "tools/ErrorPrinter.h"
#include "tools/Limits.h"
#include "tools/Output.h"

namespace tools {
namespace {

constexpr const char* kVersion = "vexxml " VEXXML_VERSION;

constexpr const char* kStatuses =
    "Exit status: 0 success, 1 a document that is not well-formed or not valid,\n"
    "2 wrong usage or a file that cannot be read or written.";

constexpr const char* kQueryStatuses =
    "Exit status: 0 something was selected in any file, 1 nothing was, 2 a malformed\n"
    "expression, wrong usage, or a file that cannot be read, parsed or written.";

constexpr const char* kFormatNotes =
    "What the library does not keep is not written either: comments, processing\n"
    "instructions, document type declarations with PUBLIC, the encoding declaration,\n"
    "and white space that stands alone between two tags. Levels are indented by tabs,\n"
    "also where a line begins inside an attribute value. A file is replaced as a\n"
    "whole, by a rename, so that it is never left half written.\n";

constexpr const char* kValidateNotes =
    "Prints \"FILE: valid\" for each valid document. One without a document type\n"
    "declaration, or with a PUBLIC one, is valid when it is well-formed. With --dtd the\n"
    "document's own declaration is still read, but need not be kept to. All files are\n"
    "tried; the worst one decides the exit status.\n";

constexpr const char* kDtdNotes =
    "The declaration is also written when the document does not keep to it.\n";

constexpr const char* kQueryNotes =
    "Of an attribute the value is printed, of an element its first text. With several\n"
    "files each result, or count, has \"FILE:\" in front. A result may hold line feeds;\n"
    "-0 ends it with a NUL. An expression that does not begin with \"/\" starts from the\n"
    "document; in front of one that begins with \"-\" write \"--\". Kind tests stand\n"
    "without parentheses, as in \"//title/text\", and names are compared as written, with\n"
    "their prefixes. The document's own DTD need not be kept to. All files are tried.\n";

constexpr const char* kLimitNotes =
    "\n"
    "Documents may be 256 MiB long, nest 1000 deep and hold 10 million nodes; \"limit\n"
    "exceeded\" names the limit that one goes beyond. --limit raises it, --trusted lifts\n"
    "them all. Files that a document names with SYSTEM are read from the current folder\n"
    "and the folders in it only, unless with --trusted.\n"
    "\n";

CLI::App* addCommand(CLI::App& app, const std::string& name, const std::string& description,
                     const std::string& notes, Xml::ReadLimits& limits,
                     const char* statuses = kStatuses) {
    CLI::App* command = app.add_subcommand(name, description);
    command->set_version_flag("--version", kVersion, "Print the version and exit");
    limits = usualLimits();
    addLimitOptions(*command, limits);
    command->footer(notes + kLimitNotes + statuses);
    return command;
}

void addFormat(CLI::App& app, FormatOptions& options, Status& status) {
    CLI::App* command =
        addCommand(app, "format", "Write a document back, indented", kFormatNotes, options.limits);
    CLI::Option* output =
        command->add_option("-o,--output", options.output, "Write to this file")->type_name("OUT");
    command->add_flag("--in-place", options.inPlace, "Replace the file itself")->excludes(output);
    command->add_flag("--no-short-tags", options.noShortTags,
                      "Write <a></a> instead of <a/> for an empty element");
    command->add_option("FILE", options.input, "The document; - for the standard input")
        ->required()
        ->type_name("");
    command->callback([&options, &status] {
        if (options.inPlace && options.input == "-") {
            throw CLI::ValidationError("--in-place", "needs a file, not the standard input");
        }
        status = format(options);
    });
}

void addValidate(CLI::App& app, ValidateOptions& options, Status& status) {
    CLI::App* command = addCommand(app, "validate", "Tell whether documents are valid",
                                   kValidateNotes, options.limits);
    command->add_option("--dtd", options.dtd, "Judge by the declarations in this file alone")
        ->type_name("DTD");
    command->add_flag("--quiet", options.quiet, "Print nothing for valid documents");
    command->add_option("FILE", options.inputs, "The documents; - for the standard input")
        ->required()
        ->type_name("");
    command->callback([&options, &status] { status = validate(options); });
}

void addDtd(CLI::App& app, DtdOptions& options, Status& status) {
    CLI::App* command =
        addCommand(app, "dtd", "Write a document's type declaration as the library understood it",
                   kDtdNotes, options.limits);
    command->add_option("FILE", options.input, "The document; - for the standard input")
        ->required()
        ->type_name("");
    command->callback([&options, &status] { status = writeDtd(options); });
}

void addQuery(CLI::App& app, QueryOptions& options, Status& status) {
    CLI::App* command = addCommand(app, "query", "Print what an XPath expression selects",
                                   kQueryNotes, options.limits, kQueryStatuses);
    command->add_flag("--count", options.count, "Print only how many results there are");
    CLI::Option* node = command->add_flag("--node", options.asNode, "Print nodes as XML");
    command->add_flag("--value", "Print the text of each result (the default)")->excludes(node);
    command->add_flag_callback(
        "-0", [&options] { options.separator = '\0'; }, "End results with a NUL, not a line feed");
    command->add_option("EXPRESSION", options.expression, "What to select")
        ->required()
        ->type_name("");
    command->add_option("FILE", options.inputs, "The documents; - for the standard input")
        ->required()
        ->type_name("");
    command->callback([&options, &status] { status = query(options); });
}

// Help and version end the parsing by an "error" whose status is 0.
Status endParsing(const CLI::App& app, const CLI::ParseError& end) {
    std::ostringstream out;
    std::ostringstream err;
    if (app.exit(end, out, err) == 0) return writeToStandardOutput(out.str()) ? Success : Trouble;
    std::cerr << "vexxml: " << err.str();
    return Trouble;
}

Status run(int argc, char** argv) {
    CLI::App app("Reads, formats, validates and queries XML documents.", "vexxml");
    app.set_version_flag("--version", kVersion, "Print the version and exit");
    app.require_subcommand(1);
    app.footer("\"vexxml COMMAND --help\" tells more about a command.\n" + std::string(kStatuses) +
               "\nFor query: 0 something was selected, 1 nothing was, 2 trouble of any kind.");
    FormatOptions formatting;
    ValidateOptions validation;
    DtdOptions dtdWriting;
    QueryOptions querying;
    Status status = Success;
    addFormat(app, formatting, status);
    addValidate(app, validation, status);
    addDtd(app, dtdWriting, status);
    addQuery(app, querying, status);
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
