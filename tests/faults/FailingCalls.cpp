#include "faults/FailingCalls.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/uio.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>

#include "faults/Plan.h"

namespace faults {
namespace {

thread_local Plan plan;

bool fails() {
    if (!plan.failsNow()) return false;
    errno = EIO;
    return true;
}

template <class... Arguments>
long call(long number, Arguments... arguments) {
    return fails() ? -1 : syscall(number, arguments...);
}

}  // namespace

FailingCalls::FailingCalls(long count, bool& hasFailed) {
    plan = Plan(hasFailed, Failing::Once, count);
}

FailingCalls::~FailingCalls() { plan = Plan(); }

}  // namespace faults

// A program's own functions go before those of the libraries, also for the calls of libraries.
extern "C" {

ssize_t read(int file, void* bytes, std::size_t count) {
    return faults::call(SYS_read, file, bytes, count);
}

ssize_t pread(int file, void* bytes, std::size_t count, off_t position) {
    return faults::call(SYS_pread64, file, bytes, count, position);
}

ssize_t pread64(int file, void* bytes, std::size_t count, off64_t position) {
    return faults::call(SYS_pread64, file, bytes, count, position);
}

ssize_t write(int file, const void* bytes, std::size_t count) {
    return faults::call(SYS_write, file, bytes, count);
}

ssize_t pwrite(int file, const void* bytes, std::size_t count, off_t position) {
    return faults::call(SYS_pwrite64, file, bytes, count, position);
}

ssize_t pwrite64(int file, const void* bytes, std::size_t count, off64_t position) {
    return faults::call(SYS_pwrite64, file, bytes, count, position);
}

ssize_t writev(int file, const iovec* pieces, int count) {
    return faults::call(SYS_writev, file, pieces, count);
}

// What it closes is closed whatever it answers.
int close(int file) {
    const auto answer = syscall(SYS_close, file);
    return faults::fails() ? -1 : static_cast<int>(answer);
}

int fsync(int file) { return static_cast<int>(faults::call(SYS_fsync, file)); }

int fchmod(int file, mode_t mode) noexcept {
    return static_cast<int>(faults::call(SYS_fchmod, file, mode));
}

int rename(const char* from, const char* to) noexcept {
    return static_cast<int>(faults::call(SYS_renameat2, AT_FDCWD, from, AT_FDCWD, to, 0));
}

off_t lseek(int file, off_t position, int from) noexcept {
    return faults::call(SYS_lseek, file, position, from);
}

off64_t lseek64(int file, off64_t position, int from) noexcept {
    return faults::call(SYS_lseek, file, position, from);
}
}
