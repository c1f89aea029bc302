#include "tools/Workplace.h"

#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <ostream>

namespace support {
namespace {

std::string readFile(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

std::string quoted(const std::string& path) { return "'" + path + "'"; }

}  // namespace

bool operator==(const Outcome& left, const Outcome& right) {
    return left.status == right.status && left.out == right.out && left.err == right.err;
}

std::ostream& operator<<(std::ostream& stream, const Outcome& outcome) {
    return stream << "status " << outcome.status << "\n--- out\n"
                  << outcome.out << "--- err\n"
                  << outcome.err << "---";
}

Workplace::Workplace() = default;

void Workplace::write(const std::string& name, const std::string& bytes) const {
    mFiles.write(name, bytes);
}

std::string Workplace::read(const std::string& name) const { return readFile(path(name)); }

std::vector<std::string> Workplace::list() const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(path("."))) {
        names.push_back(entry.path().filename().string());
    }
    std::sort(names.begin(), names.end());
    return names;
}

std::string Workplace::path(const std::string& name) const { return mFiles.path(name); }

Outcome Workplace::run(const std::string& commands, const std::string& input) const {
    const std::string in = mStreams.write("in", input);
    const std::string out = mStreams.path("out");
    const std::string err = mStreams.path("err");
    const std::string line =
        "cd " + quoted(path(".")) + " && PATH=" + quoted(VEXXML_PROGRAM_FOLDER) + ":$PATH && { " +
        commands + "\n} <" + quoted(in) + " >" + quoted(out) + " 2>" + quoted(err);
    // NOLINTNEXTLINE(cert-env33-c): a shell is what users run the program from
    const int ended = std::system(line.c_str());
    const int status = WIFEXITED(ended) ? WEXITSTATUS(ended) : 128 + WTERMSIG(ended);
    return {status, readFile(out), readFile(err)};
}

std::string bareOfPrivileges(const std::string& command) {
    if (geteuid() != 0) return command;
    return "setpriv --bounding-set=-dac_override,-dac_read_search " + command;
}

}  // namespace support
