#include "faults/FailingMemory.h"

#include <atomic>
#include <cstdlib>
#include <new>

namespace faults {
namespace {

thread_local Plan plan;
std::atomic<long> live;

void* counted(void* block) {
    if (block != nullptr) ++live;
    return block;
}

void* allocate(std::size_t size) noexcept {
    return plan.failsNow() ? nullptr : counted(std::malloc(size > 0 ? size : 1));
}

void* allocate(std::size_t size, std::align_val_t alignment) noexcept {
    const auto unit = static_cast<std::size_t>(alignment);
    return plan.failsNow() ? nullptr
                           : counted(std::aligned_alloc(unit, (size + unit - 1) / unit * unit));
}

void release(void* block) noexcept {
    if (block != nullptr) --live;
    std::free(block);
}

void* orThrow(void* block) {
    if (block == nullptr) throw std::bad_alloc();
    return block;
}

}  // namespace

FailingMemory::FailingMemory(long count, Failing failing, bool& hasFailed) {
    plan = Plan(hasFailed, failing, count);
}

FailingMemory::~FailingMemory() { plan = Plan(); }

long liveBlocks() { return live; }

}  // namespace faults

using faults::allocate;
using faults::orThrow;
using faults::release;

void* operator new(std::size_t size) { return orThrow(allocate(size)); }
void* operator new[](std::size_t size) { return orThrow(allocate(size)); }
void* operator new(std::size_t size, const std::nothrow_t&) noexcept { return allocate(size); }
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept { return allocate(size); }
void* operator new(std::size_t size, std::align_val_t alignment) {
    return orThrow(allocate(size, alignment));
}
void* operator new[](std::size_t size, std::align_val_t alignment) {
    return orThrow(allocate(size, alignment));
}

void operator delete(void* block) noexcept { release(block); }
void operator delete[](void* block) noexcept { release(block); }
void operator delete(void* block, std::size_t) noexcept { release(block); }
void operator delete[](void* block, std::size_t) noexcept { release(block); }
void operator delete(void* block, const std::nothrow_t&) noexcept { release(block); }
void operator delete[](void* block, const std::nothrow_t&) noexcept { release(block); }
void operator delete(void* block, std::align_val_t) noexcept { release(block); }
void operator delete[](void* block, std::align_val_t) noexcept { release(block); }
void operator delete(void* block, std::size_t, std::align_val_t) noexcept { release(block); }
void operator delete[](void* block, std::size_t, std::align_val_t) noexcept { release(block); }
