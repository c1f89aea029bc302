#include <algorithm>
#include <iterator>
#include <utility>

#include "VexXml/Dtd.h"
#include "support/Play.h"

namespace model {

void Play::makeElement() {
    const std::string name = anyName();
    Node* made = adopt(Node::Kind::Element, new Xml::Element(name));
    made->text = name;
    tell("make " + show(made) + " named " + name);
}

void Play::makeCharData() {
    const std::string text = anyText();
    Node* made = adopt(Node::Kind::CharData, new Xml::CharData(Xml::DataHolder(text)));
    made->text = text;
    tell("make " + show(made) + " that holds " + text);
}

void Play::makeDocument() {
    Node* root = anyThat(
        [this](const Node& node) { return node.kind == Node::Kind::Element && !isHeld(node); });
    const std::string name = "dtd" + std::to_string(++mDtdCount);
    Node* dtd = below(3) == 0 ? nullptr : adoptDtd(name);
    Xml::Element* realRoot = root == nullptr ? nullptr : &element(*root);
    Xml::Dtd* realDtd = dtd == nullptr ? nullptr : dtd->real->toDtd();
    Node* made = adopt(Node::Kind::Document, new Xml::Document(realRoot, realDtd));
    made->root = root;
    made->ownDtd = dtd;
    tell("make " + show(made) + " of " + show(root) + " and " + show(dtd));
    for (Node* held : heldBy(*made)) held->parent = made;
    if (root != nullptr) model::setDtd(*root, dtd);
}

void Play::addChild() {
    Node* parent = anyOf(Node::Kind::Element);
    Node* child = parent == nullptr ? nullptr : anyLooseChild(*parent);
    if (child == nullptr) return;
    tell("add " + show(child) + " to " + show(parent));
    element(*parent).addChild(child->real);
    linkChild(*parent, *child, parent->children.size());
}

void Play::insertChild() {
    Node* parent = anyOf(Node::Kind::Element);
    Node* child = parent == nullptr ? nullptr : anyLooseChild(*parent);
    if (child == nullptr) return;
    const int place = below(static_cast<int>(parent->children.size()) + 1);
    tell("insert " + show(child) + " into " + show(parent) + " at " + std::to_string(place));
    element(*parent).insertChild(element(*parent).getChild(place), child->real);
    linkChild(*parent, *child, static_cast<std::size_t>(place));
}

void Play::extractChild() {
    Node* parent = anyThat([](const Node& node) { return !node.children.empty(); });
    if (parent == nullptr) return;
    const int place = below(static_cast<int>(parent->children.size()));
    Node* child = parent->children[static_cast<std::size_t>(place)];
    tell("extract " + show(child) + " from " + show(parent));
    below(2) == 0 ? element(*parent).extractChild(place)
                  : element(*parent).extractChild(child->real);
    parent->children.erase(parent->children.begin() + place);
    model::touch(*parent);
    child->parent = nullptr;
    model::setDtd(*child, nullptr);
}

void Play::setDtd() {
    Node* node = any();
    Node* dtd = anyDtdOrNone();
    tell("bind " + show(node) + " to " + show(dtd));
    node->real->setDtd(dtd == nullptr ? nullptr : dtd->real->toDtd());
    model::setDtd(*node, dtd);
}

void Play::setParent() {
    Node* node = any();
    Node* parent = below(4) == 0 ? nullptr : any();
    if (isOnPathUp(*node, parent)) return;
    tell("set parent of " + show(node) + " to " + show(parent));
    node->real->setParent(parent == nullptr ? nullptr : parent->real);
    node->parent = parent;
}

void Play::touch() {
    Node* node = any();
    tell("touch " + show(node));
    node->real->touch();
    model::touch(*node);
}

void Play::touchByAttribute() {
    Node* holder = anyThat([](const Node& node) { return !node.attributes.empty(); });
    if (holder == nullptr) return;
    tell("touch by an attribute " + show(holder));
    element(*holder).getAttribute(0)->touch();
    model::touch(*holder);
}

std::string Play::writtenByBoth(Node& node, int position) {
    const bool optimised = below(8) != 0;
    support::LogStream expected(position);
    toStream(node, expected, optimised);
    Xml::Object::setRWOptimization(optimised);
    const std::string real = support::writeAt(position, *node.real);
    Xml::Object::setRWOptimization(true);
    if (real == expected.log()) return "";
    return show(&node) + " written as\n" + real + "\ninstead of\n" + expected.log();
}

void Play::write() {
    Node* node = below(2) == 0 ? any() : topOf(*any());
    const int position = below(4) == 0 ? node->writeStart + 1 : std::max(node->writeStart, 0);
    tell("write " + show(node) + " at " + std::to_string(position));
    mDifference = writtenByBoth(*node, position);
}

void Play::setAttribute() {
    Node* node = anyOf(Node::Kind::Element);
    if (node == nullptr) return;
    const std::string name = below(4) == 0 ? "undeclared" : "k";
    const std::string value = anyText();
    tell("set attribute " + name + " of " + show(node));
    element(*node).setAttribute(name, value);
    node->attributes[name] = value;
    model::touch(*node);
}

void Play::removeAttribute() {
    Node* node = anyOf(Node::Kind::Element);
    if (node == nullptr) return;
    const std::string name = below(2) == 0 ? "undeclared" : "k";
    tell("remove attribute " + name + " of " + show(node));
    element(*node).removeAttribute(name);
    if (node->attributes.erase(name) != 0) model::touch(*node);
}

void Play::setName() {
    Node* node = anyOf(Node::Kind::Element);
    if (node == nullptr) return;
    node->text = anyName();
    tell("rename " + show(node) + " to " + node->text);
    element(*node).setName(node->text);
    model::touch(*node);
}

void Play::setData() {
    Node* node = anyOf(Node::Kind::CharData);
    if (node == nullptr) return;
    node->text = below(2) == 0 ? "&e;" : anyText();
    tell("set data of " + show(node) + " to " + node->text);
    node->text == "&e;" ? charData(*node).setData(Xml::Entity("e"))
                        : charData(*node).setData(Xml::DataHolder(node->text));
    model::touch(*node);
}

void Play::setCharData() {
    Node* node = anyOf(Node::Kind::Element);
    if (node == nullptr) return;
    tell("set charData of " + show(node));
    std::vector<Node*> dying;
    for (std::size_t i = 0; i < node->children.size(); ++i) {
        if (node->children[i]->kind != Node::Kind::CharData) continue;
        dying.push_back(node->children[i]);
        node->children.erase(node->children.begin() + static_cast<std::ptrdiff_t>(i));
    }
    letGo(dying);
    const std::string text = anyText();
    element(*node).setCharData(text);
    forget(dying);
    const int last = element(*node).getChildCount() - 1;
    Node* child = adopt(Node::Kind::CharData, element(*node).getChild(last));
    child->text = text;
    linkChild(*node, *child, node->children.size());
}

void Play::copy() {
    Node* node = anyThat([](const Node& other) { return other.kind != Node::Kind::Dtd; });
    if (node == nullptr) return;
    Xml::Object* real = node->real->clone();
    Node* made = copyOf(*node);
    tell("copy " + show(node) + " as " + show(made));
    attach(*made, real);
}

void Play::assignElement() {
    Node* target = anyOf(Node::Kind::Element);
    Node* source = anyOf(Node::Kind::Element);
    if (target == source) return;
    tell("assign to " + show(target) + " from " + show(source));
    Node* copy = copyOf(*source);  // before the old content goes, of which the source may be part
    const std::vector<Node*> dying = contentOf(*target);
    letGo(dying);
    element(*target) = element(*source);
    forget(dying);
    moveContent(*copy, *target);
}

void Play::moveElement() {
    Node* target = anyOf(Node::Kind::Element);
    Node* source = anyOf(Node::Kind::Element);
    if (target == source || source == nullptr) return;
    const std::vector<Node*> moving = contentOf(*source);
    if (std::find(moving.begin(), moving.end(), target) != moving.end()) return;
    if (std::any_of(moving.begin(), moving.end(),
                    [target](const Node* node) { return isOnPathUp(*node, target); })) {
        return;
    }
    tell("move to " + show(target) + " from " + show(source));
    Node content(Node::Kind::Element);
    std::swap(content.text, source->text);
    std::swap(content.attributes, source->attributes);
    std::swap(content.children, source->children);
    const std::vector<Node*> dying = contentOf(*target);
    letGo(dying);
    element(*target) = std::move(element(*source));
    model::touch(*source);
    forget(dying);
    target->text = content.text;
    target->attributes = content.attributes;
    target->children = content.children;
    for (Node* child : target->children) child->parent = target;
    model::touch(*target);
}

// Takes over everything, the link to the parent included.
void Play::assignCharData() {
    Node* target = anyOf(Node::Kind::CharData);
    Node* source = anyOf(Node::Kind::CharData);
    if (target == nullptr || isOnPathUp(*target, source->parent)) return;
    tell("assign to " + show(target) + " from " + show(source));
    charData(*target) = charData(*source);
    target->text = source->text;
    target->dtd = source->dtd;
    target->parent = source->parent;
    target->touched = source->touched;
    target->writeStart = source->writeStart;
    target->writeEnd = source->writeEnd;
}

void Play::assignDocument() {
    Node* target = anyOf(Node::Kind::Document);
    Node* source = anyOf(Node::Kind::Document);
    if (target == source) return;
    tell("assign to " + show(target) + " from " + show(source));
    const std::vector<Node*> dying = contentOf(*target);
    letGo(dying);
    document(*target) = document(*source);
    forget(dying);
    moveContent(*copyOf(*source), *target);
}

void Play::killChildren() {
    Node* node = anyOf(Node::Kind::Element);
    if (node == nullptr) return;
    tell("kill children of " + show(node));
    const std::vector<Node*> dying = contentOf(*node);
    letGo(dying);
    element(*node).killChildren();
    node->children.clear();
    forget(dying);
    model::touch(*node);
}

void Play::validate() {
    Node* node = anyOf(Node::Kind::Element);
    if (node == nullptr) return;
    Node* dtd = anyOf(Node::Kind::Dtd);
    tell("validate " + show(node) + " by " + show(dtd));
    const bool real = dtd->real->toDtd()->validate(&element(*node));
    if (real != model::validate(*dtd, *node)) mDifference = "another verdict";
}

void Play::validateDocument() {
    Node* node = anyOf(Node::Kind::Document);
    if (node == nullptr) return;
    tell("validate " + show(node));
    const bool bound = node->ownDtd != nullptr && node->root != nullptr &&
                       model::validate(*node->ownDtd, *node->root);
    if (bound) node->dtd = node->ownDtd;
    const bool expected = bound || node->ownDtd == nullptr;
    if (document(*node).validate() != expected) mDifference = "another verdict";
}

void Play::extractFromDocument() {
    Node* node = anyOf(Node::Kind::Document);
    if (node == nullptr) return;
    const bool root = below(2) == 0;
    tell(std::string("extract ") + (root ? "root of " : "dtd of ") + show(node));
    Node*& held = root ? node->root : node->ownDtd;
    if (root) {
        document(*node).extractRoot();
    } else {
        document(*node).extractDtd();
    }
    if (held == nullptr) return;
    held->parent = nullptr;
    if (node->root != nullptr) model::setDtd(*node->root, nullptr);
    held = nullptr;
    // Whether giving something up touches the document is left open: here it is touched anyway.
    node->real->touch();
    model::touch(*node);
}

void Play::destroyTop() {
    Node* top = anyTop();
    if (top == nullptr) return;
    tell("destroy " + show(top));
    destroy(*top);
}

void Play::step(unsigned number) {
    mRandom.seed(number);
    mStep = number;
    mMadeInStep = 0;
    using Step = void (Play::*)();
    static constexpr Step kSteps[] = {
        &Play::makeElement,
        &Play::makeElement,
        &Play::makeCharData,
        &Play::makeCharData,
        &Play::makeDocument,
        &Play::addChild,
        &Play::addChild,
        &Play::addChild,
        &Play::addChild,
        &Play::insertChild,
        &Play::extractChild,
        &Play::setDtd,
        &Play::setDtd,
        &Play::setDtd,
        &Play::setParent,
        &Play::touch,
        &Play::touch,
        &Play::touchByAttribute,
        &Play::write,
        &Play::write,
        &Play::write,
        &Play::write,
        &Play::setAttribute,
        &Play::removeAttribute,
        &Play::setName,
        &Play::setData,
        &Play::setCharData,
        &Play::copy,
        &Play::assignElement,
        &Play::moveElement,
        &Play::assignCharData,
        &Play::assignDocument,
        &Play::killChildren,
        &Play::validate,
        &Play::validateDocument,
        &Play::extractFromDocument,
        &Play::destroyTop,
    };
    constexpr std::size_t kMostNodes = 40;
    if (mNodes.size() > kMostNodes) {
        destroyTop();
    } else {
        (this->*kSteps[below(static_cast<int>(std::size(kSteps)))])();
    }
}

}  // namespace model
