#include "xpath/Expressions.h"

namespace xpath {

std::string Expressions::oneOf(std::initializer_list<const char*> choices) {
    return choices.begin()[below(choices.size())];
}

// NOLINTBEGIN(misc-no-recursion): as deep as predicates are to be nested
// Expression ::= Operand (Operator Operand)* Operator?
std::string Expressions::expression(int depth) {
    std::string text = white() + operand(depth);
    while (oneIn(3)) text += anOperator() + operand(depth);
    // What stands in front of an operator at the end is the whole expression.
    if (oneIn(40)) text += anOperator();
    return text;
}

// No space stands in front of a sign: behind "*" it would make that the multiplication.
std::string Expressions::anOperator() {
    if (oneIn(2)) return white() + oneOf({"=", "!=", "<", "<=", ">", ">="}) + white();
    return white() +
           oneOf({" eq ", " ne ", " lt ", " le ", " gt ", " ge ", " + ", " - ", " * ", " div "}) +
           white();
}

std::string Expressions::operand(int depth) {
    switch (below(8)) {
        case 0:
            return oneOf({"", " "}) + number();
        case 1:
            return oneOf({"", "  "}) + literal();
        case 2:
            return oneOf({"", " \t"}) + function();
        default:
            return path(depth);
    }
}

std::string Expressions::number() {
    return oneOf({"0", "1", "1", "2", "2", "3", "10", "0.5", "2.", "007", "1 0"});
}

std::string Expressions::literal() {
    return oneOf({"''",
                  "\"\"",
                  "'1'",
                  "\"2\"",
                  "'x'",
                  "\"x y\"",
                  "'10.0'",
                  "' 1 '",
                  "'a/b'",
                  "']'",
                  "\"[\"",
                  "'a[1]='",
                  "\"it's\"",
                  "'\"'",
                  "' div '",
                  "'//'",
                  "'-'",
                  "' -5 '",
                  "'-x'",
                  "'1e1x'",
                  "'0x1F'",
                  "'-nan'",
                  "'inf'",
                  "'.5'",
                  "'\xC3\xA9'",
                  "'\xEF\xBF\xBD'",
                  "'\xF0\x9F\x98\x80'",
                  "'A'",
                  "'&'"});
}

std::string Expressions::function() {
    return oneOf({"position()", "last()", "position ( )", "last\t()", "last(a)", "position('')"});
}

// Path ::= "/" | ("/" "/"?)? Step ("/" "/"? Step)*
std::string Expressions::path(int depth) {
    if (oneIn(30)) return "/";
    std::string text = oneIn(3) ? oneOf({"/", "//", "/ /"}) : "";
    text += step(depth);
    while (oneIn(2)) text += oneOf({"/", "/", "/", "\n/\t", "//", "///"}) + step(depth);
    return text;
}

std::string Expressions::step(int depth) {
    std::string text = axis() + nodeTest();
    while (depth > 0 && oneIn(3)) text += white() + predicate(depth - 1);
    return text;
}

std::string Expressions::axis() {
    if (oneIn(2)) return "";
    return oneOf({"@", "@\t", "attribute::", "child::", "descendant::", "parent::", "ancestor::",
                  "following-sibling::", "preceding-sibling::", "following::", "preceding::",
                  "descendant-or-self::", "ancestor-or-self::", "self::", "child:\t:\t"});
}

std::string Expressions::nodeTest() {
    if (oneIn(4)) {
        return oneOf({"node", "element", "attribute", "text", "document-node", "text(", "node("});
    }
    return oneOf({"a", "a", "b", "b", "c", "x", "y", "*", "*", "*", "*:a", "*:x", "n:*", "n:a",
                  "n:b", "n:x", "zzz", "a-b", "\xC5\x81"});
}

std::string Expressions::predicate(int depth) {
    if (oneIn(3)) {
        return "[" + oneOf({"1", "2", " 3 ", "1.5", "last()", "position()=last()", "@x", "b"}) +
               "]";
    }
    if (oneIn(3)) return condition();
    return "[" + expression(depth) + "]";
}
// What can be decided by a look at a node, its attributes and its children.
std::string Expressions::condition() {
    const std::string path = oneOf({"", "@", "@", "self::"}) +
                             oneOf({"a", "b", "x", "x", "y", "*", "*:a", "n:x", "zzz"});
    const std::string value = oneIn(2) ? literal() : number();
    switch (below(4)) {
        case 0:
            return "[" + path + "]";
        case 1:
            return "[" + value + anOperator() + path + "]";
        default:
            return "[" + path + anOperator() + value + "]";
    }
}

// What stands in an element, that many levels deep.
std::string Expressions::content(int depth) {
    std::string text;
    for (std::size_t count = below(5); count > 0; --count) {
        const std::string name = oneOf({"a", "b", "b", "n:a", "c"});
        text += '<' + name + oneOf({"", "", " x='1'", " x='2' y='x y'", " n:x=''"}) + '>';
        if (depth > 0) text += content(depth - 1);
        text += "</" + name + '>' + oneOf({"", "", "1", "2", "x"});
    }
    return text;
}
// NOLINTEND(misc-no-recursion)

std::string Expressions::white() { return oneOf({"", "", "", "", "", "\t", "\r\n", "\n\t"}); }

std::string Expressions::piece() {
    return oneOf({"[",      "]",        "'",        "\"",  "/",   "//",    "::",     "@",
                  "*",      "(",        ")",        ".",   "..",  ":",     "=",      "<",
                  "!",      " ",        "\t",       "-",   " - ", " div ", "1",      "9",
                  "a",      "b",        "n:",       "()",  "[]",  "''",    "last()", "position",
                  "self::", "\xC5\x81", "\xC3\xA9", "text"});
}

std::string Expressions::mangled(std::string expression) {
    for (std::size_t times = 1 + below(3); times > 0; --times) {
        const std::size_t at = below(expression.size() + 1);
        const std::size_t count = oneIn(3) ? 1 + below(3) : 1;
        switch (below(4)) {
            case 0:
                expression.erase(at, count);
                break;
            case 1:
                expression.insert(at, piece());
                break;
            case 2:
                expression.replace(at, count, piece());
                break;
            default:
                expression.insert(below(at + 1), expression.substr(at, count));
        }
    }
    return expression;
}

}  // namespace xpath
