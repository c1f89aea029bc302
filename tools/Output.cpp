#include "tools/Output.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string_view>
#include <system_error>

#include "tools/ErrorPrinter.h"

namespace tools {
namespace {

namespace fs = std::filesystem;

std::error_code lastError() { return {errno, std::generic_category()}; }

std::error_code errorUnless(bool succeeded) { return succeeded ? std::error_code() : lastError(); }

std::error_code writeAll(int file, std::string_view text) {
    while (!text.empty()) {
        const ssize_t size = write(file, text.data(), text.size());
        if (size >= 0) {
            text.remove_prefix(static_cast<std::size_t>(size));
        } else if (errno != EINTR) {
            return lastError();
        }
    }
    return {};
}

mode_t permissionsOfNewFiles() {
    const mode_t mask = umask(0);
    umask(mask);
    return 0666 & ~mask;
}

// A new file beside the one that it is to replace, so that a rename can do that. Gone with this
// object unless it has replaced the other.
class TemporaryFile {
public:
    explicit TemporaryFile(const fs::path& target)
        : mTarget(target),
          mPath((target.parent_path() / ".vexxml-XXXXXX").string()),
          mFile(mkostemp(mPath.data(), O_CLOEXEC)),
          mError(errorUnless(mFile >= 0)),
          mExists(mFile >= 0) {}

    ~TemporaryFile() {
        if (mFile >= 0) close(mFile);
        if (mExists) unlink(mPath.c_str());
    }

    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    std::error_code replaceTargetBy(std::string_view text) {
        if (!mError) mError = takeOverPermissions();
        if (!mError) mError = writeAll(mFile, text);
        if (!mError) mError = errorUnless(fsync(mFile) == 0);
        if (!mError) mError = closeFile();
        if (!mError) mError = moveToTarget();
        return mError;
    }

private:
    std::error_code takeOverPermissions() {
        struct stat info {};
        if (stat(mTarget.c_str(), &info) != 0) {
            return errorUnless(fchmod(mFile, permissionsOfNewFiles()) == 0);
        }
        // Only root may keep another owner; for others the file becomes their own.
        static_cast<void>(fchown(mFile, info.st_uid, info.st_gid) == 0);
        return errorUnless(fchmod(mFile, info.st_mode & 07777) == 0);
    }

    std::error_code closeFile() {
        const int file = mFile;
        mFile = -1;
        return errorUnless(close(file) == 0);
    }

    std::error_code moveToTarget() {
        if (std::rename(mPath.c_str(), mTarget.c_str()) != 0) return lastError();
        mExists = false;
        return {};
    }

    fs::path mTarget;
    std::string mPath;
    int mFile;
    std::error_code mError;
    bool mExists;
};

std::error_code overwrite(const std::string& path, std::string_view text) {
    const int file = open(path.c_str(), O_WRONLY | O_CLOEXEC);
    if (file < 0) return lastError();
    const std::error_code writing = writeAll(file, text);
    const std::error_code closing = errorUnless(close(file) == 0);
    return writing ? writing : closing;
}

// Follows links by hand, as the file at their end need not exist.
fs::path withoutLinks(fs::path path) {
    constexpr int kMostLinks = 40;  // as many as the system follows
    std::error_code failure;
    for (int i = 0; i < kMostLinks && fs::is_symlink(path, failure); ++i) {
        path = path.parent_path() / fs::read_symlink(path, failure);
    }
    return path;
}

std::error_code writeTo(const std::string& path, const std::string& text) {
    std::error_code failure;
    const fs::file_type type = fs::status(path, failure).type();
    if (type != fs::file_type::regular && type != fs::file_type::not_found) {
        return overwrite(path, text);
    }
    return TemporaryFile(withoutLinks(path)).replaceTargetBy(text);
}

bool report(const std::error_code& failure, const std::string& name) {
    if (failure) printError(name, "cannot be written: " + failure.message());
    return !failure;
}

constexpr const char* kStandardOutput = "standard output";

constexpr std::size_t kBlockSize = std::size_t{64} * 1024;

}  // namespace

bool writeToStandardOutput(const std::string& text) {
    return report(writeAll(STDOUT_FILENO, text), kStandardOutput);
}

void BlockWriter::write(std::string_view text) {
    mBlock += text;
    if (mBlock.size() >= kBlockSize) flush();
}

void BlockWriter::flush() {
    if (!mHasFailed) mHasFailed = !writeToStandardOutput(mBlock);
    mBlock.clear();
}

bool closeStandardOutput() {
    // Whoever starts the program without a standard output is told when something is written to it.
    const bool isClosed = close(STDOUT_FILENO) == 0 || errno == EBADF;
    return report(errorUnless(isClosed), kStandardOutput);
}

bool writeToFile(const std::string& path, const std::string& text) {
    return report(writeTo(path, text), path);
}

}  // namespace tools
