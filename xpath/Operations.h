#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "VexXml/XPath.h"
#include "dom/NodeAccess.h"
#include "values/Bytes.h"
#include "xpath/NodeList.h"
#include "xpath/Values.h"

namespace Xml {

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

/// What an operand comes to: nodes, or one value, or nothing.
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

/// Answers for many nodes at once whether an item compares with the value of some of them.
class ManyValues {
public:
    /// Needs: at least one node. The nodes and the texts outlive it.
    ManyValues(const NodeList& nodes, ValueTexts& texts) : mNodes(nodes), mTexts(texts) {}

    /// Whether `item op value` holds for the value of some of the nodes.
    bool holdsForSome(const Item& item, XPath::ExpressionOperators op);

private:
    struct Texts {
        std::unordered_set<std::string> all;  ///< comparison keys, as are these
        std::string least;
        std::string greatest;
    };

    bool holdsForText(std::string_view key, XPath::ExpressionOperators op);
    bool holdsForNumber(double number, XPath::ExpressionOperators op);
    const Texts& asTexts();
    const std::vector<double>& asNumbers();

    const NodeList& mNodes;
    ValueTexts& mTexts;
    std::unique_ptr<Texts> mAsTexts;  ///< null until it is needed
    std::vector<double> mAsNumbers;   ///< ascending; empty until it is needed
};

/// What operators make of items.
class Operations {
public:
    double ConvertToNumber(const Item& item);
    bool CompareResultItems(const Item& left, const Item& right, XPath::ExpressionOperators op);
    double CalculusOnResultItems(const Item& left, const Item& right,
                                 XPath::ExpressionOperators op);

    /// Whether the comparison holds for some pair.
    bool CompareExpressionItems(const ItemList& left, const ItemList& right,
                                XPath::ExpressionOperators op);
    /// Computes with the first of each; nothing when there is none.
    std::optional<Item> CalculusOnExpressionItems(const ItemList& left, const ItemList& right,
                                                  XPath::ExpressionOperators op);

    /// Whether the bytes are the value text of the node.
    bool isTextOf(Object& node, std::string_view bytes) { return mTexts.of(node, mLeft) == bytes; }
    static bool isTextOf(const Attribute& node, std::string_view bytes) {
        const DataHolder& value = NodeAccess::valueOf(node);
        return static_cast<std::size_t>(value.getSize()) == bytes.size() &&
               Bytes::areEqual(value.toCString(), bytes.data(), bytes.size());
    }

    /// For nodes that many items are going to be compared with.
    std::unique_ptr<ManyValues> manyValues(const NodeList& nodes);

private:
    bool comparePairs(const ItemList& left, const ItemList& right, XPath::ExpressionOperators op);

    ValueTexts mTexts;
    TextBuffer mLeft;
    TextBuffer mRight;
};

bool isComparison(XPath::ExpressionOperators op);
/// The operator that holds for b and a when `op` holds for a and b.
XPath::ExpressionOperators mirrored(XPath::ExpressionOperators op);

/// Whether the comparison holds for some item of the list and some of the values.
bool holdsForSome(const ItemList& left, ManyValues& right, XPath::ExpressionOperators op);

}  // namespace Xml
