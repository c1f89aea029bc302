#include "values/Pages.h"

#include <new>

#if defined(__linux__)
#include <sys/mman.h>

#include <cstdint>
#endif

namespace Xml {

#if defined(__linux__)

// Aligned memory is cut out of a larger piece, as the system promises nothing beyond its own page
// size. It may then be mapped by large pages, which cost less to get and to look up.
void* Pages::allocate(std::size_t size, std::size_t alignment) {
    const std::size_t whole = size + alignment;
    void* mapped = mmap(nullptr, whole, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (mapped == MAP_FAILED) throw std::bad_alloc();
    char* const begin = static_cast<char*>(mapped);
    const std::size_t front = alignment - reinterpret_cast<std::uintptr_t>(begin) % alignment;
    munmap(begin, front);
    if (front < alignment) munmap(begin + front + size, alignment - front);
    madvise(begin + front, size, MADV_HUGEPAGE);
    return begin + front;
}

void Pages::release(void* pages, std::size_t size, std::size_t) noexcept { munmap(pages, size); }

void Pages::offer(void* pages, std::size_t size) noexcept { madvise(pages, size, MADV_FREE); }

#else

void* Pages::allocate(std::size_t size, std::size_t alignment) {
    return ::operator new(size, std::align_val_t(alignment));
}

void Pages::release(void* pages, std::size_t, std::size_t alignment) noexcept {
    ::operator delete(pages, std::align_val_t(alignment));
}

void Pages::offer(void*, std::size_t) noexcept {}

#endif

}  // namespace Xml
