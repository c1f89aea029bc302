#include "xpath/Operations.h"

#include <algorithm>
#include <cmath>

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

// Whether the comparison holds with one of some values at least, of which the least and the
// greatest are told. Needs: not for equality.
template <class Value>
bool compareWithRange(const Value& value, const Value& least, const Value& greatest,
                      XPath::ExpressionOperators op) {
    const bool isUpwards = op == XPath::Less || op == XPath::LessOrEqual;
    if (op == XPath::NotEqual) return value != least || value != greatest;
    return CompareValue(value, isUpwards ? greatest : least, op);
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

// Nodes are compared with nodes and texts as texts, and with all else as numbers.
bool ManyValues::holdsForSome(const Item& item, XPath::ExpressionOperators op) {
    TextBuffer buffer;
    switch (item.kind) {
        case XPath::Node:
            return holdsForText(mTexts.keyOf(*item.node, buffer), op);
        case XPath::String:
            return holdsForText(item.textKey, op);
        case XPath::Boolean:
            return holdsForNumber(item.flag ? 1 : 0, op);
        default:
            return holdsForNumber(item.number, op);
    }
}

bool ManyValues::holdsForText(std::string_view key, XPath::ExpressionOperators op) {
    const Texts& texts = asTexts();
    if (op == XPath::Equal) return texts.all.count(std::string(key)) > 0;
    return compareWithRange<std::string_view>(key, texts.least, texts.greatest, op);
}

bool ManyValues::holdsForNumber(double number, XPath::ExpressionOperators op) {
    const std::vector<double>& numbers = asNumbers();
    if (std::isnan(number)) return op == XPath::NotEqual;
    if (op == XPath::Equal) return std::binary_search(numbers.begin(), numbers.end(), number);
    return compareWithRange(number, numbers.front(), numbers.back(), op);
}

const ManyValues::Texts& ManyValues::asTexts() {
    if (mAsTexts) return *mAsTexts;
    mAsTexts = std::make_unique<Texts>();
    Texts& texts = *mAsTexts;
    TextBuffer buffer;
    for (Object* node : mNodes) {
        const std::string_view key = mTexts.keyOf(*node, buffer);
        if (texts.all.empty() || key < texts.least) texts.least = key;
        if (texts.all.empty() || key > texts.greatest) texts.greatest = key;
        texts.all.emplace(key);
    }
    return texts;
}

const std::vector<double>& ManyValues::asNumbers() {
    if (!mAsNumbers.empty()) return mAsNumbers;
    TextBuffer buffer;
    for (Object* node : mNodes) mAsNumbers.push_back(toNumber(mTexts.of(*node, buffer)));
    std::sort(mAsNumbers.begin(), mAsNumbers.end());
    return mAsNumbers;
}

double Operations::ConvertToNumber(const Item& item) {
    switch (item.kind) {
        case XPath::Number:
            return item.number;
        case XPath::Boolean:
            return item.flag ? 1 : 0;
        case XPath::Node:
            return toNumber(mTexts.of(*item.node, mLeft));
        default:
            return toNumber(item.textKey);
    }
}

// A boolean counts as a number beside anything else, deliberately: as a truth value it would equal
// every text that is not empty.
bool Operations::CompareResultItems(const Item& left, const Item& right,
                                    XPath::ExpressionOperators op) {
    const auto keyOf = [this](const Item& item, TextBuffer& buffer) {
        return item.kind == XPath::Node ? mTexts.keyOf(*item.node, buffer) : item.textKey;
    };
    if (hasText(left) && hasText(right)) {
        return CompareValue(keyOf(left, mLeft), keyOf(right, mRight), op);
    }
    if (left.kind == XPath::Boolean && right.kind == XPath::Boolean) {
        return CompareValue(left.flag, right.flag, op);
    }
    return CompareValue(ConvertToNumber(left), ConvertToNumber(right), op);
}

double Operations::CalculusOnResultItems(const Item& left, const Item& right,
                                         XPath::ExpressionOperators op) {
    return CalculusOnValue(ConvertToNumber(left), ConvertToNumber(right), op);
}

bool Operations::CompareExpressionItems(const ItemList& left, const ItemList& right,
                                        XPath::ExpressionOperators op) {
    const bool areNodes = left.nodes() != nullptr && right.nodes() != nullptr;
    const bool areFew = right.size() == 0 || left.size() <= kFewPairs / right.size();
    if (!areNodes || areFew) return comparePairs(left, right, op);
    ManyValues values(*right.nodes(), mTexts);
    return holdsForSome(left, values, op);
}

bool Operations::comparePairs(const ItemList& left, const ItemList& right,
                              XPath::ExpressionOperators op) {
    for (std::size_t i = 0; i < left.size(); ++i) {
        for (std::size_t j = 0; j < right.size(); ++j) {
            if (CompareResultItems(left[i], right[j], op)) return true;
        }
    }
    return false;
}

std::optional<Item> Operations::CalculusOnExpressionItems(const ItemList& left,
                                                          const ItemList& right,
                                                          XPath::ExpressionOperators op) {
    if (left.size() == 0 || right.size() == 0) return std::nullopt;
    return Item::ofNumber(CalculusOnResultItems(left[0], right[0], op));
}

std::unique_ptr<ManyValues> Operations::manyValues(const NodeList& nodes) {
    return std::make_unique<ManyValues>(nodes, mTexts);
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

bool holdsForSome(const ItemList& left, ManyValues& right, XPath::ExpressionOperators op) {
    for (std::size_t i = 0; i < left.size(); ++i) {
        if (right.holdsForSome(left[i], op)) return true;
    }
    return false;
}

}  // namespace Xml
