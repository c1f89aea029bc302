#pragma once

#include <set>
#include <string>
#include <vector>

namespace support {

/// The commands of the program.
const std::vector<std::string>& commands();
/// The options of a command, short and long, as its help lists them.
std::set<std::string> helpedOptions(const std::string& command);
/// The words of a text that look like options, such as "-o" and "--output".
std::set<std::string> optionsIn(const std::string& text);

/// What stands in a text behind `begin`, up to `end`; empty where there is no `begin`.
std::string partOf(const std::string& text, const std::string& begin, const std::string& end);
/// What a file in the folder of the program's sources holds.
std::string readTool(const std::string& name);

}  // namespace support
