#pragma once

/// How an expression is taken apart: one function for each kind of piece, each of which copies out
/// what it takes.

#include <vector>

#include "VexXml/XPath.h"

namespace support::xpath {

using Text = VexSys::Uni16String;
using Query = Xml::XPath;

/// What went wrong last.
struct Error {
    Query::ErrorCode code = Query::NoError;
    Text detail;  ///< the piece of the expression that is to blame

    /// Always false.
    bool set(Query::ErrorCode newCode, const Text& newDetail);
};

/// What a node has to be to be selected.
struct NodeTest {
    Query::KindTest kind = Query::NoKind;
    /// `` for any, `:local` for any prefix, `prefix:` for any local name, or a whole name.
    Text name;
};

/// One step of a path, such as `child::item[1][@x]`.
struct Step {
    Query::Axis axis = Query::NoAxis;
    NodeTest test;
    Text testText;                 ///< the test as written: `item`
    std::vector<Text> predicates;  ///< without their brackets: `1` and `@x`
};

/// A piece of an expression and the operator behind it.
struct OperandText {
    Text text;
    Query::ExpressionOperators operatorBehind = Query::NoOperator;
};

// Each of these gives false when it has set the error.

/// Reads the literal that begins at `at`, with both its quotes, and moves behind it.
bool takeLiteral(const Text& text, std::size_t& at, Text& literal, Error& error);
/// Reads the predicate that begins at `at` and moves behind it.
bool takePredicate(const Text& text, std::size_t& at, bool keepBrackets, Text& predicate,
                   Error& error);
/// Drops the white space that belongs to no operator, literal or predicate. After an error `result`
/// holds what there is.
bool removeWhiteSpaces(const Text& text, Text& result, Error& error);
bool splitExpression(const Text& text, std::vector<OperandText>& operands, Error& error);
/// Cuts the first step off; `rest` is what stands behind its slash, empty when it is the last.
bool splitLocationPath(const Text& path, Text& step, Text& rest, Error& error);
/// Reads a whole step. May give false without an error.
bool readStep(const Text& text, Step& step, Error& error);
/// Reads the digits of a number, with a point in or behind them.
bool readNumber(const Text& operand, double& number, Error& error);
/// Reads `name(...)` at the start of the operand, which is the whole operand then.
Query::FunctionState readFunction(const wchar_t* name, const Text& operand, Error& error);

bool isQuote(wchar_t c);
bool isDigit(wchar_t c);
bool beginsWith(const Text& text, wchar_t c);

}  // namespace support::xpath
