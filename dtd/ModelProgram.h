#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "dtd/ModelAccess.h"

namespace Xml {

struct ElementRule;
class ElementRules;

/// A model of element-only content as a program, which tells from the names of the children alone
/// what the model makes of them if each of them is valid.
///
/// Needs no call stack, however deep the model nests.
class ModelProgram {
public:
    enum class Verdict { Fits, DoesNotFit, GoesOnForEver };

    /// A child: the rule of its name, or null for character data.
    using Kind = ElementRule*;

    /// False when names alone do not tell: there are particles of a class of a caller's, or of
    /// another DTD than that of the rules.
    bool compile(const ChildrenSpec& model, ElementRules& rules);

    /// A step to go back to, and the child to go on with there.
    struct Place {
        std::uint32_t step;
        std::size_t child;
    };

    /// `places` is used while it runs, and left for the next run.
    Verdict run(const Kind* children, std::size_t count, std::vector<Place>& places) const;

private:
    friend class ModelCompiler;

    /// Where a failure goes on is a stack of places.
    enum class Op : std::uint8_t {
        TakeOne,       ///< a child of that kind
        TakeOptional,  ///< one of that kind if it is there
        TakeAny,       ///< as many of that kind as there are
        TakeText,      ///< character data; succeeds also where no child is left
        Try,           ///< puts `target`, with the next child, on the stack
        Commit,        ///< takes that off again and goes to `target`
        Repeat,        ///< goes to `target` again, unless no child is left
        Fail,
        End
    };
    struct Step {
        Op op;
        std::uint32_t target;
        Kind kind;
    };

    std::vector<Step> mSteps;
};

}  // namespace Xml
