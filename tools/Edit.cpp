#include <algorithm>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "VexXml/Dom.h"
#include "VexXml/XPath.h"
#include "tools/Action.h"
#include "tools/CommandLine.h"
#include "tools/Commands.h"
#include "tools/DocumentOutput.h"
#include "tools/ErrorPrinter.h"
#include "tools/Expression.h"
#include "tools/Fragment.h"
#include "tools/Reading.h"

namespace tools {
namespace {

constexpr const char* kNotes =
    "The actions are done in their order, each to everything that the expression selects\n"
    "in the document as it was read. Texts and values are given as they are: what needs\n"
    "escaping is escaped. The text of an element is all that it holds; one with child\n"
    "elements is refused, select its texts with \"/text\" instead. An empty text goes\n"
    "away. --add puts elements and texts behind the other children. Of an attribute\n"
    "that is selected, --set-text sets the value. What would not be read again as it is\n"
    "given, such as a text of white space alone, is refused. The document is written as\n"
    "\"vexxml format\" does, with the same losses, and need not keep to its own DTD. If\n"
    "nothing is selected, or an action cannot be done, nothing is written.\n";

constexpr const char* kEditStatuses =
    "Exit status: 0 success, 1 nothing was selected, 2 a malformed expression, an action\n"
    "that cannot be done, wrong usage, or a file that cannot be read, parsed or written.";

struct Options {
    std::string expression;
    std::vector<Action> actions;
    std::string input;
    Destination destination;
    Xml::ReadLimits limits;
};

using Kind = Action::Kind;

// Other programs refuse these in a document, however they are written.
bool hasControlCharacter(const std::string& text) {
    return std::any_of(text.begin(), text.end(), [](char byte) {
        return static_cast<unsigned char>(byte) < 0x20 && byte != '\t' && byte != '\n' &&
               byte != '\r';
    });
}

void checkName(const std::string& option, const std::string& name) {
    if (!Xml::isName(name)) refuseArgument(option, "not a name: " + name);
}

Action setText(const std::string& text) {
    const char* const option = "--set-text";
    if (hasControlCharacter(text))
        refuseArgument(option, "no document may hold control characters");
    if (!text.empty() && !readsBackAsText(text))
        refuseArgument(option, "would not be read again as it is");
    return {Kind::SetText, "", text};
}

Action setAttribute(const std::string& setting) {
    const char* const option = "--set-attribute";
    const std::size_t equals = setting.find('=');
    if (equals == std::string::npos)
        refuseArgument(option, "not of the form NAME=VALUE: " + setting);
    const std::string name = setting.substr(0, equals);
    const std::string value = setting.substr(equals + 1);
    checkName(option, name);
    if (hasControlCharacter(value))
        refuseArgument(option, "no document may hold control characters");
    if (!readsBackAsValue(name, value)) refuseArgument(option, "would not be read again as it is");
    return {Kind::SetAttribute, name, value};
}

Action removeAttribute(const std::string& name) {
    checkName("--remove-attribute", name);
    return {Kind::RemoveAttribute, name, ""};
}

Action rename(const std::string& name) {
    checkName("--rename", name);
    return {Kind::Rename, name, ""};
}

Action add(const std::string& xml) {
    if (hasControlCharacter(xml))
        refuseArgument("--add", "no document may hold control characters");
    return {Kind::Add, "", xml};
}

void check(const Options& options) {
    checkDestination(options.destination, options.input);
    if (options.actions.empty()) refuseArgument("edit", "needs an action, such as --delete");
    for (const Action& action : options.actions) {
        const bool isLast = &action == &options.actions.back();
        if (action.kind == Kind::Delete && !isLast)
            refuseArgument("--delete", "must be the last action");
    }
}

Status select(const Options& options, Xml::Document& document, std::vector<Xml::Object*>& nodes) {
    Xml::XPath query(&document);
    query.GetValues(options.expression);
    for (const Xml::XPath::ResultItem& result : query.GetResults()) {
        if (result.kind != Xml::XPath::Node) {
            printError("expression", "selects values, not nodes");
            return Trouble;
        }
        nodes.push_back(result.node);
    }
    return nodes.empty() ? NothingSelected : Success;
}

Status edit(const Options& options) {
    check(options);
    if (!checkExpression(options.expression)) return Trouble;
    const DocumentReading reading = readDocument(options.input, options.limits, OwnDtd::Ignored);
    if (reading.status != Success) return Trouble;
    std::vector<Xml::Object*> nodes;
    const Status status = select(options, *reading.document, nodes);
    if (status != Success) return status;
    Editor editor(*reading.document, options.limits, std::move(nodes));
    for (const Action& action : options.actions) {
        const std::string failure = editor.apply(action);
        if (failure.empty()) continue;
        printError(options.input, failure);
        return Trouble;
    }
    return writeDocument(reading, options.destination);
}

void addActions(Command& command, std::vector<Action>& actions) {
    const auto does = [&actions](Action (*actionOf)(const std::string&)) {
        return [&actions, actionOf](const std::string& text) { actions.push_back(actionOf(text)); };
    };
    command.addAction("--set-text", "TEXT", does(&setText), "Set the text");
    command.addAction("--set-attribute", "NAME=VALUE", does(&setAttribute), "Set an attribute");
    command.addAction("--remove-attribute", "NAME", does(&removeAttribute),
                      "Remove an attribute, if there is one");
    command.addAction("--rename", "NAME", does(&rename),
                      "Give elements or attributes another name");
    command.addAction("--add", "XML", does(&add), "Add these elements and texts as last children");
    command.addAction(
        "--delete",
        [&actions] {
            actions.push_back({Kind::Delete, "", ""});
        },
        "Delete elements, texts or attributes; the last action");
}

}  // namespace

void addEdit(const CommandLine& line) {
    const auto options = std::make_shared<Options>();
    Command command(line,
                    {"edit", "Change what an XPath expression selects", kNotes, kEditStatuses},
                    options->limits);
    addActions(command, options->actions);
    addDestination(command, options->destination);
    command.addExpression(options->expression);
    command.addInput(options->input);
    command.run([options] { return edit(*options); });
}

}  // namespace tools
