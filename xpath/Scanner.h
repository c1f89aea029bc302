#pragma once

#include <vector>

#include "xpath/Error.h"
#include "xpath/ExpressionText.h"
#include "xpath/Program.h"

namespace Xml {

/// An operand as it stands in an expression, and the operator behind it.
struct ExpressionItem {
    Piece text;
    XPath::ExpressionOperators op;  ///< `NoOperator` behind the last one
};

/// Takes pieces of an expression apart. What fails answers false and leaves an error; where it is
/// said, without a code.
class Scanner {
public:
    explicit Scanner(const ExpressionText& text) : mText(text) {}

    /// Expression ::= Operand (Operator Operand)*
    ///
    /// Cuts off the first operand and the operator behind it; false when nothing is left. An
    /// operand may be empty, but for the last, which is then left out.
    bool SplitExpression(Piece& expression, ExpressionItem& item) const;

    /// Path ::= Step ("/" Step)*
    ///
    /// Cuts off the first step and moves the beginning of `path` behind the "/" that follows it.
    bool SplitLocationPath(Piece& path, Piece& step);
    /// Step ::= (Axis "::" | "@")? NodeTest ("[" Expression "]")*
    ///
    /// Takes the predicates off.
    bool ExtractPredicates(Piece& step, std::pmr::vector<Predicate>& predicates);
    /// Takes the axis off.
    bool ExtractAxis(Uni16View& step, XPath::Axis& axis);
    /// NodeTest ::= KindTest | NameTest
    ///
    /// May fail without a code.
    bool ExtractKindTest(Uni16View step, NodeTest& test);

    /// The operands that are no paths. Each needs a text that begins as such.
    bool ExtractLiteral(Piece operand, Uni16View& literal);
    bool ExtractNumber(Piece operand, double& number);
    /// Function ::= Name "(" [^)]* ")"
    XPath::FunctionState ExtractFunction(const char* name, Piece operand);

    bool fail(XPath::ErrorCode code, Uni16View detail);
    bool fail(XPath::ErrorCode code, Piece detail);
    const XPathError& error() const { return mError; }

private:
    bool GetNameTest(Uni16View step, NameTest& test);

    const ExpressionText& mText;
    XPathError mError;
};

/// Whether a number begins with the unit.
bool isDigit(wchar_t unit);

}  // namespace Xml
