#include "values/LargeBlocks.h"

#include <algorithm>
#include <array>
#include <limits>
#include <mutex>
#include <new>

#include "values/Pages.h"

namespace Xml {
namespace {

constexpr std::size_t kPages = 65536;        // sizes and addresses are multiples of this
constexpr std::size_t kLargePage = 2097152;  // of processors that have such
constexpr std::size_t kMostKept = 16777216;  // bytes, of all blocks kept

struct Block {
    void* memory = nullptr;
    std::size_t size = 0;
};

std::size_t alignmentFor(std::size_t size) { return size < kLargePage ? kPages : kLargePage; }

// Rounded up by at most an eighth, so that texts of like length can use the same block.
std::size_t roundedUp(std::size_t size) {
    std::size_t step = kPages;
    while (step * 16 < size) step *= 2;
    return (size + step - 1) / step * step;
}

/// The blocks that are kept, the one that has been kept for longest first.
class KeptBlocks {
public:
    static KeptBlocks& shared() {
        // Never destroyed: texts may live as long as the process.
        static KeptBlocks& blocks = *new KeptBlocks;
        return blocks;
    }

    /// Null when there is none of just that size.
    void* take(std::size_t size) {
        const std::lock_guard<std::mutex> guard(mLock);
        Block* const end = mBlocks.data() + mCount;
        Block* const found = std::find_if(
            mBlocks.data(), end, [size](const Block& block) { return block.size == size; });
        if (found == end) return nullptr;
        void* memory = found->memory;
        remove(found);
        return memory;
    }

    void keep(const Block& block) {
        const std::lock_guard<std::mutex> guard(mLock);
        while (mCount == mBlocks.size() || mBytes + block.size > kMostKept) {
            const Block oldest = mBlocks.front();
            remove(mBlocks.data());
            Pages::release(oldest.memory, oldest.size, alignmentFor(oldest.size));
        }
        mBlocks[mCount++] = block;
        mBytes += block.size;
    }

private:
    void remove(Block* block) {
        mBytes -= block->size;
        std::copy(block + 1, mBlocks.data() + mCount, block);
        --mCount;
    }

    std::mutex mLock;
    std::array<Block, 16> mBlocks;
    std::size_t mCount = 0;
    std::size_t mBytes = 0;
};

}  // namespace

void* LargeBlocks::allocate(std::size_t size) {
    if (size > std::numeric_limits<std::size_t>::max() / 4) throw std::bad_alloc();
    const std::size_t rounded = roundedUp(size);
    if (void* kept = KeptBlocks::shared().take(rounded)) return kept;
    return Pages::allocate(rounded, alignmentFor(rounded));
}

void LargeBlocks::release(void* block, std::size_t size) noexcept {
    const std::size_t rounded = roundedUp(size);
    if (rounded > kMostKept) return Pages::release(block, rounded, alignmentFor(rounded));
    Pages::offer(block, rounded);
    KeptBlocks::shared().keep({block, rounded});
}

}  // namespace Xml
