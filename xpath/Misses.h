#pragma once

#include "xpath/Program.h"

namespace Xml {

/// Which step a query that finds nothing is to blame on: the deepest that selected nothing since
/// the last one that selected something; of several on one level the first.
class Misses {
public:
    struct Blamed {
        const Step* step = nullptr;  ///< null for none
        bool byPredicates = false;   ///< only its predicates left nothing
    };

    /// What came of a step, or of its predicates.
    void note(const Step& step, bool hasFound, bool byPredicates) {
        if (hasFound) {
            *this = Misses();
            mHasFound = true;
        } else {
            take({&step, byPredicates});
        }
    }
    /// Goes on with what happened later.
    void append(const Misses& later) {
        if (later.mHasFound) {
            *this = later;
        } else if (later.mBlamed.step != nullptr) {
            take(later.mBlamed);
        }
    }
    const Blamed& blamed() const { return mBlamed; }

private:
    void take(const Blamed& other) {
        if (mBlamed.step == nullptr || other.step->level > mBlamed.step->level) mBlamed = other;
    }

    bool mHasFound = false;
    Blamed mBlamed;
};

}  // namespace Xml
