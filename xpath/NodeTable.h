#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "VexXml/Dom.h"

namespace Xml {

/// A number for each of some nodes, found in constant time.
class NodeTable {
public:
    using Value = std::uint32_t;

    /// Room for so many nodes at once, to save growing step by step.
    void reserve(std::size_t count);
    void clear();
    /// False, changing nothing, when the node has a number already.
    bool insert(const Object* node, Value value = 0);
    /// The node's number, which becomes `initial` when it has none yet. Valid until the next
    /// insertion.
    Value& valueOf(const Object* node, Value initial);
    /// Null when the node has none. Valid until the next insertion.
    Value* find(const Object* node);
    const Value* find(const Object* node) const;

private:
    struct Slot {
        const Object* node;
        Value value;
    };

    std::size_t placeOf(const Object* node) const;
    void rehash(std::size_t slots);

    /// A power of two of them, at most half of them used. A node stands in the slot that its
    /// address leads to, or the first free one behind that.
    std::vector<Slot> mSlots;
    std::size_t mCount = 0;
};

}  // namespace Xml
