#pragma once

#include <cstddef>

#include "values/Pool.h"

namespace Xml {

/// For containers that grow large and are gone soon, time and again.
template <class Item>
struct PoolAllocator {
    using value_type = Item;

    PoolAllocator() = default;
    template <class Other>
    // NOLINTNEXTLINE(google-explicit-constructor): allocators convert freely
    PoolAllocator(const PoolAllocator<Other>&) {}

    Item* allocate(std::size_t count) {
        return static_cast<Item*>(Pool::allocate(bytesFor(count)));
    }
    void deallocate(Item* items, std::size_t count) noexcept {
        Pool::release(items, bytesFor(count));
    }

    template <class Other>
    friend bool operator==(const PoolAllocator&, const PoolAllocator<Other>&) {
        return true;
    }
    template <class Other>
    friend bool operator!=(const PoolAllocator&, const PoolAllocator<Other>&) {
        return false;
    }

private:
    // Containers ask for no more than their `max_size`, so the product does not overflow.
    static std::size_t bytesFor(std::size_t count) {
        return count * sizeof(Item);  // NOLINT(bugprone-sizeof-expression): it may be a pointer
    }
};

}  // namespace Xml
