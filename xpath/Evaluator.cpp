#include "xpath/Evaluator.h"

#include <algorithm>
#include <utility>

namespace Xml {
namespace {

// From so many nodes on, what their values have in common is worth finding out.
constexpr std::size_t kManyNodes = 8;

// Beyond this no list of nodes goes.
constexpr std::size_t kFarPlace = 0xFFFFFFFF;

// Whether positions on the axis count from the node nearest to the context node, which comes last.
bool isReverse(XPath::Axis axis) {
    return axis == XPath::ParentAxis || axis == XPath::AncestorAxis ||
           axis == XPath::PrecedingSiblingAxis || axis == XPath::PrecedingAxis ||
           axis == XPath::AncestorOrSelfAxis;
}

// A relative path without predicates, and nothing else.
bool isPlainPath(const Expression& expression) {
    const Operand& first = expression.operands.front();
    return expression.operands.size() == 1 && first.kind == Operand::Kind::RelativePath &&
           std::all_of(first.steps.begin(), first.steps.end(),
                       [](const Step& step) { return step.predicates.empty(); });
}

// Whether the predicate is nothing but a position: `2`, `last()` or `position() = 2`.
bool isPlace(const Expression& predicate) {
    const auto& operands = predicate.operands;
    const Operand::Kind kind = operands.back().kind;
    const bool isNumber = kind == Operand::Kind::Number;
    if (operands.size() == 1) return isNumber || kind == Operand::Kind::Last;
    return operands.size() == 2 && isNumber && operands.front().kind == Operand::Kind::Position &&
           predicate.folds.front().op == XPath::Equal;
}

// The number as a position among so many nodes; 0 when it is none.
std::size_t placeOf(double number, std::size_t count) {
    if (!(number >= 1 && number <= static_cast<double>(count))) return 0;
    const auto place = static_cast<std::size_t>(number);
    return static_cast<double>(place) == number ? place : 0;
}

// Needs: the predicate is a position. `last()` alone keeps the last of the list, from wherever
// positions count.
void keepPlace(const Expression& predicate, bool isReverse, NodeList& nodes) {
    const Operand& operand = predicate.operands.back();
    const std::size_t count = nodes.size();
    const std::size_t place =
        operand.kind == Operand::Kind::Last ? count : placeOf(operand.number, count);
    if (place > 0) nodes.front() = nodes[isReverse ? count - place : place - 1];
    nodes.resize(place > 0 ? 1 : 0);
}

double positionOf(bool isReverse, std::size_t item, std::size_t count) {
    return static_cast<double>(isReverse ? count - item : item + 1);
}

// What a predicate makes of its outcome for the context item at `position`.
bool isTrue(const ItemList& outcome, double position) {
    if (outcome.size() == 0 || outcome.nodes() != nullptr) return outcome.size() > 0;
    const Item item = outcome[0];
    switch (item.kind) {
        case XPath::String:
            return !item.textKey.empty();
        case XPath::Number:
            return item.number == position;
        default:
            return item.flag;
    }
}

}  // namespace

void Evaluator::Frame::reset(const Expression& next) {
    expression = &next;
    isPredicate = isReverse = seeksOne = isCommonDone = false;
    item = operand = 0;
    route.isActive = false;
    found.resize(next.operands.size());
    for (Found& operandFound : found) {
        operandFound.nodes.clear();
        operandFound.misses = Misses();
    }
    folded.assign(next.folds.size(), std::nullopt);
    kept.clear();
}

Outcome Evaluator::evaluate(NodeList context) {
    const Expression& expression = mProgram.expressions.front();
    if (followDirectly(expression, context)) return std::move(mOutcome);
    mAbsolutePaths.resize(mProgram.absolutePathCount);
    pushFrame(expression).context = std::move(context);
    while (mDepth > 0) advance();
    return std::move(mOutcome);
}

// Follows the path without a frame if none of its predicates needs one, and it starts from a single
// node or positions do not matter; otherwise answers false and does nothing.
bool Evaluator::followDirectly(const Expression& expression, NodeList& context) {
    const Operand& path = expression.operands.front();
    const bool isAbsolute = path.kind == Operand::Kind::AbsolutePath;
    const bool isPath = isAbsolute || path.kind == Operand::Kind::RelativePath;
    if (!isPath || expression.operands.size() > 1) return false;
    if (context.size() != 1 && !isPlainPath(expression)) return false;
    for (const Step& step : path.steps) {
        for (const Predicate& predicate : step.predicates) {
            if (!isPlace(expressionOf(predicate)) &&
                !Conditions::canDecide(expressionOf(predicate)))
                return false;
        }
    }
    Route route;
    route.nodes.swap(context);
    if (isAbsolute) route.nodes.assign(1, &mDocument);
    for (const Step& step : path.steps) {
        takeStep(step, false, route, mMisses);
        endStep(step, route, mMisses);
    }
    mOutcome.nodes.swap(route.nodes);
    return true;
}

Evaluator::Frame& Evaluator::pushFrame(const Expression& expression) {
    if (mDepth == mFrames.size()) mFrames.push_back(std::make_unique<Frame>());
    Frame& frame = *mFrames[mDepth++];
    frame.reset(expression);
    return frame;
}

void Evaluator::advance() {
    Frame& frame = *mFrames[mDepth - 1];
    if (frame.route.isActive) {
        advancePath(frame);
    } else if (startNextPath(frame)) {
        return;
    } else if (!frame.isCommonDone) {
        endCommon(frame);
    } else if (frame.item < frame.context.size()) {
        endItem(frame);
    } else {
        popFrame();
    }
}

bool Evaluator::startNextPath(Frame& frame) {
    if (frame.isCommonDone && frame.item == frame.context.size()) return false;
    const auto& operands = frame.expression->operands;
    while (frame.operand < operands.size() && !mustFollow(frame, operands[frame.operand])) {
        ++frame.operand;
    }
    if (frame.operand == operands.size()) return false;
    startPath(frame, operands[frame.operand]);
    return true;
}

// Paths that are the same for every context item come first, then the others for one item after
// another.
bool Evaluator::mustFollow(const Frame& frame, const Operand& operand) const {
    if (frame.isCommonDone) return operand.kind == Operand::Kind::RelativePath;
    return operand.kind == Operand::Kind::AbsolutePath &&
           !mAbsolutePaths[operand.pathNumber].isKnown;
}

void Evaluator::startPath(Frame& frame, const Operand& operand) {
    Route& route = frame.route;
    route.isActive = true;
    route.step = 0;
    route.isStepTaken = false;
    if (operand.kind == Operand::Kind::AbsolutePath) {
        route.nodes.assign(1, &mDocument);
    } else {
        route.nodes.assign(1, frame.context[frame.item]);
    }
}

void Evaluator::advancePath(Frame& frame) {
    Route& route = frame.route;
    const auto& steps = frame.expression->operands[frame.operand].steps;
    if (route.step == steps.size()) return endPath(frame);
    const Step& step = steps[route.step];
    Misses& misses = foundBy(frame, frame.operand).misses;
    if (!route.isStepTaken) {
        takeStep(step, asksForExistence(frame) && isLastStep(frame), route, misses);
    } else if (route.predicate == step.predicates.size()) {
        endStep(step, route, misses);
    } else if (!filter(step, route, misses)) {
        pushPredicate(frame, step);
    }
}

// Predicates that are decided here need no frame.
void Evaluator::takeStep(const Step& step, bool oneWillDo, Route& route, Misses& misses) {
    route.isStepTaken = true;
    route.predicate = 0;
    if (oneWillDo && step.predicates.empty()) {
        if (!mWalk.finds(step, route.nodes)) route.nodes.clear();
        return misses.note(step, !route.nodes.empty(), false);
    }
    mConditions.clear();
    while (isNextDecided(step, route)) ++route.predicate;
    Conditions* conditions = route.predicate > 0 ? &mConditions : nullptr;
    const AxisWalk::Demand demand{conditions, limitOf(step, oneWillDo, route)};
    const bool hasMatch = mWalk.collect(step, route.nodes, demand, mSelected);
    route.nodes.swap(mSelected);
    misses.note(step, hasMatch, false);
    mConditions.appendMisses(misses);
    while (route.predicate < step.predicates.size() && filter(step, route, misses)) continue;
}

// Whether conditions now decide the next predicate too.
bool Evaluator::isNextDecided(const Step& step, const Route& route) {
    return route.predicate < step.predicates.size() &&
           mConditions.add(expressionOf(step.predicates[route.predicate]));
}

// How many nodes are enough. What conditions miss among the others can only matter when nothing is
// found or a predicate follows.
std::size_t Evaluator::limitOf(const Step& step, bool oneWillDo, const Route& route) const {
    const std::size_t rest = step.predicates.size() - route.predicate;
    if (rest == 0) return oneWillDo ? 1 : AxisWalk::kNoLimit;
    if (isReverse(step.axis) || (rest > 1 && route.predicate > 0)) return AxisWalk::kNoLimit;
    const Expression& next = expressionOf(step.predicates[route.predicate]);
    if (!isPlace(next)) return AxisWalk::kNoLimit;
    const std::size_t place = placeOf(next.operands.back().number, kFarPlace);
    return place > 0 ? place : AxisWalk::kNoLimit;
}

// Applies the next predicate; false, doing nothing, when it needs a frame.
bool Evaluator::filter(const Step& step, Route& route, Misses& misses) {
    const Expression& predicate = expressionOf(step.predicates[route.predicate]);
    mConditions.clear();
    if (isPlace(predicate)) {
        keepPlace(predicate, isReverse(step.axis), route.nodes);
    } else if (mConditions.add(predicate)) {
        const auto fails = [this](Object* node) { return !mConditions.hold(*node); };
        route.nodes.erase(std::remove_if(route.nodes.begin(), route.nodes.end(), fails),
                          route.nodes.end());
        mConditions.appendMisses(misses);
    } else {
        return false;
    }
    ++route.predicate;
    return true;
}

const Expression& Evaluator::expressionOf(const Predicate& predicate) const {
    return mProgram.expressions[predicate.expression];
}

void Evaluator::endStep(const Step& step, Route& route, Misses& misses) {
    if (!step.predicates.empty()) misses.note(step, !route.nodes.empty(), true);
    ++route.step;
    route.isStepTaken = false;
}

void Evaluator::endPath(Frame& frame) {
    Found& found = foundBy(frame, frame.operand);
    found.nodes.swap(frame.route.nodes);
    found.isKnown = true;
    frame.route.isActive = false;
    ++frame.operand;
}

void Evaluator::pushPredicate(Frame& frame, const Step& step) {
    Route& route = frame.route;
    const Predicate& predicate = step.predicates[route.predicate++];
    const bool isLast = route.predicate == step.predicates.size();
    Frame& inner = pushFrame(mProgram.expressions[predicate.expression]);
    inner.context.swap(route.nodes);
    inner.isPredicate = true;
    inner.isReverse = isReverse(step.axis);
    inner.seeksOne = isLast && isLastStep(frame) && asksForExistence(frame);
}

bool Evaluator::isLastStep(const Frame& frame) {
    return frame.route.step + 1 == frame.expression->operands[frame.operand].steps.size();
}

// Whether all that matters about the path is whether it finds anything.
bool Evaluator::asksForExistence(const Frame& frame) {
    return frame.isPredicate && frame.expression->operands.size() == 1;
}

void Evaluator::popFrame() {
    Frame& frame = *mFrames[--mDepth];
    Frame* outer = mDepth > 0 ? mFrames[mDepth - 1].get() : nullptr;
    Misses& misses = outer != nullptr ? foundBy(*outer, outer->operand).misses : mMisses;
    for (std::size_t i = 0; i < frame.found.size(); ++i) misses.append(foundBy(frame, i).misses);
    if (outer != nullptr) outer->route.nodes.swap(frame.kept);
}

void Evaluator::endCommon(Frame& frame) {
    fold(frame, true);
    frame.isCommonDone = true;
    frame.operand = 0;
    const auto& folds = frame.expression->folds;
    const bool isCommon =
        folds.empty() ? frame.expression->operands.front().isCommon() : folds.back().isCommon;
    if (!isCommon) return;
    if (frame.isPredicate) {
        keepByCommon(frame);
    } else {
        addResults(frame);
    }
    frame.item = frame.context.size();
}

void Evaluator::endItem(Frame& frame) {
    fold(frame, false);
    if (frame.isPredicate) {
        keepItem(frame);
    } else {
        addResults(frame);
    }
    ++frame.item;
    frame.operand = 0;
    if (frame.seeksOne && !frame.kept.empty()) frame.item = frame.context.size();
}

// The folds of what is the same for every context item are done once, the others for each.
void Evaluator::fold(Frame& frame, bool isCommon) {
    const auto& folds = frame.expression->folds;
    for (std::size_t i = 0; i < folds.size(); ++i) {
        const Fold& fold = folds[i];
        if (fold.isCommon != isCommon) continue;
        frame.folded[i] = isComparison(fold.op)
                              ? compare(frame, fold)
                              : mOperations.CalculusOnExpressionItems(
                                    valueOf(frame, fold.left), valueOf(frame, fold.right), fold.op);
    }
}

Item Evaluator::compare(Frame& frame, const Fold& fold) {
    const ItemList left = valueOf(frame, fold.left);
    const ItemList right = valueOf(frame, fold.right);
    if (ManyValues* values = valuesOf(frame, fold.right, fold)) {
        return Item::ofFlag(holdsForSome(left, *values, fold.op));
    }
    if (ManyValues* values = valuesOf(frame, fold.left, fold)) {
        return Item::ofFlag(holdsForSome(right, *values, mirrored(fold.op)));
    }
    return Item::ofFlag(mOperations.CompareExpressionItems(left, right, fold.op));
}

// Only of many nodes that every context item is compared with; otherwise null.
ManyValues* Evaluator::valuesOf(Frame& frame, std::size_t operand, const Fold& fold) {
    const auto& operands = frame.expression->operands;
    const bool isOftenUsed = !fold.isCommon && operand < operands.size() &&
                             operands[operand].kind == Operand::Kind::AbsolutePath;
    if (!isOftenUsed) return nullptr;
    Found& found = foundBy(frame, operand);
    if (found.nodes.size() < kManyNodes) return nullptr;
    if (!found.values) found.values = mOperations.manyValues(found.nodes);
    return found.values.get();
}

// An absolute path leads to the same from everywhere, so it is followed once in the whole query.
Evaluator::Found& Evaluator::foundBy(Frame& frame, std::size_t operand) {
    const Operand& path = frame.expression->operands[operand];
    return path.kind == Operand::Kind::AbsolutePath ? mAbsolutePaths[path.pathNumber]
                                                    : frame.found[operand];
}

ItemList Evaluator::valueOf(Frame& frame, std::size_t index) {
    const auto& operands = frame.expression->operands;
    if (index >= operands.size()) {
        const std::optional<Item>& item = frame.folded[index - operands.size()];
        return item ? ItemList(*item) : ItemList();
    }
    const Operand& operand = operands[index];
    const std::size_t count = frame.context.size();
    switch (operand.kind) {
        case Operand::Kind::Literal:
            return ItemList(Item::ofText(operand.literalKey));
        case Operand::Kind::Number:
            return ItemList(Item::ofNumber(operand.number));
        case Operand::Kind::Position:
            return ItemList(Item::ofNumber(positionOf(frame.isReverse, frame.item, count)));
        case Operand::Kind::Last:
            // The position of the last node, which is 1 where positions count from there.
            if (count == 0) return {};
            return ItemList(Item::ofNumber(positionOf(frame.isReverse, count - 1, count)));
        default:
            return ItemList(foundBy(frame, index).nodes);
    }
}

ItemList Evaluator::outcomeOf(Frame& frame) {
    const Expression& expression = *frame.expression;
    const bool isFolded = !expression.folds.empty();
    return valueOf(frame, isFolded ? expression.operands.size() + expression.folds.size() - 1 : 0);
}

// A number keeps the item at that position.
void Evaluator::keepByCommon(Frame& frame) {
    const ItemList outcome = outcomeOf(frame);
    if (outcome.size() == 0) return;
    const std::size_t count = frame.context.size();
    if (outcome.nodes() != nullptr || outcome[0].kind != XPath::Number) {
        if (isTrue(outcome, 0)) frame.kept = frame.context;
    } else if (const std::size_t place = placeOf(outcome[0].number, count)) {
        frame.kept.push_back(frame.context[frame.isReverse ? count - place : place - 1]);
    }
}

void Evaluator::keepItem(Frame& frame) {
    const double position = positionOf(frame.isReverse, frame.item, frame.context.size());
    if (isTrue(outcomeOf(frame), position)) frame.kept.push_back(frame.context[frame.item]);
}

void Evaluator::addResults(Frame& frame) {
    const ItemList outcome = outcomeOf(frame);
    if (outcome.nodes() != nullptr) return addNodes(frame);
    if (outcome.size() == 0) return;
    const Item item = outcome[0];
    XPath::ResultItem& result = mOutcome.values.emplace_back();
    result.kind = item.kind;
    result.number = item.number;
    result.flag = item.flag;
    if (item.kind == XPath::String)
        result.text = VexSys::Uni16String(frame.expression->operands.front().literal);
}

// The expression is a path and nothing else.
void Evaluator::addNodes(Frame& frame) {
    NodeList& nodes = foundBy(frame, 0).nodes;
    if (frame.context.size() <= 1) {
        mOutcome.nodes = std::move(nodes);
        return;
    }
    for (Object* node : nodes) {
        if (mResultNodes.insert(node)) mOutcome.nodes.push_back(node);
    }
}

}  // namespace Xml
