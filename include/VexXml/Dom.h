#pragma once

/// The tree: a document, its elements, their attributes and character data.
///
/// Ownership is strictly a tree: a document owns its root and its DTD, an element its children and
/// attributes. `extract…` hands a node back to the caller, `clone` gives a copy that the caller
/// owns. Everything else that is handed out is a pointer or reference into the tree.
///
/// Several threads may each work on trees of their own, whatever they do, and a tree may be freed
/// by another thread than made it. In one tree they may run `const` operations at the same time,
/// copies and queries included, as long as nobody changes it, its DTD or a node of it. The one
/// exception is `toString`, which keeps its text in the node: nothing else may happen to that node
/// meanwhile. Writing is no `const` operation, as each node notes where it was written. Trees may
/// share a DTD and be validated against it at the same time, as long as nobody changes it.
///
/// Where memory runs out, `std::bad_alloc` comes out of what was called. What was to be handed over
/// then stays the caller's, and everything can be used as before. Freeing and moving need no
/// memory, but for moving attributes.

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <new>
#include <string>
#include <utility>
#include <vector>

#include "VexXml/Export.h"
#include "VexXml/Values.h"

namespace Xml {

class Attribute;
class AttributeList;
class CharData;
class Document;
class Dtd;
class Element;
class Object;
class OutStream;
class ReplacedText;

namespace Detail {

/// The name of a node. Nodes of the same name share its text, unless there are very many names.
///
/// What few nodes need lies with the name, so that others need not have room for it; such a node
/// has its name for itself.
class VEXXML_API NodeName {
public:
    /// For a single node.
    struct Texts {
        std::string name;
        std::string shown;     ///< the text that `toString` gave
        std::string heldName;  ///< see `Attribute::heldName`
        bool hasHeldName = false;
    };

    /// Empty.
    NodeName() noexcept;
    explicit NodeName(const std::string& text) : mTagged(tagFor(text)) {}
    NodeName(const char* bytes, std::size_t size) : mTagged(tagFor(bytes, size)) {}
    /// Takes the name alone.
    NodeName(const NodeName& other)
        : mTagged(other.isOwn() ? tagFor(other.own().name) : other.mTagged) {}
    NodeName(NodeName&& other) noexcept;
    NodeName& operator=(NodeName other) noexcept;
    ~NodeName() {
        if (isOwn()) deleteOwn();
    }

    const std::string& text() const { return isOwn() ? own().name : *shared(); }
    /// The text that the nodes of that name share; null when none do.
    static const std::string* sharedText(const std::string& name);
    /// The text that this shares with others of the name; null when it does not.
    const std::string* sharedText() const { return isOwn() ? nullptr : shared(); }
    /// Whether this is `name`, whose shared text is that. Needs: the name is not empty.
    bool is(const std::string& name, const std::string* sharedText) const {
        return isOwn() ? own().name == name : shared() == sharedText;
    }
    /// Null when the name is shared.
    const Texts* texts() const { return isOwn() ? &own() : nullptr; }
    /// The name is not shared from now on.
    Texts& ownTexts();
    void swap(NodeName& other) noexcept { std::swap(mTagged, other.mTagged); }

private:
    bool isOwn() const { return (reinterpret_cast<std::uintptr_t>(mTagged) & 1) != 0; }
    Texts& own() const { return *reinterpret_cast<Texts*>(const_cast<char*>(mTagged) - 1); }
    const std::string* shared() const { return reinterpret_cast<const std::string*>(mTagged); }
    static const char* tagFor(const std::string& name) { return tagFor(name.data(), name.size()); }
    static const char* tagFor(const char* name, std::size_t size);
    static const char* makeOwn(const char* name, std::size_t size);
    void deleteOwn() noexcept;

    /// The address of a shared text, or that of texts of its own plus 1.
    const char* mTagged;
};

/// A link to a node, or none, and three flags. They take the low bits of the address, which is a
/// multiple of 8.
template <class Node>
class FlaggedLink {
public:
    /// To none.
    explicit FlaggedLink(unsigned flags) : mBits(flags) {}

    Node* target() const {
        // NOLINTNEXTLINE(performance-no-int-to-ptr): nodes take an eighth less memory
        return reinterpret_cast<Node*>(mBits & ~kFlags);
    }
    /// Leaves the flags as they are.
    void setTarget(Node* node) {
        mBits = reinterpret_cast<std::uintptr_t>(node) | (mBits & kFlags);
    }
    bool has(unsigned flag) const { return (mBits & flag) != 0; }
    void mark(unsigned flag, bool on) { mBits = on ? mBits | flag : mBits & ~std::uintptr_t{flag}; }

private:
    static constexpr std::uintptr_t kFlags = 7;

    alignas(8) std::uintptr_t mBits;
};

struct AttributeListDeleter {
    void operator()(AttributeList* list) const noexcept;
};

/// The children of an element, in the order of the document. Does not own them.
class VEXXML_API ChildList {
public:
    ChildList() = default;
    ~ChildList() { freeBlock(); }
    ChildList(const ChildList&) = delete;
    ChildList& operator=(const ChildList&) = delete;

    std::size_t size() const { return isBlock() ? block()->size : mOnly != nullptr ? 1 : 0; }
    bool empty() const { return size() == 0; }
    Object* const* begin() const { return isBlock() ? block()->items() : &mOnly; }
    Object* const* end() const { return begin() + size(); }
    Object* operator[](std::size_t index) const { return begin()[index]; }
    Object* back() const { return end()[-1]; }
    /// The size when it is not there. Costs in proportion to how far it is from the nearer end.
    std::size_t placeOf(const Object* child) const;

    /// Makes room for so many children in all. Within it nothing that follows throws.
    void reserve(std::size_t count);
    /// Makes room for one more at that place, and for some after it.
    void makeRoom(std::size_t place);
    void append(Object* const* children, std::size_t count);
    void insert(std::size_t place, Object* child);
    void erase(std::size_t place);
    void pop_back();
    /// Needs: not more than there are.
    void truncate(std::size_t count);
    void replace(std::size_t place, Object* child) { items()[place] = child; }
    void swap(ChildList& other) noexcept { std::swap(mOnly, other.mOnly); }

private:
    /// What lies in front of the children. It takes as much room as a child, so that it can move to
    /// where the first one was. Then the number of places in front of it stands in the last of
    /// them.
    struct Block {
        std::uint32_t size;
        std::uint32_t capacity : 31;
        std::uint32_t hasGap : 1;

        Object** items() { return reinterpret_cast<Object**>(this + 1); }
    };

    bool isBlock() const { return (reinterpret_cast<std::uintptr_t>(mOnly) & 1) != 0; }
    Block* block() const { return reinterpret_cast<Block*>(reinterpret_cast<char*>(mOnly) - 1); }
    Object** items() { return isBlock() ? block()->items() : &mOnly; }
    std::size_t capacity() const { return isBlock() ? block()->capacity : 1; }
    void setSize(std::size_t size);
    std::size_t gap() const;
    Object** allPlaces() const { return reinterpret_cast<Object**>(block()) - gap(); }
    void setBlock(Object** places, std::size_t gap, std::size_t size, std::size_t capacity);
    void allocate(std::size_t count, bool inMiddle);
    void moveToMiddle();
    void freeBlock() noexcept;

    /// The only child, or null; or the address of a block plus 1.
    Object* mOnly = nullptr;
};

}  // namespace Detail

/// The base of every node: its place in the tree, the DTD it is read against, and whether it
/// changed since it was written.
///
/// A copied node is detached: it has no parent, and counts as changed and never written.
class VEXXML_API Object {
public:
    virtual ~Object();
    /// Nodes are allocated together, as trees consist of very many. `new` and `delete` are used as
    /// ever.
    /// @{
    static void* operator new(std::size_t size);
    static void* operator new(std::size_t size, std::align_val_t alignment);
    static void* operator new(std::size_t, void* place) noexcept { return place; }
    static void operator delete(void* node, std::size_t size) noexcept;
    static void operator delete(void* node, std::size_t size, std::align_val_t alignment) noexcept;
    static void operator delete(void*, void*) noexcept {}
    /// @}
    /// Sets the DTD that entities and attribute defaults are looked up in; null for none. The DTD
    /// is not owned and must outlive the link.
    virtual void setDtd(const Dtd* dtd);
    /// A copy of the node and all below it, owned by the caller.
    virtual Object* clone() const = 0;
    /// A short text for people, valid until the next call or change; see each kind of node. Nothing
    /// else may happen to the node meanwhile, although this is `const`.
    virtual const std::string& toString() const = 0;
    /// Whether the node is of that kind. Each node is of one.
    /// @{
    virtual bool isElement() const;
    virtual bool isAttribute() const;
    virtual bool isCharData() const;
    virtual bool isDtd() const;
    virtual bool isDocument() const;
    /// @}

    /// The node that holds this one; null at the top.
    Object* getParent() const { return mParent.target(); }
    /// Only sets the link: the node does not become a child by it, and nothing is touched.
    void setParent(Object* parent);

    /// Marks this node and everything above it as changed and no longer bound to a DTD.
    void touch();

    /// Writes the node.
    ///
    /// With the read/write optimisation on, a node that is unchanged since it was last written and
    /// would begin at the same position is passed over: the stream moves to where its text ends.
    /// The tabs that indent it count as part of its text, and so stay where it is no longer
    /// indented.
    void toStream(OutStream& out);
    /// Switches the read/write optimisation for the whole process and returns the previous setting,
    /// off at first. It serves to write a changed document again to where it was written before.
    static bool setRWOptimization(bool on);

    /// The node itself when it is of that kind; otherwise null, and a `Message` reports it.
    /// @{
    Element* toElement();
    const Element* toElement() const;
    Attribute* toAttribute();
    const Attribute* toAttribute() const;
    CharData* toCharData();
    const CharData* toCharData() const;
    Dtd* toDtd();
    const Dtd* toDtd() const;
    Document* toDocument();
    const Document* toDocument() const;
    /// @}

protected:
    Object();
    /// Takes over the DTD link alone.
    Object(const Object& other);
    /// Takes over everything, the link to the parent included.
    Object& operator=(const Object& other);

    /// Writes all of the node. `toStream` calls it, unless the node is passed over.
    virtual void write(OutStream& out) const = 0;

private:
    friend class Attribute;
    friend class AttributeList;
    friend struct AttributeDeleter;
    friend class CharData;
    friend class Document;
    friend class Element;
    friend class NodeAccess;
    friend class TreeBuilder;

    // The holder is null for none.
    void linkTo(Object* holder) {
        mParent.setTarget(holder);
        mark(Held, holder != nullptr);
    }
    bool isPathTouched() const;
    bool followsParent() const;
    bool beginWrite(int position);
    void endWrite(int position);
    void forgetTouchedPaths();
    static void forgetTouchedPathsBelow(Element& top);
    static Element* nextTouchedPath(Element& element);
    void forgetBoundAbove();
    bool isWhollyBoundTo(const Dtd* dtd) const;

    /// The first three lie with the link to the DTD, the others with that to the parent.
    enum Flag : unsigned char {
        Touched = 1,
        /// Everything from here to the top is touched and unbound, and writing or binding any of it
        /// does so to this node too. So `touch` need not go on from here. Only elements and
        /// documents are marked like this, and below one that is not marked none is.
        PathTouched = 2,
        /// Everything below is bound to the DTD of this node, so `setDtd` need not go there again.
        SubtreeBound = 4,
        /// By the parent, rather than linked to it by `setParent` alone.
        Held = 8,
        /// Of an attribute: among those of an element.
        Listed = 16,
        /// Of an element: not marked only as long as all children are elements.
        MayHoldText = 16,
        /// Of an element: not marked only as long as all children are character data. So much of a
        /// search can be left out, as most elements hold only text.
        MayHoldElements = 32,
        /// Of an attribute: it lies in the memory of a list of attributes.
        InList = 32,
        /// Of character data: the caller may change the escaped text unseen.
        Exposed = 32
    };

    const Dtd* dtd() const { return mDtd.target(); }
    bool is(Flag flag) const { return flag < Held ? mDtd.has(flag) : mParent.has(flag / Held); }
    void mark(Flag flag, bool on) {
        flag < Held ? mDtd.mark(flag, on) : mParent.mark(flag / Held, on);
    }

    Detail::FlaggedLink<const Dtd> mDtd{Touched | SubtreeBound};
    Detail::FlaggedLink<Object> mParent{0};
    int mWriteStart = -1;  ///< where the text began when last written; -1 when never written
    int mWriteEnd = -1;    ///< just behind the text; -1 when never written
};

/// A name and its value, held by an element.
class VEXXML_API Attribute : public Object {
public:
    /// Without a name, and so never written.
    Attribute();
    /// Reports a name that is not valid and keeps it.
    Attribute(const std::string& name, const DataHolder& value);
    Attribute(const Attribute& other);
    Attribute(Attribute&& other);  // NOLINT(performance-noexcept-move-constructor): may allocate
    /// Takes over everything, the link to the parent included.
    Attribute& operator=(const Attribute& other);
    // NOLINTNEXTLINE(performance-noexcept-move-constructor): may allocate
    Attribute& operator=(Attribute&& other);
    ~Attribute() override;

    Object* clone() const override;
    /// The attribute as it is written, such as `id="a&lt;b"`.
    const std::string& toString() const override;
    bool isAttribute() const override;

    /// The name; empty for an attribute without one.
    const std::string& getName() const { return mName.text(); }
    /// The plain value: special characters stand for themselves.
    const DataHolder& getValue() const { return mValue; }
    /// Does not touch; `Element::setAttribute` does.
    void setValue(const DataHolder& value);
    /// False without a name; such an attribute is not written.
    bool isOk() const { return !getName().empty(); }

protected:
    void write(OutStream& out) const override;

private:
    friend class AttributeBlocks;
    friend class AttributeList;
    friend class Element;
    friend class NodeAccess;
    friend class TreeBuilder;

    Attribute(const Detail::NodeName& name, const char* value, std::size_t size);
    const std::string& heldName() const;
    void setHeldName(const std::string& name);
    Detail::NodeName renamedTo(const Detail::NodeName& name) const;
    std::string text() const;

    mutable Detail::NodeName mName;  ///< with the text that `toString` gave
    DataHolder mValue;
};

/// The name of an entity, to build character data that refers to it.
class VEXXML_API Entity {
public:
    /// Reports a name that is not valid and keeps it.
    explicit Entity(const std::string& name);
    Entity(const Entity& other);
    Entity(Entity&& other) noexcept;
    Entity& operator=(const Entity& other);
    Entity& operator=(Entity&& other) noexcept;

    /// The reference: "&", the name, ";".
    const std::string& toString() const;

private:
    std::string mName;
    mutable std::string mText;
};

/// Character data. It holds its text in escaped form, as it stands in a file.
class VEXXML_API CharData : public Object {
public:
    CharData();
    /// Holds the plain `text`, escaped.
    explicit CharData(const DataHolder& text);
    /// Holds the reference to `entity`.
    explicit CharData(const Entity& entity);
    CharData(const CharData& other);
    CharData(CharData&& other) noexcept;
    /// Takes over everything, the link to the parent included.
    CharData& operator=(const CharData& other);
    CharData& operator=(CharData&& other) noexcept;
    ~CharData() override;

    Object* clone() const override;
    /// The plain text, as `getData()` gives it.
    const std::string& toString() const override;
    bool isCharData() const override;

    /// The plain text: references are replaced, those that the DTD declares included. Valid until
    /// the next call behind a change of the node, or of an entity that the text refers to.
    const DataHolder& getData() const;
    void getData(DataHolder* out) const;
    /// Replaces the text by the plain `text`, escaped, and touches.
    void setData(const DataHolder& text);
    /// Replaces the text by the reference to `entity`, and touches.
    void setData(const Entity& entity);

    /// The escaped text, to be changed directly. Does not touch.
    DataHolder& data();
    /// The length of the escaped text in bytes.
    int getSize() const;
    /// Makes room for `size` bytes of escaped text and returns true; a negative size changes
    /// nothing.
    bool reserve(int size);
    /// Cuts the escaped text, or extends it with NULs. True when the length is now `size`.
    bool setSize(int size);
    /// A byte of the escaped text; the index is not checked.
    char& operator[](int index);
    const char& operator[](int index) const;

protected:
    void write(OutStream& out) const override;

private:
    friend class Element;
    friend class NodeAccess;
    friend class TreeBuilder;

    class PlainText;

    CharData(const char* escapedText, std::size_t size);
    bool hasReference() const;
    bool stays(const ReplacedText& plain) const;
    const DataHolder& keep(const ReplacedText& plain) const;
    void forgetPlainText() noexcept;

    DataHolder mData;
    /// The address of what `getData` and `toString` gave, plus 1 as long as that is what they would
    /// make again. Such a one is not changed by reading, so that several threads may read.
    mutable std::atomic<std::uintptr_t> mPlainText{0};
};

/// A named node with attributes and children.
///
/// Indices count from 0. Lookups by plain index find nothing for one that is out of range; lookups
/// by name or attribute give the index-th match and take a negative index for 0. Names compare byte
/// by byte. A pointer to a child or attribute stays valid until that is removed or the element
/// dies.
///
/// Whatever changes an element touches it.
///
/// A class derived from this one should override `clone`, or copies become plain elements. Its own
/// `setDtd`, `clone` and `write` are called for it, one within another, so its elements take call
/// stack for each level of them; plain elements do not. Children die before the element around
/// them.
class VEXXML_API Element : public Object {
public:
    /// Reports a name that is not valid; the name is then empty.
    explicit Element(const std::string& name);
    /// With `text` as its only child.
    Element(const std::string& name, const DataHolder& text);
    Element(const Element& other);
    Element(Element&& other) noexcept;
    /// Becomes a deep copy of `other`, which may be below this one, but keeps its own place.
    Element& operator=(const Element& other);
    /// Takes what `other` holds, which may be below this one but not above, and keeps its own
    /// place.
    Element& operator=(Element&& other) noexcept;
    ~Element() override;

    /// Also sets it on everything below; a subtree that is bound to `dtd` already is left alone.
    void setDtd(const Dtd* dtd) override;
    Object* clone() const override;
    /// The name and the attributes, as in a start tag: `item a="1" b="2"`.
    const std::string& toString() const override;
    bool isElement() const override;

    /// The name, which is empty if none was valid.
    const std::string& getName() const { return mName.text(); }
    /// Reports a name that is not valid and changes nothing.
    void setName(const std::string& name);

    /// Appends `child` and takes ownership; it must not be null or have another owner. The child is
    /// bound to the DTD that this element had, which touching then takes from the element itself.
    void addChild(Object* child);
    /// Appends a new element with `text` as its only child, and returns it.
    Element* addElement(const std::string& name, const DataHolder& text);
    /// As `addChild`, but puts `child` in front of `before` if that is a child.
    void insertChild(const Object* before, Object* child);
    /// Takes `child` out and hands it to the caller; null, changing nothing, if it is no child.
    Object* extractChild(Object* child);
    Object* extractChild(int index);
    /// Deletes all children.
    void killChildren();
    /// Whether the node is one of the children themselves; null is none.
    bool isChild(const Object* node) const;
    /// The index-th child of any kind, or null.
    Object* getChild(int index) {
        return index >= 0 && index < getChildCount() ? mChildren[static_cast<std::size_t>(index)]
                                                     : nullptr;
    }
    /// The index-th child of any kind, or null.
    const Object* getChild(int index) const { return const_cast<Element*>(this)->getChild(index); }
    /// How many children there are, of any kind.
    int getChildCount() const { return static_cast<int>(mChildren.size()); }
    /// The index-th of the children that are elements.
    Element* getElement(int index);
    const Element* getElement(int index) const;

    /// Null when there is no attribute of that name.
    Attribute* getAttribute(const std::string& name);
    const Attribute* getAttribute(const std::string& name) const;
    /// The index-th attribute, in byte order of the names.
    Attribute* getAttribute(int index);
    const Attribute* getAttribute(int index) const;
    /// Defaults from the DTD do not count.
    int getAttributeCount() const;
    /// The attribute's value, else the default that the DTD declares, else an empty text.
    const DataHolder& getAttributeValue(const std::string& name) const;
    /// Adds the attribute or replaces it. Reports a name that is not valid and stores it all the
    /// same.
    void setAttribute(const std::string& name, const DataHolder& value);
    /// Does nothing, touching included, when there is no such attribute.
    void removeAttribute(const std::string& name);
    void removeAttribute(int index);

    /// The plain text of the first child that is character data; empty when there is none.
    const DataHolder& getCharData() const;
    /// Removes character data and appends `text`, which so comes behind child elements.
    ///
    /// Of character data children next to each other only every other one is removed.
    void setCharData(const DataHolder& text);

    /// The index-th child element of that name, or null.
    Element* getElement(const std::string& name, int index = 0);
    const Element* getElement(const std::string& name, int index = 0) const;
    /// The index-th child element that has the attribute with just that value, or null. Defaults
    /// from the DTD do not count.
    Element* getElementByAttribute(const std::string& attName, const DataHolder& value,
                                   int index = 0);
    const Element* getElementByAttribute(const std::string& attName, const DataHolder& value,
                                         int index = 0) const;
    /// `getCharData` of the first child element of that name; empty when there is none.
    const DataHolder& getElementCharData(const std::string& name) const;
    /// `setCharData` on the first child element of that name, if there is one.
    void setElementCharData(const std::string& name, const DataHolder& text);

    /// The index-th element of that name below this one, parents before their children, or null.
    Element* findElement(const std::string& name, int index = 0);
    const Element* findElement(const std::string& name, int index = 0) const;
    /// The index-th element below this one whose `getAttributeValue` is just that value, or null.
    /// Defaults from the DTD count.
    Element* findElementByAttribute(const std::string& attName, const DataHolder& value,
                                    int index = 0);
    const Element* findElementByAttribute(const std::string& attName, const DataHolder& value,
                                          int index = 0) const;
    /// Appends every element of that name below this one, parents before their children.
    void findAllElements(const std::string& name, std::vector<Element*>& found);
    void findAllElements(const std::string& name, std::vector<const Element*>& found) const;
    /// `getCharData` of `findElement(name)`; empty when there is none.
    const DataHolder& findElementCharData(const std::string& name) const;
    /// `setCharData` on `findElement(name)`, if there is one.
    void findAndSetElementCharData(const std::string& name, const DataHolder& text);

    /// Switches, for the whole process, whether an element without children is written as `<a/>`
    /// (true, as at first) or `<a></a>`. Returns the previous setting.
    static bool setShortNotationForEmptyTags(bool on);
    /// What `setShortNotationForEmptyTags` has set.
    static bool usingShortNotationForEmptyTags();

protected:
    void write(OutStream& out) const override;

private:
    friend class AttributeList;
    friend class NodeAccess;
    friend class QuickValidator;
    friend class TreeBuilder;
    friend class Validator;

    class Binder;
    class Writer;
    struct WithoutChildren {};

    Element(const char* name, std::size_t size, WithoutChildren);
    Element(const Element& other, WithoutChildren);
    void holdCopyOf(const Object& child);
    void swapContent(Element& other);
    void destroyChildren();

    bool bindAttributes();
    bool hasBoundChildren() const;
    template <class Visit>
    void forEachAttribute(const Visit& visit) const;
    void holdAttribute(std::unique_ptr<Attribute> attribute);
    void bindNewChild(Object* child);
    void noteChild(const Object& child);
    void insertAt(std::size_t place, Object* child);
    void dropUntrueMarks(Object* child);
    bool hasOnlyElements() const;

    mutable Detail::NodeName mName;  ///< with the text that `toString` gave
    Detail::ChildList mChildren;     ///< owned
    /// Null until there is one.
    std::unique_ptr<AttributeList, Detail::AttributeListDeleter> mAttributes;
};

/// A root element with an optional DTD.
class VEXXML_API Document : public Object {
public:
    /// With neither root nor DTD.
    Document();
    /// Takes ownership of both, which may be null, and binds the root to the DTD.
    explicit Document(Element* root, Dtd* dtd = nullptr);
    Document(const Document& other);
    Document(Document&& other) noexcept;
    /// Becomes a deep copy of `other`.
    Document& operator=(const Document& other);
    Document& operator=(Document&& other) noexcept;
    ~Document() override;

    /// Sets the link of the document alone, not that of its root.
    void setDtd(const Dtd* dtd) override;
    Object* clone() const override;
    /// "<Document> " and the root's name.
    const std::string& toString() const override;
    bool isDocument() const override;

    /// Null when there is none. The document stays the owner.
    Element* getRoot();
    const Element* getRoot() const;
    /// Null when there is none. The document stays the owner.
    Dtd* getDtd();
    const Dtd* getDtd() const;
    /// Hands the root to the caller, bound to no DTD; null when there is none.
    Element* extractRoot();
    /// Hands the DTD to the caller and unbinds the root from it; null when there is none.
    Dtd* extractDtd();

    /// The index-th element of that name, the root included, parents before their children, or
    /// null.
    Element* find(const std::string& name, int index = 0);
    const Element* find(const std::string& name, int index = 0) const;
    /// Every element of that name, the root included, parents before their children.
    std::vector<Element*> findAll(const std::string& name);

    /// Whether the document keeps to its DTD: true without a DTD, false with a DTD but no root.
    /// What is valid becomes bound to the DTD.
    bool validate();

protected:
    void write(OutStream& out) const override;

private:
    friend class DocumentReader;

    bool validate(bool& hasRunOut);
    void linkContent();

    std::unique_ptr<Dtd> mDocumentDtd;
    std::unique_ptr<Element> mRoot;              ///< dies before the DTD that it may refer to
    mutable std::unique_ptr<std::string> mText;  ///< made by `toString`
};

}  // namespace Xml
