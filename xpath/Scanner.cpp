#include "xpath/Scanner.h"

#include <algorithm>
#include <iterator>

#include "VexXml/Dom.h"
#include "xpath/Encoding.h"
#include "xpath/Operators.h"

namespace Xml {
namespace {

using VexSys::Uni16String;

struct AxisName {
    const char* text;
    XPath::Axis axis;
};

constexpr AxisName kAxisNames[] = {
    {"descendant-or-self", XPath::DescendantOrSelfAxis},
    {"ancestor-or-self", XPath::AncestorOrSelfAxis},
    {"attribute", XPath::AttributeAxis},
    {"child", XPath::ChildAxis},
    {"descendant", XPath::DescendantAxis},
    {"parent", XPath::ParentAxis},
    {"ancestor", XPath::AncestorAxis},
    {"following-sibling", XPath::FollowingSiblingAxis},
    {"preceding-sibling", XPath::PrecedingSiblingAxis},
    {"following", XPath::FollowingAxis},
    {"preceding", XPath::PrecedingAxis},
    {"self", XPath::SelfAxis},
};

struct Keyword {
    const char* text;
    XPath::KindTest kind;
};

constexpr Keyword kKeywords[] = {
    {"node", XPath::AnyNode},
    {"element", XPath::ElementNode},
    {"attribute", XPath::AttributeNode},
    {"text", XPath::TextNode},
    {"document-node", XPath::DocumentNode},
};

// What the abbreviated steps stand for.
constexpr wchar_t kNodeTest[] = L"node()";

// How many units of `name` the text begins with, if it begins with all of them; otherwise 0.
std::size_t matchName(const char* name, const wchar_t* text, std::size_t size) {
    std::size_t length = 0;
    for (; name[length] != '\0'; ++length) {
        if (length == size || text[length] != static_cast<wchar_t>(name[length])) return 0;
    }
    return length;
}

bool isName(Uni16View text, std::size_t size, const char* name) {
    return size > 0 && matchName(name, text.data(), size) == size;
}

bool isFirstNCChar(char c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '_'; }

bool isNCChar(char c) { return isFirstNCChar(c) || (c >= '0' && c <= '9') || c == '-' || c == '.'; }

// Only the low byte of a unit is looked at, so one outside ASCII may pass for a name character.
// Deliberate: expressions with such names are in use.
char lowByte(wchar_t unit) { return static_cast<char>(unit & 0xFF); }

// NCName ::= [A-Za-z_] [A-Za-z0-9._-]*
bool skipNCName(Uni16View text, std::size_t& at, std::size_t end) {
    if (at == end || !isFirstNCChar(lowByte(text[at]))) return false;
    while (at < end && isNCChar(lowByte(text[at]))) ++at;
    return true;
}

// QName ::= NCName (":" NCName)?
//
// After a failure `at` is where it was or, when only the name behind the ":" is missing, there.
bool GetQName(Uni16View text, std::size_t& at, std::size_t end) {
    if (!skipNCName(text, at, end)) return false;
    if (at == end || text[at] != L':') return true;
    return skipNCName(text, ++at, end);
}

}  // namespace

bool isDigit(wchar_t unit) { return unit >= L'0' && unit <= L'9'; }

bool Scanner::SplitExpression(Piece& expression, ExpressionItem& item) const {
    const std::size_t begin = expression.begin;
    const std::size_t end = expression.end;
    std::size_t at = begin;
    while (at < end) {
        if (IsBeginLiteral(mText[at]) || mText[at] == L'[') {
            at = mText.skip(at, end);
            continue;
        }
        const OperatorMatch match = findOperator(mText.at(at), end - at);
        if (match.length > 0) {
            item = {{begin, at}, match.op};
            expression.begin = at + match.length;
            return true;
        }
        ++at;
    }
    item = {expression, XPath::NoOperator};
    expression.begin = end;
    return begin < end;
}

// Brackets are counted rather than matched: below zero, behind a stray "]", they hide slashes too.
// The name test refuses such a step, and shows where it was cut.
bool Scanner::SplitLocationPath(Piece& path, Piece& step) {
    long depth = 0;
    std::size_t at = path.begin;
    while (at < path.end && !(depth == 0 && mText[at] == L'/')) {
        const bool isBracket = mText[at] == L'[';
        if (IsBeginLiteral(mText[at]) || (isBracket && depth == 0)) {
            at = mText.skip(at, path.end);
            continue;
        }
        if (isBracket) ++depth;
        if (mText[at] == L']') --depth;
        ++at;
    }
    step = {path.begin, at};
    if (at == path.end) {
        path.begin = at;
        return true;
    }
    if (at + 1 == path.end) return fail(XPath::SlashAtEnd, path);
    path.begin = at + 1;
    return true;
}

bool Scanner::ExtractPredicates(Piece& step, std::pmr::vector<Predicate>& predicates) {
    std::size_t at = step.begin;
    while (at < step.end && mText[at] != L'[') {
        at = IsBeginLiteral(mText[at]) ? mText.skip(at, step.end) : at + 1;
    }
    const Piece test{step.begin, at};
    while (at < step.end) {
        if (mText[at] != L'[') {
            const Piece last = predicates.back().text;
            return fail(XPath::IllegalCharAfterPredicate, Piece{last.begin - 1, last.end + 1});
        }
        const std::size_t behind = mText.skip(at, step.end);
        if (!mText.isClosed(at, step.end)) {
            return fail(XPath::MissingClosingBracket, Piece{at, step.end});
        }
        predicates.push_back({{at + 1, behind - 1}, 0});
        at = behind;
    }
    step = test;
    return true;
}

bool Scanner::ExtractAxis(Uni16View& step, XPath::Axis& axis) {
    const bool isAbbreviated = !step.empty() && step.front() == L'.';
    if (isAbbreviated && (step == L".." || step == L".")) {
        axis = step.size() == 2 ? XPath::ParentAxis : XPath::SelfAxis;
        step = kNodeTest;
        return true;
    }
    const std::size_t colons = step.find(L"::");
    if (colons == Uni16View::npos) {
        const bool isAttribute = !step.empty() && step.front() == L'@';
        axis = isAttribute ? XPath::AttributeAxis : XPath::ChildAxis;
        if (isAttribute) step.remove_prefix(1);
        return true;
    }
    for (const AxisName& name : kAxisNames) {
        if (!isName(step, colons, name.text)) continue;
        axis = name.axis;
        step.remove_prefix(colons + 2);
        return true;
    }
    return fail(XPath::NoValidAxis, step);
}

// A keyword counts wherever a step begins with it, and only without parentheses (or with a lone "("
// at the end) does it pass. Both are deliberate: applications know expressions by these answers,
// and "." and "..", which stand for "node()", fail by them.
bool Scanner::ExtractKindTest(Uni16View step, NodeTest& test) {
    const auto* keyword =
        std::find_if(std::begin(kKeywords), std::end(kKeywords), [&step](const Keyword& candidate) {
            return matchName(candidate.text, step.data(), step.size()) > 0;
        });
    if (keyword == std::end(kKeywords)) return GetNameTest(step, test.name);
    test.kind = keyword->kind;
    const std::size_t open = matchName(keyword->text, step.data(), step.size());
    if (open == step.size()) return true;
    if (step[open] != L'(') return fail(XPath::MissingKindTestOpen, step);
    if (open + 1 == step.size()) return true;
    const std::size_t close = step.find(L')', open + 1);
    if (close == Uni16View::npos) return fail(XPath::MissingKindTestClose, step);
    const bool enclosesText = close > open + 1;
    return !enclosesText && fail(XPath::IllegalCharAfterKindTest, step);
}

// NameTest ::= "*" | "*:" NCName | NCName ":*" | QName
bool Scanner::GetNameTest(Uni16View step, NameTest& test) {
    const std::size_t end = step.size();
    std::size_t at = 0;
    if (end > 0 && step[0] == L'*') {
        if (end == 1) return true;
        at = 2;
        test.form = NameTest::Form::LocalName;
        const bool isLocalName = step[1] == L':' && skipNCName(step, at, end) && at == end;
        if (!isLocalName) return fail(XPath::NoValidNameOrTest, step);
        test.name = toUTF8(step.substr(1));
        return true;
    }
    test.form = NameTest::Form::WholeName;
    const bool isName = GetQName(step, at, end);
    if (at == 0) return false;
    const bool isPrefix = !isName && at + 1 == end && step[at] == L'*';
    if (isPrefix) {
        test.form = NameTest::Form::Prefix;
    } else if (!isName || at < end) {
        return fail(XPath::NoValidNameOrTest, step);
    }
    test.name = toUTF8(step.substr(0, at));
    if (!isPrefix) test.sharedName = Detail::NodeName::sharedText(test.name);
    return true;
}

bool Scanner::ExtractLiteral(Piece operand, Uni16View& literal) {
    const std::size_t behind = mText.skip(operand.begin, operand.end);
    if (behind < operand.end) return fail(XPath::IllegalCharAfterLiteral, operand);
    literal = mText.view({operand.begin + 1, behind - 1});
    return true;
}

// Number ::= Digit+ ("." Digit*)?
//
// Put together digit by digit, which in its last bits may differ from the nearest double.
// Deliberate: it is what the same number has compared equal to so far.
bool Scanner::ExtractNumber(Piece operand, double& number) {
    number = 0;
    double unit = 1;
    bool isFraction = false;
    for (std::size_t at = operand.begin; at < operand.end; ++at) {
        const wchar_t c = mText[at];
        if (c == L'.' && !isFraction) {
            isFraction = true;
        } else if (!isDigit(c)) {
            return fail(XPath::IllegalCharInNumber, operand);
        } else if (isFraction) {
            unit *= 10;
            number += (c - L'0') / unit;
        } else {
            number = number * 10 + (c - L'0');
        }
    }
    return true;
}

XPath::FunctionState Scanner::ExtractFunction(const char* name, Piece operand) {
    const std::size_t size = operand.end - operand.begin;
    const std::size_t open = matchName(name, mText.at(operand.begin), size);
    if (open == 0) return XPath::NotThisFunction;
    const auto malformed = [&](XPath::ErrorCode code) {
        fail(code, operand);
        return XPath::MalformedFunction;
    };
    if (open == size || mText[operand.begin + open] != L'(') {
        return malformed(XPath::MissingFunctionOpen);
    }
    const wchar_t* arguments = mText.at(operand.begin + open + 1);
    const std::size_t rest = size - open - 1;
    const std::size_t close = VexSys::Uni16CharPartialFindCharacter(arguments, L')', rest);
    if (close == rest) return malformed(XPath::MissingFunctionClose);
    if (close + 1 < rest) return malformed(XPath::IllegalCharAfterFunction);
    return XPath::FunctionRead;
}

bool Scanner::fail(XPath::ErrorCode code, Uni16View detail) {
    mError = {code, Uni16String(detail)};
    return false;
}

bool Scanner::fail(XPath::ErrorCode code, Piece detail) {
    return fail(code, Uni16View(mText.asWritten(detail)));
}

}  // namespace Xml
