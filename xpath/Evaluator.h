#pragma once

#include <cstddef>
#include <memory>
#include <memory_resource>
#include <optional>
#include <vector>

#include "VexXml/Dom.h"
#include "VexXml/XPath.h"
#include "xpath/AxisWalk.h"
#include "xpath/Misses.h"
#include "xpath/Operations.h"
#include "xpath/Program.h"

namespace Xml {

/// What an expression comes to: nodes or values.
struct Outcome {
    NodeList nodes;                         ///< empty when it comes to values
    std::vector<XPath::ResultItem> values;  ///< empty when it comes to nodes
};

/// Evaluates a program in a document, which must not change meanwhile.
///
/// A predicate inside a predicate is not a call inside a call: the expressions that are being
/// evaluated wait for each other on a list of frames. An expression is evaluated for one context
/// item after another, so no lists are kept for all of them at once; what is the same for every
/// item is evaluated once.
class Evaluator {
public:
    /// `memory` must outlive it.
    Evaluator(const Program& program, Document& document, std::pmr::memory_resource* memory)
        : mProgram(program),
          mDocument(document),
          mWalk(document, memory),
          mConditions(mOperations, memory) {}

    /// Evaluates the whole expression from the context nodes. To be called once.
    Outcome evaluate(NodeList context);
    /// What to blame when there are no results.
    const Misses::Blamed& blamed() const { return mMisses.blamed(); }

private:
    /// What a path has come to.
    struct Found {
        bool isKnown = false;  ///< absolute paths only: it has been followed
        /// Where it led to; for a relative one, from the context item reached. When all that
        /// matters is whether there are any, these are some other nodes if there are.
        NodeList nodes;
        Misses misses;                       ///< from all context items so far
        std::unique_ptr<ManyValues> values;  ///< of `nodes`, once it pays
    };

    /// A path that is being followed.
    struct Route {
        bool isActive = false;
        std::size_t step = 0;      ///< the one reached
        bool isStepTaken = false;  ///< and only its predicates remain
        std::size_t predicate = 0;
        NodeList nodes;  ///< where it has led to
    };

    /// An expression that is being evaluated over its context.
    struct Frame {
        const Expression* expression = nullptr;
        NodeList context;
        bool isPredicate = false;  ///< the context is to be filtered
        bool isReverse = false;    ///< positions count from the end
        bool seeksOne = false;     ///< one node that is kept will do

        bool isCommonDone = false;  ///< what is the same for every context item is known
        std::size_t item = 0;       ///< the context item reached
        std::size_t operand = 0;    ///< the operand reached
        Route route;                ///< of that operand

        std::vector<Found> found;                 ///< by operand, for relative paths
        std::vector<std::optional<Item>> folded;  ///< by fold; nothing where an operand is empty
        NodeList kept;                            ///< of the context, by a predicate

        void reset(const Expression& next);
    };

    bool followDirectly(const Expression& expression, NodeList& context);
    Frame& pushFrame(const Expression& expression);
    void pushPredicate(Frame& frame, const Step& step);
    void popFrame();
    void advance();

    bool startNextPath(Frame& frame);
    bool mustFollow(const Frame& frame, const Operand& operand) const;
    void startPath(Frame& frame, const Operand& operand);
    void advancePath(Frame& frame);
    void takeStep(const Step& step, bool oneWillDo, Route& route, Misses& misses);
    bool isNextDecided(const Step& step, const Route& route);
    std::size_t limitOf(const Step& step, bool oneWillDo, const Route& route) const;
    bool filter(const Step& step, Route& route, Misses& misses);
    void endStep(const Step& step, Route& route, Misses& misses);
    const Expression& expressionOf(const Predicate& predicate) const;
    void endPath(Frame& frame);
    static bool isLastStep(const Frame& frame);
    static bool asksForExistence(const Frame& frame);

    void endCommon(Frame& frame);
    void endItem(Frame& frame);
    void fold(Frame& frame, bool isCommon);
    Item compare(Frame& frame, const Fold& fold);
    ManyValues* valuesOf(Frame& frame, std::size_t operand, const Fold& fold);
    Found& foundBy(Frame& frame, std::size_t operand);
    ItemList valueOf(Frame& frame, std::size_t index);
    ItemList outcomeOf(Frame& frame);

    void keepByCommon(Frame& frame);
    void keepItem(Frame& frame);
    void addResults(Frame& frame);
    void addNodes(Frame& frame);

    const Program& mProgram;
    Document& mDocument;
    AxisWalk mWalk;
    Operations mOperations;
    Conditions mConditions;  ///< of the step that is being taken
    /// Those in use come first; the others keep their memory for the next predicate.
    std::vector<std::unique_ptr<Frame>> mFrames;
    std::size_t mDepth = 0;
    std::vector<Found> mAbsolutePaths;  ///< by their numbers
    NodeList mSelected;                 ///< by the step that is being taken
    Misses mMisses;
    Outcome mOutcome;
    NodeTable mResultNodes;
};

}  // namespace Xml
