#include "dom/AttributeList.h"

#include <algorithm>
#include <new>
#include <utility>

#include "dom/Freeing.h"
#include "values/Pool.h"

namespace Xml {

void Detail::AttributeListDeleter::operator()(AttributeList* list) const noexcept {
    AttributeList::destroy(list);
}

AttributeList::Owner AttributeList::withRoomFor(std::size_t count) {
    return make(static_cast<std::uint32_t>(std::min<std::size_t>(count, kMostInOnePiece)));
}

// Room that there is anyway is used.
AttributeList::Owner AttributeList::make(std::uint32_t capacity) {
    const std::size_t bytes = Pool::usableSize(bytesFor(capacity));
    const std::size_t room = capacity > 0 ? (bytes - sizeof(AttributeList)) / kItemSize : 0;
    return Owner(new (Pool::allocate(bytes)) AttributeList(static_cast<std::uint32_t>(room)));
}

// The attributes stay where they are.
AttributeList::Owner AttributeList::inBlocks(Owner list) {
    Owner moved = make(0);
    moved->blocks() = nullptr;
    moved->blocks() = new AttributeBlocks(list->items(), list->mSize);
    list->mSize = 0;
    return moved;
}

std::size_t AttributeList::bytesFor(std::size_t count) {
    return sizeof(AttributeList) + std::max<std::size_t>(count, 1) * kItemSize;
}

// The library makes all attributes that it holds by itself, so their class is known.
void AttributeList::destroy(AttributeList* list) noexcept {
    if (list->isInBlocks()) {
        delete list->blocks();
    } else {
        for (std::uint32_t i = list->mSize; i > 0; --i) {
            Attribute* item = list->items()[i - 1];
            prefetchBefore(*item);
            deleteExactly(item);
        }
    }
    Pool::release(list, bytesFor(list->mCapacity));
}

Attribute* AttributeList::find(const std::string& name) const {
    if (isInBlocks()) return blocks()->find(name);
    const std::uint32_t place = placeOf(name);
    return holds(place, name) ? items()[place] : nullptr;
}

void AttributeList::insert(Owner& list, std::unique_ptr<Attribute> attribute) {
    if (!list) list = make(1);
    if (list->mSize == kMostInOnePiece) list = inBlocks(std::move(list));
    if (list->isInBlocks()) return list->blocks()->insert(std::move(attribute));
    const std::uint32_t place = list->placeOf(attribute->heldName());
    if (list->mSize == list->mCapacity) {
        Owner larger = make(std::min(list->mSize + 1 + list->mSize / 2, kMostInOnePiece));
        std::copy_n(list->items(), list->mSize, larger->items());
        larger->mSize = std::exchange(list->mSize, 0);
        list = std::move(larger);
    }
    Attribute** const end = list->items() + list->mSize++;
    std::copy_backward(list->items() + place, end, end + 1);
    list->items()[place] = attribute.release();
}

void AttributeList::erase(int index) {
    if (isInBlocks()) return blocks()->erase(index);
    delete items()[index];
    std::copy(items() + index + 1, items() + mSize, items() + index);
    --mSize;
}

bool AttributeList::erase(const std::string& name) {
    if (isInBlocks()) return blocks()->erase(name);
    const std::uint32_t place = placeOf(name);
    if (!holds(place, name)) return false;
    erase(static_cast<int>(place));
    return true;
}

// Where the attribute is, or would be inserted.
std::uint32_t AttributeList::placeOf(const std::string& name) const {
    const auto isBefore = [](const Attribute* attribute, const std::string& wanted) {
        return attribute->heldName() < wanted;
    };
    return static_cast<std::uint32_t>(std::lower_bound(items(), items() + mSize, name, isBefore) -
                                      items());
}

bool AttributeList::holds(std::uint32_t place, const std::string& name) const {
    return place < mSize && items()[place]->heldName() == name;
}

}  // namespace Xml
