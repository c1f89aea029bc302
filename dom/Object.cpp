#include <atomic>

#include "VexXml/Dom.h"
#include "VexXml/Dtd.h"
#include "VexXml/Streams.h"
#include "dom/Exactly.h"
#include "values/Pool.h"

namespace Xml {
namespace {

std::atomic<bool> skipsUnchanged{false};

// "a Element": callers compare this.
const char* const kNotAnElement = "<Object::toElement> Not a Element";
const char* const kNotAnAttribute = "<Object::toAttribute> Not an Attribute";
const char* const kNotACharData = "<Object::toCharData> Not a CharData";
const char* const kNotADtd = "<Object::toDtd> Not a Dtd";
const char* const kNotADocument = "<Object::toDocument> Not a Document";

template <class Node, class Base>
Node* checkedCast(Base* node, bool isOfKind, const char* complaint) {
    if (isOfKind) return static_cast<Node*>(node);
    Message(std::string(complaint));
    return nullptr;
}

}  // namespace

void* Object::operator new(std::size_t size) { return Pool::allocate(size); }

void* Object::operator new(std::size_t size, std::align_val_t alignment) {
    return ::operator new(size, alignment);
}

void Object::operator delete(void* node, std::size_t size) noexcept { Pool::release(node, size); }

void Object::operator delete(void* node, std::size_t, std::align_val_t alignment) noexcept {
    ::operator delete(node, alignment);
}

Object::Object() = default;

Object::Object(const Object& other) { mDtd.setTarget(other.dtd()); }

Object& Object::operator=(const Object& other) {
    if (this == &other) return *this;
    forgetBoundAbove();
    forgetTouchedPaths();
    mDtd.setTarget(other.dtd());
    mParent.setTarget(other.getParent());
    mark(Held, false);
    mWriteStart = other.mWriteStart;
    mWriteEnd = other.mWriteEnd;
    mark(Touched, other.is(Touched));
    return *this;
}

Object::~Object() = default;

void Object::setDtd(const Dtd* dtd) {
    mark(SubtreeBound, true);
    if (this->dtd() == dtd) return;
    forgetBoundAbove();
    mDtd.setTarget(dtd);
    if (dtd != nullptr) mark(PathTouched, false);
}

bool Object::isElement() const { return false; }
bool Object::isAttribute() const { return false; }
bool Object::isCharData() const { return false; }
bool Object::isDtd() const { return false; }
bool Object::isDocument() const { return false; }

void Object::setParent(Object* parent) {
    if (getParent() == parent) return;
    forgetBoundAbove();
    forgetTouchedPaths();
    mParent.setTarget(parent);
    mark(Held, false);
}

bool Object::isPathTouched() const { return is(Touched) && dtd() == nullptr && is(PathTouched); }

// Whether writing and binding the parent does so to this node too. What an element of a class that
// a caller derived does cannot be known.
bool Object::followsParent() const {
    return is(Held) && (isExactly<Element>(*getParent()) || getParent()->isDocument());
}

// Stops where all the rest is known to be touched already, so that building a deep tree from the
// top costs no more than from the bottom.
void Object::touch() {
    Object* firstMarked = this;
    Object* node = this;
    for (; node != nullptr && !node->isPathTouched(); node = node->getParent()) {
        if (node->dtd() != nullptr) node->mark(SubtreeBound, false);
        node->mDtd.setTarget(nullptr);
        node->mark(Touched, true);
        node->mark(PathTouched, false);
        if (node->getParent() != nullptr && !node->followsParent()) firstMarked = node->getParent();
    }
    for (Object* marked = firstMarked; marked != node; marked = marked->getParent()) {
        marked->mark(PathTouched, marked->isElement() || marked->isDocument());
    }
}

// For when the nodes above change otherwise than by touching. Must not need memory, as nodes are
// moved like this.
void Object::forgetTouchedPaths() {
    if (!is(PathTouched)) return;
    const bool isEffective = isPathTouched();
    mark(PathTouched, false);
    Element* top = isDocument() ? toDocument()->getRoot() : isElement() ? toElement() : nullptr;
    if (!isEffective || top == nullptr || (top != this && !top->isPathTouched())) return;
    top->mark(PathTouched, false);
    forgetTouchedPathsBelow(*top);
}

// What is touched does not stand anywhere any more, so where its text ended is free to tell, in
// `here` and the elements around it, which child comes next. Below an element that is marked but
// not touched no mark counts, and none will before that element is touched itself.
void Object::forgetTouchedPathsBelow(Element& top) {
    Element* here = &top;
    here->mWriteEnd = 0;
    while (true) {
        if (Element* inner = nextTouchedPath(*here)) {
            inner->mark(PathTouched, false);
            inner->mWriteEnd = 0;
            here = inner;
        } else if (here == &top) {
            return;
        } else {
            here = static_cast<Element*>(here->getParent());
        }
    }
}

Element* Object::nextTouchedPath(Element& element) {
    while (element.mWriteEnd < element.getChildCount()) {
        Object* child = element.getChild(element.mWriteEnd++);
        if (child->isPathTouched() && child->getParent() == &element && child->isElement()) {
            return static_cast<Element*>(child);
        }
    }
    return nullptr;
}

// For when this node's DTD becomes another than that of the nodes above. Above a node that is not
// marked none is. A link that nothing holds is not followed: what it leads to may be gone.
void Object::forgetBoundAbove() {
    for (Object* node = this; node->is(Held) && node->getParent()->is(SubtreeBound);
         node = node->getParent()) {
        node->getParent()->mark(SubtreeBound, false);
    }
}

bool Object::isWhollyBoundTo(const Dtd* dtd) const {
    return this->dtd() == dtd && is(SubtreeBound);
}

bool Object::setRWOptimization(bool on) { return skipsUnchanged.exchange(on); }

void Object::toStream(OutStream& out) {
    if (!beginWrite(out.getPosition())) {
        out.setPosition(mWriteEnd);
        return;
    }
    write(out);
    endWrite(out.getPosition());
}

// False when the node's text stands in the stream already and is to be passed over.
bool Object::beginWrite(int position) {
    const bool mayStay = !is(Touched) && position == mWriteStart;
    if (mayStay && skipsUnchanged.load(std::memory_order_relaxed)) return false;
    mWriteStart = position;
    return true;
}

void Object::endWrite(int position) {
    mWriteEnd = position;
    mark(Touched, false);
}

Element* Object::toElement() { return checkedCast<Element>(this, isElement(), kNotAnElement); }
const Element* Object::toElement() const {
    return checkedCast<const Element>(this, isElement(), kNotAnElement);
}
Attribute* Object::toAttribute() {
    return checkedCast<Attribute>(this, isAttribute(), kNotAnAttribute);
}
const Attribute* Object::toAttribute() const {
    return checkedCast<const Attribute>(this, isAttribute(), kNotAnAttribute);
}
CharData* Object::toCharData() { return checkedCast<CharData>(this, isCharData(), kNotACharData); }
const CharData* Object::toCharData() const {
    return checkedCast<const CharData>(this, isCharData(), kNotACharData);
}
Dtd* Object::toDtd() { return checkedCast<Dtd>(this, isDtd(), kNotADtd); }
const Dtd* Object::toDtd() const { return checkedCast<const Dtd>(this, isDtd(), kNotADtd); }
Document* Object::toDocument() { return checkedCast<Document>(this, isDocument(), kNotADocument); }
const Document* Object::toDocument() const {
    return checkedCast<const Document>(this, isDocument(), kNotADocument);
}

}  // namespace Xml
