#include "xpath/NodeTable.h"

#include <algorithm>

namespace Xml {
namespace {

constexpr std::size_t kFewSlots = 32;

// The upper half of a product mixes all bits of an address; the lower bits of addresses are alike.
std::size_t hashOf(const Object* node) {
    const auto address = static_cast<std::uint64_t>(reinterpret_cast<std::uintptr_t>(node));
    return static_cast<std::size_t>((address * 0x9E3779B97F4A7C15U) >> 32U);
}

}  // namespace

void NodeTable::reserve(std::size_t count) {
    std::size_t slots = std::max(kFewSlots, mSlots.size());
    while (slots < 2 * count) slots *= 2;
    if (slots > mSlots.size()) rehash(slots);
}

// A large table is given up: emptying it for a few nodes at a time would cost more than they do.
void NodeTable::clear() {
    if (mSlots.size() > kFewSlots) {
        mSlots = {};
    } else if (mCount > 0) {
        std::fill(mSlots.begin(), mSlots.end(), Slot{});
    }
    mCount = 0;
}

bool NodeTable::insert(const Object* node, Value value) {
    const std::size_t count = mCount;
    valueOf(node, value);
    return mCount > count;
}

NodeTable::Value& NodeTable::valueOf(const Object* node, Value initial) {
    reserve(mCount + 1);
    Slot& slot = mSlots[placeOf(node)];
    if (slot.node == nullptr) {
        slot = {node, initial};
        ++mCount;
    }
    return slot.value;
}

const NodeTable::Value* NodeTable::find(const Object* node) const {
    if (mCount == 0) return nullptr;
    const Slot& slot = mSlots[placeOf(node)];
    return slot.node != nullptr ? &slot.value : nullptr;
}

NodeTable::Value* NodeTable::find(const Object* node) {
    return const_cast<Value*>(static_cast<const NodeTable&>(*this).find(node));
}

// The node's slot, or the one that it would go to.
std::size_t NodeTable::placeOf(const Object* node) const {
    const std::size_t mask = mSlots.size() - 1;
    std::size_t place = hashOf(node) & mask;
    while (mSlots[place].node != nullptr && mSlots[place].node != node) place = (place + 1) & mask;
    return place;
}

void NodeTable::rehash(std::size_t slots) {
    std::vector<Slot> old(slots);
    old.swap(mSlots);
    for (const Slot& slot : old) {
        if (slot.node != nullptr) mSlots[placeOf(slot.node)] = slot;
    }
}

}  // namespace Xml
