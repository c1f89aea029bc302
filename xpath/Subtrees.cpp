#include "xpath/Subtrees.h"

namespace Xml {

void Subtrees::markTops(const NodeList& tops) {
    mMarks.clear();
    mMarks.reserve(tops.size());
    for (const Object* top : tops) mMarks.insert(top, ToCome);
}

// Whether an earlier subtree held the top; if not, it is its turn now.
bool Subtrees::isPassed(const Object& top) {
    if (!mAreSeveral) return false;
    NodeTable::Value& mark = *mMarks.find(&top);
    if (mark == Passed) return true;
    mark = Passed;
    return false;
}

// A top that had its turn before the walk came to it has been left out of its own subtree, unless
// tops are included.
Subtrees::Turn Subtrees::turnOf(const Object& node) {
    NodeTable::Value* mark = mMarks.find(&node);
    if (mark == nullptr) return {true, true};
    if (*mark == Passed) return {!mIncludesTops, false};
    *mark = Passed;
    return {true, true};
}

}  // namespace Xml
