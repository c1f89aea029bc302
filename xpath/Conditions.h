#pragma once

#include <memory_resource>
#include <vector>

#include "xpath/Misses.h"
#include "xpath/NodeTest.h"
#include "xpath/Operations.h"
#include "xpath/Program.h"

namespace Xml {

/// Decides predicates for which it is enough to look at a node's attributes or children, or at the
/// node itself, one after another: `[@id]`, `[name = 'x']`, `[7 < @n]`. Whatever comes before or
/// behind the node does not matter to them, so they can be decided while nodes are being gathered.
class Conditions {
public:
    /// `memory` must outlive it.
    Conditions(Operations& operations, std::pmr::memory_resource* memory)
        : mOperations(operations), mConditions(memory) {}

    /// Whether `add` would take the predicate.
    static bool canDecide(const Expression& predicate);

    void clear() { mConditions.clear(); }
    /// False, changing nothing, when the predicate asks for more. The expression must stay until
    /// conditions are cleared.
    bool add(const Expression& predicate);
    bool isEmpty() const { return mConditions.empty(); }

    /// Whether all are true of the node. One that is not ends the search, as it would if each
    /// predicate had a list of nodes of its own to filter.
    bool hold(Object& node);
    /// What the paths of the predicates have missed, one predicate after another.
    void appendMisses(Misses& misses) const;

private:
    struct Condition {
        explicit Condition(const Step& asked) : step(&asked), matches(asked.test) {}

        const Step* step;
        NodeMatcher matches;
        bool isComparison = false;  ///< and so has the two below
        XPath::ExpressionOperators op{};
        Item value;
        bool isByBytes = false;  ///< equality with a text that tells by its bytes what it equals
        Misses misses;
    };

    void add(const Operand& path, const Operand& value, XPath::ExpressionOperators op);
    bool holds(Condition& condition, Object& node);
    template <class Node>
    bool isTrueOf(const Condition& condition, Node& found);

    Operations& mOperations;
    std::pmr::vector<Condition> mConditions;
};

}  // namespace Xml
