#include "tools/CommandLine.h"

#include <CLI/CLI.hpp>
#include <iostream>
#include <sstream>
#include <utility>

#include "tools/Limits.h"
#include "tools/Output.h"

namespace tools {
namespace {

constexpr const char* kVersion = "vexxml " VEXXML_VERSION;

constexpr const char* kLimitNotes =
    "\n"
    "Documents may be 256 MiB long, nest 1000 deep and hold 10 million nodes; \"limit\n"
    "exceeded\" names the limit that one goes beyond. --limit raises it, --trusted lifts\n"
    "them all. Files that a document names with SYSTEM are read from the current folder\n"
    "and the folders in it only, unless with --trusted.\n"
    "\n";

// Help and version end the parsing by an "error" whose status is 0.
Status endParsing(const CLI::App& app, const CLI::ParseError& end) {
    std::ostringstream out;
    std::ostringstream err;
    if (app.exit(end, out, err) == 0) return writeToStandardOutput(out.str()) ? Success : Trouble;
    std::cerr << "vexxml: " << err.str();
    return Trouble;
}

}  // namespace

const char* const kStatuses =
    "Exit status: 0 success, 1 a document that is not well-formed or not valid,\n"
    "2 wrong usage or a file that cannot be read or written.";

const char* const kSelectionStatuses =
    "Exit status: 0 something was selected in any file, 1 nothing was, 2 a malformed\n"
    "expression, wrong usage, or a file that cannot be read, parsed or written.";

Status runCommand(int argc, char** argv,
                  const std::function<void(const CommandLine&)>& addCommands) {
    CLI::App app(
        "Reads XML documents: formats, validates, queries, outlines, edits, compares them.",
        "vexxml");
    app.set_version_flag("--version", kVersion, "Print the version and exit");
    app.require_subcommand(1);
    app.footer("\"vexxml COMMAND --help\" tells more about a command.\n" + std::string(kStatuses) +
               "\nFor query and edit: 0 something was selected, 1 nothing was, 2 trouble of any\n"
               "kind. For diff: 0 no difference, 1 some, 2 trouble of any kind.");
    Status status = Success;
    addCommands({app, status});
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& end) {
        return endParsing(app, end);
    }
    return status;
}

Command::Command(const CommandLine& line, const Help& help, Xml::ReadLimits& limits)
    : mApp(line.app.add_subcommand(help.name, help.description)), mStatus(line.status) {
    mApp->set_version_flag("--version", kVersion, "Print the version and exit");
    limits = usualLimits();
    addLimitOptions(*this, limits);
    mApp->footer(std::string(help.notes) + kLimitNotes + help.statuses);
}

void Command::addFlag(const Text& names, bool& isGiven, const Text& description) {
    mApp->add_flag(names, isGiven, description);
}

void Command::addText(const Text& names, const Text& argument, Text& text,
                      const Text& description) {
    mApp->add_option(names, text, description)->type_name(argument);
}

void Command::addNumber(const Text& names, std::size_t least, std::size_t& number,
                        const Text& description) {
    constexpr std::size_t kMost = 1000000000;
    mApp->add_option(names, number, description)
        ->check(CLI::Range(least, kMost).description(""))
        ->type_name("N");
}

void Command::addChoice(const Text& names, const Text& argument, const std::vector<Text>& choices,
                        Text& choice, const Text& description) {
    mApp->add_option(names, choice, description)
        ->check(CLI::IsMember(choices))
        ->type_name(argument);
}

void Command::addAction(const Text& name, const std::function<void()>& take,
                        const Text& description) {
    mApp->add_flag_callback(name, take, description)->trigger_on_parse();
}

void Command::addAction(const Text& name, const Text& argument,
                        const std::function<void(const Text&)>& take, const Text& description) {
    mApp->add_option_function<Text>(name, take, description)
        ->type_name(argument)
        ->trigger_on_parse()
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
}

void Command::exclude(const Text& option, const Text& other) {
    mApp->get_option(option)->excludes(mApp->get_option(other));
}

void Command::addInput(Text& input) {
    addInput("FILE", input, "The document; - for the standard input");
}

void Command::addInput(const Text& name, Text& input, const Text& description) {
    mApp->add_option(name, input, description)->required()->type_name("");
}

void Command::addInputs(std::vector<Text>& inputs) {
    mApp->add_option("FILE", inputs, "The documents; - for the standard input")
        ->required()
        ->type_name("");
}

void Command::addExpression(Text& expression) {
    addInput("EXPRESSION", expression, "What to select");
}

void Command::run(std::function<Status()> work) {
    mApp->callback([work = std::move(work), &status = mStatus] { status = work(); });
}

void refuseArgument(const std::string& option, const std::string& reason) {
    throw CLI::ValidationError(option, reason);
}

}  // namespace tools
