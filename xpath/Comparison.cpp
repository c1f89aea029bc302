#include "xpath/Comparison.h"

#include <algorithm>

namespace Xml {
namespace {

// Up to so many pairs are compared one by one.
constexpr std::size_t kFewPairs = 64;

// For texts (by their keys), numbers and booleans, false before true.
template <class Value>
bool CompareValue(const Value& left, const Value& right, XPath::ExpressionOperators op) {
    switch (op) {
        case XPath::Less:
            return left < right;
        case XPath::LessOrEqual:
            return left <= right;
        case XPath::Equal:
            return left == right;
        case XPath::Greater:
            return left > right;
        case XPath::GreaterOrEqual:
            return left >= right;
        case XPath::NotEqual:
            return left != right;
        default:
            return false;
    }
}

// A division by zero gives what the hardware makes of it.
double CalculusOnValue(double left, double right, XPath::ExpressionOperators op) {
    switch (op) {
        case XPath::Addition:
            return left + right;
        case XPath::Subtraction:
            return left - right;
        case XPath::Division:
            return left / right;
        case XPath::Multiplication:
            return left * right;
        default:
            return 0;
    }
}

bool hasText(const Item& item) { return item.kind == XPath::Node || item.kind == XPath::String; }

std::string_view keyOf(const Item& item, TextBuffer& buffer) {
    return item.kind == XPath::Node ? comparisonKey(*item.node, buffer) : item.textKey;
}

bool compareNodes(const NodeList& left, const NodeTexts& right, XPath::ExpressionOperators op) {
    TextBuffer buffer;
    return std::any_of(left.begin(), left.end(), [&](Object* node) {
        return right.holdsForSome(comparisonKey(*node, buffer), op);
    });
}

bool comparePairs(const ItemList& left, const ItemList& right, XPath::ExpressionOperators op) {
    for (std::size_t i = 0; i < left.size(); ++i) {
        for (std::size_t j = 0; j < right.size(); ++j) {
            if (CompareResultItems(left[i], right[j], op)) return true;
        }
    }
    return false;
}

}  // namespace

Item Item::ofNode(Object* node) {
    Item item;
    item.kind = XPath::Node;
    item.node = node;
    return item;
}

Item Item::ofText(std::string_view key) {
    Item item;
    item.kind = XPath::String;
    item.textKey = key;
    return item;
}

Item Item::ofNumber(double number) {
    Item item;
    item.number = number;
    return item;
}

Item Item::ofFlag(bool flag) {
    Item item;
    item.kind = XPath::Boolean;
    item.flag = flag;
    return item;
}

NodeTexts::NodeTexts(const NodeList& nodes) {
    TextBuffer buffer;
    for (Object* node : nodes) {
        const std::string_view text = comparisonKey(*node, buffer);
        if (mTexts.empty() || text < mLeast) mLeast = text;
        if (mTexts.empty() || text > mGreatest) mGreatest = text;
        mTexts.emplace(text);
    }
}

bool NodeTexts::holdsForSome(std::string_view text, XPath::ExpressionOperators op) const {
    switch (op) {
        case XPath::Equal:
            return mTexts.count(std::string(text)) > 0;
        case XPath::NotEqual:
            return text != mLeast || text != mGreatest;
        case XPath::Less:
        case XPath::LessOrEqual:
            return CompareValue(text, std::string_view(mGreatest), op);
        default:
            return CompareValue(text, std::string_view(mLeast), op);
    }
}

double ConvertToNumber(const Item& item) {
    TextBuffer buffer;
    switch (item.kind) {
        case XPath::Number:
            return item.number;
        case XPath::Boolean:
            return item.flag ? 1 : 0;
        case XPath::Node:
            return toNumber(valueText(*item.node, buffer));
        default:
            return toNumber(item.textKey);
    }
}

// A boolean counts as a number beside anything else, deliberately: as a truth value it would equal
// every text that is not empty.
bool CompareResultItems(const Item& left, const Item& right, XPath::ExpressionOperators op) {
    if (hasText(left) && hasText(right)) {
        TextBuffer leftBuffer;
        TextBuffer rightBuffer;
        return CompareValue(keyOf(left, leftBuffer), keyOf(right, rightBuffer), op);
    }
    if (left.kind == XPath::Boolean && right.kind == XPath::Boolean) {
        return CompareValue(left.flag, right.flag, op);
    }
    return CompareValue(ConvertToNumber(left), ConvertToNumber(right), op);
}

double CalculusOnResultItems(const Item& left, const Item& right, XPath::ExpressionOperators op) {
    return CalculusOnValue(ConvertToNumber(left), ConvertToNumber(right), op);
}

bool CompareExpressionItems(const ItemList& left, const ItemList& right,
                            XPath::ExpressionOperators op, const NodeTexts* rightTexts) {
    const bool areNodes = left.nodes() != nullptr && right.nodes() != nullptr;
    if (!areNodes || left.size() == 0 || right.size() == 0) return comparePairs(left, right, op);
    if (rightTexts != nullptr) return compareNodes(*left.nodes(), *rightTexts, op);
    if (left.size() <= kFewPairs / right.size()) return comparePairs(left, right, op);
    return compareNodes(*left.nodes(), NodeTexts(*right.nodes()), op);
}

std::optional<Item> CalculusOnExpressionItems(const ItemList& left, const ItemList& right,
                                              XPath::ExpressionOperators op) {
    if (left.size() == 0 || right.size() == 0) return std::nullopt;
    return Item::ofNumber(CalculusOnResultItems(left[0], right[0], op));
}

bool isComparison(XPath::ExpressionOperators op) { return op < XPath::Addition; }

XPath::ExpressionOperators mirrored(XPath::ExpressionOperators op) {
    switch (op) {
        case XPath::Less:
            return XPath::Greater;
        case XPath::LessOrEqual:
            return XPath::GreaterOrEqual;
        case XPath::Greater:
            return XPath::Less;
        case XPath::GreaterOrEqual:
            return XPath::LessOrEqual;
        default:
            return op;
    }
}

}  // namespace Xml
