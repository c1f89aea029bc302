#pragma once

#include <optional>

#include "readers/ReadBudget.h"
#include "streams/StreamEnd.h"

namespace Xml {

/// Holds a reader to its limits while it reads a stream. Inside another limited read the reader
/// keeps to the limits of that one. Without limits nothing is held to anything.
class LimitedRead {
public:
    LimitedRead(Reader& reader, InStream& in);
    ~LimitedRead();
    LimitedRead(const LimitedRead&) = delete;
    LimitedRead& operator=(const LimitedRead&) = delete;

    /// To be called with what has come of reading, which it returns, unless reading has met the
    /// limit of bytes: that is a failure, whatever has come of it.
    bool end(bool isRead);

private:
    Reader& mReader;
    InStream& mIn;
    std::optional<ReadBudget> mBudget;  ///< none inside another limited read
    std::optional<StreamEnd> mEnd;      ///< none without limits
};

}  // namespace Xml
