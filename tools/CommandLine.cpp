#include "tools/CommandLine.h"

#include "tools/Limits.h"

namespace tools {
namespace {

constexpr const char* kLimitNotes =
    "\n"
    "Documents may be 256 MiB long, nest 1000 deep and hold 10 million nodes; \"limit\n"
    "exceeded\" names the limit that one goes beyond. --limit raises it, --trusted lifts\n"
    "them all. Files that a document names with SYSTEM are read from the current folder\n"
    "and the folders in it only, unless with --trusted.\n"
    "\n";

}  // namespace

const char* const kVersion = "vexxml " VEXXML_VERSION;

const char* const kStatuses =
    "Exit status: 0 success, 1 a document that is not well-formed or not valid,\n"
    "2 wrong usage or a file that cannot be read or written.";

const char* const kSelectionStatuses =
    "Exit status: 0 something was selected in any file, 1 nothing was, 2 a malformed\n"
    "expression, wrong usage, or a file that cannot be read, parsed or written.";

CLI::App* addCommand(CLI::App& app, const Help& help, Xml::ReadLimits& limits) {
    CLI::App* command = app.add_subcommand(help.name, help.description);
    command->set_version_flag("--version", kVersion, "Print the version and exit");
    limits = usualLimits();
    addLimitOptions(*command, limits);
    command->footer(std::string(help.notes) + kLimitNotes + help.statuses);
    return command;
}

void addInput(CLI::App& command, std::string& input) {
    command.add_option("FILE", input, "The document; - for the standard input")
        ->required()
        ->type_name("");
}

void addInputs(CLI::App& command, std::vector<std::string>& inputs) {
    command.add_option("FILE", inputs, "The documents; - for the standard input")
        ->required()
        ->type_name("");
}

void addExpression(CLI::App& command, std::string& expression) {
    command.add_option("EXPRESSION", expression, "What to select")->required()->type_name("");
}

CLI::Validator numberFrom(std::size_t least) {
    constexpr std::size_t kMost = 1000000000;
    return CLI::Range(least, kMost).description("");
}

}  // namespace tools
