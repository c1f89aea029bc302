#pragma once

#include <cstddef>
#include <vector>

#include "xpath/Error.h"
#include "xpath/ExpressionText.h"
#include "xpath/Program.h"
#include "xpath/Scanner.h"

namespace Xml {

/// Decodes an expression, once for all the nodes that it will be evaluated for.
///
/// Pieces are decoded in the order in which evaluation comes to them, so that of several mistakes
/// the first one met is reported.
class Compiler {
public:
    /// What relative operands of the whole expression start from. Values are no nodes, so such an
    /// operand fails with `ContextIsNotANode`.
    enum class Context { Nodes, Values };

    /// `program` must be empty.
    Compiler(const ExpressionText& text, Context context, Program& program)
        : mText(text),
          mScanner(text),
          mContext(context),
          mProgram(program),
          mFrames(program.memory()) {}

    /// Makes the program for the whole text; false after a mistake. To be called once.
    bool compile();
    const XPathError& error() const { return mScanner.error(); }

private:
    /// An expression that is being decoded, and the place reached in it.
    struct Frame {
        std::size_t expression;  ///< in `Program::expressions`
        unsigned long level;     ///< of the first step of each of its paths
        Piece rest;              ///< behind the operands, and their operators, decoded so far
        /// What is left of the path of the last of them; empty when that is decoded.
        Piece path{0, 0};
        unsigned long stepLevel = 0;    ///< of the next step of that path
        std::size_t nextPredicate = 0;  ///< of the step decoded last
    };

    bool open(Piece text, unsigned long level);
    bool advance();
    Predicate* nextPredicate(Frame& frame);
    bool decodeOperand(Frame& frame, const ExpressionItem& item);
    XPath::FunctionState decodeFunction(Piece text, Operand& operand);
    bool decodePath(Frame& frame, Piece text);
    bool decodeStep(Frame& frame);
    bool decodeTest(Piece text, Step& step);
    bool checkContext();
    Operand& operandOf(const Frame& frame);

    const ExpressionText& mText;
    Scanner mScanner;
    Context mContext;
    Program& mProgram;
    std::pmr::vector<Frame> mFrames;  ///< the whole expression, a predicate in it, one in that, …
};

}  // namespace Xml
