#include "support/TreeModel.h"

#include <algorithm>
#include <memory>

#include "VexXml/Dtd.h"
#include "support/Dump.h"

namespace model {
namespace {

using Kind = Node::Kind;

bool isMixed(const Node& element) { return element.text == "c" || element.text == "d"; }
bool hasAttList(const Node& element) { return element.text == "a" || element.text == "c"; }

bool fitsMixed(const Node& dtd, const Node& element);

// What is written for a DTD is a matter of other tests: here the real one is asked.
std::string textOf(const Node& dtd) {
    const std::unique_ptr<Xml::Object> copy(dtd.real->clone());
    return support::written(*copy);
}

// NOLINTBEGIN(misc-no-recursion): the trees are small; deep ones have tests of their own
bool fitsMixed(const Node& dtd, const Node& element) {
    for (Node* child : element.children) {
        if (child->kind == Kind::Element && !validate(dtd, *child)) return false;
        setDtd(*child, &dtd);
    }
    return true;
}

void writeElement(const Node& element, Xml::OutStream& out, bool optimised) {
    out << '<' << element.text;
    for (const auto& [name, value] : element.attributes) {
        out << ' ' << name << "=\"" << value << '"';
    }
    if (element.children.empty()) {
        out << "/>";
        return;
    }
    out << '>';
    out.incTab();
    const bool elementOnly =
        std::none_of(element.children.begin(), element.children.end(),
                     [](const Node* child) { return child->kind == Kind::CharData; });
    if (elementOnly) out << '\n';
    for (Node* child : element.children) {
        toStream(*child, out, optimised);
        if (elementOnly) out << '\n';
    }
    out.decTab();
    out << "</" << element.text << '>';
}

void writeDocument(const Node& document, Xml::OutStream& out, bool optimised) {
    out << "<?xml version = \"1.0\" ?>\n";
    if (document.ownDtd != nullptr) toStream(*document.ownDtd, out, optimised);
    if (document.root != nullptr) toStream(*document.root, out, optimised);
    out << '\n';
}

void write(const Node& node, Xml::OutStream& out, bool optimised) {
    switch (node.kind) {
        case Kind::Element:
            return writeElement(node, out, optimised);
        case Kind::CharData:
            out.writeDataHolder(node.text);
            return;
        case Kind::Document:
            return writeDocument(node, out, optimised);
        case Kind::Dtd:
            out << textOf(node);
            return;
    }
}
// NOLINTEND(misc-no-recursion)

}  // namespace

std::vector<Node*> heldBy(const Node& node) {
    std::vector<Node*> held = node.children;
    if (node.ownDtd != nullptr) held.push_back(node.ownDtd);
    if (node.root != nullptr) held.push_back(node.root);
    return held;
}

std::vector<Node*> subtree(Node& top) {
    std::vector<Node*> nodes;
    std::vector<Node*> pending{&top};
    while (!pending.empty()) {
        Node* node = pending.back();
        pending.pop_back();
        nodes.push_back(node);
        const std::vector<Node*> held = heldBy(*node);
        pending.insert(pending.end(), held.rbegin(), held.rend());
    }
    return nodes;
}

std::vector<Node*> contentOf(Node& node) {
    std::vector<Node*> nodes = subtree(node);
    nodes.erase(nodes.begin());
    return nodes;
}

Xml::Element& element(const Node& node) { return *node.real->toElement(); }
Xml::CharData& charData(const Node& node) { return *node.real->toCharData(); }
Xml::Document& document(const Node& node) { return *node.real->toDocument(); }

bool isOnPathUp(const Node& node, const Node* below) {
    while (below != nullptr && below != &node) below = below->parent;
    return below == &node;
}

void touch(Node& node) {
    for (Node* above = &node; above != nullptr; above = above->parent) {
        above->touched = true;
        above->dtd = nullptr;
    }
}

// NOLINTBEGIN(misc-no-recursion): the trees are small; deep ones have tests of their own
void setDtd(Node& node, const Node* dtd) {
    node.dtd = dtd;
    for (Node* child : node.children) setDtd(*child, dtd);
}

bool validate(const Node& dtd, Node& element) {
    if (element.text < "a" || element.text > "d") return false;
    if (isMixed(element) && !fitsMixed(dtd, element)) return false;
    if (!hasAttList(element)) return element.attributes.empty();
    for (const auto& [name, value] : element.attributes) {
        if (name != "dtd" && name != "k") return false;
    }
    setDtd(element, &dtd);
    return true;
}

void toStream(Node& node, Xml::OutStream& out, bool optimised) {
    if (optimised && !node.touched && out.getPosition() == node.writeStart) {
        out.setPosition(node.writeEnd);
        return;
    }
    node.writeStart = out.getPosition();
    write(node, out, optimised);
    node.writeEnd = out.getPosition();
    node.touched = false;
}
// NOLINTEND(misc-no-recursion)

}  // namespace model
