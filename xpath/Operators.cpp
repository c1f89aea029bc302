#include "xpath/Operators.h"

#include <algorithm>
#include <string_view>

namespace Xml {
namespace {

struct OperatorName {
    std::string_view text;
    XPath::ExpressionOperators op;
};

// The first that matches counts, so "<=" comes before "<". Words and arithmetic signs need a blank
// on both sides: that is what tells a subtraction from a hyphen in a name.
constexpr OperatorName kOperatorNames[] = {
    {" eq ", XPath::Equal},         {"=", XPath::Equal},          {" ne ", XPath::NotEqual},
    {"!=", XPath::NotEqual},        {" le ", XPath::LessOrEqual}, {"<=", XPath::LessOrEqual},
    {" lt ", XPath::Less},          {"<", XPath::Less},           {" ge ", XPath::GreaterOrEqual},
    {">=", XPath::GreaterOrEqual},  {" gt ", XPath::Greater},     {">", XPath::Greater},
    {" + ", XPath::Addition},       {" - ", XPath::Subtraction},  {" div ", XPath::Division},
    {" * ", XPath::Multiplication},
};

// All that an operator begins with.
bool canBegin(wchar_t unit) {
    return unit == L' ' || unit == L'=' || unit == L'!' || unit == L'<' || unit == L'>';
}

}  // namespace

OperatorMatch findOperator(const wchar_t* text, std::size_t size) {
    if (size == 0 || !canBegin(*text)) return {};
    for (const OperatorName& name : kOperatorNames) {
        const std::size_t length = name.text.size();
        if (length > size) continue;
        const auto isSame = [](char expected, wchar_t unit) {
            return static_cast<wchar_t>(expected) == unit;
        };
        if (std::equal(name.text.begin(), name.text.end(), text, isSame)) return {name.op, length};
    }
    return {};
}

}  // namespace Xml
