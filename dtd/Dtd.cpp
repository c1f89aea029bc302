#include "VexXml/Dtd.h"

#include <string>
#include <utility>

#include "VexXml/Streams.h"
#include "dom/EmptyText.h"
#include "dtd/QuickValidator.h"
#include "dtd/Validator.h"

namespace Xml {

Dtd::Dtd(const std::string& name) : mName(name) {}

Dtd::Dtd(const Dtd& other) : Object(other), mName(other.mName) { merge(other, true); }

Dtd::Dtd(Dtd&& other) noexcept : Object(other) { takeFrom(other); }

// Member by member, so that both share their models: callers rely on it. The links by which models
// find their `Dtd` stay behind, since the models belong to `other`.
Dtd& Dtd::operator=(const Dtd& other) {
    if (this == &other) return *this;
    Object::operator=(other);
    mElementDecls = other.mElementDecls;
    mAttListDecls = other.mAttListDecls;
    mName = other.mName;
    mEntities = other.mEntities;
    mUnknownEntityValue = other.mUnknownEntityValue;
    mUnknownEntityName = other.mUnknownEntityName;
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
    std::unique_ptr<ContentSpec> model(spec);
    const bool stored = storeModel(name, model);
    // A refused model stays the caller's.
    static_cast<void>(model.release());
    return stored;
}

bool Dtd::addElementDecl(const std::string& name, CpSpec* cp, RepType rep) {
    std::unique_ptr<ContentSpec> model = std::make_unique<ChildrenSpec>(this, cp, rep);
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
    mElementDecls.emplace(name, std::shared_ptr<ContentSpec>(std::move(model)));
    touch();
    return true;
}

bool Dtd::addAttDecl(const std::string& element, const std::string& attribute, AttDef* def) {
    std::unique_ptr<AttDef> definition(def);
    const bool stored = storeDefinition(element, attribute, definition);
    // A refused definition stays the caller's.
    static_cast<void>(definition.release());
    return stored;
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
    mAttListDecls[element].emplace(attribute, std::shared_ptr<AttDef>(std::move(def)));
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
    // Each clone is made before what it replaces is deleted: `other` may be this one.
    for (const auto& [name, model] : other.mElementDecls) {
        if (!overwrite && mElementDecls.count(name) > 0) continue;
        std::shared_ptr<ContentSpec> clone(model->clone(this));
        mElementDecls[name] = std::move(clone);
    }
    for (const auto& [element, list] : other.mAttListDecls) {
        AttList& presentList = mAttListDecls[element];
        for (const auto& [attribute, def] : list) {
            if (!overwrite && presentList.count(attribute) > 0) continue;
            std::shared_ptr<AttDef> clone(def->clone());
            presentList[attribute] = std::move(clone);
        }
    }
    for (const auto& [name, value] : other.mEntities) {
        if (overwrite || !isEntityName(name)) setEntity(name, value);
    }
}

bool Dtd::validate(Element* element) const {
    if (QuickValidator(*this).accepts(*element)) return true;
    std::vector<Object*> root{element};
    return Validator(root).matchesElement(*this);
}

}  // namespace Xml
