#include "support/ReferenceXPath.h"
#include "support/ReferenceXPathValues.h"

namespace support {

using xpath::Items;
using Text = ReferenceXPath::Text;
using Query = ReferenceXPath::Query;

namespace {

/// The operators that are worked off together, the one that binds closest first.
bool isOfPass(Query::ExpressionOperators op, int pass) {
    switch (op) {
        case Query::Division:
        case Query::Multiplication:
            return pass == 0;
        case Query::Addition:
        case Query::Subtraction:
            return pass == 1;
        case Query::Equal:
        case Query::NotEqual:
            return pass == 3;
        default:
            return pass == 2;
    }
}

}  // namespace

// NOLINTBEGIN(misc-no-recursion): the inputs are short, and this is what is to be compared with
bool ReferenceXPath::evaluate(const Items& context, const Text& expression, Place place,
                              Value& value) {
    Text text;
    std::vector<xpath::OperandText> sources;
    if (!xpath::removeWhiteSpaces(expression, text, mError)) return false;
    if (!xpath::splitExpression(text, sources, mError)) return false;
    std::vector<Operand> operands;
    for (const xpath::OperandText& source : sources) {
        operands.push_back({source, {}});
        if (!evaluateOperand(context, source.text, place, operands.back().value)) return false;
    }
    if (operands.empty()) return mError.set(Query::NoXPathSpecified, {});
    if (mSyntaxOnly) return true;
    fold(operands, context.size());
    value = operands.front().value;
    return true;
}

bool ReferenceXPath::evaluateOperand(const Items& context, const Text& text, Place place,
                                     Value& value) {
    if (!text.empty() && xpath::isQuote(text.front())) return evaluateLiteral(text, value);
    if (!text.empty() && xpath::isDigit(text.front())) return evaluateNumber(text, value);
    const Query::FunctionState position = xpath::readFunction(L"position", text, mError);
    if (position == Query::FunctionRead) return evaluatePosition(context, place.isReverse, value);
    if (position == Query::MalformedFunction) return false;
    const Query::FunctionState last = xpath::readFunction(L"last", text, mError);
    if (last == Query::FunctionRead) return evaluateLast(context, place.isReverse, value);
    if (last == Query::MalformedFunction) return false;
    if (xpath::beginsWith(text, L'/')) return evaluateAbsolutePath(text, place.level, value);
    return evaluateRelativePath(context, text, place.level, value);
}

bool ReferenceXPath::evaluateLiteral(const Text& text, Value& value) {
    std::size_t at = 0;
    Text literal;
    if (!xpath::takeLiteral(text, at, literal, mError)) return false;
    if (at < text.size()) return mError.set(Query::IllegalCharAfterLiteral, text);
    value.items = {xpath::textItem(literal.substr(1, literal.size() - 2))};
    value.isForAll = true;
    return true;
}

bool ReferenceXPath::evaluateNumber(const Text& text, Value& value) {
    double number = 0;
    if (!xpath::readNumber(text, number, mError)) return false;
    value.items = {xpath::numberItem(number)};
    value.isForAll = true;
    return true;
}

bool ReferenceXPath::evaluatePosition(const Items& context, bool isReverse, Value& value) {
    if (mSyntaxOnly) return true;
    for (std::size_t i = 0; i < context.size(); ++i) {
        if (context[i].kind != Query::Node) return failBecauseNoNode();
        const std::size_t position = xpath::positionOf(i, context.size(), isReverse);
        xpath::append(value.items, {xpath::numberItem(static_cast<double>(position))},
                      static_cast<int>(i));
    }
    return true;
}

bool ReferenceXPath::evaluateLast(const Items& context, bool isReverse, Value& value) {
    value.isForAll = true;
    value.isBareLast = true;
    if (mSyntaxOnly || context.empty()) return true;
    const std::size_t index = isReverse ? 0 : context.size() - 1;
    if (context[index].kind != Query::Node) return failBecauseNoNode();
    xpath::append(value.items, {xpath::numberItem(static_cast<double>(index + 1))},
                  static_cast<int>(index));
    return true;
}

bool ReferenceXPath::evaluateAbsolutePath(const Text& text, unsigned level, Value& value) {
    value.isForAll = true;
    const Text path = text.substr(1);
    if (mSyntaxOnly) return path.empty() || checkPath(path, level);
    value.items = {xpath::nodeItem(mDocument)};
    return path.empty() || findNextNodes(path, value.items, level);
}

bool ReferenceXPath::evaluateRelativePath(const Items& context, const Text& text, unsigned level,
                                          Value& value) {
    if (mSyntaxOnly || context.empty()) return checkPath(text, level);
    for (std::size_t i = 0; i < context.size(); ++i) {
        Items nodes = {context[i]};
        if (!findNextNodes(text, nodes, level)) return false;
        xpath::append(value.items, nodes, static_cast<int>(i));
    }
    return true;
}

// NOLINTEND(misc-no-recursion)

void ReferenceXPath::fold(std::vector<Operand>& operands, std::size_t contextSize) {
    for (int pass = 0; pass < 4; ++pass) {
        for (std::size_t i = 0; i + 1 < operands.size();) {
            if (!isOfPass(operands[i].source.operatorBehind, pass)) {
                ++i;
                continue;
            }
            combine(operands[i], operands[i + 1], contextSize);
            operands.erase(operands.begin() + static_cast<std::ptrdiff_t>(i) + 1);
        }
    }
}

void ReferenceXPath::combine(Operand& left, const Operand& right, std::size_t contextSize) {
    const Query::ExpressionOperators op = left.source.operatorBehind;
    Value value;
    value.isForAll = left.value.isForAll && right.value.isForAll;
    if (value.isForAll) value.items = combined(left.value.items, right.value.items, op, -1);
    for (std::size_t i = 0; i < contextSize && !value.isForAll; ++i) {
        const Items ofLeft = xpath::belongingTo(left.value.items, left.value.isForAll, i);
        const Items ofRight = xpath::belongingTo(right.value.items, right.value.isForAll, i);
        xpath::append(value.items, combined(ofLeft, ofRight, op, static_cast<int>(i)),
                      static_cast<int>(i));
    }
    left.value = value;
    left.source.operatorBehind = right.source.operatorBehind;
}

Items ReferenceXPath::combined(const Items& left, const Items& right, Query::ExpressionOperators op,
                               int tag) {
    Items result;
    if (xpath::isComparison(op)) {
        bool isAnyTrue = false;
        for (const Query::ResultItem& a : left) {
            for (const Query::ResultItem& b : right) isAnyTrue |= xpath::compare(a, b, op);
        }
        xpath::append(result, {xpath::booleanItem(isAnyTrue)}, tag);
    } else if (!left.empty() && !right.empty()) {
        xpath::append(result,
                      {xpath::numberItem(xpath::calculate(left.front(), right.front(), op))}, tag);
    }
    return result;
}

}  // namespace support
