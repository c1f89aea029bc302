#pragma once

#include <memory>

#include "xpath/CompiledExpression.h"

namespace Xml {

/// The expressions that a thread has used of late, compiled: most programs ask the same few again
/// and again, and in a small document compiling takes longer than the search.
///
/// Who uses an expression takes it out, so that a query may run inside another one.
class RecentExpressions {
public:
    /// The expression, compiled if it is among them and otherwise new.
    static std::unique_ptr<CompiledExpression> take(const ExpressionSource& source);
    /// In the place of the oldest if there are many. Needs: it is compiled, with nodes as context.
    static void keep(std::unique_ptr<CompiledExpression> expression) noexcept;
};

}  // namespace Xml
