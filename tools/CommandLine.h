#pragma once

#include <CLI/CLI.hpp>
#include <cstddef>
#include <string>
#include <vector>

#include "VexXml/Readers.h"

namespace tools {

/// What "--version" prints.
extern const char* const kVersion;

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

/// Adds a command that reads documents within limits: the usual ones, unless the user says
/// otherwise.
CLI::App* addCommand(CLI::App& app, const Help& help, Xml::ReadLimits& limits);

/// Adds the document that a command reads, or the documents.
void addInput(CLI::App& command, std::string& input);
void addInputs(CLI::App& command, std::vector<std::string>& inputs);
/// Adds the XPath expression, which is to stand in front of the documents.
void addExpression(CLI::App& command, std::string& expression);

/// The check of an option that takes a number.
CLI::Validator numberFrom(std::size_t least);

}  // namespace tools
