#include <algorithm>
#include <cstring>
#include <new>

#include "VexXml/Dom.h"
#include "values/Pool.h"

namespace Xml::Detail {
namespace {

constexpr std::size_t kItemSize = sizeof(void*);

// Of fewer children it does not matter which are moved.
constexpr std::size_t kMany = 32;

bool isNearFront(std::size_t place, std::size_t size) { return size >= kMany && place < size / 2; }

}  // namespace

std::size_t ChildList::placeOf(const Object* child) const {
    Object* const* const children = begin();
    const std::size_t count = size();
    for (std::size_t i = 0; i < (count + 1) / 2; ++i) {
        if (children[i] == child) return i;
        if (children[count - 1 - i] == child) return count - 1 - i;
    }
    return count;
}

void ChildList::reserve(std::size_t count) {
    if (count > capacity()) allocate(count, false);
}

// Children are moved to the middle only where that makes room for many, so that each costs little
// at whichever end they come and go.
void ChildList::makeRoom(std::size_t place) {
    const std::size_t count = size();
    if (isNearFront(place, count) ? gap() > 0 : count < capacity()) return;
    const std::size_t free = gap() + capacity() - count;
    if (count >= kMany && free > count / 2) {
        moveToMiddle();
    } else if (free == 0 || count >= kMany) {
        allocate(std::max<std::size_t>(3, 2 * count), isNearFront(place, count));
    }
}

// A gap of half of the room in front of the children, or none.
void ChildList::allocate(std::size_t count, bool inMiddle) {
    const std::size_t bytes = Pool::usableSize(sizeof(Block) + count * kItemSize);
    const std::size_t room = (bytes - sizeof(Block)) / kItemSize;
    const std::size_t old = size();
    const std::size_t newGap = inMiddle ? (room - old) / 2 : 0;
    auto** const places = static_cast<Object**>(Pool::allocate(bytes));
    std::copy(begin(), end(), places + newGap + 1);
    freeBlock();
    setBlock(places, newGap, old, room - newGap);
}

// Needs: a block with a free place.
void ChildList::moveToMiddle() {
    const std::size_t count = size();
    const std::size_t room = gap() + capacity();
    const std::size_t newGap = (room - count + 1) / 2;
    Object** const places = allPlaces();
    std::memmove(places + newGap + 1, begin(), count * kItemSize);
    setBlock(places, newGap, count, room - newGap);
}

// Needs: the children are where they are to be.
void ChildList::setBlock(Object** places, std::size_t gap, std::size_t size, std::size_t capacity) {
    if (gap > 0) new (places + gap - 1) std::size_t(gap);
    auto* const moved = new (places + gap) Block;
    moved->size = static_cast<std::uint32_t>(size);
    moved->capacity = static_cast<std::uint32_t>(capacity) & 0x7fffffffU;
    moved->hasGap = gap > 0 ? 1 : 0;
    mOnly = reinterpret_cast<Object*>(reinterpret_cast<char*>(moved) + 1);
}

std::size_t ChildList::gap() const {
    if (!isBlock() || block()->hasGap == 0) return 0;
    return reinterpret_cast<const std::size_t*>(block())[-1];
}

void ChildList::append(Object* const* children, std::size_t count) {
    if (count == 0) return;
    const std::size_t old = size();
    if (old + count > capacity()) reserve(old == 0 ? count : std::max(old + count, 2 * old));
    std::copy(children, children + count, items() + old);
    setSize(old + count);
}

// Needs no memory where there is a free place at either end.
void ChildList::insert(std::size_t place, Object* child) {
    if (gap() == 0 && size() == capacity()) makeRoom(place);
    const std::size_t old = size();
    const std::size_t room = capacity();
    const std::size_t oldGap = gap();
    Object** const first = items();
    if (oldGap > 0 && (isNearFront(place, old) || old == room)) {
        Object** const places = allPlaces();
        std::copy(first, first + place, first - 1);
        setBlock(places, oldGap - 1, old + 1, room + 1);
    } else {
        std::copy_backward(first + place, first + old, first + old + 1);
        setSize(old + 1);
    }
    items()[place] = child;
}

// The fewer ones move into the place.
void ChildList::erase(std::size_t place) {
    Object** const first = items();
    const std::size_t old = size();
    if (!isNearFront(place, old)) {
        std::copy(first + place + 1, first + old, first + place);
        return truncate(old - 1);
    }
    std::copy_backward(first, first + place, first + place + 1);
    setBlock(allPlaces(), gap() + 1, old - 1, capacity() - 1);
}

void ChildList::pop_back() { truncate(size() - 1); }

void ChildList::truncate(std::size_t count) {
    setSize(count);
    if (!isBlock() && count == 0) mOnly = nullptr;
}

// Without a block the only place tells by itself whether there is a child.
void ChildList::setSize(std::size_t size) {
    if (isBlock()) block()->size = static_cast<std::uint32_t>(size);
}

void ChildList::freeBlock() noexcept {
    if (!isBlock()) return;
    Pool::release(allPlaces(), sizeof(Block) + (gap() + block()->capacity) * kItemSize);
    mOnly = nullptr;
}

}  // namespace Xml::Detail
