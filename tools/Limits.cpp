#include "tools/Limits.h"

#include <charconv>
#include <cstdint>
#include <filesystem>
#include <string>
#include <system_error>

#include "tools/CommandLine.h"

namespace tools {
namespace {

using Xml::ReadLimits;

// "NAME=NUMBER" or "NAME=none"
void setLimit(const std::string& setting, ReadLimits& limits) {
    const std::size_t equals = setting.find('=');
    const auto limit = ReadLimits::named(setting.substr(0, equals));
    if (limit == nullptr || equals == std::string::npos) {
        refuseArgument("--limit", "no such limit: " + setting);
    }
    const std::string text = setting.substr(equals + 1);
    std::uint64_t value = ReadLimits::kNone;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, value);
    const bool isNumber = error == std::errc() && stop == end;
    if (!isNumber && text != "none") {
        refuseArgument("--limit", "not a number: " + setting);
    }
    limits.*limit = isNumber ? value : ReadLimits::kNone;
}

}  // namespace

ReadLimits usualLimits() {
    std::error_code error;
    ReadLimits limits = ReadLimits::untrusted();
    limits.mayOpenFiles = true;
    limits.folder = std::filesystem::current_path(error).string();
    if (error) limits.mayOpenFiles = false;
    return limits;
}

void addLimitOptions(Command& command, ReadLimits& limits) {
    command.addAction(
        "--trusted", [&limits] { limits = ReadLimits(); },
        "Accept documents of any size and depth, and files they name anywhere");
    command.addAction(
        "--limit", "NAME=VALUE",
        [&limits](const std::string& setting) { setLimit(setting, limits); },
        "Set a limit, such as nodes=20000000 or elementDepth=none");
}

}  // namespace tools
