#include <algorithm>
#include <typeinfo>
#include <utility>

#include "VexXml/Dom.h"
#include "VexXml/Dtd.h"
#include "dom/AttributeList.h"

namespace Xml {

template <class Visit>
void Element::forEachAttribute(const Visit& visit) const {
    if (mAttributes) mAttributes->forEach(visit);
}

Element::Element(const std::string& name) { setName(name); }

Element::Element(const std::string& name, const DataHolder& text) : Element(name) {
    auto child = std::make_unique<CharData>(text);
    addChild(child.get());
    child.release();
}

Element::Element(const Element& other, WithoutChildren) : Object(other), mName(other.mName) {
    other.forEachAttribute([this](const Attribute& attribute) {
        auto copy = std::make_unique<Attribute>(attribute);
        copy->setHeldName(attribute.heldName());
        holdAttribute(std::move(copy));
    });
    // A copy is touched, which takes its own link alone from it.
    mSubtreeBound = other.mSubtreeBound && other.mDtd == nullptr;
    mDtd = nullptr;
}

Element::Element(const Element& other) : Element(other, WithoutChildren()) {
    // The copies whose children are still to be made.
    std::vector<std::pair<const Element*, Element*>> pending;
    copyChildren(other, pending);
    while (!pending.empty()) {
        const auto [source, copy] = pending.back();
        pending.pop_back();
        copy->copyChildren(*source, pending);
    }
}

// Children of classes that a caller derived copy themselves.
void Element::copyChildren(const Element& other,
                           std::vector<std::pair<const Element*, Element*>>& pending) {
    mChildren.reserve(other.mChildren.size());
    for (const Object* child : other.mChildren) {
        if (typeid(*child) == typeid(Element)) {
            const auto* source = static_cast<const Element*>(child);
            auto copy = std::unique_ptr<Element>(new Element(*source, WithoutChildren()));
            if (!source->mChildren.empty()) pending.emplace_back(source, copy.get());
            mChildren.push_back(copy.release());
        } else {
            mChildren.push_back(child->clone());
        }
        mChildren.back()->linkTo(this);
    }
}

Element::Element(Element&& other) noexcept {
    swapContent(other);
    touch();
    other.touch();
}

Element& Element::operator=(const Element& other) {
    if (this == &other) {
        touch();
        return *this;
    }
    return *this = Element(other);
}

// `other` may be below this element: it is emptied before the old content is destroyed.
Element& Element::operator=(Element&& other) noexcept {
    if (this == &other) return *this;
    Element content(std::move(other));
    swapContent(content);
    touch();
    for (Object* child : mChildren) dropUntrueMarks(child);
    return *this;
}

// The ancestors are not touched: they may be gone before a node that was never their child.
Element::~Element() { destroyChildren(); }

// Everything but the place in the tree and what goes with it.
void Element::swapContent(Element& other) {
    mChildren.swap(other.mChildren);
    mAttributes.swap(other.mAttributes);
    mName.swap(other.mName);
    for (Element* element : {this, &other}) {
        for (Object* child : element->mChildren) child->linkTo(element);
        element->forEachAttribute([=](Attribute& attribute) { attribute.mParent = element; });
        element->mSubtreeBound = element->mChildren.empty() && element->mAttributes == nullptr;
        element->forgetBoundAbove();
    }
}

// Goes down to the last child of the last child and frees upwards, as a tree may be deeper than
// the call stack and freeing must not need memory. Invariant: everything in front of `node`, in
// its parent and all above, is untouched, and nothing is behind it.
void Element::destroyChildren() {
    Element* node = this;
    while (node != this || !mChildren.empty()) {
        if (node->mChildren.empty()) {
            const std::unique_ptr<Element> done(node);
            node = static_cast<Element*>(done->mParent);
            continue;
        }
        Object* child = node->mChildren.back();
        node->mChildren.pop_back();
        if (child->isElement()) {
            child->mParent = node;
            node = child->toElement();
        } else {
            delete child;
        }
    }
}

// A subtree that is bound to `dtd` already is not visited again. Validation binds elements from
// the bottom up, which would otherwise cost more with every level.
void Element::setDtd(const Dtd* dtd) {
    if (mDtd == dtd && mSubtreeBound) return;
    forgetBoundAbove();
    std::vector<Element*> pending;
    bind(dtd, pending);
    while (!pending.empty()) {
        Element* element = pending.back();
        pending.pop_back();
        element->bind(dtd, pending);
    }
}

// Binds the element with all that holds no nodes itself. Child elements join `pending`.
void Element::bind(const Dtd* dtd, std::vector<Element*>& pending) {
    if (mDtd == dtd && mSubtreeBound) return;
    mDtd = dtd;
    if (dtd != nullptr) mPathTouched = false;
    mSubtreeBound = false;
    mSubtreeBound = bindLeaves(dtd, pending);
    if (!mSubtreeBound) forgetBoundAbove();
}

// Whether all children and attributes are, or will be, bound to `dtd` and linked to this element,
// so that it will hear of changes.
bool Element::bindLeaves(const Dtd* dtd, std::vector<Element*>& pending) {
    bool complete = true;
    for (Object* child : mChildren) {
        complete = complete && child->mParent == this;
        if (typeid(*child) == typeid(Element)) {
            pending.push_back(static_cast<Element*>(child));
            continue;
        }
        child->setDtd(dtd);
        complete = complete && child->mDtd == dtd && child->mSubtreeBound;
    }
    forEachAttribute([&](Attribute& attribute) {
        attribute.setDtd(dtd);
        complete = complete && attribute.mParent == this;
    });
    return complete;
}

Object* Element::clone() const { return new Element(*this); }

const std::string& Element::toString() const {
    if (!mText) mText = std::make_unique<std::string>();
    *mText = mName;
    forEachAttribute([this](const Attribute& attribute) {
        if (attribute.isOk()) *mText += ' ' + attribute.text();
    });
    return *mText;
}

bool Element::isElement() const { return true; }

const std::string& Element::getName() const { return mName; }

void Element::setName(const std::string& name) {
    if (!isName(name)) {
        Message("<Element::setName> not a valid name " + name);
        return;
    }
    mName = name;
    touch();
}

void Element::addChild(Object* child) { insertAt(mChildren.size(), child); }

Element* Element::addElement(const std::string& name, const DataHolder& text) {
    auto child = std::make_unique<Element>(name, text);
    addChild(child.get());
    return child.release();
}

void Element::insertChild(const Object* before, Object* child) {
    if (before == nullptr) return addChild(child);
    const auto place = std::find(mChildren.begin(), mChildren.end(), before);
    insertAt(static_cast<std::size_t>(place - mChildren.begin()), child);
}

// What can fail comes first: the child is the element's only once it is among its children.
void Element::insertAt(std::size_t place, Object* child) {
    if (mChildren.size() == mChildren.capacity()) {
        mChildren.reserve(std::max<std::size_t>(4, 2 * mChildren.size()));
    }
    child->setDtd(mDtd);
    mChildren.insert(mChildren.begin() + static_cast<std::ptrdiff_t>(place), child);
    child->linkTo(this);
    if (child->mDtd != mDtd || !child->mSubtreeBound) child->forgetBoundAbove();
    touch();
    dropUntrueMarks(child);
}

// A new child may bring marks along that its place here does not bear out.
void Element::dropUntrueMarks(Object* child) {
    if (!mPathTouched || !child->followsParent()) child->forgetTouchedPaths();
}

Object* Element::extractChild(Object* child) {
    const auto place = std::find(mChildren.begin(), mChildren.end(), child);
    if (child == nullptr || place == mChildren.end()) return nullptr;
    mChildren.erase(place);
    touch();
    child->linkTo(nullptr);
    child->setDtd(nullptr);
    return child;
}

Object* Element::extractChild(int index) { return extractChild(getChild(index)); }

void Element::killChildren() {
    destroyChildren();
    touch();
}

void Element::holdAttribute(std::unique_ptr<Attribute> attribute) {
    attribute->mParent = this;
    if (!mAttributes) mAttributes = std::make_unique<AttributeList>();
    mAttributes->insert(std::move(attribute));
}

void Element::setAttribute(const std::string& name, const DataHolder& value) {
    auto attribute = std::make_unique<Attribute>(name, value);
    attribute->mParent = this;
    attribute->mDtd = mDtd;
    if (Attribute* present = getAttribute(name)) {
        *present = *attribute;
    } else {
        holdAttribute(std::move(attribute));
    }
    touch();
}

void Element::removeAttribute(const std::string& name) {
    if (mAttributes && mAttributes->erase(name)) touch();
}

void Element::removeAttribute(int index) {
    if (getAttribute(index) == nullptr) return;
    mAttributes->erase(index);
    touch();
}

// One pass forward that steps over the child behind each one removed, so of two texts side by side
// the second stays. Deliberate: callers count on the children that are left.
void Element::setCharData(const DataHolder& text) {
    auto replacement = std::make_unique<CharData>(text);
    std::size_t kept = 0;
    for (std::size_t i = 0; i < mChildren.size(); ++i) {
        if (mChildren[i]->isCharData()) {
            delete mChildren[i++];
            if (i == mChildren.size()) break;
        }
        mChildren[kept++] = mChildren[i];
    }
    mChildren.resize(kept);
    addChild(replacement.get());
    replacement.release();
}

}  // namespace Xml
