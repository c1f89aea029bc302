#pragma once

#include <map>
#include <string>
#include <vector>

#include "VexXml/Dom.h"
#include "VexXml/Streams.h"

/// A slow, obvious model of the tree: every node holds all of its state by itself, and every change
/// goes to every node that it concerns, without any shortcut.
namespace model {

struct Node {
    enum class Kind { Element, CharData, Document, Dtd };

    explicit Node(Kind ofKind) : kind(ofKind) {}

    const Kind kind;
    std::string text;  ///< Element: the name; CharData: the escaped text
    std::map<std::string, std::string> attributes;  ///< Element only; values without special bytes
    std::vector<Node*> children;                    ///< Element only
    Node* root = nullptr;                           ///< Document only
    Node* ownDtd = nullptr;                         ///< Document only
    std::string entity;       ///< Dtd only: what it declares the entity "dtd" to be
    std::string defaultText;  ///< Dtd only: the default of the attribute "dtd" of a and c

    const Node* dtd = nullptr;
    Node* parent = nullptr;
    bool touched = true;
    int writeStart = -1;
    int writeEnd = -1;

    Xml::Object* real = nullptr;  ///< the node that this one stands for
    unsigned key = 0;             ///< tells it from others, whatever else there is
};

/// The nodes held by this one, in the order they are written.
std::vector<Node*> heldBy(const Node& node);
/// The node and everything below it, parents first.
std::vector<Node*> subtree(Node& top);
/// All but the node itself.
std::vector<Node*> contentOf(Node& node);
/// Whether `node` is `below` or is met on the way up from it.
bool isOnPathUp(const Node& node, const Node* below);

/// The real node, as what it is.
Xml::Element& element(const Node& node);
Xml::CharData& charData(const Node& node);
Xml::Document& document(const Node& node);

void touch(Node& node);
/// Elements hand it on to their children; documents do not.
void setDtd(Node& node, const Node* dtd);
/// The elements a to d are declared: a and b hold anything, c and d character data and elements; a
/// and c have an attribute list with "dtd" and "k". Binds what is valid.
bool validate(const Node& dtd, Node& element);
void toStream(Node& node, Xml::OutStream& out, bool optimised);

}  // namespace model
