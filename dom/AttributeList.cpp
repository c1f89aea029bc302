#include "dom/AttributeList.h"

#include <algorithm>
#include <new>
#include <utility>

#include "dom/Freeing.h"
#include "values/Bytes.h"
#include "values/Pool.h"

namespace Xml {

void Detail::AttributeListDeleter::operator()(AttributeList* list) const noexcept {
    AttributeList::destroy(list);
}

AttributeList::Owner AttributeList::withRoomFor(std::size_t count) { return make(Packed, count); }

std::size_t AttributeList::bytesFor(Form form, std::size_t count) {
    return frontSize(form) + count * itemSize(form);
}

// Room that there is anyway is used.
AttributeList::Owner AttributeList::make(Form form, std::size_t count) {
    const std::size_t bytes = Pool::usableSize(bytesFor(form, count));
    const std::size_t room = bytes - frontSize(form);
    const std::size_t capacity = form == Packed ? room / sizeof(Attribute) : room / kLink;
    Owner list(new (Pool::allocate(bytes)) AttributeList(form, capacity));
    if (form != Packed) list->packed() = nullptr;
    if (form == Blocks) list->blocks() = nullptr;
    return list;
}

// The attributes stay where they are.
void AttributeList::makeLinks(Owner& list, std::size_t count) {
    Owner linked = make(Links, count);
    linked->mSize = list->mSize;
    for (std::uint32_t i = 0; i < list->mSize; ++i) linked->links()[i] = &list->item(i);
    list->mSize = 0;
    if (list->mForm == Packed) {
        linked->packed() = list.release();
    } else {
        linked->packed() = std::exchange(list->packed(), nullptr);
    }
    list = std::move(linked);
}

void AttributeList::makeBlocks(Owner& list) {
    if (list->mForm == Packed) makeLinks(list, list->mSize);
    Owner inBlocks = make(Blocks, 1);
    inBlocks->blocks() = new AttributeBlocks(list->links(), list->mSize);
    list->mSize = 0;
    inBlocks->packed() = std::exchange(list->packed(), nullptr);
    list = std::move(inBlocks);
}

void AttributeList::destroy(AttributeList* list) noexcept {
    if (list->mForm == Blocks) {
        delete list->blocks();
    } else {
        for (std::uint32_t i = list->mSize; i > 0; --i) {
            Attribute& attribute = list->item(i - 1);
            prefetchBefore(attribute);
            AttributeDeleter()(&attribute);
        }
    }
    if (list->mForm != Packed && list->packed() != nullptr) list->packed()->free();
    list->free();
}

// Of the list alone.
void AttributeList::free() noexcept { Pool::release(this, bytesFor(mForm, mCapacity)); }

// It is mostly among few.
Attribute* AttributeList::find(const std::string& name) const {
    constexpr std::uint32_t kFew = 16;
    if (mForm == Blocks) return blocks()->find(name);
    const std::uint32_t begin = mSize > kFew ? placeOf(name) : 0;
    const std::uint32_t end = mSize > kFew ? std::min(begin + 1, mSize) : mSize;
    for (std::uint32_t i = begin; i < end; ++i) {
        const std::string& held = item(i).heldName();
        if (held.size() == name.size() && Bytes::areEqual(held.data(), name.data(), name.size())) {
            return &item(i);
        }
    }
    return nullptr;
}

Attribute& AttributeList::at(int index) const {
    return mForm == Blocks ? blocks()->at(index) : item(static_cast<std::uint32_t>(index));
}

Attribute& AttributeList::append(const Detail::NodeName& name, const char* value, std::size_t size,
                                 Element& element) {
    auto* attribute = new (attributes() + mSize) Attribute(name, value, size);
    ++mSize;
    attribute->linkTo(&element);
    attribute->mark(Object::Listed, true);
    attribute->mark(Object::InList, true);
    return *attribute;
}

void AttributeList::insert(Owner& list, std::unique_ptr<Attribute> attribute) {
    if (!list) list = make(Links, 1);
    if (list->mForm != Blocks && list->mSize >= kMostInOnePiece) makeBlocks(list);
    if (list->mForm == Blocks) return list->blocks()->insert(std::move(attribute));
    if (list->mForm == Packed || list->mSize == list->mCapacity) {
        makeLinks(list, list->mSize + 1 + list->mSize / 2);
    }
    const std::uint32_t place = list->placeOf(attribute->heldName());
    Attribute** const end = list->links() + list->mSize++;
    std::copy_backward(list->links() + place, end, end + 1);
    list->links()[place] = attribute.release();
}

void AttributeList::erase(Owner& list, int index) {
    if (list->mForm == Blocks) return list->blocks()->erase(index);
    if (list->mForm == Packed) makeLinks(list, list->mSize);
    Attribute** const place = list->links() + index;
    AttributeDeleter()(*place);
    std::copy(place + 1, list->links() + list->mSize, place);
    --list->mSize;
}

bool AttributeList::erase(Owner& list, const std::string& name) {
    if (list->mForm == Blocks) return list->blocks()->erase(name);
    const std::uint32_t place = list->placeOf(name);
    if (place == list->mSize || list->item(place).heldName() != name) return false;
    erase(list, static_cast<int>(place));
    return true;
}

// Where the attribute is, or would be inserted.
std::uint32_t AttributeList::placeOf(const std::string& name) const {
    std::uint32_t begin = 0;
    std::uint32_t end = mSize;
    while (begin < end) {
        const std::uint32_t middle = (begin + end) / 2;
        if (item(middle).heldName() < name) {
            begin = middle + 1;
        } else {
            end = middle;
        }
    }
    return begin;
}

}  // namespace Xml
