#include "xpath/Conditions.h"

#include <algorithm>

#include "dom/AttributeList.h"

namespace Xml {
namespace {

bool isShortPath(const Operand& operand) {
    if (operand.kind != Operand::Kind::RelativePath || operand.steps.size() != 1) return false;
    const Step& step = operand.steps.front();
    return !step.afterDoubleSlash && step.predicates.empty() &&
           (step.axis == XPath::AttributeAxis || step.axis == XPath::ChildAxis ||
            step.axis == XPath::SelfAxis);
}

bool isValue(const Operand& operand) {
    return operand.kind == Operand::Kind::Literal || operand.kind == Operand::Kind::Number;
}

// Calls `visit` for what the step leads to, whatever its test, until it answers true. Attributes
// are told from other nodes by their type.
template <class Visit>
void visitUntil(XPath::Axis axis, Object& node, const Visit& visit) {
    if (axis == XPath::SelfAxis) {
        visit(node);
    } else if (NodeAccess::isElement(node)) {
        const Element& element = static_cast<Element&>(node);
        if (axis == XPath::ChildAxis) {
            for (Object* child : NodeAccess::childrenOf(element)) {
                if (visit(*child)) return;
            }
        } else if (const AttributeList* attributes = AttributeList::of(element)) {
            attributes->anyOf(visit);
        }
    } else if (axis == XPath::ChildAxis && node.isDocument()) {
        if (Element* root = node.toDocument()->getRoot()) visit(*root);
    }
}

}  // namespace

bool Conditions::canDecide(const Expression& predicate) {
    const auto& operands = predicate.operands;
    if (operands.size() == 1) return isShortPath(operands.front());
    return operands.size() == 2 && isComparison(predicate.folds.front().op) &&
           ((isShortPath(operands[0]) && isValue(operands[1])) ||
            (isValue(operands[0]) && isShortPath(operands[1])));
}

bool Conditions::add(const Expression& predicate) {
    const auto& operands = predicate.operands;
    if (!canDecide(predicate)) return false;
    if (operands.size() == 1) {
        mConditions.emplace_back(operands.front().steps.front());
        return true;
    }
    const XPath::ExpressionOperators op = predicate.folds.front().op;
    if (isValue(operands[0])) {
        add(operands[1], operands[0], mirrored(op));
    } else {
        add(operands[0], operands[1], op);
    }
    return true;
}

void Conditions::add(const Operand& path, const Operand& value, XPath::ExpressionOperators op) {
    Condition& condition = mConditions.emplace_back(path.steps.front());
    const bool isText = value.kind == Operand::Kind::Literal;
    condition.isComparison = true;
    condition.op = op;
    condition.value = isText ? Item::ofText(value.literalKey) : Item::ofNumber(value.number);
    condition.isByBytes = isText && (op == XPath::Equal || op == XPath::NotEqual) &&
                          equalsOnlyItself(value.literalKey);
}

bool Conditions::hold(Object& node) {
    return std::all_of(mConditions.begin(), mConditions.end(),
                       [&](Condition& condition) { return holds(condition, node); });
}

bool Conditions::holds(Condition& condition, Object& node) {
    bool hasFound = false;
    bool isTrue = false;
    visitUntil(condition.step->axis, node, [&](auto& candidate) {
        if (!condition.matches(candidate)) return false;
        hasFound = true;
        isTrue = !condition.isComparison || isTrueOf(condition, candidate);
        return isTrue;
    });
    condition.misses.note(*condition.step, hasFound, false);
    return isTrue;
}

template <class Node>
bool Conditions::isTrueOf(const Condition& condition, Node& found) {
    if (!condition.isByBytes) {
        return mOperations.CompareResultItems(Item::ofNode(&found), condition.value, condition.op);
    }
    return mOperations.isTextOf(found, condition.value.textKey) == (condition.op == XPath::Equal);
}

void Conditions::appendMisses(Misses& misses) const {
    for (const Condition& condition : mConditions) misses.append(condition.misses);
}

}  // namespace Xml
