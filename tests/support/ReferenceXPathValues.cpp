#include "support/ReferenceXPathValues.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

namespace support::xpath {
namespace {

Text rendered(double number) {
    std::vector<char> buffer(400);
    std::snprintf(buffer.data(), buffer.size(), "%f", number);
    return VexSys::PlatformCStringToUni16Char(buffer.data());
}

double numberAtStart(const Text& text) {
    std::vector<char> buffer(3 * text.size() + 1);
    VexSys::Uni16CharToPlatformCString(text, buffer.data(), buffer.size());
    const double number = std::strtod(buffer.data(), nullptr);
    return std::isnan(number) ? 0 : number;
}

template <class Value>
bool compareValues(const Value& left, const Value& right, Query::ExpressionOperators op) {
    switch (op) {
        case Query::Less:
            return left < right;
        case Query::LessOrEqual:
            return left <= right;
        case Query::Equal:
            return left == right;
        case Query::Greater:
            return left > right;
        case Query::GreaterOrEqual:
            return left >= right;
        case Query::NotEqual:
            return left != right;
        default:
            return false;
    }
}

bool isText(const Query::ResultItem& item) {
    return item.kind == Query::Node || item.kind == Query::String;
}

}  // namespace

Query::ResultItem textItem(const Text& text) {
    Query::ResultItem item;
    item.kind = Query::String;
    item.text = text;
    return item;
}

Query::ResultItem numberItem(double number) {
    Query::ResultItem item;
    item.kind = Query::Number;
    item.number = number;
    return item;
}

Query::ResultItem booleanItem(bool flag) {
    Query::ResultItem item;
    item.kind = Query::Boolean;
    item.flag = flag;
    return item;
}

void append(Items& items, const Items& more, int tag) {
    for (Query::ResultItem item : more) {
        item.tag = tag;
        items.push_back(item);
    }
}

Items belongingTo(const Items& items, bool isForAll, std::size_t index) {
    if (isForAll) return items;
    Items own;
    for (const Query::ResultItem& item : items) {
        if (item.tag == static_cast<int>(index)) own.push_back(item);
    }
    return own;
}

std::size_t positionOf(std::size_t index, std::size_t count, bool isReverse) {
    return isReverse ? count - index : index + 1;
}

Text toText(const Query::ResultItem& item) {
    switch (item.kind) {
        case Query::Node:
            return valueText(*item.node);
        case Query::String:
            return item.text;
        case Query::Number:
            return rendered(item.number);
        case Query::Boolean:
            return item.flag ? L"1" : L"0";
    }
    return {};
}

double toNumber(const Query::ResultItem& item) {
    if (item.kind == Query::Number) return item.number;
    if (item.kind == Query::Boolean) return item.flag ? 1 : 0;
    return numberAtStart(toText(item));
}

bool isComparison(Query::ExpressionOperators op) { return op <= Query::NotEqual; }

// A boolean against a node or a text is compared as a number, on purpose.
bool compare(const Query::ResultItem& left, const Query::ResultItem& right,
             Query::ExpressionOperators op) {
    if (isText(left) && isText(right)) {
        return compareValues(VexSys::Uni16CharCompare(toText(left), toText(right)), 0, op);
    }
    if (left.kind == Query::Boolean && right.kind == Query::Boolean) {
        return compareValues(left.flag, right.flag, op);
    }
    return compareValues(toNumber(left), toNumber(right), op);
}

double calculate(const Query::ResultItem& left, const Query::ResultItem& right,
                 Query::ExpressionOperators op) {
    const double a = toNumber(left);
    const double b = toNumber(right);
    switch (op) {
        case Query::Addition:
            return a + b;
        case Query::Subtraction:
            return a - b;
        case Query::Division:
            return a / b;
        case Query::Multiplication:
            return a * b;
        default:
            return 0;
    }
}

}  // namespace support::xpath
