#include "xpath/Evaluator.h"

#include <algorithm>
#include <utility>

namespace Xml {
namespace {

// From so many nodes on, what their texts have in common is worth finding out.
constexpr std::size_t kManyNodes = 8;

// Whether positions on the axis count from the node nearest to the context node, which comes last.
bool isReverse(XPath::Axis axis) {
    return axis == XPath::ParentAxis || axis == XPath::AncestorAxis ||
           axis == XPath::PrecedingSiblingAxis || axis == XPath::PrecedingAxis ||
           axis == XPath::AncestorOrSelfAxis;
}

bool hasPredicates(const Operand& operand) {
    return std::any_of(operand.steps.begin(), operand.steps.end(),
                       [](const Step& step) { return !step.predicates.empty(); });
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

// Without predicates, which count positions, a path leads to the same nodes in the same order
// whether it starts from all context nodes at once or from one after another.
std::vector<XPath::ResultItem> Evaluator::evaluate(const NodeList& context) {
    const Expression& expression = mProgram.expressions.front();
    const Operand& first = expression.operands.front();
    const bool isPlainPath = expression.operands.size() == 1 &&
                             first.kind == Operand::Kind::RelativePath && !hasPredicates(first);
    NodeList nodes = context;
    if (isPlainPath && nodes.size() > 1) {
        mStart = nodes;
        nodes.resize(1);
    }
    pushFrame(expression, nodes);
    while (mDepth > 0) advance();
    return std::move(mResults);
}

// Takes the context over and leaves some other memory in its place.
Evaluator::Frame& Evaluator::pushFrame(const Expression& expression, NodeList& context) {
    if (mDepth == mFrames.size()) mFrames.push_back(std::make_unique<Frame>());
    Frame& frame = *mFrames[mDepth++];
    frame.expression = &expression;
    frame.context.swap(context);
    frame.operands.resize(expression.operands.size());
    for (OperandState& operand : frame.operands) {
        operand.nodes.clear();
        operand.misses = Misses();
        operand.texts.reset();
    }
    frame.folded.assign(expression.folds.size(), std::nullopt);
    frame.isPredicate = frame.isReverse = frame.seeksOne = false;
    frame.isCommonDone = frame.isInPath = false;
    frame.item = frame.operand = 0;
    frame.kept.clear();
    return frame;
}

void Evaluator::advance() {
    Frame& frame = *mFrames[mDepth - 1];
    if (frame.isInPath) {
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

// Paths that are the same for every context item come first, then the others for one item after
// another.
bool Evaluator::startNextPath(Frame& frame) {
    if (frame.isCommonDone && frame.item == frame.context.size()) return false;
    const auto kind =
        frame.isCommonDone ? Operand::Kind::RelativePath : Operand::Kind::AbsolutePath;
    const std::vector<Operand>& operands = frame.expression->operands;
    while (frame.operand < operands.size() && operands[frame.operand].kind != kind) {
        ++frame.operand;
    }
    if (frame.operand == operands.size()) return false;
    startPath(frame, operands[frame.operand]);
    return true;
}

void Evaluator::startPath(Frame& frame, const Operand& operand) {
    frame.isInPath = true;
    frame.step = 0;
    frame.isStepTaken = false;
    if (!mStart.empty()) {
        frame.nodes.swap(mStart);
    } else if (operand.kind == Operand::Kind::AbsolutePath) {
        frame.nodes.assign(1, &mDocument);
    } else {
        frame.nodes.assign(1, frame.context[frame.item]);
    }
}

void Evaluator::advancePath(Frame& frame) {
    const std::vector<Step>& steps = frame.expression->operands[frame.operand].steps;
    if (frame.step == steps.size()) {
        frame.operands[frame.operand].nodes.swap(frame.nodes);
        frame.isInPath = false;
        ++frame.operand;
        return;
    }
    const Step& step = steps[frame.step];
    if (!frame.isStepTaken) {
        takeStep(frame, step);
    } else if (frame.predicate < step.predicates.size()) {
        pushPredicate(frame, step);
    } else {
        endStep(frame, step);
    }
}

// Of what is only asked to be there, the context node stands for whatever was found.
void Evaluator::takeStep(Frame& frame, const Step& step) {
    if (asksForExistence(frame) && isLastStep(frame) && step.predicates.empty()) {
        if (!mWalk.finds(step, frame.nodes)) frame.nodes.clear();
    } else {
        mWalk.collect(step, frame.nodes, mSelected);
        frame.nodes.swap(mSelected);
    }
    Misses& misses = frame.operands[frame.operand].misses;
    misses.note(step, !frame.nodes.empty(), false);
    frame.isStepTaken = true;
    frame.predicate = 0;
}

void Evaluator::endStep(Frame& frame, const Step& step) {
    Misses& misses = frame.operands[frame.operand].misses;
    if (!step.predicates.empty()) misses.note(step, !frame.nodes.empty(), true);
    ++frame.step;
    frame.isStepTaken = false;
}

void Evaluator::pushPredicate(Frame& frame, const Step& step) {
    const std::size_t expression = step.predicates[frame.predicate++].expression;
    const bool isLast = frame.predicate == step.predicates.size();
    Frame& predicate = pushFrame(mProgram.expressions[expression], frame.nodes);
    predicate.isPredicate = true;
    predicate.isReverse = isReverse(step.axis);
    predicate.seeksOne = isLast && isLastStep(frame) && asksForExistence(frame);
}

bool Evaluator::isLastStep(const Frame& frame) {
    return frame.step + 1 == frame.expression->operands[frame.operand].steps.size();
}

// Whether all that matters about the path is whether it finds anything.
bool Evaluator::asksForExistence(const Frame& frame) {
    return frame.isPredicate && frame.expression->operands.size() == 1;
}

void Evaluator::popFrame() {
    Frame& frame = *mFrames[--mDepth];
    Frame* outer = mDepth > 0 ? mFrames[mDepth - 1].get() : nullptr;
    Misses& misses = outer != nullptr ? outer->operands[outer->operand].misses : mMisses;
    for (const OperandState& operand : frame.operands) misses.append(operand.misses);
    if (outer != nullptr) outer->nodes.swap(frame.kept);
}

void Evaluator::endCommon(Frame& frame) {
    fold(frame, true);
    frame.isCommonDone = true;
    frame.operand = 0;
    const std::vector<Fold>& folds = frame.expression->folds;
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
    const std::vector<Fold>& folds = frame.expression->folds;
    for (std::size_t i = 0; i < folds.size(); ++i) {
        const Fold& fold = folds[i];
        if (fold.isCommon != isCommon) continue;
        frame.folded[i] = isComparison(fold.op)
                              ? compare(frame, fold)
                              : CalculusOnExpressionItems(valueOf(frame, fold.left),
                                                          valueOf(frame, fold.right), fold.op);
    }
}

Item Evaluator::compare(Frame& frame, const Fold& fold) {
    const ItemList left = valueOf(frame, fold.left);
    const ItemList right = valueOf(frame, fold.right);
    if (const NodeTexts* texts = textsOf(frame, fold.right, fold)) {
        return Item::ofFlag(CompareExpressionItems(left, right, fold.op, texts));
    }
    if (const NodeTexts* texts = textsOf(frame, fold.left, fold)) {
        return Item::ofFlag(CompareExpressionItems(right, left, mirrored(fold.op), texts));
    }
    return Item::ofFlag(CompareExpressionItems(left, right, fold.op));
}

// Only of nodes that every context item is compared with; otherwise null.
const NodeTexts* Evaluator::textsOf(Frame& frame, std::size_t operand, const Fold& fold) {
    const std::vector<Operand>& operands = frame.expression->operands;
    const bool isOftenUsed = !fold.isCommon && operand < operands.size() &&
                             operands[operand].kind == Operand::Kind::AbsolutePath;
    if (!isOftenUsed) return nullptr;
    OperandState& state = frame.operands[operand];
    if (state.nodes.size() < kManyNodes) return nullptr;
    if (!state.texts) state.texts = std::make_unique<NodeTexts>(state.nodes);
    return state.texts.get();
}

ItemList Evaluator::valueOf(const Frame& frame, std::size_t index) {
    const std::vector<Operand>& operands = frame.expression->operands;
    if (index >= operands.size()) {
        const std::optional<Item>& item = frame.folded[index - operands.size()];
        return item ? ItemList(*item) : ItemList();
    }
    const Operand& operand = operands[index];
    switch (operand.kind) {
        case Operand::Kind::Literal:
            return ItemList(Item::ofText(operand.literalKey));
        case Operand::Kind::Number:
            return ItemList(Item::ofNumber(operand.number));
        case Operand::Kind::Position:
            return ItemList(Item::ofNumber(positionOf(frame, frame.item)));
        case Operand::Kind::Last:
            return lastOf(frame);
        default:
            return ItemList(frame.operands[index].nodes);
    }
}

double Evaluator::positionOf(const Frame& frame, std::size_t item) {
    return static_cast<double>(frame.isReverse ? frame.context.size() - item : item + 1);
}

// The position of the node farthest to the back, so 1 where positions count from there.
ItemList Evaluator::lastOf(const Frame& frame) {
    if (frame.context.empty()) return {};
    return ItemList(Item::ofNumber(positionOf(frame, frame.context.size() - 1)));
}

ItemList Evaluator::outcomeOf(const Frame& frame) {
    const Expression& expression = *frame.expression;
    return valueOf(frame, expression.folds.empty()
                              ? 0
                              : expression.operands.size() + expression.folds.size() - 1);
}

// A number keeps the item at that position. `last()` alone belongs to one item and keeps that.
void Evaluator::keepByCommon(Frame& frame) {
    const ItemList outcome = outcomeOf(frame);
    if (outcome.size() == 0) return;
    const std::size_t count = frame.context.size();
    const Operand& first = frame.expression->operands.front();
    if (frame.expression->folds.empty() && first.kind == Operand::Kind::Last) {
        frame.kept.push_back(frame.context[frame.isReverse ? 0 : count - 1]);
    } else if (outcome.nodes() != nullptr || outcome[0].kind != XPath::Number) {
        if (isTrue(outcome, 0)) frame.kept.swap(frame.context);
    } else {
        const double position = outcome[0].number;
        if (!(position >= 1 && position <= static_cast<double>(count))) return;
        const auto place = static_cast<std::size_t>(position);
        if (static_cast<double>(place) != position) return;
        frame.kept.push_back(frame.context[frame.isReverse ? count - place : place - 1]);
    }
}

void Evaluator::keepItem(Frame& frame) {
    const bool isKept = isTrue(outcomeOf(frame), positionOf(frame, frame.item));
    if (isKept) frame.kept.push_back(frame.context[frame.item]);
}

void Evaluator::addResults(const Frame& frame) {
    const ItemList outcome = outcomeOf(frame);
    for (std::size_t i = 0; i < outcome.size(); ++i) {
        const Item item = outcome[i];
        const bool mayRepeat = item.kind == XPath::Node && frame.context.size() > 1;
        if (mayRepeat && !mResultNodes.insert(item.node)) continue;
        XPath::ResultItem& result = mResults.emplace_back();
        result.kind = item.kind;
        result.node = item.node;
        result.number = item.number;
        result.flag = item.flag;
        if (item.kind == XPath::String) result.text = frame.expression->operands.front().literal;
    }
}

}  // namespace Xml
