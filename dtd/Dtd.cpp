#include "VexXml/Dtd.h"

#include <string>
#include <utility>

#include "dom/EmptyText.h"
#include "dtd/QuickValidator.h"
#include "dtd/Validator.h"

namespace Xml {
namespace {

/// Owns what is a caller's until it has been stored: after a refusal or a failure it still is.
template <class Item>
struct ReleasedInTheEnd {
    explicit ReleasedInTheEnd(Item* item) : owner(item) {}
    ~ReleasedInTheEnd() { static_cast<void>(owner.release()); }
    ReleasedInTheEnd(const ReleasedInTheEnd&) = delete;
    ReleasedInTheEnd& operator=(const ReleasedInTheEnd&) = delete;

    std::unique_ptr<Item> owner;
};

// Of two of a name the added one stays. Needs no memory.
template <class Map>
void mergeMaps(Map& present, Map& added) {
    for (auto& [name, value] : added) {
        const auto found = present.find(name);
        if (found != present.end()) std::swap(found->second, value);
    }
    present.merge(added);
}

// The same of the attributes in lists of a name.
template <class Lists>
void mergeLists(Lists& present, Lists& added) {
    for (auto& [element, list] : added) {
        const auto found = present.find(element);
        if (found != present.end()) mergeMaps(found->second, list);
    }
    present.merge(added);
}

}  // namespace

Dtd::Dtd(const std::string& name) : mName(name) {}

Dtd::Dtd(const Dtd& other) : Object(other), mName(other.mName), mStepLimit(other.mStepLimit) {
    merge(other, true);
}

Dtd::Dtd(Dtd&& other) noexcept : Object(other) { takeFrom(other); }

// Member by member, so that both share their models: callers rely on it. The links by which models
// find their `Dtd` stay behind, since the models belong to `other`.
Dtd& Dtd::operator=(const Dtd& other) {
    if (this == &other) return *this;
    auto elementDecls = other.mElementDecls;
    auto attListDecls = other.mAttListDecls;
    auto entities = other.mEntities;
    DataHolder name = other.mName;
    mUnknownEntityValue = other.mUnknownEntityValue;
    mUnknownEntityName = other.mUnknownEntityName;
    Object::operator=(other);
    mElementDecls = std::move(elementDecls);
    mAttListDecls = std::move(attListDecls);
    mEntities = std::move(entities);
    mName = std::move(name);
    mStepLimit = other.mStepLimit;
    return *this;
}

Dtd& Dtd::operator=(Dtd&& other) noexcept {
    if (this == &other) return *this;
    Object::operator=(other);
    takeFrom(other);
    return *this;
}

Dtd::~Dtd() {
    for (const auto& link : mModelLinks) *link = nullptr;
}

void Dtd::takeFrom(Dtd& other) {
    mElementDecls = std::exchange(other.mElementDecls, {});
    mAttListDecls = std::exchange(other.mAttListDecls, {});
    mName = std::exchange(other.mName, {});
    mEntities = std::exchange(other.mEntities, {});
    mStepLimit = other.mStepLimit;

    mModelLinks.remove_if([](const auto& link) { return link.use_count() == 1; });
    for (const auto& link : other.mModelLinks) *link = this;
    mModelLinks.splice(mModelLinks.end(), other.mModelLinks);
    other.touch();
}

const std::shared_ptr<Dtd*>& Dtd::modelLink() {
    if (mModelLinks.empty()) mModelLinks.push_back(std::make_shared<Dtd*>(this));
    return mModelLinks.front();
}

Object* Dtd::clone() const { return new Dtd(*this); }

const std::string& Dtd::toString() const {
    static const std::string kText = "<Document Type Description>";
    return kText;
}

bool Dtd::isDtd() const { return true; }

const DataHolder& Dtd::getName() const { return mName; }

bool Dtd::addElementDecl(const std::string& name) {
    std::unique_ptr<ContentSpec> model = std::make_unique<MixedSpec>(this);
    return storeModel(name, model);
}

bool Dtd::addElementDecl(const std::string& name, ContentSpec* spec) {
    ReleasedInTheEnd<ContentSpec> model(spec);
    return storeModel(name, model.owner);
}

bool Dtd::addElementDecl(const std::string& name, CpSpec* cp, RepType rep) {
    std::unique_ptr<CpSpec> particle(cp);
    std::unique_ptr<ContentSpec> model = std::make_unique<ChildrenSpec>(this, cp, rep);
    static_cast<void>(particle.release());
    return storeModel(name, model);
}

bool Dtd::addElementDecl(const std::string& name, const std::string& childName, RepType rep) {
    std::unique_ptr<ContentSpec> model = std::make_unique<ChildrenSpec>(this, childName, rep);
    return storeModel(name, model);
}

bool Dtd::storeModel(const std::string& name, std::unique_ptr<ContentSpec>& model) {
    if (model == nullptr) return false;
    if (mElementDecls.count(name) > 0) {
        Message("<Dtd::addElementDecl> already added " + name);
        return false;
    }
    std::map<std::string, std::shared_ptr<ContentSpec>> added;
    added[name] = std::move(model);
    mElementDecls.merge(added);
    touch();
    return true;
}

bool Dtd::addAttDecl(const std::string& element, const std::string& attribute, AttDef* def) {
    ReleasedInTheEnd<AttDef> definition(def);
    return storeDefinition(element, attribute, definition.owner);
}

bool Dtd::addAttDecl(const std::string& element, const std::string& attribute, AttType type) {
    std::unique_ptr<AttDef> definition = std::make_unique<AttStringType>(type, DataHolder());
    return storeDefinition(element, attribute, definition);
}

bool Dtd::storeDefinition(const std::string& element, const std::string& attribute,
                          std::unique_ptr<AttDef>& def) {
    if (def == nullptr) return false;
    if (findAttDef(element, attribute) != nullptr) {
        // "alraedy", and a function that there is not: callers compare this.
        Message("<Dtd::addAttlistDecl> alraedy added " + element + ' ' + attribute);
        return false;
    }
    std::map<std::string, AttList> added;
    added[element][attribute] = std::move(def);
    mergeLists(mAttListDecls, added);
    touch();
    return true;
}

const AttDef* Dtd::findAttDef(const std::string& element, const std::string& attribute) const {
    const auto list = mAttListDecls.find(element);
    if (list == mAttListDecls.end()) return nullptr;
    const auto def = list->second.find(attribute);
    return def != list->second.end() ? def->second.get() : nullptr;
}

const DataHolder& Dtd::getDefaultValue(const std::string& element,
                                       const std::string& attribute) const {
    const AttDef* def = findAttDef(element, attribute);
    return def != nullptr ? def->getDefault() : emptyText();
}

bool Dtd::hasDefaultValue(const std::string& element, const std::string& attribute) const {
    const AttDef* def = findAttDef(element, attribute);
    return def != nullptr && def->hasDefault();
}

void Dtd::merge(const Dtd& other, bool overwrite) {
    // All clones are made before anything changes: `other` may be this one, and memory may fail.
    std::map<std::string, std::shared_ptr<ContentSpec>> models;
    for (const auto& [name, model] : other.mElementDecls) {
        if (!overwrite && mElementDecls.count(name) > 0) continue;
        models[name] = std::shared_ptr<ContentSpec>(model->clone(this));
    }
    std::map<std::string, AttList> lists;
    for (const auto& [element, list] : other.mAttListDecls) {
        AttList& clones = lists[element];
        for (const auto& [attribute, def] : list) {
            if (!overwrite && findAttDef(element, attribute) != nullptr) continue;
            clones[attribute] = std::shared_ptr<AttDef>(def->clone());
        }
    }
    std::map<std::string, DataHolder> entities;
    for (const auto& [name, value] : other.mEntities) {
        if (overwrite || !isEntityName(name)) entities[name] = value;
    }
    mergeMaps(mElementDecls, models);
    mergeLists(mAttListDecls, lists);
    mergeMaps(mEntities, entities);
}

bool Dtd::validate(Element* element) const {
    bool hasRunOut = false;
    return validate(element, hasRunOut);
}

bool Dtd::validate(Element* element, bool& hasRunOut) const {
    if (QuickValidator(*this).accepts(*element)) return true;
    std::vector<Object*> root{element};
    Validator validator(root, mStepLimit);
    const bool isValid = validator.matchesElement(*this);
    hasRunOut = validator.hasRunOut();
    return isValid;
}

void Dtd::setStepLimit(std::uint64_t steps) { mStepLimit = steps; }

std::uint64_t Dtd::getStepLimit() const { return mStepLimit; }

}  // namespace Xml
