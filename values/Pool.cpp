#include "values/Pool.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <memory>
#include <mutex>
#include <new>
#include <utility>

#include "values/LargeBlocks.h"
#include "values/Pages.h"

// Each thread keeps a stock of blocks of each size. What it lacks it takes from the slabs, and what
// it has too much of it gives back to them, many blocks at once. A slab holds blocks of one size;
// it is aligned so that the address of a block tells its slab. Slabs are cut from regions, which
// come from the system. Slabs and regions are shared by all threads, behind one lock.
namespace Xml {
namespace {

// A sanitizer can watch single blocks only if the system makes each.
#if defined(__SANITIZE_ADDRESS__)
constexpr bool kIsPooled = false;
#elif defined(__has_feature)
constexpr bool kIsPooled = !__has_feature(address_sanitizer);
#else
constexpr bool kIsPooled = true;
#endif

// Whatever size is a multiple of 16 has a block size that is one too, so that its blocks are
// aligned for anything that may have such a size.
constexpr std::size_t kGrain = 8;
constexpr std::array<std::uint16_t, 25> kBlockSizes = {16,  24,  32,  40,  48,  56,  64,  80,  96,
                                                       112, 128, 160, 192, 224, 256, 320, 384, 448,
                                                       512, 576, 640, 704, 768, 896, 1024};
constexpr std::size_t kClasses = kBlockSizes.size();
constexpr std::size_t kLargestBlock = kBlockSizes.back();
constexpr std::size_t kSlabSize = 16384;
constexpr std::size_t kFewestSlabs = 4;  // in a region
constexpr std::size_t kMostSlabs = 128;  // the size of a large page, of processors that have such
// So much, 32 MB, may lie idle before regions go back to the system.
constexpr std::size_t kMostIdleSlabs = 2048;

using ClassTable = std::array<std::uint8_t, kLargestBlock / kGrain + 1>;

constexpr ClassTable makeClassTable() {
    ClassTable classes{};
    std::size_t sizeClass = 0;
    for (std::size_t grains = 0; grains < classes.size(); ++grains) {
        while (kBlockSizes[sizeClass] < grains * kGrain) ++sizeClass;
        classes[grains] = static_cast<std::uint8_t>(sizeClass);
    }
    return classes;
}

// By size in grains.
constexpr ClassTable kClassOf = makeClassTable();

using Reciprocals = std::array<std::uint64_t, kClasses>;

constexpr Reciprocals makeReciprocals() {
    Reciprocals reciprocals{};
    for (std::size_t i = 0; i < kClasses; ++i) {
        reciprocals[i] = (std::uint64_t{1} << 32) / kBlockSizes[i] + 1;
    }
    return reciprocals;
}

// Dividing by a block size is multiplying with this and dropping the lower half.
constexpr Reciprocals kReciprocals = makeReciprocals();

bool isPooled(std::size_t size) { return kIsPooled && size <= kLargestBlock; }

bool isLarge(std::size_t size) { return kIsPooled && size >= LargeBlocks::kLeast; }

std::size_t classOf(std::size_t size) { return kClassOf[(size + kGrain - 1) / kGrain]; }

struct Region {
    char* memory;
    std::size_t slabs;
    std::size_t used;  ///< slabs that are not idle
};

// Of a region.
std::size_t alignmentOf(std::size_t slabs) {
    return slabs < kMostSlabs ? kSlabSize : kMostSlabs * kSlabSize;
}

/// The header of a slab, in front of its blocks. It tells which of them are free, so that freeing a
/// block does not touch it: mostly it has left the cache long ago.
struct Slab {
    static constexpr std::size_t kWords = kSlabSize / kBlockSizes.front() / 64;

    Region* region;
    Slab* next;  ///< in the list that the slab is in, if it is in one
    Slab* previous;
    std::uint32_t sizeClass;
    std::uint32_t taken;                     ///< how many blocks are not free
    std::array<std::uint64_t, kWords> free;  ///< a bit for each block
};

constexpr std::size_t kSlabHeader = 192;
static_assert(sizeof(Slab) <= kSlabHeader);

std::uint32_t blocksInSlab(std::size_t sizeClass) {
    return static_cast<std::uint32_t>((kSlabSize - kSlabHeader) * kReciprocals[sizeClass] >> 32);
}

Slab* slabOf(void* block) {
    const auto inside = reinterpret_cast<std::uintptr_t>(block) % kSlabSize;
    return reinterpret_cast<Slab*>(static_cast<char*>(block) - inside);
}

// Needs: a bit is set.
std::size_t lowestBit(std::uint64_t bits) {
    return static_cast<std::size_t>(__builtin_ctzll(bits));
}

char* firstBlock(Slab* slab) { return reinterpret_cast<char*>(slab) + kSlabHeader; }

class SlabList {
public:
    Slab* first() const { return mFirst; }
    void add(Slab* slab) {
        slab->previous = nullptr;
        slab->next = std::exchange(mFirst, slab);
        if (slab->next != nullptr) slab->next->previous = slab;
    }
    void remove(Slab* slab) {
        (slab->previous != nullptr ? slab->previous->next : mFirst) = slab->next;
        if (slab->next != nullptr) slab->next->previous = slab->previous;
    }

private:
    Slab* mFirst = nullptr;
};

/// The free blocks of one size that a thread has at hand: single ones, and a stretch of a slab that
/// has not been divided into blocks yet.
struct Stock {
    static constexpr std::size_t kMost = 128;

    std::size_t count = 0;  ///< of the single ones
    char* stretch = nullptr;
    char* stretchEnd = nullptr;
    std::array<void*, kMost> blocks;

    bool isFull() const { return count == kMost; }
    void add(void* block) { blocks[count++] = block; }
    /// Null when there is none.
    void* take(std::size_t sizeClass) {
        if (count > 0) {
            void* block = blocks[--count];
            return block;
        }
        if (stretch == stretchEnd) return nullptr;
        return std::exchange(stretch, stretch + kBlockSizes[sizeClass]);
    }
};

using Stocks = std::array<Stock, kClasses>;

/// What all threads share. Needs, where nothing else is said: the lock is held.
class Slabs {
public:
    static Slabs& shared() {
        static Slabs& slabs = *new Slabs;  // never destroyed: nodes may live as long as the process
        return slabs;
    }

    std::mutex& lock() { return mLock; }

    // For threads that have given up their stocks already. Needs: the lock is not held.
    void* takeSingle(std::size_t sizeClass);
    void takeSingleBack(void* block);

    /// Adds blocks to an empty stock.
    void fill(Stock& stock, std::size_t sizeClass);
    /// Takes back the `count` blocks that have been longest in the stock.
    void empty(Stock& stock, std::size_t count);

private:
    void fillFrom(Slab& slab, Stock& stock);
    void takeBack(void* block);
    Slab* takeIdleSlab();
    void addRegion();
    void makeIdle(Slab* slab);
    void release(Region* region);

    std::mutex mLock;
    Stocks mStocks;                          ///< for `takeSingle`
    std::array<SlabList, kClasses> mUsable;  ///< slabs that have free blocks and others
    SlabList mIdle;                          ///< slabs all of whose blocks are free
    std::size_t mIdleCount = 0;
    std::size_t mSlabCount = 0;
};

void Slabs::fill(Stock& stock, std::size_t sizeClass) {
    if (Slab* slab = mUsable[sizeClass].first()) {
        fillFrom(*slab, stock);
        return;
    }
    Slab* slab = takeIdleSlab();
    slab->sizeClass = static_cast<std::uint32_t>(sizeClass);
    slab->taken = blocksInSlab(sizeClass);
    slab->free = {};
    stock.stretch = firstBlock(slab);
    stock.stretchEnd = stock.stretch + std::size_t{slab->taken} * kBlockSizes[sizeClass];
}

void Slabs::fillFrom(Slab& slab, Stock& stock) {
    for (std::size_t word = 0; word < Slab::kWords; ++word) {
        for (std::uint64_t& bits = slab.free[word]; bits != 0; bits &= bits - 1) {
            if (stock.isFull()) return;
            const std::size_t number = word * 64 + lowestBit(bits);
            stock.add(firstBlock(&slab) + number * kBlockSizes[slab.sizeClass]);
            ++slab.taken;
        }
    }
    mUsable[slab.sizeClass].remove(&slab);
}

void Slabs::empty(Stock& stock, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) takeBack(stock.blocks[i]);
    std::copy(stock.blocks.begin() + count, stock.blocks.begin() + stock.count,
              stock.blocks.begin());
    stock.count -= count;
}

void Slabs::takeBack(void* block) {
    Slab* slab = slabOf(block);
    const auto offset = static_cast<std::size_t>(static_cast<char*>(block) - firstBlock(slab));
    const std::size_t number = offset * kReciprocals[slab->sizeClass] >> 32;
    if (slab->taken == blocksInSlab(slab->sizeClass)) mUsable[slab->sizeClass].add(slab);
    slab->free[number / 64] |= std::uint64_t{1} << number % 64;
    if (--slab->taken > 0) return;
    mUsable[slab->sizeClass].remove(slab);
    makeIdle(slab);
}

void* Slabs::takeSingle(std::size_t sizeClass) {
    const std::lock_guard<std::mutex> guard(mLock);
    Stock& stock = mStocks[sizeClass];
    if (void* block = stock.take(sizeClass)) return block;
    fill(stock, sizeClass);
    return stock.take(sizeClass);
}

void Slabs::takeSingleBack(void* block) {
    const std::lock_guard<std::mutex> guard(mLock);
    takeBack(block);
}

Slab* Slabs::takeIdleSlab() {
    if (mIdle.first() == nullptr) addRegion();
    Slab* slab = mIdle.first();
    mIdle.remove(slab);
    --mIdleCount;
    ++slab->region->used;
    return slab;
}

// Regions grow with what there is, so that a small tree takes little and a large one few.
void Slabs::addRegion() {
    const std::size_t slabs = std::clamp(mSlabCount / 32, kFewestSlabs, kMostSlabs);
    auto region = std::make_unique<Region>();
    void* memory = Pages::allocate(slabs * kSlabSize, alignmentOf(slabs));
    *region = {static_cast<char*>(memory), slabs, 0};
    for (std::size_t i = slabs; i > 0; --i) {
        Slab* slab = new (region->memory + (i - 1) * kSlabSize) Slab{};
        slab->region = region.get();
        mIdle.add(slab);
    }
    region.release();  // its slabs lead to it
    mIdleCount += slabs;
    mSlabCount += slabs;
}

void Slabs::makeIdle(Slab* slab) {
    mIdle.add(slab);
    ++mIdleCount;
    if (--slab->region->used == 0 && mIdleCount > kMostIdleSlabs) release(slab->region);
}

void Slabs::release(Region* region) {
    for (std::size_t i = 0; i < region->slabs; ++i) {
        mIdle.remove(slabOf(region->memory + i * kSlabSize));
    }
    mIdleCount -= region->slabs;
    mSlabCount -= region->slabs;
    Pages::release(region->memory, region->slabs * kSlabSize, alignmentOf(region->slabs));
    delete region;
}

/// The stocks of a thread, which ends by giving them back.
class ThreadStocks {
public:
    /// Null when the thread has given them back, and when there is no memory for them.
    static Stocks* ofThisThread() noexcept {
        if (mStocks == nullptr && !mHasEnded) {
            static thread_local ThreadStocks stocks;
            // A thread that only gives blocks back must not fail for want of memory.
            if (!stocks.mOwned) stocks.mOwned.reset(new (std::nothrow) Stocks);
            mStocks = stocks.mOwned.get();
        }
        return mStocks;
    }

    ~ThreadStocks() {
        mStocks = nullptr;
        mHasEnded = true;
        if (!mOwned) return;
        Slabs& slabs = Slabs::shared();
        const std::lock_guard<std::mutex> guard(slabs.lock());
        for (std::size_t i = 0; i < kClasses; ++i) {
            Stock& stock = (*mOwned)[i];
            slabs.empty(stock, stock.count);
            for (; stock.stretch != stock.stretchEnd; slabs.empty(stock, 1)) {
                stock.add(stock.take(i));
            }
        }
    }

private:
    ThreadStocks() = default;

    static thread_local Stocks* mStocks;
    static thread_local bool mHasEnded;

    std::unique_ptr<Stocks> mOwned;
};

thread_local Stocks* ThreadStocks::mStocks = nullptr;
thread_local bool ThreadStocks::mHasEnded = false;

void* fillAndTake(Stock& stock, std::size_t sizeClass) {
    Slabs& slabs = Slabs::shared();
    const std::lock_guard<std::mutex> guard(slabs.lock());
    slabs.fill(stock, sizeClass);
    return stock.take(sizeClass);
}

void giveHalfBack(Stock& stock) {
    Slabs& slabs = Slabs::shared();
    const std::lock_guard<std::mutex> guard(slabs.lock());
    slabs.empty(stock, stock.count / 2);
}

}  // namespace

void* Pool::allocate(std::size_t size) {
    if (!isPooled(size)) return isLarge(size) ? LargeBlocks::allocate(size) : ::operator new(size);
    const std::size_t sizeClass = classOf(size);
    Stocks* own = ThreadStocks::ofThisThread();
    if (own == nullptr) return Slabs::shared().takeSingle(sizeClass);
    Stock& stock = (*own)[sizeClass];
    if (void* block = stock.take(sizeClass)) return block;
    return fillAndTake(stock, sizeClass);
}

void Pool::release(void* block, std::size_t size) noexcept {
    if (block == nullptr) return;
    if (!isPooled(size)) {
        return isLarge(size) ? LargeBlocks::release(block, size) : ::operator delete(block);
    }
    Stocks* own = ThreadStocks::ofThisThread();
    if (own == nullptr) return Slabs::shared().takeSingleBack(block);
    Stock& stock = (*own)[classOf(size)];
    if (stock.isFull()) giveHalfBack(stock);
    stock.add(block);
}

std::size_t Pool::usableSize(std::size_t size) {
    return size <= kLargestBlock ? kBlockSizes[classOf(size)] : size;
}

}  // namespace Xml
