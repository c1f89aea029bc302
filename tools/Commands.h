#pragma once

#include "tools/Status.h"

namespace CLI {
class App;
}

namespace tools {

/// Each adds a command with its options. If the command is given, parsing the arguments runs it,
/// and `status`, which must live as long as `app`, becomes what came of it.
///
/// A wrong combination of options is thrown as a `CLI::ParseError`, like other wrong arguments.
void addFormat(CLI::App& app, Status& status);
void addValidate(CLI::App& app, Status& status);
void addDtd(CLI::App& app, Status& status);
void addQuery(CLI::App& app, Status& status);
void addTree(CLI::App& app, Status& status);
void addStat(CLI::App& app, Status& status);
void addEdit(CLI::App& app, Status& status);
void addDiff(CLI::App& app, Status& status);

}  // namespace tools
