#pragma once

#include <algorithm>

namespace Xml {

/// A stretch of text that has been looked through, so that what is read again, each time up to the
/// same place far ahead say, is not looked through again.
class ReadStretch {
public:
    /// From where on the text from `begin` to just before `end` is to be looked through for pairs
    /// of bytes that are not known yet. From now on they are.
    int extend(int begin, int end) {
        if (begin < mBegin || begin > mEnd) {
            mBegin = begin;
            mEnd = end;
            return begin;
        }
        const int from = std::max(begin, mEnd - 1);
        mEnd = std::max(mEnd, end);
        return std::min(from, end);
    }

private:
    int mBegin = 0;
    int mEnd = 0;
};

}  // namespace Xml
