#pragma once

#include <string>
#include <vector>

#include "VexXml/XPath.h"
#include "support/ReferenceXPathScan.h"
#include "support/ReferenceXPathWalk.h"

namespace support {

/// Queries once more, slow and obvious: every text is taken apart again each time it is met, for
/// each context node anew, and every list of nodes is searched from the first to the last.
///
/// What the operations do is what `Xml::XPath` promises for those of the same name.
class ReferenceXPath {
public:
    using Text = xpath::Text;
    using Query = xpath::Query;

    explicit ReferenceXPath(Xml::Object* contextNode);

    unsigned long GetValues(const Text& expression);
    Text GetValue(const Text& expression, long wordIndex);
    Text GetValue(unsigned long index, long wordIndex);
    bool SyntaxOK(const Text& expression);

    const xpath::Items& GetResults() const { return mResults; }
    Query::ErrorCode GetErrorCode() const { return mError.code; }
    /// Empty when the error is about no piece of the expression.
    Text GetErrorDetail() const;

private:
    /// What an operand, or a whole expression, comes to.
    struct Value {
        xpath::Items items;
        /// Tagged -1 and of the same worth for each context node, as `5` and `/a` are.
        bool isForAll = false;
        bool isBareLast = false;  ///< `last()` and nothing else
    };
    struct Operand {
        xpath::OperandText source;
        Value value;
    };
    /// Where an expression stands.
    struct Place {
        bool isReverse;  ///< in a predicate of a step that goes back
        unsigned level;  ///< of the steps in it
    };

    void reset(bool syntaxOnly);
    bool findNodes(const Text& expression);
    bool evaluateWhole(const xpath::Items& context, const Text& expression);

    bool evaluate(const xpath::Items& context, const Text& expression, Place place, Value& value);
    bool evaluateOperand(const xpath::Items& context, const Text& text, Place place, Value& value);
    bool evaluateLiteral(const Text& text, Value& value);
    bool evaluateNumber(const Text& text, Value& value);
    bool evaluatePosition(const xpath::Items& context, bool isReverse, Value& value);
    bool evaluateLast(const xpath::Items& context, bool isReverse, Value& value);
    bool evaluateAbsolutePath(const Text& text, unsigned level, Value& value);
    bool evaluateRelativePath(const xpath::Items& context, const Text& text, unsigned level,
                              Value& value);
    bool checkPath(const Text& path, unsigned level);

    bool findNextNodes(const Text& path, xpath::Items& nodes, unsigned level);
    bool findBehindDoubleSlash(const Text& path, xpath::Items& nodes, unsigned level);
    bool decodeStep(const Text& text, xpath::Step& step);
    bool select(const xpath::Items& context, const xpath::Step& step, xpath::Items& selected);
    bool applyPredicates(const xpath::Step& step, xpath::Items& nodes, unsigned level);
    void noteWhetherFound(const xpath::Items& nodes, const Text& stepText, unsigned level);
    bool failBecauseNoNode();

    static void fold(std::vector<Operand>& operands, std::size_t contextSize);
    static void combine(Operand& left, const Operand& right, std::size_t contextSize);
    static xpath::Items combined(const xpath::Items& left, const xpath::Items& right,
                                 Query::ExpressionOperators op, int tag);

    xpath::Error mError;
    bool mSyntaxOnly = false;
    Xml::Document* mDocument = nullptr;
    xpath::Items mResults;
    unsigned mFailureDepth = 0;
};

}  // namespace support
