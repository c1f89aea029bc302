#pragma once

#include <cstddef>
#include <memory>
#include <vector>

#include "VexXml/Dom.h"
#include "values/PoolAllocator.h"

namespace Xml {

/// Builds the content of an element from its beginning to its end, as a reader comes across it.
///
/// The tree becomes what the public operations would make of the same, but nodes are made with what
/// they end up with, and the children of an element are attached to it all at once.
class TreeBuilder {
public:
    struct AttributeText {
        const char* name;
        std::size_t nameSize;
        const char* value;  ///< as it stands between the quotes
        std::size_t valueSize;
        bool hasReference;  ///< an "&" in the value
    };

    /// `dtd`, which may be null, is asked for the entities in attribute values.
    TreeBuilder(Element& root, const Dtd* dtd);
    /// Deletes what is not attached.
    ~TreeBuilder();
    TreeBuilder(const TreeBuilder&) = delete;
    TreeBuilder& operator=(const TreeBuilder&) = delete;

    /// The element that content goes into. Not all of its children may be attached yet.
    Element& innermost() { return *mOpen.back().element; }
    /// How many elements are open.
    std::size_t depth() const { return mOpen.size(); }
    bool hasDtd() const { return mDtd != nullptr; }
    bool isAtRoot() const { return mOpen.size() == 1; }
    /// The root has ended.
    bool isComplete() const { return mOpen.empty(); }
    /// Attaches all children of the innermost element, for others to add more.
    void settle() { attachChildren(); }
    /// Leaves the root with those of its children that are complete, and deletes all others.
    void abandon();

    /// Needs: a valid name, and valid names of attributes.
    void beginElement(const char* name, std::size_t size,
                      const std::vector<AttributeText>& attributes);
    void beginElement(std::unique_ptr<Element> element);
    void endElement();
    /// An element that has no content. Needs: as for one that has.
    void addElement(const char* name, std::size_t size,
                    const std::vector<AttributeText>& attributes);
    void addElement(std::unique_ptr<Element> element);
    /// Adds character data of that escaped text.
    void addCharData(const char* text, std::size_t size);
    /// The same, of a text in which special characters stand for themselves.
    void addPlainText(const char* text, std::size_t size);

private:
    struct Open {
        Element* element;
        std::size_t firstChild;  ///< the place in `mChildren` of the first that is not attached
    };

    std::unique_ptr<Element> makeElement(const char* name, std::size_t size,
                                         const std::vector<AttributeText>& attributes);
    void setAttributes(Element& element, const std::vector<AttributeText>& attributes);
    bool orderAttributes(const std::vector<AttributeText>& attributes);
    bool areNamedAsBefore(const std::vector<AttributeText>& attributes) const;
    DataHolder valueOf(const AttributeText& attribute) const;
    void addText(std::unique_ptr<CharData> text);
    void add(std::unique_ptr<Object> child);
    void attachChildren();
    void deleteChildren(std::size_t from) noexcept;

    const Dtd* mDtd;
    /// The names of the attributes of the latest element that has some, in the order of the text,
    /// and the places there of all in the order of the names. The next one mostly has the same.
    std::vector<Detail::NodeName> mNames;
    std::vector<std::size_t> mOrder;
    std::vector<Open, PoolAllocator<Open>> mOpen;
    /// Owned: the children of the open elements that are not attached, those of outer ones first.
    /// The open elements, but for the root, are among them.
    std::vector<Object*, PoolAllocator<Object*>> mChildren;
};

}  // namespace Xml
