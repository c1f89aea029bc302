#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include "VexXml/Readers.h"
#include "tools/Status.h"

namespace CLI {
class App;
}

namespace tools {

/// What the exit status of a command tells, for the end of its help.
extern const char* const kStatuses;
extern const char* const kSelectionStatuses;

/// What the help of a command tells besides its options.
struct Help {
    const char* name;
    const char* description;  ///< one line
    const char* notes;        ///< whole lines
    const char* statuses;
};

/// The arguments of the program, while they are declared. What they are stored in must live until
/// they have been parsed, `status` too, which becomes what came of the command.
struct CommandLine {
    CLI::App& app;
    Status& status;
};

/// Parses the arguments of the program and runs the command that they name. `addCommands` declares
/// all there are.
Status runCommand(int argc, char** argv,
                  const std::function<void(const CommandLine&)>& addCommands);

/// Declares the arguments of a command that reads documents within limits: the usual ones, unless
/// the user says otherwise.
///
/// Hides the library that parses arguments, as compiling and checking its headers takes longer than
/// all else in a command.
class Command {
public:
    using Text = std::string;

    Command(const CommandLine& line, const Help& help, Xml::ReadLimits& limits);

    void addFlag(const Text& names, bool& isGiven, const Text& description);
    void addText(const Text& names, const Text& argument, Text& text, const Text& description);
    void addNumber(const Text& names, std::size_t least, std::size_t& number,
                   const Text& description);
    void addChoice(const Text& names, const Text& argument, const std::vector<Text>& choices,
                   Text& choice, const Text& description);
    /// Calls a function each time the option is given, in the order of all such options.
    void addAction(const Text& name, const std::function<void()>& take, const Text& description);
    void addAction(const Text& name, const Text& argument,
                   const std::function<void(const Text&)>& take, const Text& description);
    /// Only one of the two options may be given.
    void exclude(const Text& option, const Text& other);

    /// Adds arguments that have no name in front, in their order; all of them are required.
    void addInput(Text& input);
    void addInput(const Text& name, Text& input, const Text& description);
    void addInputs(std::vector<Text>& inputs);
    void addExpression(Text& expression);

    /// What to run once the arguments have been parsed.
    void run(std::function<Status()> work);

private:
    CLI::App* mApp;
    Status& mStatus;
};

/// Ends the parsing of arguments, or the command that they are for: a wrong one is reported, and
/// the exit status is `Trouble`.
[[noreturn]] void refuseArgument(const std::string& option, const std::string& reason);

}  // namespace tools
