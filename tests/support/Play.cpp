#include "support/Play.h"

#include <algorithm>
#include <utility>

#include "VexXml/Dtd.h"
#include "support/Bindings.h"

namespace model {
namespace {

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

// A number that has to do with both as little as can be.
unsigned mix(unsigned a, unsigned b) {
    unsigned mixed = (a ^ b) * 0x9E3779B1U;
    mixed = (mixed ^ (mixed >> 15U)) * 0x85EBCA77U;
    return mixed ^ (mixed >> 13U);
}

}  // namespace

int Play::below(int limit) { return static_cast<int>(mRandom() % static_cast<unsigned>(limit)); }

// The choice does not change when there is one candidate less that was not chosen: so a step does
// much the same when earlier ones are left out.
Node* Play::anyThat(const std::function<bool(Node&)>& wanted) {
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

Node* Play::anyOf(Node::Kind kind) {
    return anyThat([kind](const Node& node) { return node.kind == kind; });
}

Node* Play::anyTop() {
    return anyThat(
        [this](const Node& node) { return node.kind != Node::Kind::Dtd && !isHeld(node); });
}

// A node that can become a child without making a circle, of held nodes or of parents.
Node* Play::anyLooseChild(const Node& parent) {
    return anyThat([this, &parent](Node& node) {
        if (node.kind != Node::Kind::Element && node.kind != Node::Kind::CharData) return false;
        const std::vector<Node*> all = subtree(node);
        return !isHeld(node) && !isOnPathUp(node, &parent) &&
               std::find(all.begin(), all.end(), &parent) == all.end();
    });
}

Node* Play::anyDtdOrNone() { return below(4) == 0 ? nullptr : anyOf(Node::Kind::Dtd); }

bool Play::isHeld(const Node& node) const {
    return std::any_of(mNodes.begin(), mNodes.end(), [&node](const auto& other) {
        const std::vector<Node*> held = heldBy(*other);
        return std::find(held.begin(), held.end(), &node) != held.end();
    });
}

Node* Play::topOf(Node& node) const {
    Node* top = &node;
    for (bool rising = true; rising;) {
        rising = false;
        for (const auto& other : mNodes) {
            const std::vector<Node*> held = heldBy(*other);
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

Node* Play::adopt(Node::Kind kind, Xml::Object* real) {
    mNodes.push_back(std::make_unique<Node>(kind));
    mNodes.back()->real = real;
    mNodes.back()->key = mix(mStep, ++mMadeInStep);
    return mNodes.back().get();
}

Node* Play::adoptDtd(const std::string& name) {
    Node* dtd = adopt(Node::Kind::Dtd, makeDtd(name).release());
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
    if (source.kind != Node::Kind::Element) copy->dtd = source.dtd;
    for (const Node* child : source.children) copy->children.push_back(copyOf(*child));
    if (source.root != nullptr) copy->root = copyOf(*source.root);
    if (source.ownDtd != nullptr) copy->ownDtd = copyOf(*source.ownDtd);
    if (copy->root != nullptr) model::setDtd(*copy->root, copy->ownDtd);
    for (Node* held : heldBy(*copy)) held->parent = copy;
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
    for (Node* held : heldBy(target)) held->parent = &target;
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
    const std::vector<Node*> dying = subtree(top);
    letGo(dying);
    delete top.real;
    forget(dying);
}

// Compares what can be asked without changing anything.
std::string Play::difference(const Node& node) {
    if (node.real->getParent() != (node.parent == nullptr ? nullptr : node.parent->real)) {
        return show(&node) + " has another parent than " + show(node.parent);
    }
    std::string binding = "none";
    if (node.kind == Node::Kind::CharData) {
        if (node.dtd != nullptr) binding = node.dtd->entity;
    } else if (node.kind == Node::Kind::Element) {
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

}  // namespace model
