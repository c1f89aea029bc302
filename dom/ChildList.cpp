#include <algorithm>
#include <cstring>

#include "VexXml/Dom.h"
#include "values/Pool.h"

namespace Xml::Detail {
namespace {

constexpr std::size_t kItemSize = sizeof(void*);

}  // namespace

void ChildList::reserve(std::size_t count) {
    if (count <= capacity()) return;
    const std::size_t bytes = Pool::usableSize(sizeof(Block) + count * kItemSize);
    const std::size_t room = (bytes - sizeof(Block)) / kItemSize;
    auto* moved = static_cast<Block*>(Pool::allocate(bytes));
    *moved = {static_cast<std::uint32_t>(size()), static_cast<std::uint32_t>(room)};
    std::copy(begin(), end(), moved->items());
    freeBlock();
    mOnly = reinterpret_cast<Object*>(reinterpret_cast<char*>(moved) + 1);
}

void ChildList::makeRoom() {
    const std::size_t count = size();
    if (count == capacity()) reserve(std::max<std::size_t>(3, 2 * count));
}

void ChildList::append(Object* const* children, std::size_t count) {
    if (count == 0) return;
    const std::size_t old = size();
    if (old + count > capacity()) reserve(old == 0 ? count : std::max(old + count, 2 * old));
    std::copy(children, children + count, items() + old);
    setSize(old + count);
}

void ChildList::insert(std::size_t place, Object* child) {
    makeRoom();
    Object** const first = items();
    const std::size_t old = size();
    std::copy_backward(first + place, first + old, first + old + 1);
    first[place] = child;
    setSize(old + 1);
}

void ChildList::erase(std::size_t place) {
    Object** const first = items();
    std::copy(first + place + 1, first + size(), first + place);
    truncate(size() - 1);
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
    Pool::release(block(), sizeof(Block) + block()->capacity * kItemSize);
    mOnly = nullptr;
}

}  // namespace Xml::Detail
