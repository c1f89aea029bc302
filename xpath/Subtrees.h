#pragma once

#include <vector>

#include "VexXml/Dom.h"
#include "dom/NodeAccess.h"
#include "xpath/NodeList.h"
#include "xpath/NodeTable.h"

namespace Xml {

/// Goes through what is below some nodes, each node once, parents before their children. Of a
/// document that is its root element and what is below that.
class Subtrees {
public:
    enum class Tops { Included, Excluded };

    /// Calls `visit` until it answers false. Where a node is below one that comes later, its own
    /// subtree has its turn first.
    template <class Visit>
    void walk(const NodeList& tops, Tops which, const Visit& visit) {
        mAreSeveral = tops.size() > 1;
        mIncludesTops = which == Tops::Included;
        if (mAreSeveral) markTops(tops);
        for (Object* top : tops) {
            if (isPassed(*top)) continue;
            if (mIncludesTops && !visit(*top)) return;
            if (!walkBelow(*top, visit)) return;
        }
    }

private:
    enum Mark : NodeTable::Value { ToCome, Passed };

    /// What remains to be done about a node that the walk has come to.
    struct Turn {
        bool isVisited;
        bool isEntered;
    };

    void markTops(const NodeList& tops);
    bool isPassed(const Object& top);
    Turn turnOf(const Object& node);

    void open(const Object& element) {
        mOpen.push_back(NodeAccess::childrenOf(static_cast<const Element&>(element)));
    }

    // No call stack is used: a tree may be deeper than that. Invariant: `mOpen` holds what is still
    // to come of the children of some elements, each element below the one in front of it.
    template <class Visit>
    bool walkBelow(Object& top, const Visit& visit) {
        mOpen.clear();
        if (top.isDocument()) {
            Element* root = top.toDocument()->getRoot();
            if (root != nullptr && !pass(*root, visit)) return false;
        } else if (top.isElement()) {
            open(top);
        }
        while (!mOpen.empty()) {
            NodeAccess::Children& siblings = mOpen.back();
            if (siblings.empty()) {
                mOpen.pop_back();
            } else if (!pass(**siblings.first++, visit)) {
                return false;
            }
        }
        return true;
    }

    template <class Visit>
    bool pass(Object& node, const Visit& visit) {
        const Turn turn = mAreSeveral ? turnOf(node) : Turn{true, true};
        if (turn.isVisited && !visit(node)) return false;
        if (turn.isEntered && NodeAccess::isElement(node)) open(node);
        return true;
    }

    bool mAreSeveral = false;
    bool mIncludesTops = false;
    NodeTable mMarks;  ///< of the tops, when there are several
    std::vector<NodeAccess::Children> mOpen;
};

}  // namespace Xml
