#pragma once

#include <cstddef>

namespace Xml {

/// Memory for the few large things: texts of whole documents above all.
///
/// A block comes straight from the system, in large pages where it has such. Some of what is given
/// back is kept for the next document, as fresh pages cost more than copying a text into them; the
/// system may take it when it runs short of memory.
namespace LargeBlocks {

/// From this size on a block counts as large.
constexpr std::size_t kLeast = 131072;

/// Throws `std::bad_alloc`. Needs: at least `kLeast`.
void* allocate(std::size_t size);
/// Needs: the size that the block was allocated with.
void release(void* block, std::size_t size) noexcept;

}  // namespace LargeBlocks
}  // namespace Xml
