#pragma once

#include <algorithm>
#include <cstddef>
#include <iosfwd>
#include <string_view>

#include "VexXml/Streams.h"

namespace Xml {

/// A stream to be written, for writers that write much: the memory that it puts bytes into, where
/// it has such memory, and else its own operations.
///
/// A byte that fits goes where putting it would have put it, and one that does not fit is put by
/// the standard stream itself, which so makes room. Nothing can tell this from putting each byte,
/// once the stream is released: until then it does not know how much of the memory is filled. What
/// a caller's class does, be it the stream, the standard stream or its buffer, is never bypassed.
class OutWindow {
public:
    explicit OutWindow(OutStream& out) : mOut(out) { takeBack(); }
    ~OutWindow() { release(); }
    OutWindow(const OutWindow&) = delete;
    OutWindow& operator=(const OutWindow&) = delete;

    /// As the stream's `<<` does.
    void put(char c);
    void put(std::string_view text);
    /// The same, with special characters as references.
    void putEscaped(std::string_view text);
    /// What these do is what the stream does.
    void writeDataHolder(const DataHolder& text);
    void incTab() { mOut.incTab(); }
    void decTab() { mOut.decTab(); }
    int getPosition() const;
    void setPosition(int position);

    /// Lets others use the stream.
    void release();
    /// Goes on behind what they have written.
    void takeBack();

private:
    std::size_t room() const { return static_cast<std::size_t>(mEnd - mNext); }
    bool beginsRun(std::size_t count);
    void putSlowly(std::string_view text);
    void putEscapedSlowly(std::string_view text);
    void putBytes(const char* bytes, std::size_t count);
    void putTabs();
    void takeArea();

    OutStream& mOut;
    std::ostream* mStream = nullptr;  ///< null where the stream's own operations are to be used
    char* mStart = nullptr;           ///< where the memory began when it was taken,
    char* mNext = nullptr;            ///< to here it is filled,
    char* mEnd = nullptr;             ///< and to here it is free
    std::streamoff mStartPosition = 0;
};

inline int OutWindow::getPosition() const {
    if (mStream == nullptr) return mOut.getPosition();
    return mStartPosition < 0 ? -1 : static_cast<int>(mStartPosition + (mNext - mStart));
}

// Whether there is room for so many bytes of a line; then the line is indented.
inline bool OutWindow::beginsRun(std::size_t count) {
    if (!mOut.mAtLineStart) return count <= room();
    const auto tabs = static_cast<std::size_t>(mOut.mTabs);
    if (count + tabs > room()) return false;
    mOut.mAtLineStart = false;
    mNext = std::fill_n(mNext, tabs, '\t');
    return true;
}

inline void OutWindow::put(char c) {
    if (c == '\n' ? room() == 0 : !beginsRun(1)) return putSlowly({&c, 1});
    if (c == '\n') mOut.mAtLineStart = true;
    *mNext++ = c;
}

// Names and the like: too short for anything but to look at each byte.
inline void OutWindow::put(std::string_view text) {
    if (text.empty()) return;
    if (!beginsRun(text.size())) return putSlowly(text);
    char* next = mNext;
    for (const char c : text) {
        if (c == '\n') return putSlowly(text);
        *next++ = c;
    }
    mNext = next;
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
