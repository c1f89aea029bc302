#include "xpath/RecentExpressions.h"

#include <algorithm>
#include <array>
#include <utility>

namespace Xml {
namespace {

constexpr std::size_t kMost = 8;

// Longer ones take more memory than a thread should hold on to.
constexpr std::size_t kLongest = 128;

class Kept {
public:
    /// Null at the end of the thread, when it is too late to keep anything.
    static Kept* ofThisThread() {
        if (sHasEnded) return nullptr;
        static thread_local Kept kept;
        return &kept;
    }

    Kept() = default;
    Kept(const Kept&) = delete;
    Kept& operator=(const Kept&) = delete;
    ~Kept() { sHasEnded = true; }

    std::unique_ptr<CompiledExpression> take(const ExpressionSource& source) {
        const auto found = std::find_if(mExpressions.begin(), mExpressions.end(), [&](auto& each) {
            return each != nullptr && each->isFrom(source);
        });
        return found != mExpressions.end() ? std::move(*found) : nullptr;
    }

    void keep(std::unique_ptr<CompiledExpression> expression) {
        const auto free = std::find(mExpressions.begin(), mExpressions.end(), nullptr);
        if (free != mExpressions.end()) {
            *free = std::move(expression);
        } else {
            mExpressions[mOldest] = std::move(expression);
            mOldest = (mOldest + 1) % kMost;
        }
    }

private:
    static thread_local bool sHasEnded;

    std::array<std::unique_ptr<CompiledExpression>, kMost> mExpressions;
    std::size_t mOldest = 0;  ///< roughly: what is taken and kept again may change its place
};

thread_local bool Kept::sHasEnded = false;

}  // namespace

std::unique_ptr<CompiledExpression> RecentExpressions::take(const ExpressionSource& source) {
    Kept* kept = source.bytes.size() <= kLongest ? Kept::ofThisThread() : nullptr;
    std::unique_ptr<CompiledExpression> expression = kept != nullptr ? kept->take(source) : nullptr;
    if (expression == nullptr) return std::make_unique<CompiledExpression>(source);
    expression->lookUpNames();
    return expression;
}

void RecentExpressions::keep(std::unique_ptr<CompiledExpression> expression) noexcept {
    Kept* kept = expression->sourceSize() <= kLongest ? Kept::ofThisThread() : nullptr;
    if (kept != nullptr) kept->keep(std::move(expression));
}

}  // namespace Xml
