#include "dom/TreeBuilder.h"

#include <algorithm>
#include <string>
#include <utility>

#include "dom/AttributeList.h"
#include "values/Bytes.h"

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
    addText(std::unique_ptr<CharData>(new CharData(text, size)));
}

void TreeBuilder::addPlainText(const char* text, std::size_t size) {
    addText(std::make_unique<CharData>(DataHolder(text, size)));
}

void TreeBuilder::addText(std::unique_ptr<CharData> text) {
    innermost().mark(Object::MayHoldText, true);
    add(std::move(text));
}

std::unique_ptr<Element> TreeBuilder::makeElement(const char* name, std::size_t size,
                                                  const std::vector<AttributeText>& attributes) {
    std::unique_ptr<Element> element(new Element(name, size, Element::WithoutChildren()));
    if (!attributes.empty()) setAttributes(*element, attributes);
    return element;
}

// Attributes that are very many, or set twice, take the way on which nothing is known of them.
void TreeBuilder::setAttributes(Element& element, const std::vector<AttributeText>& attributes) {
    if (!orderAttributes(attributes)) {
        for (const AttributeText& text : attributes) {
            element.setAttribute({text.name, text.nameSize}, valueOf(text));
        }
        return;
    }
    element.mAttributes = AttributeList::withRoomFor(attributes.size());
    for (const std::size_t place : mOrder) {
        const AttributeText& text = attributes[place];
        Attribute& attribute =
            element.mAttributes->append(mNames[place], text.value, text.valueSize, element);
        if (text.hasReference) replaceEntities(attribute.mValue, mDtd);
    }
}

// False when there is no such order.
bool TreeBuilder::orderAttributes(const std::vector<AttributeText>& attributes) {
    if (areNamedAsBefore(attributes)) return true;
    mNames.clear();
    mOrder.clear();
    if (AttributeList::isVeryMany(attributes.size())) return false;
    for (const AttributeText& attribute : attributes) {
        mOrder.push_back(mNames.size());
        mNames.emplace_back(attribute.name, attribute.nameSize);
    }
    const auto nameAt = [this](std::size_t place) -> const std::string& {
        return mNames[place].text();
    };
    std::sort(mOrder.begin(), mOrder.end(),
              [&](std::size_t a, std::size_t b) { return nameAt(a) < nameAt(b); });
    const auto isSame = [&](std::size_t a, std::size_t b) { return nameAt(a) == nameAt(b); };
    const bool areUnique = std::adjacent_find(mOrder.begin(), mOrder.end(), isSame) == mOrder.end();
    if (!areUnique) mNames.clear();
    return areUnique;
}

bool TreeBuilder::areNamedAsBefore(const std::vector<AttributeText>& attributes) const {
    return std::equal(attributes.begin(), attributes.end(), mNames.begin(), mNames.end(),
                      [](const AttributeText& attribute, const Detail::NodeName& name) {
                          return attribute.nameSize == name.text().size() &&
                                 Bytes::areEqual(attribute.name, name.text().data(),
                                                 attribute.nameSize);
                      });
}

DataHolder TreeBuilder::valueOf(const AttributeText& attribute) const {
    DataHolder value(attribute.value, attribute.valueSize);
    if (attribute.hasReference) replaceEntities(value, mDtd);
    return value;
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
