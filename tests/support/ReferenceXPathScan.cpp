#include "support/ReferenceXPathScan.h"

#include <algorithm>
#include <cwchar>

namespace support::xpath {
namespace {

const struct {
    const wchar_t* text;
    Query::ExpressionOperators meaning;
} kOperators[] = {
    {L" eq ", Query::Equal},          {L"=", Query::Equal},
    {L" ne ", Query::NotEqual},       {L"!=", Query::NotEqual},
    {L" le ", Query::LessOrEqual},    {L"<=", Query::LessOrEqual},
    {L" lt ", Query::Less},           {L"<", Query::Less},
    {L" ge ", Query::GreaterOrEqual}, {L">=", Query::GreaterOrEqual},
    {L" gt ", Query::Greater},        {L">", Query::Greater},
    {L" + ", Query::Addition},        {L" - ", Query::Subtraction},
    {L" div ", Query::Division},      {L" * ", Query::Multiplication},
};

const struct {
    const wchar_t* name;
    Query::Axis axis;
} kAxes[] = {
    {L"descendant-or-self", Query::DescendantOrSelfAxis},
    {L"ancestor-or-self", Query::AncestorOrSelfAxis},
    {L"attribute", Query::AttributeAxis},
    {L"child", Query::ChildAxis},
    {L"descendant", Query::DescendantAxis},
    {L"parent", Query::ParentAxis},
    {L"ancestor", Query::AncestorAxis},
    {L"following-sibling", Query::FollowingSiblingAxis},
    {L"preceding-sibling", Query::PrecedingSiblingAxis},
    {L"following", Query::FollowingAxis},
    {L"preceding", Query::PrecedingAxis},
    {L"self", Query::SelfAxis},
};

const struct {
    const wchar_t* keyword;
    Query::KindTest kind;
} kKinds[] = {
    {L"node", Query::AnyNode},
    {L"element", Query::ElementNode},
    {L"attribute", Query::AttributeNode},
    {L"text", Query::TextNode},
    {L"document-node", Query::DocumentNode},
};

bool isWhite(wchar_t c) { return c == L' ' || c == L'\t' || c == L'\n' || c == L'\r'; }

bool standsAt(const Text& text, std::size_t at, const wchar_t* expected) {
    return text.compare(at, std::wcslen(expected), expected) == 0;
}

// Names are told by the low byte alone, so U+0141 counts as "A".
bool isNameStart(wchar_t c) {
    const auto byte = static_cast<unsigned char>(c);
    return (byte >= 'A' && byte <= 'Z') || byte == '_' || (byte >= 'a' && byte <= 'z');
}

bool isNameCharacter(wchar_t c) {
    const auto byte = static_cast<unsigned char>(c);
    return isNameStart(c) || byte == '-' || byte == '.' || (byte >= '0' && byte <= '9');
}

/// Whether everything from `at` on is one name without a colon.
bool isNameFrom(const Text& text, std::size_t at) {
    if (at >= text.size() || !isNameStart(text[at])) return false;
    return std::all_of(text.begin() + static_cast<std::ptrdiff_t>(at), text.end(), isNameCharacter);
}

/// The length of the operator at `at`; 0 when there is none.
std::size_t operatorAt(const Text& text, std::size_t at, Query::ExpressionOperators& meaning) {
    for (const auto& entry : kOperators) {
        if (!standsAt(text, at, entry.text)) continue;
        meaning = entry.meaning;
        return std::wcslen(entry.text);
    }
    return 0;
}

bool extractPredicates(Text& step, std::vector<Text>& predicates, Error& error) {
    predicates.clear();
    Text gathered;
    Text stepText;
    for (std::size_t at = 0; at < step.size();) {
        if (!predicates.empty() && step[at] != L'[') {
            return error.set(Query::IllegalCharAfterPredicate, L"[" + predicates.back() + L"]");
        }
        if (isQuote(step[at])) {
            Text literal;
            if (!takeLiteral(step, at, literal, error)) return false;
            gathered += literal;
        } else if (step[at] == L'[') {
            if (predicates.empty()) stepText = gathered;
            if (!takePredicate(step, at, false, gathered, error)) return false;
            predicates.push_back(gathered);
            gathered.clear();
        } else {
            gathered += step[at++];
        }
    }
    if (!predicates.empty()) step = stepText;
    return true;
}

bool extractAxis(Text& step, Query::Axis& axis, Error& error) {
    if (step == L".." || step == L".") {
        axis = step == L".." ? Query::ParentAxis : Query::SelfAxis;
        step = L"node()";
        return true;
    }
    const std::size_t colons = step.find(L"::");
    if (colons == Text::npos) {
        axis = beginsWith(step, L'@') ? Query::AttributeAxis : Query::ChildAxis;
        if (axis == Query::AttributeAxis) step.erase(0, 1);
        return true;
    }
    for (const auto& entry : kAxes) {
        if (step.substr(0, colons) != entry.name) continue;
        axis = entry.axis;
        step.erase(0, colons + 2);
        return true;
    }
    return error.set(Query::NoValidAxis, step);
}

bool readNameTest(const Text& step, Text& name, Error& error) {
    name.clear();
    if (beginsWith(step, L'*')) {
        if (step.size() == 1) return true;
        if (step[1] != L':' || !isNameFrom(step, 2)) {
            return error.set(Query::NoValidNameOrTest, step);
        }
        name = step.substr(1);
        return true;
    }
    if (step.empty() || !isNameStart(step[0])) return false;
    std::size_t at = 0;
    while (at < step.size() && isNameCharacter(step[at])) ++at;
    const bool isAnyLocalName = step.substr(at) == L":*";
    if (at == step.size() || isAnyLocalName || (step[at] == L':' && isNameFrom(step, at + 1))) {
        name = isAnyLocalName ? step.substr(0, at + 1) : step;
        return true;
    }
    return error.set(Query::NoValidNameOrTest, step);
}

// What stands behind the keyword of a kind test. Only nothing and a lone "(" are right.
bool checkKindTest(const Text& step, std::size_t keywordSize, Error& error) {
    if (keywordSize == step.size()) return true;
    if (step[keywordSize] != L'(') return error.set(Query::MissingKindTestOpen, step);
    if (keywordSize + 1 == step.size()) return true;
    const std::size_t close = step.find(L')', keywordSize + 1);
    if (close == Text::npos) return error.set(Query::MissingKindTestClose, step);
    if (close > keywordSize + 1) {
        Text ignored;
        const Text enclosed = step.substr(keywordSize, close - 2 - keywordSize);
        if (!readNameTest(enclosed, ignored, error)) return false;
    }
    return error.set(Query::IllegalCharAfterKindTest, step);
}

bool extractKindTest(const Text& step, NodeTest& test, Error& error) {
    for (const auto& entry : kKinds) {
        if (!standsAt(step, 0, entry.keyword)) continue;
        test.kind = entry.kind;
        return checkKindTest(step, std::wcslen(entry.keyword), error);
    }
    return readNameTest(step, test.name, error);
}

}  // namespace

bool Error::set(Query::ErrorCode newCode, const Text& newDetail) {
    code = newCode;
    detail = newDetail;
    return false;
}

bool isQuote(wchar_t c) { return c == L'"' || c == L'\''; }
bool isDigit(wchar_t c) { return c >= L'0' && c <= L'9'; }
bool beginsWith(const Text& text, wchar_t c) { return !text.empty() && text.front() == c; }

bool takeLiteral(const Text& text, std::size_t& at, Text& literal, Error& error) {
    const std::size_t close = text.find(text[at], at + 1);
    literal = text.substr(at, close == Text::npos ? close : close + 1 - at);
    at += literal.size();
    return close != Text::npos || error.set(Query::MissingClosingQuote, literal);
}

bool takePredicate(const Text& text, std::size_t& at, bool keepBrackets, Text& predicate,
                   Error& error) {
    const Text fromHere = text.substr(at);
    predicate.clear();
    int depth = 0;
    while (at < text.size()) {
        if (isQuote(text[at])) {
            Text literal;
            const bool isClosed = takeLiteral(text, at, literal, error);
            predicate += literal;
            if (!isClosed) return false;
            continue;
        }
        const wchar_t c = text[at++];
        if (c == L']') --depth;
        const bool isOuter = depth == 0;
        if (!isOuter || keepBrackets) predicate += c;
        if (isOuter && c == L']') return true;
        if (c == L'[') ++depth;
    }
    return error.set(Query::MissingClosingBracket, fromHere);
}

bool removeWhiteSpaces(const Text& text, Text& result, Error& error) {
    result.clear();
    bool isWhole = true;
    for (std::size_t at = 0; at < text.size();) {
        Text piece;
        Query::ExpressionOperators ignored = Query::NoOperator;
        if (isQuote(text[at])) {
            isWhole = takeLiteral(text, at, piece, error);
        } else if (text[at] == L'[') {
            isWhole = takePredicate(text, at, true, piece, error);
        } else if (!isWhite(text[at])) {
            piece = text[at++];
        } else if (const std::size_t size = operatorAt(text, at, ignored)) {
            piece = text.substr(at, size);
            at += size;
        } else {
            ++at;
        }
        result += piece;
    }
    return isWhole;
}

bool splitExpression(const Text& text, std::vector<OperandText>& operands, Error& error) {
    operands.clear();
    std::size_t start = 0;
    for (std::size_t at = 0; at < text.size();) {
        Text ignored;
        Query::ExpressionOperators meaning = Query::NoOperator;
        if (isQuote(text[at])) {
            if (!takeLiteral(text, at, ignored, error)) return false;
        } else if (text[at] == L'[') {
            if (!takePredicate(text, at, true, ignored, error)) return false;
        } else if (const std::size_t size = operatorAt(text, at, meaning)) {
            operands.push_back({text.substr(start, at - start), meaning});
            start = at += size;
        } else {
            ++at;
        }
    }
    if (start < text.size()) operands.push_back({text.substr(start), Query::NoOperator});
    return true;
}

// The depth of brackets may fall below 0, and a slash there cuts no step.
bool splitLocationPath(const Text& path, Text& step, Text& rest, Error& error) {
    step.clear();
    rest.clear();
    int depth = 0;
    for (std::size_t at = 0; at < path.size();) {
        const wchar_t c = path[at];
        if (isQuote(c)) {
            Text literal;
            if (!takeLiteral(path, at, literal, error)) return false;
            step += literal;
            continue;
        }
        if (c == L'[') ++depth;
        if (c == L']') --depth;
        ++at;
        if (c == L'/' && depth == 0) {
            rest = path.substr(at);
            return !rest.empty() || error.set(Query::SlashAtEnd, path);
        }
        step += c;
    }
    return true;
}

bool readStep(const Text& text, Step& step, Error& error) {
    step.testText = text;
    return extractPredicates(step.testText, step.predicates, error) &&
           extractAxis(step.testText, step.axis, error) &&
           extractKindTest(step.testText, step.test, error);
}

bool readNumber(const Text& operand, double& number, Error& error) {
    number = 0;
    double power = 0;  // what the next digit is divided by; 0 in front of the point
    for (const wchar_t c : operand) {
        if (c == L'.' && power == 0) {
            power = 10;
        } else if (!isDigit(c)) {
            return error.set(Query::IllegalCharInNumber, operand);
        } else if (power == 0) {
            number = number * 10 + (c - L'0');
        } else {
            number += (c - L'0') / power;
            power *= 10;
        }
    }
    return true;
}

Query::FunctionState readFunction(const wchar_t* name, const Text& operand, Error& error) {
    if (!standsAt(operand, 0, name)) return Query::NotThisFunction;
    const std::size_t open = std::wcslen(name);
    if (open == operand.size() || operand[open] != L'(') {
        error.set(Query::MissingFunctionOpen, operand);
        return Query::MalformedFunction;
    }
    const std::size_t close = operand.find(L')', open);
    if (close == Text::npos) {
        error.set(Query::MissingFunctionClose, operand);
        return Query::MalformedFunction;
    }
    if (close + 1 < operand.size()) {
        error.set(Query::IllegalCharAfterFunction, operand);
        return Query::MalformedFunction;
    }
    return Query::FunctionRead;
}

}  // namespace support::xpath
