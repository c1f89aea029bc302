#pragma once

namespace faults {

/// Which calls fail, once some have succeeded.
enum class Failing { Once, FromThenOn };

/// What is to become of a thread's calls of one kind. Nothing is, without one.
class Plan {
public:
    Plan() = default;
    Plan(bool& hasFailed, Failing failing, long count)
        : mHasFailed(&hasFailed), mFailing(failing), mLeft(count) {
        hasFailed = false;
    }

    /// To be asked by each call.
    bool failsNow() {
        if (mHasFailed == nullptr || mLeft-- > 0) return false;
        if (mFailing == Failing::Once && *mHasFailed) return false;
        *mHasFailed = true;
        return true;
    }

private:
    bool* mHasFailed = nullptr;
    Failing mFailing = Failing::Once;
    long mLeft = 0;  ///< calls that still succeed
};

}  // namespace faults
