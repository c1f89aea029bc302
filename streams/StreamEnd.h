#pragma once

#include <cstdint>

#include "VexXml/Streams.h"

namespace Xml {

/// An end that a reader puts to a stream, in front of its own. Reading meets it as it would the
/// stream's own end, except that the stream is not at its end.
class StreamEnd {
public:
    /// So many bytes from where the stream stands. Does nothing where that is beyond all positions,
    /// or the stream has such an end already.
    StreamEnd(InStream& in, std::uint64_t bytes);
    ~StreamEnd();
    StreamEnd(const StreamEnd&) = delete;
    StreamEnd& operator=(const StreamEnd&) = delete;

    /// Whether reading has met it.
    bool wasMet() const { return mIn != nullptr && mIn->mHasMetEnd; }

private:
    InStream* mIn;  ///< null when nothing was done
};

}  // namespace Xml
