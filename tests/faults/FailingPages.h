#pragma once

#if defined(__has_feature)
#if __has_feature(address_sanitizer)
#define VEXXML_TESTS_HAVE_PAGES 0
#endif
#elif defined(__SANITIZE_ADDRESS__)
#define VEXXML_TESTS_HAVE_PAGES 0
#endif

/// Under AddressSanitizer all memory comes from `operator new`, by which it can fail.
#ifndef VEXXML_TESTS_HAVE_PAGES
#define VEXXML_TESTS_HAVE_PAGES 1
#endif

namespace faults {

/// While it lives, this thread gets memory by the page only `count` times. Needs:
/// `VEXXML_TESTS_HAVE_PAGES`.
class FailingPages {
public:
    /// `hasFailed` tells whether it did not get some.
    FailingPages(long count, bool& hasFailed);
    ~FailingPages();
    FailingPages(const FailingPages&) = delete;
    FailingPages& operator=(const FailingPages&) = delete;
};

}  // namespace faults
