#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

#include "VexXml/Dom.h"
#include "dom/AttributeBlocks.h"

namespace Xml {

/// The attributes of an element, in byte order of the names that it holds them under, each at most
/// once. An attribute stays where it is in memory until it is erased.
class AttributeList {
public:
    AttributeList() = default;
    ~AttributeList();
    AttributeList(const AttributeList&) = delete;
    AttributeList& operator=(const AttributeList&) = delete;
    static void* operator new(std::size_t size);
    static void operator delete(void* list, std::size_t size) noexcept;

    /// The attributes of the element; null when it has none.
    static const AttributeList* of(const Element& element) { return element.mAttributes.get(); }

    int size() const { return mBlocks ? mBlocks->size() : static_cast<int>(mSize); }
    /// Null when there is none.
    Attribute* find(const std::string& name) const;
    /// Needs: an index from 0 to below the size.
    Attribute& at(int index) const { return mBlocks ? mBlocks->at(index) : *mItems[index]; }
    /// Needs: no attribute is held under that name.
    void insert(std::unique_ptr<Attribute> attribute);
    /// Needs: an index from 0 to below the size.
    void erase(int index);
    /// False when there is no such attribute.
    bool erase(const std::string& name);

    /// Makes room for so many, unless they are too many for one piece.
    void reserve(std::size_t count);

    /// Calls `visit` with every attribute, in order.
    template <class Visit>
    void forEach(const Visit& visit) const {
        anyOf([&visit](Attribute& attribute) {
            visit(attribute);
            return false;
        });
    }

    /// Whether `condition` holds for some attribute; those behind that are not looked at.
    template <class Condition>
    bool anyOf(const Condition& condition) const {
        for (std::uint32_t i = 0; i < mSize; ++i) {
            if (condition(*mItems[i])) return true;
        }
        return mBlocks && mBlocks->anyOf(condition);
    }

private:
    std::uint32_t placeOf(const std::string& name) const;
    bool holds(std::uint32_t place, const std::string& name) const;
    void moveToBlocks();
    void freeItems() noexcept;

    // Owned, as long as they are few.
    Attribute** mItems = nullptr;
    std::uint32_t mSize = 0;
    std::uint32_t mCapacity = 0;
    std::unique_ptr<AttributeBlocks> mBlocks;  ///< all of them, when they are many
};

}  // namespace Xml
