#pragma once

#include <cstddef>

namespace Xml {

/// Memory by the large piece, from the system.
namespace Pages {

/// Needs: a power of two as alignment, and multiples of the page size. Throws `std::bad_alloc`.
void* allocate(std::size_t size, std::size_t alignment);
void release(void* pages, std::size_t size, std::size_t alignment) noexcept;
/// Lets the system take them while they are not in use. Their content is lost.
void offer(void* pages, std::size_t size) noexcept;

}  // namespace Pages
}  // namespace Xml
