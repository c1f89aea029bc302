#include <csignal>
#include <exception>

#include "tools/CommandLine.h"
#include "tools/Commands.h"
#include "tools/ErrorPrinter.h"
#include "tools/Output.h"

namespace {

void addAll(const tools::CommandLine& line) {
    tools::addFormat(line);
    tools::addValidate(line);
    tools::addDtd(line);
    tools::addQuery(line);
    tools::addTree(line);
    tools::addStat(line);
    tools::addEdit(line);
    tools::addDiff(line);
}

}  // namespace

int main(int argc, char** argv) {
    // A write beyond the limit for files is to fail like any other, not to end the program halfway.
    std::signal(SIGXFSZ, SIG_IGN);
    try {
        const tools::Status status = tools::runCommand(argc, argv, addAll);
        return tools::closeStandardOutput() ? status : tools::Trouble;
    } catch (const std::exception& failure) {
        tools::printError("vexxml", failure.what());
        return tools::Trouble;
    }
}
