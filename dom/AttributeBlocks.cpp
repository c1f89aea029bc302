#include "dom/AttributeBlocks.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "dom/Freeing.h"

namespace Xml {
namespace {

constexpr std::size_t kMostInBlock = 256;

}  // namespace

// The library makes all attributes that it holds by itself, so their class is known.
void AttributeDeleter::operator()(Attribute* attribute) const noexcept {
    if (attribute->is(Object::InList)) {
        attribute->Attribute::~Attribute();
    } else {
        deleteExactly(attribute);
    }
}

// Nothing throws once the attributes have this owner too.
AttributeBlocks::AttributeBlocks(Attribute* const* attributes, std::size_t count)
    : mBlocks(1), mSize(static_cast<int>(count)) {
    mBlocks.front().reserve(count);
    for (std::size_t i = 0; i < count; ++i) mBlocks.front().emplace_back(attributes[i]);
}

AttributeBlocks::Place AttributeBlocks::placeOf(const std::string& name) const {
    const auto endsBefore = [](const Block& block, const std::string& wanted) {
        return block.back()->heldName() < wanted;
    };
    const auto isBefore = [](const Item& attribute, const std::string& wanted) {
        return attribute->heldName() < wanted;
    };
    const auto block = std::lower_bound(mBlocks.begin(), mBlocks.end(), name, endsBefore);
    const auto number = static_cast<std::size_t>(block - mBlocks.begin());
    if (block == mBlocks.end()) {
        return number == 0 ? Place{0, 0} : Place{number - 1, mBlocks.back().size()};
    }
    const auto place = std::lower_bound(block->begin(), block->end(), name, isBefore);
    return {number, static_cast<std::size_t>(place - block->begin())};
}

AttributeBlocks::Place AttributeBlocks::placeOf(int index) const {
    Place place{0, static_cast<std::size_t>(index)};
    while (place.index >= mBlocks[place.block].size()) {
        place.index -= mBlocks[place.block++].size();
    }
    return place;
}

bool AttributeBlocks::holds(const Place& place, const std::string& name) const {
    return place.block < mBlocks.size() && place.index < mBlocks[place.block].size() &&
           mBlocks[place.block][place.index]->heldName() == name;
}

Attribute* AttributeBlocks::find(const std::string& name) const {
    const Place place = placeOf(name);
    return holds(place, name) ? mBlocks[place.block][place.index].get() : nullptr;
}

Attribute& AttributeBlocks::at(int index) const {
    const Place place = placeOf(index);
    return *mBlocks[place.block][place.index];
}

// What can fail comes first.
void AttributeBlocks::insert(std::unique_ptr<Attribute> attribute) {
    if (mBlocks.empty()) {
        mBlocks.emplace_back(1);
        mBlocks.front().front().reset(attribute.release());
        mSize = 1;
        return;
    }
    Place place = placeOf(attribute->heldName());
    if (mBlocks[place.block].size() == kMostInBlock) {
        splitBlock(place.block);
        place = placeOf(attribute->heldName());
    }
    Block& block = mBlocks[place.block];
    block.insert(block.begin() + static_cast<std::ptrdiff_t>(place.index),
                 Item(attribute.release()));
    ++mSize;
}

void AttributeBlocks::splitBlock(std::size_t block) {
    mBlocks.reserve(mBlocks.size() + 1);
    Block& full = mBlocks[block];
    const auto middle = full.begin() + static_cast<std::ptrdiff_t>(full.size() / 2);
    Block second(std::make_move_iterator(middle), std::make_move_iterator(full.end()));
    full.erase(middle, full.end());
    mBlocks.insert(mBlocks.begin() + static_cast<std::ptrdiff_t>(block) + 1, std::move(second));
}

void AttributeBlocks::erase(int index) { erase(placeOf(index)); }

bool AttributeBlocks::erase(const std::string& name) {
    const Place place = placeOf(name);
    if (!holds(place, name)) return false;
    erase(place);
    return true;
}

void AttributeBlocks::erase(const Place& place) {
    Block& block = mBlocks[place.block];
    block.erase(block.begin() + static_cast<std::ptrdiff_t>(place.index));
    if (block.empty()) mBlocks.erase(mBlocks.begin() + static_cast<std::ptrdiff_t>(place.block));
    --mSize;
}

}  // namespace Xml
