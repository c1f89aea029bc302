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
///
/// A list lies in one piece of memory with its links to the attributes, unless they are very many:
/// then all of them are in blocks.
class AttributeList {
public:
    using Owner = std::unique_ptr<AttributeList, Detail::AttributeListDeleter>;

    /// An empty list. `append` may be used for so many attributes, if they are not very many.
    static Owner withRoomFor(std::size_t count);
    static bool isVeryMany(std::size_t count) { return count > kMostInOnePiece; }
    /// Frees the attributes too.
    static void destroy(AttributeList* list) noexcept;
    AttributeList(const AttributeList&) = delete;
    AttributeList& operator=(const AttributeList&) = delete;

    /// The attributes of the element; null when it has none.
    static const AttributeList* of(const Element& element) { return element.mAttributes.get(); }

    int size() const { return isInBlocks() ? blocks()->size() : static_cast<int>(mSize); }
    /// Null when there is none.
    Attribute* find(const std::string& name) const;
    /// Needs: an index from 0 to below the size.
    Attribute& at(int index) const { return isInBlocks() ? blocks()->at(index) : *items()[index]; }
    /// Makes a list where there is none, and another where the present one is full. Needs: no
    /// attribute is held under that name.
    static void insert(Owner& list, std::unique_ptr<Attribute> attribute);
    /// Needs: room was made for it, and its name comes behind all others.
    void append(std::unique_ptr<Attribute> attribute) { items()[mSize++] = attribute.release(); }
    /// Needs: an index from 0 to below the size.
    void erase(int index);
    /// False when there is no such attribute.
    bool erase(const std::string& name);

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
        if (isInBlocks()) return blocks()->anyOf(condition);
        for (std::uint32_t i = 0; i < mSize; ++i) {
            if (condition(*items()[i])) return true;
        }
        return false;
    }

private:
    static constexpr std::uint32_t kMostInOnePiece = 128;
    static constexpr std::size_t kItemSize = sizeof(void*);

    explicit AttributeList(std::uint32_t capacity) : mCapacity(capacity) {}
    ~AttributeList() = default;

    static Owner make(std::uint32_t capacity);
    static Owner inBlocks(Owner list);
    static std::size_t bytesFor(std::size_t count);

    bool isInBlocks() const { return mCapacity == 0; }
    Attribute** items() { return reinterpret_cast<Attribute**>(this + 1); }
    Attribute* const* items() const { return reinterpret_cast<Attribute* const*>(this + 1); }
    AttributeBlocks*& blocks() { return *reinterpret_cast<AttributeBlocks**>(this + 1); }
    AttributeBlocks* blocks() const { return const_cast<AttributeList*>(this)->blocks(); }
    std::uint32_t placeOf(const std::string& name) const;
    bool holds(std::uint32_t place, const std::string& name) const;

    // Behind the list lie so many links to attributes, owned; or, for a capacity of 0, one to
    // blocks.
    std::uint32_t mSize = 0;
    std::uint32_t mCapacity;
};

}  // namespace Xml
