#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <map>
#include <memory>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "VexXml/Dom.h"
#include "VexXml/Dtd.h"
#include "dom/Bindings.h"
#include "dom/LogStream.h"
#include "dom/TreeModel.h"

// Long random sequences of everything that touches, binds and writes, done to real nodes and to the
// model alike. The library takes shortcuts on these paths, none of which may ever show.

namespace {

using model::Node;
using Kind = Node::Kind;

// Declares the elements a to d as the model knows them.
std::unique_ptr<Xml::Dtd> makeDtd(const std::string& name) {
    auto dtd = std::make_unique<Xml::Dtd>("doc");
    dtd->setEntity("dtd", name);
    for (const char* element : {"a", "b"}) {
        dtd->addElementDecl(element, new Xml::AnySpec(dtd.get()));
    }
    for (const char* element : {"c", "d"}) {
        auto* mixed = new Xml::MixedSpec(dtd.get());
        for (const char* child : {"a", "b", "c", "d"}) mixed->addName(child);
        dtd->addElementDecl(element, mixed);
    }
    for (const char* element : {"a", "c"}) {
        dtd->addAttDecl(element, "dtd", new Xml::AttStringType(Xml::AttValue, name));
        dtd->addAttDecl(element, "k", Xml::AttImplied);
    }
    return dtd;
}

// Real nodes and the model of each, changed together. Every step takes what it works on by chance,
// and does nothing when there is no such node.
class Play {
public:
    Play() {
        mOne = adoptDtd(makeDtd("one"), "one");
        mTwo = adoptDtd(makeDtd("two"), "two");
    }
    Play(const Play&) = delete;
    Play& operator=(const Play&) = delete;
    ~Play() {
        while (!mNodes.empty()) destroy(*topOf(*mNodes.back()));
    }

    // Takes the step that the number stands for.
    void step(unsigned number);
    // Empty, or the first difference between the real nodes and the model.
    std::string difference();
    // The steps so far, one a line.
    const std::string& story() const { return mStory; }

private:
    // Choosing by chance.
    int below(int limit);
    Node* any();
    template <typename Wanted>
    Node* anyThat(const Wanted& wanted);
    Node* anyOf(Kind kind);
    Node* anyTop();
    Node* anyLooseChild(const Node& parent);
    Node* anyDtdOrNone();
    std::string anyName() { return std::string(1, static_cast<char>('a' + below(5))); }
    std::string anyText() { return "t" + std::to_string(below(3)); }

    // The steps.
    void makeElement();
    void makeCharData();
    void makeDocument();
    void addChild();
    void insertChild();
    void extractChild();
    void setDtd();
    void setParent();
    void touch();
    void touchByAttribute();
    void write();
    void setAttribute();
    void removeAttribute();
    void setName();
    void setData();
    void setCharData();
    void copy();
    void assignElement();
    void moveElement();
    void assignCharData();
    void assignDocument();
    void killChildren();
    void validate();
    void validateDocument();
    void extractFromDocument();
    void destroyTop();

    // Keeping both sides together.
    Node* adopt(Kind kind, Xml::Object* real);
    Node* adoptDtd(std::unique_ptr<Xml::Dtd> real, const std::string& name);
    Node* copyOf(const Node& source);
    void attach(Node& top, Xml::Object* real);
    void moveContent(Node& copy, Node& target);
    void nameApart(Node& dtd);
    void linkChild(Node& parent, Node& child, std::size_t place);
    void letGo(const std::vector<Node*>& dying);
    void forget(const std::vector<Node*>& dead);
    void destroy(Node& top);
    bool isHeld(const Node& node) const;
    Node* topOf(Node& node) const;
    void tell(const std::string& what) { mStory += what + '\n'; }
    std::string show(const Node* node);

    std::string difference(const Node& node);
    std::string writtenByBoth(Node& node, int position);

    std::mt19937 mRandom;
    std::vector<std::unique_ptr<Node>> mNodes;
    Node* mOne = nullptr;
    Node* mTwo = nullptr;
    unsigned mStep = 0;
    unsigned mMadeInStep = 0;
    std::map<unsigned, std::size_t> mNames;  ///< what the nodes are called in the story, by key
    int mDtdCount = 0;
    std::string mStory;
    std::string mDifference;
    const support::OptimizedRewriting mOptimised;
};

// Everything below the node.
std::vector<Node*> contentOf(Node& node) {
    std::vector<Node*> nodes = model::subtree(node);
    nodes.erase(nodes.begin());
    return nodes;
}

Xml::Element& element(const Node& node) { return *node.real->toElement(); }
Xml::CharData& charData(const Node& node) { return *node.real->toCharData(); }
Xml::Document& document(const Node& node) { return *node.real->toDocument(); }

int Play::below(int limit) { return static_cast<int>(mRandom() % static_cast<unsigned>(limit)); }

// A number that has to do with both as little as can be.
unsigned mix(unsigned a, unsigned b) {
    unsigned mixed = (a ^ b) * 0x9E3779B1U;
    mixed = (mixed ^ (mixed >> 15U)) * 0x85EBCA77U;
    return mixed ^ (mixed >> 13U);
}

// The choice does not change when there is one candidate less that was not chosen: so a step does
// much the same when earlier ones are left out.
template <typename Wanted>
Node* Play::anyThat(const Wanted& wanted) {
    const auto salt = static_cast<unsigned>(mRandom());
    Node* best = nullptr;
    for (const auto& node : mNodes) {
        if (!wanted(*node)) continue;
        if (best == nullptr || mix(node->key, salt) > mix(best->key, salt)) best = node.get();
    }
    return best;
}

Node* Play::any() {
    return anyThat([](const Node&) { return true; });
}

Node* Play::anyOf(Kind kind) {
    return anyThat([kind](const Node& node) { return node.kind == kind; });
}

Node* Play::anyTop() {
    return anyThat([this](const Node& node) { return node.kind != Kind::Dtd && !isHeld(node); });
}

// A node that can become a child without making a circle, of held nodes or of parents.
Node* Play::anyLooseChild(const Node& parent) {
    return anyThat([this, &parent](Node& node) {
        if (node.kind != Kind::Element && node.kind != Kind::CharData) return false;
        const std::vector<Node*> all = model::subtree(node);
        return !isHeld(node) && !model::isOnPathUp(node, &parent) &&
               std::find(all.begin(), all.end(), &parent) == all.end();
    });
}

Node* Play::anyDtdOrNone() { return below(4) == 0 ? nullptr : anyOf(Kind::Dtd); }

bool Play::isHeld(const Node& node) const {
    return std::any_of(mNodes.begin(), mNodes.end(), [&node](const auto& other) {
        const std::vector<Node*> held = model::heldBy(*other);
        return std::find(held.begin(), held.end(), &node) != held.end();
    });
}

Node* Play::topOf(Node& node) const {
    Node* top = &node;
    for (bool rising = true; rising;) {
        rising = false;
        for (const auto& other : mNodes) {
            const std::vector<Node*> held = model::heldBy(*other);
            if (std::find(held.begin(), held.end(), top) == held.end()) continue;
            top = other.get();
            rising = true;
            break;
        }
    }
    return top;
}

std::string Play::show(const Node* node) {
    if (node == nullptr) return "none";
    static const char* const kKinds[] = {"element", "charData", "document", "dtd"};
    const auto name = mNames.emplace(node->key, mNames.size()).first;
    return std::string(kKinds[static_cast<int>(node->kind)]) + ' ' + std::to_string(name->second);
}

Node* Play::adopt(Kind kind, Xml::Object* real) {
    mNodes.push_back(std::make_unique<Node>(kind));
    mNodes.back()->real = real;
    mNodes.back()->key = mix(mStep, ++mMadeInStep);
    return mNodes.back().get();
}

Node* Play::adoptDtd(std::unique_ptr<Xml::Dtd> real, const std::string& name) {
    Node* dtd = adopt(Kind::Dtd, real.release());
    dtd->entity = dtd->defaultText = name;
    return dtd;
}

// The model of a copy: detached, touched, never written. Elements lose their DTD, others keep it.
Node* Play::copyOf(const Node& source) {  // NOLINT(misc-no-recursion): the trees are small
    Node* copy = adopt(source.kind, nullptr);
    copy->text = source.text;
    copy->attributes = source.attributes;
    copy->entity = source.entity;
    copy->defaultText = source.defaultText;
    if (source.kind != Kind::Element) copy->dtd = source.dtd;
    for (const Node* child : source.children) copy->children.push_back(copyOf(*child));
    if (source.root != nullptr) copy->root = copyOf(*source.root);
    if (source.ownDtd != nullptr) copy->ownDtd = copyOf(*source.ownDtd);
    if (copy->root != nullptr) model::setDtd(*copy->root, copy->ownDtd);
    for (Node* held : model::heldBy(*copy)) held->parent = copy;
    return copy;
}

// Makes the nodes stand for a real tree of the same shape.
void Play::attach(Node& top, Xml::Object* real) {  // NOLINT(misc-no-recursion): the trees are small
    top.real = real;
    for (std::size_t i = 0; i < top.children.size(); ++i) {
        attach(*top.children[i], element(top).getChild(static_cast<int>(i)));
    }
    if (top.root != nullptr) attach(*top.root, document(top).getRoot());
    if (top.ownDtd == nullptr) return;
    attach(*top.ownDtd, document(top).getDtd());
    nameApart(*top.ownDtd);
}

// Gives `target` what `copy` holds, as assignment does, and drops the copy.
void Play::moveContent(Node& copy, Node& target) {
    target.text = copy.text;
    target.attributes = copy.attributes;
    target.children = copy.children;
    target.root = copy.root;
    target.ownDtd = copy.ownDtd;
    for (Node* held : model::heldBy(target)) held->parent = &target;
    forget({&copy});
    attach(target, target.real);
    model::touch(target);
}

// Gives a DTD another entity, so that it can be told from the one it was copied from.
void Play::nameApart(Node& dtd) {
    dtd.entity = "dtd" + std::to_string(++mDtdCount);
    dtd.real->toDtd()->setEntity("dtd", dtd.entity);
}

void Play::linkChild(Node& parent, Node& child, std::size_t place) {
    parent.children.insert(parent.children.begin() + static_cast<std::ptrdiff_t>(place), &child);
    child.parent = &parent;
    model::setDtd(child, parent.dtd);
    model::touch(parent);
}

// Cuts the links to nodes that are about to be destroyed, which would dangle.
void Play::letGo(const std::vector<Node*>& dying) {
    const auto dies = [&dying](const Node* node) {
        return std::find(dying.begin(), dying.end(), node) != dying.end();
    };
    for (const auto& node : mNodes) {
        if (dies(node.get())) continue;
        if (node->parent != nullptr && dies(node->parent)) {
            node->real->setParent(nullptr);
            node->parent = nullptr;
        }
        if (node->dtd != nullptr && dies(node->dtd)) {
            node->real->setDtd(nullptr);
            model::setDtd(*node, nullptr);
        }
    }
}

void Play::forget(const std::vector<Node*>& dead) {
    mNodes.erase(std::remove_if(mNodes.begin(), mNodes.end(),
                                [&dead](const auto& node) {
                                    return std::find(dead.begin(), dead.end(), node.get()) !=
                                           dead.end();
                                }),
                 mNodes.end());
}

void Play::destroy(Node& top) {
    const std::vector<Node*> dying = model::subtree(top);
    letGo(dying);
    delete top.real;
    forget(dying);
}

void Play::makeElement() {
    const std::string name = anyName();
    Node* made = adopt(Kind::Element, new Xml::Element(name));
    made->text = name;
    tell("make " + show(made) + " named " + name);
}

void Play::makeCharData() {
    const std::string text = anyText();
    Node* made = adopt(Kind::CharData, new Xml::CharData(Xml::DataHolder(text)));
    made->text = text;
    tell("make " + show(made) + " that holds " + text);
}

void Play::makeDocument() {
    Node* root =
        anyThat([this](const Node& node) { return node.kind == Kind::Element && !isHeld(node); });
    const std::string name = "dtd" + std::to_string(++mDtdCount);
    Node* dtd = below(3) == 0 ? nullptr : adoptDtd(makeDtd(name), name);
    Xml::Element* realRoot = root == nullptr ? nullptr : &element(*root);
    Xml::Dtd* realDtd = dtd == nullptr ? nullptr : dtd->real->toDtd();
    Node* made = adopt(Kind::Document, new Xml::Document(realRoot, realDtd));
    made->root = root;
    made->ownDtd = dtd;
    tell("make " + show(made) + " of " + show(root) + " and " + show(dtd));
    for (Node* held : model::heldBy(*made)) held->parent = made;
    if (root != nullptr) model::setDtd(*root, dtd);
}

void Play::addChild() {
    Node* parent = anyOf(Kind::Element);
    Node* child = parent == nullptr ? nullptr : anyLooseChild(*parent);
    if (child == nullptr) return;
    tell("add " + show(child) + " to " + show(parent));
    element(*parent).addChild(child->real);
    linkChild(*parent, *child, parent->children.size());
}

void Play::insertChild() {
    Node* parent = anyOf(Kind::Element);
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
    if (model::isOnPathUp(*node, parent)) return;
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
    model::toStream(node, expected, optimised);
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
    Node* node = anyOf(Kind::Element);
    if (node == nullptr) return;
    const std::string name = below(4) == 0 ? "undeclared" : "k";
    const std::string value = anyText();
    tell("set attribute " + name + " of " + show(node));
    element(*node).setAttribute(name, value);
    node->attributes[name] = value;
    model::touch(*node);
}

void Play::removeAttribute() {
    Node* node = anyOf(Kind::Element);
    if (node == nullptr) return;
    tell("remove attribute of " + show(node));
    below(2) == 0 ? element(*node).removeAttribute("k") : element(*node).removeAttribute("other");
    const bool there = node->attributes.count("k") != 0;
    if (there && element(*node).getAttribute("k") == nullptr) {
        node->attributes.erase("k");
        model::touch(*node);
    }
}

void Play::setName() {
    Node* node = anyOf(Kind::Element);
    if (node == nullptr) return;
    node->text = anyName();
    tell("rename " + show(node) + " to " + node->text);
    element(*node).setName(node->text);
    model::touch(*node);
}

void Play::setData() {
    Node* node = anyOf(Kind::CharData);
    if (node == nullptr) return;
    node->text = below(2) == 0 ? "&e;" : anyText();
    tell("set data of " + show(node) + " to " + node->text);
    node->text == "&e;" ? charData(*node).setData(Xml::Entity("e"))
                        : charData(*node).setData(Xml::DataHolder(node->text));
    model::touch(*node);
}

void Play::setCharData() {
    Node* node = anyOf(Kind::Element);
    if (node == nullptr) return;
    tell("set charData of " + show(node));
    std::vector<Node*> dying;
    for (std::size_t i = 0; i < node->children.size(); ++i) {
        if (node->children[i]->kind != Kind::CharData) continue;
        dying.push_back(node->children[i]);
        node->children.erase(node->children.begin() + static_cast<std::ptrdiff_t>(i));
    }
    letGo(dying);
    const std::string text = anyText();
    element(*node).setCharData(text);
    forget(dying);
    const int last = element(*node).getChildCount() - 1;
    Node* child = adopt(Kind::CharData, element(*node).getChild(last));
    child->text = text;
    linkChild(*node, *child, node->children.size());
}

void Play::copy() {
    Node* node = anyThat([](const Node& other) { return other.kind != Kind::Dtd; });
    if (node == nullptr) return;
    Xml::Object* real = node->real->clone();
    Node* made = copyOf(*node);
    tell("copy " + show(node) + " as " + show(made));
    attach(*made, real);
}

void Play::assignElement() {
    Node* target = anyOf(Kind::Element);
    Node* source = anyOf(Kind::Element);
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
    Node* target = anyOf(Kind::Element);
    Node* source = anyOf(Kind::Element);
    if (target == source || source == nullptr) return;
    const std::vector<Node*> moving = contentOf(*source);
    if (std::find(moving.begin(), moving.end(), target) != moving.end()) return;
    if (std::any_of(moving.begin(), moving.end(),
                    [target](const Node* node) { return model::isOnPathUp(*node, target); })) {
        return;
    }
    tell("move to " + show(target) + " from " + show(source));
    Node content(Kind::Element);
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
    Node* target = anyOf(Kind::CharData);
    Node* source = anyOf(Kind::CharData);
    if (target == nullptr || model::isOnPathUp(*target, source->parent)) return;
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
    Node* target = anyOf(Kind::Document);
    Node* source = anyOf(Kind::Document);
    if (target == source) return;
    tell("assign to " + show(target) + " from " + show(source));
    const std::vector<Node*> dying = contentOf(*target);
    letGo(dying);
    document(*target) = document(*source);
    forget(dying);
    moveContent(*copyOf(*source), *target);
}

void Play::killChildren() {
    Node* node = anyOf(Kind::Element);
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
    Node* node = anyOf(Kind::Element);
    if (node == nullptr) return;
    Node* dtd = anyOf(Kind::Dtd);
    tell("validate " + show(node) + " by " + show(dtd));
    const bool real = dtd->real->toDtd()->validate(&element(*node));
    if (real != model::validate(*dtd, *node)) mDifference = "another verdict";
}

void Play::validateDocument() {
    Node* node = anyOf(Kind::Document);
    if (node == nullptr) return;
    tell("validate " + show(node));
    const bool bound = node->ownDtd != nullptr && node->root != nullptr &&
                       model::validate(*node->ownDtd, *node->root);
    if (bound) node->dtd = node->ownDtd;
    const bool expected = bound || node->ownDtd == nullptr;
    if (document(*node).validate() != expected) mDifference = "another verdict";
}

void Play::extractFromDocument() {
    Node* node = anyOf(Kind::Document);
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

// Compares what can be asked without changing anything.
std::string Play::difference(const Node& node) {
    if (node.real->getParent() != (node.parent == nullptr ? nullptr : node.parent->real)) {
        return show(&node) + " has another parent than " + show(node.parent);
    }
    std::string binding = "none";
    if (node.kind == Kind::CharData) {
        if (node.dtd != nullptr) binding = node.dtd->entity;
    } else if (node.kind == Kind::Element) {
        const bool declared = node.text == "a" || node.text == "c";
        if (node.dtd != nullptr && declared) binding = node.dtd->defaultText;
    } else {
        return "";
    }
    const std::string real = support::bindingOf(*node.real);
    if (real != binding) return show(&node) + " is bound to " + real + " instead of " + binding;
    return "";
}

std::string Play::difference() {
    if (!mDifference.empty()) return mDifference;
    for (const auto& node : mNodes) {
        std::string found = difference(*node);
        if (!found.empty()) return found;
    }
    return "";
}

using Steps = std::vector<unsigned>;

// What differs first when the steps are played; empty when nothing does. Cuts off the steps behind.
std::string firstDifference(Steps& steps, std::string* story = nullptr) {
    Play play;
    for (std::size_t i = 0; i < steps.size(); ++i) {
        play.step(steps[i]);
        std::string difference = play.difference();
        if (difference.empty()) continue;
        steps.resize(i + 1);
        if (story != nullptr) *story = play.story();
        return difference;
    }
    return "";
}

// Tries to do without each run of so many steps.
void dropRuns(Steps& steps, std::size_t length) {
    for (std::size_t start = 0; start < steps.size();) {
        const auto first = static_cast<std::ptrdiff_t>(start);
        const auto last = static_cast<std::ptrdiff_t>(std::min(start + length, steps.size()));
        Steps fewer = steps;
        fewer.erase(fewer.begin() + first, fewer.begin() + last);
        if (firstDifference(fewer).empty()) {
            ++start;
        } else {
            steps = fewer;
        }
    }
}

// Drops the steps that the difference does not need, so that the story can be read.
void shorten(Steps& steps) {
    std::size_t before = 0;
    do {
        before = steps.size();
        for (std::size_t length = before; length > 0; length /= 2) dropRuns(steps, length);
    } while (steps.size() < before);
}

void expectAgreement(unsigned seed, std::size_t length) {
    std::mt19937 random(seed);
    Steps steps(length);
    for (unsigned& step : steps) step = static_cast<unsigned>(random());
    if (firstDifference(steps).empty()) return;
    shorten(steps);
    std::string story;
    const std::string difference = firstDifference(steps, &story);
    FAIL() << "seed " << seed << ":\n" << story << "so " << difference;
}

TEST(Tree, AgreesWithTheModelOverManyShortStories) {
    for (unsigned seed = 0; seed < 2000 && !HasFatalFailure(); ++seed) expectAgreement(seed, 25);
}

TEST(Tree, AgreesWithTheModelOverLongStories) {
    for (unsigned seed = 0; seed < 1000 && !HasFatalFailure(); ++seed) expectAgreement(seed, 500);
}

}  // namespace
