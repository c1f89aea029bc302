#pragma once

#include <algorithm>
#include <cstddef>
#include <iosfwd>
#include <string_view>

#include "VexXml/Streams.h"
#include "streams/LinePart.h"
#include "streams/Pieces.h"

namespace Xml {

/// A stream to be written, for writers that write much: the memory that it puts bytes into, where
/// it has such memory, and else its own operations.
///
/// A byte that fits goes where putting it would have put it, and one that does not fit is put by
/// the standard stream itself, which so makes room. Nothing can tell this from putting each byte,
/// once the stream is released: until then it does not know how much of the memory is filled, and
/// what comes behind a long text in a string stream is kept here. What a caller's class does, be it
/// the stream, the standard stream or its buffer, is never bypassed.
class OutWindow {
public:
    explicit OutWindow(OutStream& out) : mOut(out) { takeBack(); }
    /// Releases the stream, if that was not done, but throws nothing, where `release` may.
    ~OutWindow();
    OutWindow(const OutWindow&) = delete;
    OutWindow& operator=(const OutWindow&) = delete;

    /// Puts parts of a line one behind the other, as the stream's `<<` does. Should there be line
    /// feeds in them, the first byte is none.
    template <class... Parts>
    void put(Parts... parts);
    /// Puts a line feed.
    void endLine();
    /// What these do is what the stream does.
    void writeDataHolder(const DataHolder& text);
    void incTab() { mOut.incTab(); }
    void decTab() { mOut.decTab(); }
    int level() const { return mOut.mTabs; }
    void setLevel(int level) { mOut.mTabs = level; }
    int getPosition() const;
    void setPosition(int position);

    /// Lets others use the stream.
    void release();
    /// Goes on behind what they have written.
    void takeBack();

private:
    std::size_t room() const { return static_cast<std::size_t>(mEnd - mNext); }
    char* begin(std::size_t most);
    void putSlowly(char c) { putSlowly(std::string_view(&c, 1)); }
    void putSlowly(std::string_view text);
    void putSlowly(LinePart::Escaped escaped);
    void putBytes(const char* bytes, std::size_t count);
    void putTabs();
    void takeArea();
    void settle();
    bool collectsMore();
    void handOn();

    OutStream& mOut;
    std::ostream* mStream = nullptr;  ///< null where the stream's own operations are to be used
    char* mStart = nullptr;           ///< where the memory began when it was taken,
    char* mNext = nullptr;            ///< to here it is filled,
    char* mEnd = nullptr;             ///< and to here it is free
    std::streamoff mStartPosition = 0;
    /// What a full string stream has not been given yet. The memory above is that of the last.
    Pieces mPieces;
};

inline int OutWindow::getPosition() const {
    if (mStream == nullptr) return mOut.getPosition();
    return mStartPosition < 0 ? -1 : static_cast<int>(mStartPosition + (mNext - mStart));
}

// Where a line, indented if it is new, goes on, when there is room for so many bytes; else null.
inline char* OutWindow::begin(std::size_t most) {
    if (!mOut.mAtLineStart) return most <= room() ? mNext : nullptr;
    const auto tabs = static_cast<std::size_t>(mOut.mTabs);
    if (most + tabs > room()) return nullptr;
    mOut.mAtLineStart = false;
    return mNext = std::fill_n(mNext, tabs, '\t');
}

template <class... Parts>
void OutWindow::put(Parts... parts) {
    char* next = begin((LinePart::most(parts) + ...));
    if (next != nullptr && (((next = LinePart::copy(parts, next)) != nullptr) && ...)) {
        mNext = next;
    } else {
        (putSlowly(parts), ...);
    }
}

inline void OutWindow::endLine() {
    if (room() == 0) return putSlowly('\n');
    mOut.mAtLineStart = true;
    *mNext++ = '\n';
}

inline void OutWindow::writeDataHolder(const DataHolder& text) {
    const auto size = static_cast<std::size_t>(text.getSize());
    if (size <= room()) {
        mNext = std::copy_n(text.toCString(), size, mNext);
    } else if (mStream == nullptr) {
        mOut.writeDataHolder(text);
    } else {
        putBytes(text.toCString(), size);
    }
}

}  // namespace Xml
