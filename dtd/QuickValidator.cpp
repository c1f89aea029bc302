#include "dtd/QuickValidator.h"

#include <algorithm>

#include "dom/AttributeList.h"
#include "dom/NodeAccess.h"

namespace Xml {

bool QuickValidator::accepts(Element& root) {
    if (!isExactly<Element>(root)) return false;
    if (!take(root, mRules.of(root.getName()), false, false)) return false;
    while (!mOpen.empty()) {
        if (!takeChildren()) return false;
    }
    return true;
}

// Leaves an element open for the child elements that there are still to go down to.
bool QuickValidator::take(Element& element, ElementRule& rule, bool isBoundByParent,
                          bool willBeBound) {
    mRules.lookUp(rule);
    if (!hasRightAttributes(element, rule)) return false;
    const bool bindsItself = isBoundByParent || rule.attributes != nullptr;
    willBeBound = willBeBound || bindsItself;
    switch (rule.content) {
        case ElementRule::Content::Open:
        case ElementRule::Content::Other:
            return false;
        case ElementRule::Content::Any:
            // Binding would go down to what was not looked at.
            if (willBeBound && !element.mChildren.empty()) return false;
            break;
        case ElementRule::Content::InOrder:
            if (!fits(element, rule)) return false;
            open(element, rule, 0, bindsItself, willBeBound);
            return true;
        case ElementRule::Content::Mixed:
            if (rule.needsMember && element.mChildren.empty()) return false;
            const std::size_t texts = takeText(element, rule, 0, willBeBound);
            if (texts == element.mChildren.size()) break;
            open(element, rule, texts, bindsItself, willBeBound);
            return true;
    }
    if (bindsItself) element.setDtd(&mRules.dtd());
    return true;
}

// Goes on until another element is open, or the last one is done.
bool QuickValidator::takeChildren() {
    const std::size_t depth = mOpen.size();
    while (mOpen.size() == depth) {
        Open& open = mOpen.back();
        const auto& children = open.element->mChildren;
        if (open.next == children.size()) {
            close(open);
            return true;
        }
        const bool isTaken = open.rule->content == ElementRule::Content::InOrder ? takeInOrder(open)
                                                                                 : takeMember(open);
        if (!isTaken) return false;
    }
    return true;
}

bool QuickValidator::takeMember(Open& open) {
    open.next = takeText(*open.element, *open.rule, open.next, open.willBeBound);
    if (open.next == open.element->mChildren.size()) return true;
    Object& child = *open.element->mChildren[open.next++];
    if (!isExactly<Element>(child)) return false;
    auto& element = static_cast<Element&>(child);
    ElementRule& rule = mRules.of(element.getName());
    return open.rule->allows(rule) &&
           take(element, rule, open.rule->bindsMembers, open.willBeBound);
}

bool QuickValidator::takeInOrder(Open& open) {
    ElementRule* rule = mKinds[open.firstKind + open.next];
    Object& child = *open.element->mChildren[open.next++];
    if (rule == nullptr) return true;
    return take(static_cast<Element&>(child), *rule, false, open.willBeBound);
}

// Takes the character data from that child on, and returns where it ends.
std::size_t QuickValidator::takeText(const Element& element, const ElementRule& rule,
                                     std::size_t next, bool willBeBound) const {
    const auto& children = element.mChildren;
    if (!rule.allowsText) return next;
    for (; next < children.size() && isExactly<CharData>(*children[next]); ++next) {
        if (rule.bindsText && !willBeBound) children[next]->Object::setDtd(&mRules.dtd());
    }
    return next;
}

void QuickValidator::open(Element& element, const ElementRule& rule, std::size_t next,
                          bool bindsItself, bool willBeBound) {
    Open& open = mOpen.emplace_back();
    open.element = &element;
    open.rule = &rule;
    open.next = next;
    const bool isInOrder = rule.content == ElementRule::Content::InOrder;
    open.firstKind = mKinds.size() - (isInOrder ? element.mChildren.size() : 0);
    open.bindsItself = bindsItself;
    open.willBeBound = willBeBound;
}

void QuickValidator::close(const Open& open) {
    if (open.bindsItself) open.element->setDtd(&mRules.dtd());
    mKinds.resize(open.firstKind);
    mOpen.pop_back();
}

// Leaves the kinds of the children for as long as the element is open.
bool QuickValidator::fits(const Element& element, const ElementRule& rule) {
    const std::size_t first = mKinds.size();
    for (Object* child : element.mChildren) {
        if (isExactly<Element>(*child)) {
            mKinds.push_back(&mRules.of(static_cast<Element*>(child)->getName()));
        } else if (isExactly<CharData>(*child)) {
            mKinds.push_back(nullptr);
        } else {
            return false;
        }
    }
    return rule.program.run(mKinds.data() + first, mKinds.size() - first, mPlaces) ==
           ModelProgram::Verdict::Fits;
}

// Whether where the names of the attributes lie tells that they are right. Not if one of them has
// its name for itself, which may then be another than it is held under.
bool QuickValidator::hasSharedNames(const Element& element, const ElementRule& rule) {
    const AttributeList* attributes = AttributeList::of(element);
    if (attributes == nullptr) return rule.required.empty();
    std::size_t required = 0;
    const bool hasOther = attributes->anyOf([&](const Attribute& attribute) {
        const std::string* name = NodeAccess::nodeNameOf(attribute).sharedText();
        const auto found = std::find_if(rule.sharedNames.begin(), rule.sharedNames.end(),
                                        [name](const auto& shared) { return shared.text == name; });
        if (found == rule.sharedNames.end()) return true;
        required += found->isRequired ? 1 : 0;
        return false;
    });
    return !hasOther && required == rule.required.size();
}

bool QuickValidator::hasRightAttributes(const Element& element, const ElementRule& rule) {
    if (rule.attributes == nullptr) return element.getAttributeCount() == 0;
    if (hasSharedNames(element, rule)) return true;
    for (const std::string* name : rule.required) {
        if (element.getAttribute(*name) == nullptr) return false;
    }
    bool areDeclared = true;
    if (const AttributeList* attributes = AttributeList::of(element)) {
        attributes->forEach([&](const Attribute& attribute) {
            areDeclared = areDeclared && rule.attributes->count(attribute.getName()) > 0;
        });
    }
    return areDeclared;
}

}  // namespace Xml
