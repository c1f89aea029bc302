#include "faults/FailingPages.h"

#if VEXXML_TESTS_HAVE_PAGES

#include <sys/mman.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>

#include "faults/Plan.h"

namespace faults {
namespace {

thread_local Plan plan;

bool fails() {
    if (!plan.failsNow()) return false;
    errno = ENOMEM;
    return true;
}

}  // namespace

FailingPages::FailingPages(long count, bool& hasFailed) {
    plan = Plan(hasFailed, Failing::FromThenOn, count);
}

FailingPages::~FailingPages() { plan = Plan(); }

}  // namespace faults

// A program's own functions go before those of the libraries, also for the calls of libraries.
extern "C" void* mmap(void* place, std::size_t size, int access, int flags, int file,
                      off_t offset) noexcept {
    if (faults::fails()) return MAP_FAILED;
    // NOLINTNEXTLINE(performance-no-int-to-ptr): that is how the system answers
    return reinterpret_cast<void*>(syscall(SYS_mmap, place, size, access, flags, file, offset));
}

#endif
