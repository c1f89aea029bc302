#pragma once

namespace tools {

struct CommandLine;

/// Each adds a command with its options.
void addFormat(const CommandLine& line);
void addValidate(const CommandLine& line);
void addDtd(const CommandLine& line);
void addQuery(const CommandLine& line);
void addTree(const CommandLine& line);
void addStat(const CommandLine& line);
void addEdit(const CommandLine& line);
void addDiff(const CommandLine& line);

}  // namespace tools
