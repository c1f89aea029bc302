#include "xpath/Compiler.h"

#include <array>
#include <memory_resource>
#include <vector>

#include "xpath/Encoding.h"

namespace Xml {
namespace {

// Room for so many saves most lists from growing step by step.
constexpr std::size_t kFew = 4;

// Which operators one pass of folding takes.
enum class Pass { Multiplicative, Additive, Relational, Equality };

constexpr std::array kPasses = {Pass::Multiplicative, Pass::Additive, Pass::Relational,
                                Pass::Equality};

Pass passOf(XPath::ExpressionOperators op) {
    switch (op) {
        case XPath::Multiplication:
        case XPath::Division:
            return Pass::Multiplicative;
        case XPath::Addition:
        case XPath::Subtraction:
            return Pass::Additive;
        case XPath::Equal:
        case XPath::NotEqual:
            return Pass::Equality;
        default:
            return Pass::Relational;
    }
}

// An operand, or what was folded into one, and the operator behind it.
struct Term {
    std::size_t index;
    bool isCommon;
    XPath::ExpressionOperators op;
};

using Terms = std::pmr::vector<Term>;

// Folds each term with its right neighbour where the operator between them belongs to the pass,
// from left to right.
void fold(Terms& terms, Pass pass, Expression& expression) {
    auto left = terms.begin();  // invariant: up to here is what remains
    for (auto term = left + 1; term != terms.end(); ++term) {
        if (passOf(left->op) != pass) {
            *++left = *term;
            continue;
        }
        left->isCommon = left->isCommon && term->isCommon;
        expression.folds.push_back({left->op, left->index, term->index, left->isCommon});
        left->index = expression.operands.size() + expression.folds.size() - 1;
        left->op = term->op;
    }
    terms.erase(left + 1, terms.end());
}

void foldOperands(Expression& expression, std::pmr::memory_resource* memory) {
    if (expression.operands.size() == 1) return;
    Terms terms(memory);
    terms.reserve(expression.operands.size());
    for (std::size_t i = 0; i < expression.operands.size(); ++i) {
        const Operand& operand = expression.operands[i];
        terms.push_back({i, operand.isCommon(), operand.op});
    }
    for (const Pass pass : kPasses) {
        if (terms.size() > 1) fold(terms, pass, expression);
    }
}

}  // namespace

// Invariant: everything in front of the place that a frame has reached is decoded.
bool Compiler::compile() {
    mFrames.reserve(kFew);
    mProgram.expressions.reserve(kFew);
    if (!open(mText.whole(), 1)) return false;
    while (!mFrames.empty()) {
        if (!advance()) return false;
    }
    return true;
}

bool Compiler::open(Piece text, unsigned long level) {
    if (text.isEmpty()) return mScanner.fail(XPath::NoXPathSpecified, text);
    mFrames.push_back({mProgram.expressions.size(), level, text});
    mProgram.expressions.emplace_back(mProgram.memory());
    return true;
}

bool Compiler::advance() {
    Frame& frame = mFrames.back();
    if (Predicate* predicate = nextPredicate(frame)) {
        predicate->expression = mProgram.expressions.size();
        return open(predicate->text, operandOf(frame).steps.back().level + 1);
    }
    if (!frame.path.isEmpty()) return decodeStep(frame);
    ExpressionItem item{};
    if (mScanner.SplitExpression(frame.rest, item)) return decodeOperand(frame, item);
    foldOperands(mProgram.expressions[frame.expression], mProgram.memory());
    mFrames.pop_back();
    return true;
}

Predicate* Compiler::nextPredicate(Frame& frame) {
    if (mProgram.expressions[frame.expression].operands.empty()) return nullptr;
    auto& steps = operandOf(frame).steps;
    if (steps.empty() || frame.nextPredicate == steps.back().predicates.size()) return nullptr;
    return &steps.back().predicates[frame.nextPredicate++];
}

Operand& Compiler::operandOf(const Frame& frame) {
    return mProgram.expressions[frame.expression].operands.back();
}

// Operand ::= Literal | Number | Function | Path
bool Compiler::decodeOperand(Frame& frame, const ExpressionItem& item) {
    const Piece text = item.text;
    Operand& operand =
        mProgram.expressions[frame.expression].operands.emplace_back(mProgram.memory());
    operand.op = item.op;
    const wchar_t first = text.isEmpty() ? L'\0' : mText[text.begin];
    if (IsBeginLiteral(first)) {
        operand.kind = Operand::Kind::Literal;
        if (!mScanner.ExtractLiteral(text, operand.literal)) return false;
        operand.literalKey = comparisonKey(operand.literal);
        return true;
    }
    if (isDigit(first)) {
        operand.kind = Operand::Kind::Number;
        return mScanner.ExtractNumber(text, operand.number);
    }
    switch (decodeFunction(text, operand)) {
        case XPath::FunctionRead:
            return checkContext();
        case XPath::MalformedFunction:
            return false;
        default:
            return decodePath(frame, text);
    }
}

XPath::FunctionState Compiler::decodeFunction(Piece text, Operand& operand) {
    const XPath::FunctionState position = mScanner.ExtractFunction("position", text);
    if (position != XPath::NotThisFunction) {
        operand.kind = Operand::Kind::Position;
        return position;
    }
    operand.kind = Operand::Kind::Last;
    return mScanner.ExtractFunction("last", text);
}

// Path ::= "/" | ("/" "/"*)? Step ("/" "/"* Step)*
//
// A relative one has a step in any case, if only one that turns out to be empty.
bool Compiler::decodePath(Frame& frame, Piece text) {
    const bool isAbsolute = !text.isEmpty() && mText[text.begin] == L'/';
    Operand& operand = operandOf(frame);
    operand.kind = isAbsolute ? Operand::Kind::AbsolutePath : Operand::Kind::RelativePath;
    if (isAbsolute) operand.pathNumber = mProgram.absolutePathCount++;
    frame.path = {text.begin + (isAbsolute ? 1 : 0), text.end};
    frame.stepLevel = frame.level;
    operand.steps.reserve(kFew);
    return isAbsolute || (decodeStep(frame) && checkContext());
}

// Every further slash in front of the step makes it a "//" once more, which selects nothing new but
// counts as a level.
bool Compiler::decodeStep(Frame& frame) {
    Step& step = operandOf(frame).steps.emplace_back(mProgram.memory());
    while (!frame.path.isEmpty() && mText[frame.path.begin] == L'/') {
        ++frame.path.begin;
        ++frame.stepLevel;
        step.afterDoubleSlash = true;
        if (frame.path.isEmpty()) return mScanner.fail(XPath::DoubleSlashAtEnd, L"//");
    }
    step.level = frame.stepLevel++;
    step.number = mProgram.stepCount++;
    Piece text{};
    if (!mScanner.SplitLocationPath(frame.path, text) || !decodeTest(text, step)) return false;
    frame.nextPredicate = 0;
    return true;
}

bool Compiler::decodeTest(Piece text, Step& step) {
    if (!mScanner.ExtractPredicates(text, step.predicates)) return false;
    step.testText = mText.view(text);
    if (!mScanner.ExtractAxis(step.testText, step.axis)) return false;
    if (mScanner.ExtractKindTest(step.testText, step.test)) return true;
    if (mScanner.error().code != XPath::NoError) return false;
    const bool isAttribute = step.axis == XPath::AttributeAxis;
    return mScanner.fail(isAttribute ? XPath::NoValidAttributeName : XPath::NoValidNameOrTest,
                         step.testText);
}

bool Compiler::checkContext() {
    if (mContext == Context::Nodes || mFrames.size() > 1) return true;
    return mScanner.fail(XPath::ContextIsNotANode, Uni16View());
}

}  // namespace Xml
