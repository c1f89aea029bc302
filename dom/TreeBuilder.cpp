#include "dom/TreeBuilder.h"

#include <cstring>
#include <string>
#include <utility>

#include "dom/AttributeList.h"

namespace Xml {

TreeBuilder::TreeBuilder(Element& root, const Dtd* dtd) : mDtd(dtd), mOpen{{&root, 0}} {}

TreeBuilder::~TreeBuilder() { deleteChildren(0); }

// In front of the first open element below the root, which leads its children in the list, are the
// complete ones.
void TreeBuilder::abandon() {
    if (!isAtRoot()) deleteChildren(mOpen[1].firstChild - 1);
    mOpen.resize(1);
    attachChildren();
}

void TreeBuilder::beginElement(const char* name, std::size_t size,
                               const std::vector<AttributeText>& attributes) {
    beginElement(makeElement(name, size, attributes));
}

void TreeBuilder::beginElement(std::unique_ptr<Element> element) {
    Element* opened = element.get();
    innermost().mark(Object::MayHoldElements, true);
    add(std::move(element));
    mOpen.push_back({opened, mChildren.size()});
}

void TreeBuilder::endElement() {
    attachChildren();
    mOpen.pop_back();
}

void TreeBuilder::addElement(const char* name, std::size_t size,
                             const std::vector<AttributeText>& attributes) {
    addElement(makeElement(name, size, attributes));
}

void TreeBuilder::addElement(std::unique_ptr<Element> element) {
    innermost().mark(Object::MayHoldElements, true);
    add(std::move(element));
}

void TreeBuilder::addCharData(const char* text, std::size_t size) {
    add(std::unique_ptr<Object>(new CharData(text, size)));
}

std::unique_ptr<Element> TreeBuilder::makeElement(const char* name, std::size_t size,
                                                  const std::vector<AttributeText>& attributes) {
    std::unique_ptr<Element> element(
        new Element(Detail::NodeName(name, size), Element::WithoutChildren()));
    if (!attributes.empty()) setAttributes(*element, attributes);
    return element;
}

// What is set twice takes the way that says what becomes of the first.
void TreeBuilder::setAttributes(Element& element, const std::vector<AttributeText>& attributes) {
    element.mAttributes = std::make_unique<AttributeList>();
    AttributeList& list = *element.mAttributes;
    list.reserve(attributes.size());
    for (const AttributeText& text : attributes) {
        std::unique_ptr<Attribute> attribute(
            new Attribute(Detail::NodeName(text.name, text.nameSize), text.value, text.valueSize));
        if (std::memchr(text.value, '&', text.valueSize) != nullptr) {
            replaceEntities(attribute->mValue, mDtd);
        }
        if (list.find(attribute->getName()) != nullptr) {
            element.setAttribute(attribute->getName(), attribute->getValue());
            continue;
        }
        attribute->linkTo(&element);
        attribute->mark(Object::Listed, true);
        list.insert(std::move(attribute));
    }
}

void TreeBuilder::add(std::unique_ptr<Object> child) {
    child->linkTo(&innermost());
    mChildren.emplace_back();
    mChildren.back() = child.release();
}

void TreeBuilder::attachChildren() {
    const std::size_t first = mOpen.back().firstChild;
    innermost().mChildren.append(mChildren.data() + first, mChildren.size() - first);
    mChildren.resize(first);
}

// Children die before the element around them.
void TreeBuilder::deleteChildren(std::size_t from) noexcept {
    while (mChildren.size() > from) {
        delete mChildren.back();
        mChildren.pop_back();
    }
}

}  // namespace Xml
