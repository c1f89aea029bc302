#include "dom/AttributeBlocks.h"

#include <algorithm>
#include <bit>
#include <iterator>
#include <utility>

#include "dom/Freeing.h"

namespace Xml {
namespace {

constexpr std::size_t kMostInBlock = 256;

std::size_t lowestBit(std::size_t number) { return number & (~number + 1); }

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
    : mBlocks(1), mSums(2), mSize(static_cast<int>(count)) {
    mBlocks.front().reserve(count);
    for (std::size_t i = 0; i < count; ++i) mBlocks.front().emplace_back(attributes[i]);
    countAll();
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

// Goes on by as many blocks as there are in each sum that does not reach the index.
AttributeBlocks::Place AttributeBlocks::placeOf(int index) const {
    std::size_t block = 0;
    for (std::size_t step = std::bit_floor(mBlocks.size()); step > 0; step /= 2) {
        if (block + step > mBlocks.size() || mSums[block + step] > index) continue;
        block += step;
        index -= mSums[block];
    }
    return {block, static_cast<std::size_t>(index)};
}

void AttributeBlocks::count(std::size_t block, int change) {
    for (std::size_t i = block + 1; i <= mBlocks.size(); i += lowestBit(i)) mSums[i] += change;
}

// Needs no memory where there were as many blocks before.
void AttributeBlocks::countAll() {
    mSums.assign(mBlocks.size() + 1, 0);
    for (std::size_t i = 1; i <= mBlocks.size(); ++i) {
        mSums[i] += static_cast<int>(mBlocks[i - 1].size());
        const std::size_t next = i + lowestBit(i);
        if (next <= mBlocks.size()) mSums[next] += mSums[i];
    }
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
        countAll();
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
    count(place.block, 1);
    ++mSize;
}

void AttributeBlocks::splitBlock(std::size_t block) {
    mBlocks.reserve(mBlocks.size() + 1);
    mSums.reserve(mBlocks.size() + 2);
    Block& full = mBlocks[block];
    const auto middle = full.begin() + static_cast<std::ptrdiff_t>(full.size() / 2);
    Block second(std::make_move_iterator(middle), std::make_move_iterator(full.end()));
    full.erase(middle, full.end());
    mBlocks.insert(mBlocks.begin() + static_cast<std::ptrdiff_t>(block) + 1, std::move(second));
    countAll();
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
    --mSize;
    if (!block.empty()) return count(place.block, -1);
    mBlocks.erase(mBlocks.begin() + static_cast<std::ptrdiff_t>(place.block));
    countAll();
}

}  // namespace Xml
