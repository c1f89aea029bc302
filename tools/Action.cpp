#include "tools/Action.h"

#include <algorithm>
#include <unordered_set>
#include <utility>

#include "tools/Fragment.h"

namespace tools {
namespace {

using Kind = Action::Kind;
using Nodes = std::vector<std::unique_ptr<Xml::Object>>;

// Names from the nearest few levels, such as ".../dish/@price".
std::string pathOf(const Xml::Object& node) {
    constexpr int kMostLevels = 8;
    std::string path = node.isAttribute()  ? "/@" + node.toAttribute()->getName()
                       : node.isCharData() ? "/text"
                                           : "";
    const Xml::Object* around = node.isElement() ? &node : node.getParent();
    for (int i = 0; around != nullptr && around->isElement(); ++i, around = around->getParent()) {
        if (i == kMostLevels) return "..." + path;
        path.insert(0, "/" + around->toElement()->getName());
    }
    return path.empty() ? "/" : path;
}

// What an action cannot be done to, whatever the node holds; empty for what it can.
const char* reasonAgainst(Kind kind, const Xml::Object& node) {
    if (node.isDocument()) return "the document itself cannot be changed: ";
    switch (kind) {
        case Kind::SetAttribute:
        case Kind::RemoveAttribute:
            return node.isElement() ? "" : "only elements have attributes: ";
        case Kind::Add:
            return node.isElement() ? "" : "only elements have children: ";
        case Kind::Rename:
            return node.isCharData() ? "a text has no name: " : "";
        case Kind::Delete: {
            const Xml::Object* parent = node.getParent();
            const bool isRoot = node.isElement() && parent != nullptr && parent->isDocument();
            return isRoot ? "the root element cannot be deleted: " : "";
        }
        case Kind::SetText:
            break;
    }
    return "";
}

Xml::Element& elementAround(const Xml::Object& node) { return *node.getParent()->toElement(); }

}  // namespace

Editor::Editor(Xml::Document& document, const Xml::ReadLimits& limits,
               std::vector<Xml::Object*> nodes)
    : mDocument(document), mLimits(limits), mNodes(std::move(nodes)) {}

Editor::~Editor() = default;

// All nodes are looked at before one is changed: where only elements will do, no attribute that is
// still to come can go with its element's.
std::string Editor::apply(const Action& action) {
    std::string failure = findUnfit(action.kind);
    if (!failure.empty()) return failure;
    if (action.kind == Kind::Add) return addToAll(action.text);
    if (action.kind == Kind::Delete) {
        removeAll(mNodes);
        return {};
    }
    for (std::size_t i = 0; i < mNodes.size() && failure.empty(); ++i) {
        failure = change(mNodes[i], action);
    }
    removeAll(std::exchange(mEmptied, {}));
    return failure;
}

std::string Editor::change(Xml::Object*& node, const Action& action) {
    if (action.kind == Kind::SetText) return setText(*node, action.text);
    if (action.kind == Kind::Rename) return rename(node, action.name);
    Xml::Element& element = *node->toElement();
    if (action.kind == Kind::SetAttribute) {
        element.setAttribute(action.name, action.text);
    } else {
        element.removeAttribute(action.name);
    }
    return {};
}

std::string Editor::findUnfit(Kind kind) const {
    for (const Xml::Object* node : mNodes) {
        const std::string reason = reasonAgainst(kind, *node);
        if (!reason.empty()) return reason + pathOf(*node);
    }
    return {};
}

std::string Editor::setText(Xml::Object& node, const std::string& text) {
    if (node.isElement()) return setTextOf(*node.toElement(), text);
    if (node.isAttribute()) {
        node.toAttribute()->setValue(text);
    } else if (text.empty()) {
        mEmptied.push_back(&node);
    } else {
        node.toCharData()->setData(text);
    }
    return {};
}

std::string Editor::setTextOf(Xml::Element& element, const std::string& text) {
    if (element.getElement(0) != nullptr) {
        return "has child elements, which would be lost: " + pathOf(element);
    }
    takeChildrenFrom(element, mGone);
    if (!text.empty()) element.addChild(new Xml::CharData(text));
    return {};
}

std::string Editor::rename(Xml::Object*& node, const std::string& name) {
    if (node->isElement()) {
        node->toElement()->setName(name);
        return {};
    }
    const std::string former = node->toAttribute()->getName();
    if (former == name) return {};
    Xml::Element& element = elementAround(*node);
    if (element.getAttribute(name) != nullptr) {
        return "there is a \"" + name + "\" already: " + pathOf(*node);
    }
    element.setAttribute(name, Xml::DataHolder(node->toAttribute()->getValue()));
    element.removeAttribute(former);
    node = element.getAttribute(name);
    return {};
}

std::string Editor::addToAll(const std::string& xml) {
    const Fragment fragment = readFragment(xml, mDocument.getDtd(), mLimits);
    if (fragment.holder == nullptr) return "--add: " + fragment.failure;
    for (Xml::Object* element : mNodes) {
        for (int i = 0; i < fragment.holder->getChildCount(); ++i) {
            element->toElement()->addChild(fragment.holder->getChild(i)->clone());
        }
    }
    return {};
}

// Taking children out one by one would cost their distance to the nearer end each. So all are taken
// out, and those that stay are put back; then the others have no parent any more.
void Editor::removeAll(const std::vector<Xml::Object*>& nodes) {
    const std::unordered_set<const Xml::Object*> removed(nodes.begin(), nodes.end());
    for (Xml::Object* node : nodes) {
        if (node->getParent() == nullptr) continue;
        Xml::Element& element = elementAround(*node);
        if (node->isAttribute()) {
            element.removeAttribute(std::string(node->toAttribute()->getName()));
            continue;
        }
        Nodes children;
        takeChildrenFrom(element, children);
        for (auto& child : children) {
            if (removed.count(child.get()) != 0) {
                mGone.push_back(std::move(child));
            } else {
                element.addChild(child.release());
            }
        }
    }
}

// In their order.
void Editor::takeChildrenFrom(Xml::Element& element, Nodes& taken) {
    const std::size_t first = taken.size();
    while (element.getChildCount() > 0) {
        taken.emplace_back(element.extractChild(element.getChildCount() - 1));
    }
    std::reverse(taken.begin() + static_cast<std::ptrdiff_t>(first), taken.end());
}

}  // namespace tools
