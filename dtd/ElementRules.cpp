#include "dtd/ElementRules.h"

#include <algorithm>
#include <functional>
#include <typeinfo>
#include <utility>

#include "dtd/ModelAccess.h"

namespace Xml {
namespace {

// Among so many a name is found as quickly one by one.
constexpr std::size_t kFewAttributes = 16;

}  // namespace

bool ElementRule::allows(const ElementRule& rule) const {
    constexpr std::size_t kFew = 4;
    if (members.size() > kFew) {
        return std::binary_search(members.begin(), members.end(), &rule, std::less<>());
    }
    return std::find(members.begin(), members.end(), &rule) != members.end();
}

// Few names agree in their length and in these bytes.
std::size_t ElementRules::slotOf(const std::string& name) {
    const std::size_t size = name.size();
    if (size == 0) return 0;
    const auto byte = [&](std::size_t index) {
        return static_cast<std::size_t>(static_cast<unsigned char>(name[index]));
    };
    return (size * 31 + byte(0) + byte(size / 2) * 7 + byte(size - 1) * 17) % kSlots;
}

ElementRule& ElementRules::find(const std::string& name) {
    const auto [entry, isNew] = mRules.try_emplace(name);
    if (isNew) {
        const std::string* shared = Detail::NodeName::sharedText(name);
        entry->second.name = shared != nullptr ? shared : &name;
    }
    return entry->second;
}

void ElementRules::fill(ElementRule& rule) {
    rule.content = ElementRule::Content::Other;
    const auto declared = mDtd.mElementDecls.find(*rule.name);
    if (declared == mDtd.mElementDecls.end()) return;
    fillContent(rule, *declared->second);
    const auto list = mDtd.mAttListDecls.find(*rule.name);
    if (list == mDtd.mAttListDecls.end()) return;
    rule.attributes = &list->second;
    for (const auto& [name, def] : list->second) {
        if (def->isRequired()) rule.required.push_back(&name);
    }
    if (list->second.size() <= kFewAttributes) fillSharedNames(rule);
}

void ElementRules::fillSharedNames(ElementRule& rule) {
    for (const auto& [name, def] : *rule.attributes) {
        const std::string* text = Detail::NodeName::sharedText(name);
        if (text != nullptr) rule.sharedNames.push_back({text, def->isRequired()});
    }
}

void ElementRules::fillContent(ElementRule& rule, const ContentSpec& model) {
    using Content = ElementRule::Content;
    const std::type_info& type = typeid(model);
    if (type == typeid(ChildrenSpec)) {
        fillChildren(rule, static_cast<const ChildrenSpec&>(model));
    } else if (type == typeid(MixedSpec)) {
        fillMixed(rule, static_cast<const MixedSpec&>(model));
    } else if (type == typeid(CharSpec)) {
        if (ModelAccess::dtdOf(model) != &mDtd) return;
        rule.content = Content::Mixed;
        rule.allowsText = rule.bindsText = true;
    } else if (type == typeid(EmptySpec)) {
        rule.content = Content::Mixed;
    } else if (type == typeid(AnySpec)) {
        rule.content = Content::Any;
    }
}

void ElementRules::fillMixed(ElementRule& rule, const MixedSpec& model) {
    if (ModelAccess::dtdOf(model) != &mDtd) return;
    for (const std::string& name : ModelAccess::namesOf(model)) rule.members.push_back(&of(name));
    std::sort(rule.members.begin(), rule.members.end(), std::less<>());
    rule.content = ElementRule::Content::Mixed;
    rule.allowsText = rule.bindsText = rule.bindsMembers = true;
}

void ElementRules::fillChildren(ElementRule& rule, const ChildrenSpec& model) {
    if (isChoiceOfNames(rule, model)) {
        rule.content = ElementRule::Content::Mixed;
    } else if (rule.program.compile(model, *this)) {
        rule.content = ElementRule::Content::InOrder;
    }
}

// Such as (a | b)*, which is mixed content but for what it binds.
bool ElementRules::isChoiceOfNames(ElementRule& rule, const ChildrenSpec& model) {
    const RepType repetition = ModelAccess::repetitionOf(model);
    const CpSpec* particle = ModelAccess::particleOf(model);
    if (particle == nullptr || (repetition != RepZeroOrMore && repetition != RepOneOrMore)) {
        return false;
    }
    if (typeid(*particle) == typeid(NameSpec)) {
        if (!addMember(rule, *particle)) return false;
    } else if (typeid(*particle) == typeid(ChoiceSpec)) {
        const auto& choice = static_cast<const ChoiceSpec&>(*particle);
        for (const auto& alternative : ModelAccess::itemsOf(choice)) {
            const CpSpec* name = ModelAccess::particleOf(*alternative);
            const bool isOnce = ModelAccess::repetitionOf(*alternative) == RepOnce;
            if (!isOnce || name == nullptr || !addMember(rule, *name)) return false;
        }
        rule.allowsText = ModelAccess::allowsCharData(choice);
    } else {
        return false;
    }
    std::sort(rule.members.begin(), rule.members.end(), std::less<>());
    // Character data as a choice also succeeds where nothing is left.
    rule.needsMember = repetition == RepOneOrMore && !rule.allowsText;
    return true;
}

bool ElementRules::addMember(ElementRule& rule, const CpSpec& particle) {
    if (typeid(particle) != typeid(NameSpec)) return false;
    const auto& name = static_cast<const NameSpec&>(particle);
    if (ModelAccess::nameOf(name).empty() || ModelAccess::dtdOf(name) != &mDtd) return false;
    rule.members.push_back(&of(ModelAccess::nameOf(name)));
    return true;
}

}  // namespace Xml
