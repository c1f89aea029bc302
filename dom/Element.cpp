#include <algorithm>
#include <utility>

#include "VexXml/Dom.h"
#include "VexXml/Dtd.h"
#include "dom/AttributeList.h"
#include "dom/Exactly.h"
#include "dom/Freeing.h"

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

// Touched, as setting its name would do.
Element::Element(const char* name, std::size_t size, WithoutChildren) : mName(name, size) {
    mark(PathTouched, true);
}

Element::Element(const Element& other, WithoutChildren) : Object(other), mName(other.mName) {
    mChildren.reserve(other.mChildren.size());
    other.forEachAttribute([this](const Attribute& attribute) {
        auto copy = std::make_unique<Attribute>(attribute);
        copy->setHeldName(attribute.heldName());
        holdAttribute(std::move(copy));
    });
    // A copy is touched, which takes its own link alone from it.
    mark(SubtreeBound, other.is(SubtreeBound) && other.dtd() == nullptr);
    mDtd.setTarget(nullptr);
}

// In document order and without recursion. Invariant: what a copy of `open` lacks of its children
// are copies of those of `source` from `next` on.
Element::Element(const Element& other) : Element(other, WithoutChildren()) {
    struct Open {
        const Element* source;
        Element* copy;
        std::size_t next;
    };
    std::vector<Open> open{{&other, this, 0}};
    while (!open.empty()) {
        const auto [source, copy, next] = open.back();
        if (next == source->mChildren.size()) {
            open.pop_back();
            continue;
        }
        ++open.back().next;
        const Object& child = *source->mChildren[next];
        copy->holdCopyOf(child);
        if (!isExactly<Element>(child)) continue;
        open.push_back({child.toElement(), copy->mChildren.back()->toElement(), 0});
    }
}

// An element is copied without its children. One of a class that a caller derived copies itself.
void Element::holdCopyOf(const Object& child) {
    mChildren.makeRoom(mChildren.size());
    Object* copy = isExactly<Element>(child)
                       ? new Element(static_cast<const Element&>(child), WithoutChildren())
                       : child.clone();
    mChildren.insert(mChildren.size(), copy);
    noteChild(*copy);
    copy->linkTo(this);
    if (copy->dtd() != nullptr || !copy->is(SubtreeBound)) copy->forgetBoundAbove();
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
    for (const Flag flag : {MayHoldText, MayHoldElements}) {
        const bool otherMay = other.is(flag);
        other.mark(flag, is(flag));
        mark(flag, otherMay);
    }
    mChildren.swap(other.mChildren);
    mAttributes.swap(other.mAttributes);
    mName.swap(other.mName);
    for (Element* element : {this, &other}) {
        for (Object* child : element->mChildren) child->linkTo(element);
        element->forEachAttribute([=](Attribute& attribute) { attribute.linkTo(element); });
        element->mark(SubtreeBound, element->mChildren.empty() && element->mAttributes == nullptr);
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
            node = static_cast<Element*>(done->getParent());
            continue;
        }
        Object* child = node->mChildren.back();
        node->mChildren.pop_back();
        prefetchBefore(*child);
        if (isExactly<CharData>(*child)) {
            deleteExactly(static_cast<CharData*>(child));
        } else if (isExactly<Element>(*child) || child->isElement()) {
            child->mParent.setTarget(node);
            node = static_cast<Element*>(child);
        } else {
            delete child;
        }
    }
}

// Binds an element and what is below it. Invariant: of `here` and the elements around it only the
// children from `next` on, and the attributes, are not bound.
class Element::Binder {
public:
    explicit Binder(const Dtd* dtd) : mDtd(dtd) {}

    void bind(Element& top) {
        Open here = open(top);
        while (true) {
            if (Element* inner = bindChildren(here)) {
                mAround.push_back(here);
                here = open(*inner);
                continue;
            }
            const bool isBound = finish(here);
            if (mAround.empty()) return;
            here = mAround.back();
            mAround.pop_back();
            here.areBound = here.areBound && isBound;
        }
    }

private:
    struct Open {
        Element* element;
        std::size_t next;
        bool areBound;  ///< the children in front of `next`, each with all below it
    };

    Open open(Element& element) const {
        element.mDtd.setTarget(mDtd);
        element.mark(SubtreeBound, false);
        if (mDtd != nullptr) element.mark(PathTouched, false);
        return {&element, 0, true};
    }

    // Stops behind a child element that is to be gone down to. Null when there is none left.
    Element* bindChildren(Open& here) {
        const auto& children = here.element->mChildren;
        while (here.next < children.size()) {
            Object* child = children[here.next++];
            here.areBound = here.areBound && child->is(Held) && child->getParent() == here.element;
            if (isExactly<CharData>(*child)) {
                child->Object::setDtd(mDtd);
            } else if (!isExactly<Element>(*child)) {
                child->setDtd(mDtd);
                mHasOthers = true;
            } else if (!child->isWhollyBoundTo(mDtd)) {
                return static_cast<Element*>(child);
            }
        }
        return nullptr;
    }

    // Whether the element is bound with all below it. A node of a caller's class can have refused
    // the DTD, or changed what was bound before.
    bool finish(Open& here) {
        const bool areBound = mHasOthers ? here.element->hasBoundChildren() : here.areBound;
        here.element->mark(SubtreeBound, here.element->bindAttributes() && areBound);
        return here.element->is(SubtreeBound);
    }

    const Dtd* mDtd;
    bool mHasOthers = false;  ///< that is, nodes of a class that a caller derived
    std::vector<Open> mAround;
};

// A subtree that is bound to `dtd` already is not visited again. Validation binds elements from
// the bottom up, which would otherwise cost more with every level.
void Element::setDtd(const Dtd* dtd) {
    if (isWhollyBoundTo(dtd)) return;
    forgetBoundAbove();
    Binder(dtd).bind(*this);
}

// Whether all are linked to this element: only what is tells it of changes.
bool Element::bindAttributes() {
    bool areLinked = true;
    forEachAttribute([&](Attribute& attribute) {
        attribute.Object::setDtd(dtd());
        areLinked = areLinked && attribute.is(Held) && attribute.getParent() == this;
    });
    return areLinked;
}

bool Element::hasBoundChildren() const {
    return std::all_of(mChildren.begin(), mChildren.end(), [this](Object* child) {
        if (child->dtd() != dtd()) child->forgetTouchedPaths();
        return child->is(Held) && child->getParent() == this && child->isWhollyBoundTo(dtd());
    });
}

Object* Element::clone() const { return new Element(*this); }

const std::string& Element::toString() const {
    std::string text = getName();
    forEachAttribute([&text](const Attribute& attribute) {
        if (attribute.isOk()) text += ' ' + attribute.text();
    });
    return mName.ownTexts().shown = std::move(text);
}

bool Element::isElement() const { return true; }

void Element::setName(const std::string& name) {
    if (!isName(name)) {
        Message("<Element::setName> not a valid name " + name);
        return;
    }
    mName = Detail::NodeName(name);
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
    insertAt(mChildren.placeOf(before), child);
}

// What can fail comes first: the child is the element's only once it is among its children.
void Element::insertAt(std::size_t place, Object* child) {
    mChildren.makeRoom(place);
    noteChild(*child);
    bindNewChild(child);
    mChildren.insert(place, child);
    child->linkTo(this);
    if (!child->isWhollyBoundTo(dtd())) child->forgetBoundAbove();
    touch();
    dropUntrueMarks(child);
}

// Without memory for it, no part of the child may be left bound: it may outlive the DTD.
void Element::bindNewChild(Object* child) {
    try {
        child->setDtd(dtd());
    } catch (...) {
        child->setDtd(nullptr);
        throw;
    }
}

void Element::noteChild(const Object& child) {
    if (!isExactly<CharData>(child)) mark(MayHoldElements, true);
    if (!isExactly<Element>(child)) mark(MayHoldText, true);
}

// A new child may bring marks along that its place here does not bear out.
void Element::dropUntrueMarks(Object* child) {
    if (!is(PathTouched) || !child->followsParent()) child->forgetTouchedPaths();
}

Object* Element::extractChild(Object* child) {
    return extractChild(static_cast<int>(mChildren.placeOf(child)));
}

Object* Element::extractChild(int index) {
    Object* child = getChild(index);
    if (child == nullptr) return nullptr;
    mChildren.erase(static_cast<std::size_t>(index));
    touch();
    child->linkTo(nullptr);
    try {
        child->setDtd(nullptr);
    } catch (...) {
        mChildren.insert(static_cast<std::size_t>(index), child);
        child->linkTo(this);
        throw;
    }
    return child;
}

void Element::killChildren() {
    destroyChildren();
    touch();
}

void Element::holdAttribute(std::unique_ptr<Attribute> attribute) {
    attribute->linkTo(this);
    attribute->mark(Listed, true);
    AttributeList::insert(mAttributes, std::move(attribute));
}

void Element::setAttribute(const std::string& name, const DataHolder& value) {
    auto attribute = std::make_unique<Attribute>(name, value);
    attribute->mParent.setTarget(this);
    attribute->mDtd.setTarget(dtd());
    if (Attribute* present = getAttribute(name)) {
        *present = *attribute;
    } else {
        holdAttribute(std::move(attribute));
    }
    touch();
}

void Element::removeAttribute(const std::string& name) {
    if (mAttributes && AttributeList::erase(mAttributes, name)) touch();
}

void Element::removeAttribute(int index) {
    if (getAttribute(index) == nullptr) return;
    AttributeList::erase(mAttributes, index);
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
        mChildren.replace(kept++, mChildren[i]);
    }
    mChildren.truncate(kept);
    addChild(replacement.get());
    replacement.release();
}

}  // namespace Xml
