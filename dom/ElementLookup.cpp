#include <algorithm>

#include "VexXml/Dom.h"
#include "VexXml/Dtd.h"
#include "dom/AttributeList.h"
#include "dom/EmptyText.h"
#include "dom/Walk.h"

// What finds something in an element and changes nothing. Lookups that hand out a node are written
// once, for constant trees.
namespace Xml {
namespace {

template <class Node>
Node* mutableNode(const Node* node) {
    return const_cast<Node*>(node);
}

// Calls `matches` for the child elements in order until it has answered yes more than `index`
// times.
template <class Condition>
const Element* nthChildElement(const Element& parent, int index, Condition matches) {
    for (int i = 0; i < parent.getChildCount(); ++i) {
        const Object* child = parent.getChild(i);
        if (!child->isElement() || !matches(*child->toElement())) continue;
        if (index < 1) return child->toElement();
        --index;
    }
    return nullptr;
}

// The same for all elements below `top`.
template <class Condition>
const Element* nthDescendant(const Element& top, int index, Condition matches) {
    DescendantElements<const Element> below(top);
    while (const Element* element = below.next()) {
        if (!matches(*element)) continue;
        if (index < 1) return element;
        --index;
    }
    return nullptr;
}

template <class ElementType>
void appendDescendants(ElementType& top, const std::string& name,
                       std::vector<ElementType*>& found) {
    DescendantElements<ElementType> below(top);
    while (ElementType* element = below.next()) {
        if (element->getName() == name) found.push_back(element);
    }
}

}  // namespace

bool Element::isChild(const Object* node) const {
    return mChildren.placeOf(node) != mChildren.size();
}

const Element* Element::getElement(int index) const {
    if (index < 0) return nullptr;
    if (!is(MayHoldText)) {
        const Object* child = getChild(index);
        return child != nullptr ? child->toElement() : nullptr;
    }
    return nthChildElement(*this, index, [](const Element&) { return true; });
}

Element* Element::getElement(int index) {
    return mutableNode(std::as_const(*this).getElement(index));
}

const Attribute* Element::getAttribute(const std::string& name) const {
    return mAttributes ? mAttributes->find(name) : nullptr;
}

Attribute* Element::getAttribute(const std::string& name) {
    return mutableNode(std::as_const(*this).getAttribute(name));
}

const Attribute* Element::getAttribute(int index) const {
    if (index < 0 || index >= getAttributeCount()) return nullptr;
    return &mAttributes->at(index);
}

Attribute* Element::getAttribute(int index) {
    return mutableNode(std::as_const(*this).getAttribute(index));
}

int Element::getAttributeCount() const { return mAttributes ? mAttributes->size() : 0; }

const DataHolder& Element::getAttributeValue(const std::string& name) const {
    if (const Attribute* attribute = getAttribute(name)) return attribute->getValue();
    if (dtd() != nullptr && dtd()->hasDefaultValue(getName(), name)) {
        return dtd()->getDefaultValue(getName(), name);
    }
    return emptyText();
}

const DataHolder& Element::getCharData() const {
    const auto isText = [](const Object* child) { return child->isCharData(); };
    const auto text = std::find_if(mChildren.begin(), mChildren.end(), isText);
    return text != mChildren.end() ? (*text)->toCharData()->getData() : emptyText();
}

const Element* Element::getElement(const std::string& name, int index) const {
    return nthChildElement(*this, index,
                           [&](const Element& child) { return child.getName() == name; });
}

Element* Element::getElement(const std::string& name, int index) {
    return mutableNode(std::as_const(*this).getElement(name, index));
}

// Only attributes that are there count, unlike in `findElementByAttribute`. Deliberate: callers
// tell the two cases apart by it.
const Element* Element::getElementByAttribute(const std::string& attName, const DataHolder& value,
                                              int index) const {
    return nthChildElement(*this, index, [&](const Element& child) {
        const Attribute* attribute = child.getAttribute(attName);
        return attribute != nullptr && attribute->getValue() == value;
    });
}

Element* Element::getElementByAttribute(const std::string& attName, const DataHolder& value,
                                        int index) {
    return mutableNode(std::as_const(*this).getElementByAttribute(attName, value, index));
}

const DataHolder& Element::getElementCharData(const std::string& name) const {
    const Element* child = getElement(name);
    return child != nullptr ? child->getCharData() : emptyText();
}

void Element::setElementCharData(const std::string& name, const DataHolder& text) {
    if (Element* child = getElement(name)) child->setCharData(text);
}

const Element* Element::findElement(const std::string& name, int index) const {
    return nthDescendant(*this, index,
                         [&](const Element& element) { return element.getName() == name; });
}

Element* Element::findElement(const std::string& name, int index) {
    return mutableNode(std::as_const(*this).findElement(name, index));
}

const Element* Element::findElementByAttribute(const std::string& attName, const DataHolder& value,
                                               int index) const {
    return nthDescendant(*this, index, [&](const Element& element) {
        return element.getAttributeValue(attName) == value;
    });
}

Element* Element::findElementByAttribute(const std::string& attName, const DataHolder& value,
                                         int index) {
    return mutableNode(std::as_const(*this).findElementByAttribute(attName, value, index));
}

void Element::findAllElements(const std::string& name, std::vector<Element*>& found) {
    appendDescendants(*this, name, found);
}

void Element::findAllElements(const std::string& name, std::vector<const Element*>& found) const {
    appendDescendants(*this, name, found);
}

const DataHolder& Element::findElementCharData(const std::string& name) const {
    const Element* element = findElement(name);
    return element != nullptr ? element->getCharData() : emptyText();
}

void Element::findAndSetElementCharData(const std::string& name, const DataHolder& text) {
    if (Element* element = findElement(name)) element->setCharData(text);
}

}  // namespace Xml
