#include "tools/Source.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <limits>

#include "tools/ErrorPrinter.h"
#include "tools/Progress.h"

namespace tools {
namespace {

constexpr std::size_t kMaxSize = std::numeric_limits<int>::max();

constexpr const char* kTooLong = "2 GiB or more is too long";

// 0 for what has no size beforehand, such as a pipe.
std::size_t sizeOf(int file) {
    struct stat info {};
    if (fstat(file, &info) != 0 || info.st_size <= 0) return 0;
    return static_cast<std::size_t>(info.st_size);
}

// Empty when all was read, or more than the limit, else what went wrong.
std::string readAll(int file, std::uint64_t limit, std::string& text) {
    const std::size_t expected = sizeOf(file);
    if (expected > kMaxSize) return kTooLong;
    const std::size_t most = std::min<std::uint64_t>(limit, kMaxSize) + 1;
    text.reserve(std::min(expected, most));
    std::array<char, 65536> block{};
    Progress progress("reading", expected);
    while (text.size() < most) {
        const ssize_t size = read(file, block.data(), std::min(block.size(), most - text.size()));
        if (size == 0) return {};
        if (size > 0) {
            text.append(block.data(), static_cast<std::size_t>(size));
            progress.show(text.size());
        } else if (errno != EINTR) {
            return std::strerror(errno);
        }
    }
    return text.size() > kMaxSize ? kTooLong : "";
}

std::string readFile(const std::string& name, std::uint64_t limit, std::string& text) {
    if (name == "-") return readAll(STDIN_FILENO, limit, text);
    const int file = open(name.c_str(), O_RDONLY | O_CLOEXEC);
    if (file < 0) return std::strerror(errno);
    std::string failure = readAll(file, limit, text);
    close(file);
    return failure;
}

}  // namespace

bool readSource(const std::string& name, std::uint64_t limit, Source& source) {
    source.name = name;
    source.text.clear();
    const std::string failure = readFile(name, limit, source.text);
    if (!failure.empty()) printError(name, "cannot be read: " + failure);
    return failure.empty();
}

}  // namespace tools
