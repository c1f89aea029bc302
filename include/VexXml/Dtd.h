#pragma once

/// Document type definitions: what elements may hold, which attributes they have, and entities.

#include <cstdint>
#include <list>
#include <map>
#include <memory>
#include <queue>
#include <string>
#include <unordered_set>
#include <vector>

#include "VexXml/Dom.h"
#include "VexXml/Export.h"
#include "VexXml/Values.h"

namespace Xml {

/// How often a content particle may occur. The values are fixed; any other counts as `RepOnce`.
enum RepType : int {
    RepOnce = 0,        ///< no suffix
    RepOptional = 1,    ///< "?"
    RepZeroOrMore = 2,  ///< "*"
    RepOneOrMore = 3    ///< "+"
};

/// The default declaration of an attribute. The values are fixed; any other counts as `AttImplied`.
enum AttType : int {
    AttValue = 0,     ///< a default value
    AttRequired = 1,  ///< "#REQUIRED"
    AttImplied = 2,   ///< "#IMPLIED"
    AttFixed = 3      ///< "#FIXED" and a value
};

/// What an element may hold: the model of one element declaration.
///
/// A model refers to the `Dtd` that it belongs to, without owning it: child elements are validated
/// through that, and none is valid without one. The link follows a `Dtd` that is moved and is
/// cleared when it is destroyed. Copying keeps it; `clone` sets another.
class VEXXML_API ContentSpec {
public:
    /// Of no DTD when null.
    explicit ContentSpec(Dtd* dtd);
    virtual ~ContentSpec();
    /// Whether the children fit the model. Nodes that fit become bound to the DTD.
    virtual bool validate(std::vector<Object*>* children) const = 0;
    /// Writes the model as it stands in an element declaration.
    virtual void toStream(OutStream& out) const = 0;
    /// A copy that belongs to `newDtd`, owned by the caller.
    virtual ContentSpec* clone(Dtd* newDtd) const = 0;

protected:
    ContentSpec(const ContentSpec&);
    ContentSpec& operator=(const ContentSpec&);

private:
    friend class ModelAccess;

    std::shared_ptr<Dtd*> mDtd;  ///< the link shared with the `Dtd`; null for none
};

/// ANY: whatever there is. Children are neither inspected nor bound.
class VEXXML_API AnySpec : public ContentSpec {
public:
    /// Of no DTD when null.
    explicit AnySpec(Dtd* dtd);

    bool validate(std::vector<Object*>* children) const override;
    void toStream(OutStream& out) const override;
    ContentSpec* clone(Dtd* newDtd) const override;
};

/// EMPTY: no children.
class VEXXML_API EmptySpec : public ContentSpec {
public:
    /// Of no DTD when null.
    explicit EmptySpec(Dtd* dtd);

    bool validate(std::vector<Object*>* children) const override;
    void toStream(OutStream& out) const override;
    ContentSpec* clone(Dtd* newDtd) const override;
};

/// `(#PCDATA)`: character data only.
class VEXXML_API CharSpec : public ContentSpec {
public:
    /// Of no DTD when null.
    explicit CharSpec(Dtd* dtd);

    bool validate(std::vector<Object*>* children) const override;
    void toStream(OutStream& out) const override;
    ContentSpec* clone(Dtd* newDtd) const override;
};

/// `(#PCDATA | a | b)*`: character data and the named elements, in any order.
class VEXXML_API MixedSpec : public ContentSpec {
public:
    /// Without names at first, so that it allows character data alone.
    explicit MixedSpec(Dtd* dtd);
    MixedSpec(const MixedSpec& other);
    MixedSpec(MixedSpec&& other) noexcept;
    MixedSpec& operator=(const MixedSpec& other);
    MixedSpec& operator=(MixedSpec&& other) noexcept;

    /// Appends the name. Reports one that is there already and does not append it.
    void addName(const std::string& name);

    bool validate(std::vector<Object*>* children) const override;
    void toStream(OutStream& out) const override;
    ContentSpec* clone(Dtd* newDtd) const override;

private:
    friend class ModelAccess;

    std::vector<std::string> mNames;              ///< in the order added
    std::unordered_set<std::string> mKnownNames;  ///< the same names
};

class ChildrenSpec;

/// A content particle without its repetition: a name, a choice or a sequence.
class VEXXML_API CpSpec {
public:
    /// Of no DTD when null.
    explicit CpSpec(Dtd* dtd);
    virtual ~CpSpec();
    /// Matches children from the front of the queue, and takes from it what it matched. What was
    /// taken before a failure stays taken: whoever tries something else then restores the queue.
    virtual bool validate(std::queue<Object*>* pending) const = 0;
    /// Writes the particle. `parenthesise` asks for parentheses where they are not needed anyway.
    virtual void toStream(OutStream& out, bool parenthesise) const = 0;
    /// A copy that belongs to `newDtd`, owned by the caller.
    virtual CpSpec* clone(Dtd* newDtd) const = 0;

protected:
    CpSpec(const CpSpec&);
    CpSpec& operator=(const CpSpec&);

private:
    friend class ModelAccess;

    std::shared_ptr<Dtd*> mDtd;  ///< the link shared with the `Dtd`; null for none
};

/// One element of a given name.
class VEXXML_API NameSpec : public CpSpec {
public:
    /// A name that is not valid is dropped without a report: nothing is matched and nothing
    /// written.
    NameSpec(Dtd* dtd, const std::string& name);
    NameSpec(const NameSpec& other);
    NameSpec(NameSpec&& other) noexcept;
    NameSpec& operator=(const NameSpec& other);
    NameSpec& operator=(NameSpec&& other) noexcept;

    bool validate(std::queue<Object*>* pending) const override;
    void toStream(OutStream& out, bool parenthesise) const override;
    CpSpec* clone(Dtd* newDtd) const override;

private:
    friend class ModelAccess;

    std::string mName;
};

/// (a | b): the first of its alternatives that matches.
class VEXXML_API ChoiceSpec : public CpSpec {
public:
    /// Without alternatives at first.
    explicit ChoiceSpec(Dtd* dtd);
    ChoiceSpec(const ChoiceSpec& other);
    ChoiceSpec(ChoiceSpec&& other) noexcept;
    ChoiceSpec& operator=(const ChoiceSpec& other);
    ChoiceSpec& operator=(ChoiceSpec&& other) noexcept;
    ~ChoiceSpec() override;

    /// Appends an alternative: elements of that name.
    void addChoice(const std::string& name, RepType rep);
    /// Takes ownership of the particle.
    void addChoice(CpSpec* cp, RepType rep);
    /// Takes ownership of the node.
    void addChoice(ChildrenSpec* choice);
    /// Makes character data one more alternative, tried last. `clone` does not carry it over.
    void addCharDataAsChoice(bool charData);

    bool validate(std::queue<Object*>* pending) const override;
    /// Reports a choice of fewer than two alternatives, character data not counted, and writes
    /// nothing.
    void toStream(OutStream& out, bool parenthesise) const override;
    CpSpec* clone(Dtd* newDtd) const override;

private:
    friend class ModelAccess;

    std::vector<std::unique_ptr<ChildrenSpec>> mChoices;
    bool mCharDataAsChoice = false;
};

/// (a, b): its items one after the other.
class VEXXML_API SeqSpec : public CpSpec {
public:
    /// Without items at first.
    explicit SeqSpec(Dtd* dtd);
    SeqSpec(const SeqSpec& other);
    SeqSpec(SeqSpec&& other) noexcept;
    SeqSpec& operator=(const SeqSpec& other);
    SeqSpec& operator=(SeqSpec&& other) noexcept;
    ~SeqSpec() override;

    /// Appends an item: elements of that name.
    void add(const std::string& name, RepType rep);
    /// Takes ownership of the particle.
    void add(CpSpec* cp, RepType rep);
    /// Takes ownership of the node.
    void add(ChildrenSpec* item);

    bool validate(std::queue<Object*>* pending) const override;
    /// Reports a sequence without items and writes nothing.
    void toStream(OutStream& out, bool parenthesise) const override;
    CpSpec* clone(Dtd* newDtd) const override;

private:
    friend class ModelAccess;

    std::vector<std::unique_ptr<ChildrenSpec>> mItems;
};

/// A content particle with its repetition; at the top, the model of element-only content.
///
/// Matching is greedy and never goes back: a repeated particle takes all it can, a choice its first
/// alternative that matches, whatever the particles behind it need. So (a+, a) matches nothing. A
/// repeated particle that can match nothing, as in ((a?)*), repeats for ever when a child is left
/// that it does not match.
class VEXXML_API ChildrenSpec : public ContentSpec {
public:
    /// Elements of one name.
    ChildrenSpec(Dtd* dtd, const std::string& name, RepType rep);
    /// Takes ownership of the particle.
    ChildrenSpec(Dtd* dtd, CpSpec* cp, RepType rep);
    ChildrenSpec(const ChildrenSpec& other);
    ChildrenSpec(ChildrenSpec&& other) noexcept;
    ChildrenSpec& operator=(const ChildrenSpec& other);
    ChildrenSpec& operator=(ChildrenSpec&& other) noexcept;
    ~ChildrenSpec() override;

    bool validate(std::vector<Object*>* children) const override;
    /// Matches children from the front of the queue, and takes from it what it matched.
    bool validate(std::queue<Object*>* pending) const;
    void toStream(OutStream& out) const override;
    /// As a particle of another model writes it.
    void toStream(OutStream& out, bool parenthesise) const;
    ChildrenSpec* clone(Dtd* newDtd) const override;

private:
    friend class ModelAccess;

    RepType mRep;
    std::unique_ptr<CpSpec> mCp;
};

/// The declaration of one attribute: its type and its default declaration.
class VEXXML_API AttDef {
public:
    /// Reports a value given with `AttRequired` or `AttImplied` and drops it.
    AttDef(AttType type, const DataHolder& defaultValue);
    virtual ~AttDef();
    /// Writes the attribute type.
    virtual void typeToStream(OutStream& out) const = 0;
    /// Whether the type allows the value.
    virtual bool validate(const DataHolder& value) const = 0;
    /// A copy, owned by the caller.
    virtual AttDef* clone() const = 0;

    /// Whether each element must have the attribute.
    bool isRequired() const;
    /// Whether there is a default value, which may be empty.
    bool hasDefault() const;
    /// Empty when there is none.
    const DataHolder& getDefault() const;
    /// Writes the declaration as it stands behind the attribute's name.
    void toStream(OutStream& out) const;

protected:
    AttDef(const AttDef&);
    AttDef(AttDef&&) noexcept;
    AttDef& operator=(const AttDef&);
    AttDef& operator=(AttDef&&) noexcept;

private:
    AttType mType;
    DataHolder mDefaultValue;
};

/// CDATA: any text.
class VEXXML_API AttStringType : public AttDef {
public:
    /// As that of `AttDef`.
    AttStringType(AttType type, const DataHolder& defaultValue);

    void typeToStream(OutStream& out) const override;
    bool validate(const DataHolder& value) const override;
    AttDef* clone() const override;
};

/// A document type definition: element declarations, attribute lists and general entities.
///
/// Everything is kept, validated and written in byte order of the names.
class VEXXML_API Dtd : public Object {
public:
    /// Without declarations, for documents of that type name.
    explicit Dtd(const std::string& name);
    /// Clones every model and definition, so a choice loses its "#PCDATA" alternative.
    Dtd(const Dtd& other);
    /// Takes the models along as they are, bound to the new object.
    Dtd(Dtd&& other) noexcept;
    /// Takes over everything, the link to the parent included. Shares the models and definitions,
    /// unlike the copy constructor; the models stay bound to `other`, and once that is destroyed
    /// they match no element.
    Dtd& operator=(const Dtd& other);
    Dtd& operator=(Dtd&& other) noexcept;
    ~Dtd() override;

    Object* clone() const override;
    /// "<Document Type Description>".
    const std::string& toString() const override;
    bool isDtd() const override;

    /// The document type name.
    const DataHolder& getName() const;

    /// Declares an element that holds text only.
    ///
    /// Every `addElementDecl` reports a name that is declared already, keeps the first declaration
    /// and answers false.
    bool addElementDecl(const std::string& name);
    /// Takes ownership of the model if the declaration is stored, which one without a model is not.
    bool addElementDecl(const std::string& name, ContentSpec* spec);
    /// Takes ownership of the particle in any case.
    bool addElementDecl(const std::string& name, CpSpec* cp, RepType rep);
    /// Declares an element that holds child elements of one name.
    bool addElementDecl(const std::string& name, const std::string& childName, RepType rep);
    /// Takes ownership of the definition if it is stored, which null is not. Reports an attribute
    /// that is declared already, keeps the first definition and answers false.
    bool addAttDecl(const std::string& element, const std::string& attribute, AttDef* def);
    /// The same for an attribute of type `CDATA` without a value.
    bool addAttDecl(const std::string& element, const std::string& attribute, AttType type);

    /// Empty when there is no default.
    const DataHolder& getDefaultValue(const std::string& element,
                                      const std::string& attribute) const;
    /// Whether there is a default, which may be empty.
    bool hasDefaultValue(const std::string& element, const std::string& attribute) const;

    /// Adds the entity or replaces its value. Does not touch.
    void setEntity(const std::string& name, const DataHolder& value);
    /// Whether an entity of that name is declared.
    bool isEntityName(const std::string& name) const;
    /// Whether any declared entity has just that value.
    bool isEntityValue(const DataHolder& value) const;
    /// Reports an unknown name and gives the reference to it, valid until the next such call, in
    /// whatever thread: with unknown names only one thread may ask at a time.
    const DataHolder& getEntityValue(const std::string& name) const;
    /// The first name, in byte order, with that value. Reports an unknown value and gives its text,
    /// valid until the next such call, in whatever thread: the same holds as for unknown names.
    const std::string& getEntityName(const DataHolder& value) const;

    /// Adds clones of what `other` declares; `overwrite` tells which of two declarations of the
    /// same name stays. Does not touch.
    void merge(const Dtd& other, bool overwrite);

    /// Whether the element and everything below it keep to the declarations. Elements that do
    /// become bound to this DTD with all they hold, even if an element around them does not. Not
    /// bound is an element without an attribute list, unless it stands in mixed content or below
    /// one that is.
    bool validate(Element* element) const;
    /// After so many steps of matching, `validate` answers false: time depends on the models as
    /// much as on the elements, and with a model that repeats what may be nothing it has no end. A
    /// model that is matched from left to right takes none. Without a limit at first.
    void setStepLimit(std::uint64_t steps);
    /// What `setStepLimit` has set.
    std::uint64_t getStepLimit() const;

protected:
    void write(OutStream& out) const override;

private:
    friend class Document;
    friend class ElementRules;
    friend class ModelAccess;
    friend class Validator;

    using AttList = std::map<std::string, std::shared_ptr<AttDef>>;

    bool validate(Element* element, bool& hasRunOut) const;
    bool storeModel(const std::string& name, std::unique_ptr<ContentSpec>& model);
    bool storeDefinition(const std::string& element, const std::string& attribute,
                         std::unique_ptr<AttDef>& def);
    const AttDef* findAttDef(const std::string& element, const std::string& attribute) const;
    void takeFrom(Dtd& other);
    const std::shared_ptr<Dtd*>& modelLink();
    void writeAttList(OutStream& out, const std::string& element) const;

    // Shared only after copy assignment.
    std::map<std::string, std::shared_ptr<ContentSpec>> mElementDecls;
    std::map<std::string, AttList> mAttListDecls;
    DataHolder mName;
    std::map<std::string, DataHolder> mEntities;
    mutable DataHolder mUnknownEntityValue;
    mutable std::string mUnknownEntityName;
    /// By which models find this `Dtd`: none before the first model, several after assignments that
    /// brought the models of another one.
    std::list<std::shared_ptr<Dtd*>> mModelLinks;
    std::uint64_t mStepLimit = static_cast<std::uint64_t>(-1);
};

}  // namespace Xml
