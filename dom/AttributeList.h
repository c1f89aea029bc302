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
/// Attributes that were read lie in one piece of memory, side by side. When one is added or erased,
/// they stay there, and a list of links leads to them and to those that are added. If they become
/// very many, the links are in blocks.
class AttributeList {
public:
    using Owner = std::unique_ptr<AttributeList, Detail::AttributeListDeleter>;

    /// An empty list. `append` may be used for so many attributes. Needs: they are not very many.
    static Owner withRoomFor(std::size_t count);
    static bool isVeryMany(std::size_t count) { return count > kMostInOnePiece; }
    /// Frees the attributes too.
    static void destroy(AttributeList* list) noexcept;
    AttributeList(const AttributeList&) = delete;
    AttributeList& operator=(const AttributeList&) = delete;

    /// The attributes of the element; null when it has none.
    static const AttributeList* of(const Element& element) { return element.mAttributes.get(); }

    int size() const { return mForm == Blocks ? blocks()->size() : static_cast<int>(mSize); }
    /// Null when there is none.
    Attribute* find(const std::string& name) const;
    /// Needs: an index from 0 to below the size.
    Attribute& at(int index) const;
    /// Makes an attribute of the element, which holds the list. Needs: room was made for it, and
    /// its name comes behind all others.
    Attribute& append(const Detail::NodeName& name, const char* value, std::size_t size,
                      Element& element);
    /// Makes a list where there is none. Needs: no attribute is held under that name.
    static void insert(Owner& list, std::unique_ptr<Attribute> attribute);
    /// Needs: an index from 0 to below the size.
    static void erase(Owner& list, int index);
    /// False when there is no such attribute.
    static bool erase(Owner& list, const std::string& name);

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
        if (mForm == Blocks) return blocks()->anyOf(condition);
        for (std::uint32_t i = 0; i < mSize; ++i) {
            if (condition(item(i))) return true;
        }
        return false;
    }

private:
    /// What lies behind the list: the attributes themselves; or a link to an earlier list that they
    /// lay behind, or null, and then links to the attributes, or one to blocks.
    enum Form : std::uint16_t { Packed, Links, Blocks };

    static constexpr std::uint32_t kMostInOnePiece = 128;
    static constexpr std::size_t kLink = sizeof(void*);

    AttributeList(Form form, std::size_t capacity)
        : mCapacity(static_cast<std::uint16_t>(capacity)), mForm(form) {}
    ~AttributeList() = default;

    static std::size_t itemSize(Form form) { return form == Packed ? sizeof(Attribute) : kLink; }
    static std::size_t frontSize(Form form) {
        return sizeof(AttributeList) + (form == Packed ? 0 : kLink);
    }
    static std::size_t bytesFor(Form form, std::size_t count);
    static Owner make(Form form, std::size_t count);
    static void makeLinks(Owner& list, std::size_t count);
    static void makeBlocks(Owner& list);
    void free() noexcept;

    Attribute* attributes() { return reinterpret_cast<Attribute*>(this + 1); }
    AttributeList*& packed() { return *reinterpret_cast<AttributeList**>(this + 1); }
    Attribute** links() { return reinterpret_cast<Attribute**>(&packed() + 1); }
    AttributeBlocks*& blocks() { return *reinterpret_cast<AttributeBlocks**>(&packed() + 1); }
    AttributeBlocks* blocks() const { return const_cast<AttributeList*>(this)->blocks(); }
    // Needs: the attributes are not in blocks.
    Attribute& item(std::uint32_t place) const {
        auto* self = const_cast<AttributeList*>(this);
        return mForm == Packed ? self->attributes()[place] : *self->links()[place];
    }
    std::uint32_t placeOf(const std::string& name) const;

    std::uint32_t mSize = 0;  ///< unless the attributes are in blocks
    std::uint16_t mCapacity;
    Form mForm;
};

}  // namespace Xml
