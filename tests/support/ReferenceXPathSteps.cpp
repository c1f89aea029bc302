#include "support/ReferenceXPath.h"
#include "support/ReferenceXPathValues.h"

namespace support {

using xpath::Items;
using Text = ReferenceXPath::Text;
using Query = ReferenceXPath::Query;
using xpath::Step;

namespace {

bool isTrue(const Query::ResultItem& item, std::size_t position) {
    switch (item.kind) {
        case Query::Node:
            return true;
        case Query::String:
            return !item.text.empty();
        case Query::Number:
            return item.number == static_cast<double>(position);
        case Query::Boolean:
            return item.flag;
    }
    return false;
}

bool goesBack(Query::Axis axis) {
    return axis == Query::ParentAxis || axis == Query::AncestorAxis ||
           axis == Query::PrecedingSiblingAxis || axis == Query::PrecedingAxis ||
           axis == Query::AncestorOrSelfAxis;
}

}  // namespace

// NOLINTBEGIN(misc-no-recursion): the inputs are short, and this is what is to be compared with
// Takes the path apart over no nodes, so that whether it is well-formed does not depend on which
// there are.
bool ReferenceXPath::checkPath(const Text& path, unsigned level) {
    const bool wasSyntaxOnly = mSyntaxOnly;
    mSyntaxOnly = true;
    Items none;
    const bool isWellFormed = findNextNodes(path, none, level);
    mSyntaxOnly = wasSyntaxOnly;
    return isWellFormed;
}

bool ReferenceXPath::findNextNodes(const Text& path, Items& nodes, unsigned level) {
    if (xpath::beginsWith(path, L'/')) return findBehindDoubleSlash(path.substr(1), nodes, level);
    Text text;
    Text rest;
    Step step;
    if (!xpath::splitLocationPath(path, text, rest, mError)) return false;
    if (!decodeStep(text, step)) return false;
    Items selected;
    if (!select(nodes, step, selected)) return false;
    noteWhetherFound(selected, step.testText, level);
    if (!applyPredicates(step, selected, level)) return false;
    nodes = selected;
    return rest.empty() || findNextNodes(rest, nodes, level + 1);
}

bool ReferenceXPath::findBehindDoubleSlash(const Text& path, Items& nodes, unsigned level) {
    Items selected;
    for (const Query::ResultItem& item : nodes) {
        if (item.kind != Query::Node) return failBecauseNoNode();
        xpath::selectDescendantsOrSelf(*item.node, selected);
    }
    if (path.empty()) return mError.set(Query::DoubleSlashAtEnd, L"//");
    nodes = selected;
    return findNextNodes(path, nodes, level + 1);
}

// A step that cannot be read and for which nothing else is to blame has no valid name.
bool ReferenceXPath::decodeStep(const Text& text, Step& step) {
    const xpath::Error before = mError;
    mError = {};
    if (xpath::readStep(text, step, mError)) {
        mError = before;
        return true;
    }
    if (mError.code != Query::NoError) return false;
    const bool isAttribute = step.axis == Query::AttributeAxis;
    return mError.set(isAttribute ? Query::NoValidAttributeName : Query::NoValidNameOrTest,
                      step.testText);
}

bool ReferenceXPath::select(const Items& context, const Step& step, Items& selected) {
    if (mSyntaxOnly) return true;
    for (const Query::ResultItem& item : context) {
        if (item.kind != Query::Node) return failBecauseNoNode();
        xpath::selectFrom(*item.node, step, *mDocument, selected);
    }
    return true;
}

bool ReferenceXPath::applyPredicates(const Step& step, Items& nodes, unsigned level) {
    const bool isReverse = goesBack(step.axis);
    Text stepText = step.testText;
    for (const Text& predicate : step.predicates) {
        Value value;
        if (!evaluate(nodes, predicate, {isReverse, level + 1}, value)) return false;
        Items kept;
        for (std::size_t i = 0; i < nodes.size(); ++i) {
            bool keep = false;
            for (const auto& item : xpath::belongingTo(value.items, value.isForAll, i)) {
                keep = keep || isTrue(item, xpath::positionOf(i, nodes.size(), isReverse));
            }
            if (value.isBareLast) keep = value.items.front().tag == static_cast<int>(i);
            if (keep) kept.push_back(nodes[i]);
        }
        nodes = kept;
        stepText += L"[" + predicate + L"]";
    }
    noteWhetherFound(nodes, stepText, level);
    return true;
}
// NOLINTEND(misc-no-recursion)

// The deepest step that finds nothing is the one to name, unless a step behind it finds something.
void ReferenceXPath::noteWhetherFound(const Items& nodes, const Text& stepText, unsigned level) {
    if (mSyntaxOnly) return;
    const bool isNotFound = mError.code == Query::NodeNotFound;
    if (nodes.empty() && (isNotFound || mError.code == Query::NoError) && level > mFailureDepth) {
        mError.set(Query::NodeNotFound, stepText);
        mFailureDepth = level;
    }
    if (!nodes.empty() && isNotFound) {
        mError = {};
        mFailureDepth = 0;
    }
}

}  // namespace support
