#include "tools/Help.h"

#include <fstream>
#include <iterator>
#include <map>
#include <regex>
#include <sstream>

#include "tools/Workplace.h"

namespace support {
namespace {

std::string helpOf(const std::string& command) {
    return Workplace().run("vexxml " + command + " --help").out;
}

// "  NAME   WHAT IT DOES" below "Subcommands:"
std::vector<std::string> listCommands() {
    std::vector<std::string> names;
    std::istringstream lines(partOf(helpOf(""), "Subcommands:\n", "\n\n"));
    for (std::string name, rest; lines >> name && std::getline(lines, rest);) names.push_back(name);
    return names;
}

}  // namespace

const std::vector<std::string>& commands() {
    static const std::vector<std::string> names = listCommands();
    return names;
}

// "  -o,--output OUT   WHAT IT DOES"
std::set<std::string> helpedOptions(const std::string& command) {
    static std::map<std::string, std::set<std::string>> known;
    std::set<std::string>& options = known[command];
    if (!options.empty()) return options;
    std::istringstream lines(partOf(helpOf(command), "Options:\n", "\n\n"));
    for (std::string line; std::getline(lines, line);) {
        if (line.rfind("  -", 0) == 0) options.merge(optionsIn(line.substr(0, line.find(' ', 2))));
    }
    return options;
}

std::set<std::string> optionsIn(const std::string& text) {
    static const std::regex option("(^|[^-A-Za-z0-9])(--[a-z][-a-z]*|-[A-Za-z0-9])(?![A-Za-z0-9])");
    std::set<std::string> found;
    for (std::sregex_iterator i(text.begin(), text.end(), option), end; i != end; ++i) {
        found.insert((*i)[2]);
    }
    return found;
}

std::string partOf(const std::string& text, const std::string& begin, const std::string& end) {
    const std::size_t at = text.find(begin);
    if (at == std::string::npos) return {};
    const std::size_t start = at + begin.size();
    return text.substr(start, text.find(end, start) - start);
}

std::string readTool(const std::string& name) {
    std::ifstream file(VEXXML_TOOLS_FOLDER "/" + name, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

}  // namespace support
