#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "VexXml/XPath.h"
#include "xpath/Values.h"

namespace Xml {

using NodeList = std::vector<Object*>;

/// A node or a value, as operators take it. It owns nothing.
struct Item {
    XPath::ResultKind kind = XPath::Number;
    Object* node = nullptr;    ///< Node only
    std::string_view textKey;  ///< String only: the comparison key
    double number = 0;         ///< Number only
    bool flag = false;         ///< Boolean only

    static Item ofNode(Object* node);
    static Item ofText(std::string_view key);
    static Item ofNumber(double number);
    static Item ofFlag(bool flag);
};

/// What the texts of some nodes have in common, so that a text can be compared with all of them at
/// once. Needs: at least one node.
class NodeTexts {
public:
    explicit NodeTexts(const NodeList& nodes);

    /// Whether `text op t` holds for the text t of some of the nodes.
    bool holdsForSome(std::string_view text, XPath::ExpressionOperators op) const;

private:
    std::unordered_set<std::string> mTexts;
    std::string mLeast;
    std::string mGreatest;
};

/// What an operand of an operator comes to: nodes, or one value, or nothing.
class ItemList {
public:
    ItemList() = default;
    explicit ItemList(const NodeList& nodes) : mNodes(&nodes) {}
    explicit ItemList(const Item& item) : mItem(item) {}

    std::size_t size() const { return mNodes != nullptr ? mNodes->size() : (mItem ? 1 : 0); }
    Item operator[](std::size_t index) const {
        return mNodes != nullptr ? Item::ofNode((*mNodes)[index]) : *mItem;
    }
    /// Null when the list is no list of nodes.
    const NodeList* nodes() const { return mNodes; }

private:
    const NodeList* mNodes = nullptr;
    std::optional<Item> mItem;
};

double ConvertToNumber(const Item& item);
bool CompareResultItems(const Item& left, const Item& right, XPath::ExpressionOperators op);
double CalculusOnResultItems(const Item& left, const Item& right, XPath::ExpressionOperators op);

/// Whether the comparison holds for some pair. `rightTexts` may say at once what the texts on the
/// right have in common, when those are nodes; otherwise it is null.
bool CompareExpressionItems(const ItemList& left, const ItemList& right,
                            XPath::ExpressionOperators op, const NodeTexts* rightTexts = nullptr);
/// Computes with the first of each; nothing when there is none.
std::optional<Item> CalculusOnExpressionItems(const ItemList& left, const ItemList& right,
                                              XPath::ExpressionOperators op);

bool isComparison(XPath::ExpressionOperators op);
/// The operator that holds for b and a when `op` holds for a and b.
XPath::ExpressionOperators mirrored(XPath::ExpressionOperators op);

}  // namespace Xml
