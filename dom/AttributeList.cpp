#include "dom/AttributeList.h"

#include <algorithm>
#include <utility>

#include "values/Pool.h"

namespace Xml {
namespace {

constexpr std::uint32_t kMostInOnePiece = 128;
constexpr std::size_t kItemSize = sizeof(void*);

}  // namespace

AttributeList::~AttributeList() {
    for (std::uint32_t i = 0; i < mSize; ++i) delete mItems[i];
    freeItems();
}

void* AttributeList::operator new(std::size_t size) { return Pool::allocate(size); }

void AttributeList::operator delete(void* list, std::size_t size) noexcept {
    Pool::release(list, size);
}

Attribute* AttributeList::find(const std::string& name) const {
    if (mBlocks) return mBlocks->find(name);
    const std::uint32_t place = placeOf(name);
    return holds(place, name) ? mItems[place] : nullptr;
}

void AttributeList::insert(std::unique_ptr<Attribute> attribute) {
    if (mSize == kMostInOnePiece) moveToBlocks();
    if (mBlocks) return mBlocks->insert(std::move(attribute));
    const std::uint32_t place = placeOf(attribute->heldName());
    if (mSize == mCapacity) reserve(std::min(mSize + 1 + mSize / 2, kMostInOnePiece));
    std::copy_backward(mItems + place, mItems + mSize, mItems + mSize + 1);
    mItems[place] = attribute.release();
    ++mSize;
}

void AttributeList::erase(int index) {
    if (mBlocks) return mBlocks->erase(index);
    delete mItems[index];
    std::copy(mItems + index + 1, mItems + mSize, mItems + index);
    --mSize;
}

bool AttributeList::erase(const std::string& name) {
    if (mBlocks) return mBlocks->erase(name);
    const std::uint32_t place = placeOf(name);
    if (!holds(place, name)) return false;
    erase(static_cast<int>(place));
    return true;
}

void AttributeList::reserve(std::size_t count) {
    if (count <= mCapacity || count > kMostInOnePiece) return;
    const std::size_t bytes = Pool::usableSize(count * kItemSize);
    auto* moved = static_cast<Attribute**>(Pool::allocate(bytes));
    std::copy(mItems, mItems + mSize, moved);
    freeItems();
    mItems = moved;
    mCapacity = static_cast<std::uint32_t>(bytes / kItemSize);
}

// Where the attribute is, or would be inserted.
std::uint32_t AttributeList::placeOf(const std::string& name) const {
    const auto isBefore = [](const Attribute* attribute, const std::string& wanted) {
        return attribute->heldName() < wanted;
    };
    Attribute* const* place = std::lower_bound(mItems, mItems + mSize, name, isBefore);
    return static_cast<std::uint32_t>(place - mItems);
}

bool AttributeList::holds(std::uint32_t place, const std::string& name) const {
    return place < mSize && mItems[place]->heldName() == name;
}

void AttributeList::moveToBlocks() {
    mBlocks = std::make_unique<AttributeBlocks>(mItems, mSize);
    mSize = 0;
    freeItems();
}

void AttributeList::freeItems() noexcept {
    Pool::release(static_cast<void*>(mItems), mCapacity * kItemSize);
    mItems = nullptr;
    mCapacity = 0;
}

}  // namespace Xml
