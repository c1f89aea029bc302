#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <vector>

#include "VexXml/Dom.h"
#include "VexXml/XPath.h"
#include "xpath/AxisWalk.h"
#include "xpath/Comparison.h"
#include "xpath/Misses.h"
#include "xpath/Program.h"

namespace Xml {

/// Evaluates a program in a document, which must not change meanwhile.
///
/// A predicate inside a predicate is not a call inside a call: the expressions that are being
/// evaluated wait for each other on a list of frames. An expression is evaluated for one context
/// item after another, so no lists are kept for all of them at once; what is the same for every
/// item is evaluated once.
class Evaluator {
public:
    Evaluator(const Program& program, Document& document)
        : mProgram(program), mDocument(document), mWalk(document) {}

    /// Evaluates the whole expression from the context nodes. To be called once.
    std::vector<XPath::ResultItem> evaluate(const NodeList& context);
    /// What to blame when there are no results.
    const Misses::Blamed& blamed() const { return mMisses.blamed(); }

private:
    /// What is known of an operand.
    struct OperandState {
        NodeList nodes;  ///< paths: what was found, for the context item reached if it is relative
        Misses misses;   ///< for all context items so far
        std::unique_ptr<NodeTexts> texts;  ///< of `nodes`, once it pays
    };

    /// An expression that is being evaluated over its context.
    struct Frame {
        const Expression* expression = nullptr;
        NodeList context;
        bool isPredicate = false;  ///< the context is to be filtered
        bool isReverse = false;    ///< positions count from the end
        bool seeksOne = false;     ///< one node that is kept will do

        std::vector<OperandState> operands;
        std::vector<std::optional<Item>> folded;  ///< by fold; nothing where an operand is empty

        bool isCommonDone = false;  ///< what is the same for every context item is known
        std::size_t item = 0;       ///< the context item reached
        std::size_t operand = 0;    ///< the operand reached

        bool isInPath = false;     ///< the operand is a path, which is being followed
        std::size_t step = 0;      ///< the step of it reached
        bool isStepTaken = false;  ///< and only its predicates remain
        std::size_t predicate = 0;
        NodeList nodes;  ///< what the path has led to

        NodeList kept;  ///< of the context, by a predicate
    };

    Frame& pushFrame(const Expression& expression, NodeList& context);
    void pushPredicate(Frame& frame, const Step& step);
    void popFrame();
    void advance();

    bool startNextPath(Frame& frame);
    void startPath(Frame& frame, const Operand& operand);
    void advancePath(Frame& frame);
    void takeStep(Frame& frame, const Step& step);
    static void endStep(Frame& frame, const Step& step);
    static bool isLastStep(const Frame& frame);
    static bool asksForExistence(const Frame& frame);

    void endCommon(Frame& frame);
    void endItem(Frame& frame);
    static void fold(Frame& frame, bool isCommon);
    static Item compare(Frame& frame, const Fold& fold);
    static const NodeTexts* textsOf(Frame& frame, std::size_t operand, const Fold& fold);
    static ItemList valueOf(const Frame& frame, std::size_t index);
    static double positionOf(const Frame& frame, std::size_t item);
    static ItemList lastOf(const Frame& frame);
    static ItemList outcomeOf(const Frame& frame);

    static void keepByCommon(Frame& frame);
    static void keepItem(Frame& frame);
    void addResults(const Frame& frame);

    const Program& mProgram;
    Document& mDocument;
    AxisWalk mWalk;
    /// Those in use come first; the others keep their memory for the next predicate.
    std::vector<std::unique_ptr<Frame>> mFrames;
    std::size_t mDepth = 0;
    /// Where a path starts from if that is more than one context item.
    NodeList mStart;
    NodeList mSelected;  ///< by the step that is being taken
    Misses mMisses;
    std::vector<XPath::ResultItem> mResults;
    NodeTable mResultNodes;
};

}  // namespace Xml
