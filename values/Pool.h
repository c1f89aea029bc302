#pragma once

#include <cstddef>

namespace Xml {

/// Memory for the many small things that trees are made of: nodes, texts, lists. It gives larger
/// blocks too, each by itself.
///
/// Small blocks of like size lie side by side, without anything between them. Each thread takes
/// blocks and gives them back without asking the others; a block may be given back by another
/// thread than took it. Memory that is free again serves the next tree; most of it goes back to the
/// system.
namespace Pool {

/// At least `size` bytes, aligned for anything that is not over-aligned. Throws `std::bad_alloc`.
void* allocate(std::size_t size);
/// Needs: `size` is what the block was allocated with, or what `usableSize` makes of it. Null is
/// left alone.
void release(void* block, std::size_t size) noexcept;
/// How many bytes a block of `size` has room for: the same, or a multiple of 8.
std::size_t usableSize(std::size_t size);

}  // namespace Pool
}  // namespace Xml
