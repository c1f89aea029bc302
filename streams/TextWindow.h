#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "VexXml/Streams.h"
#include "streams/ReadStretch.h"

namespace Xml {

/// Text of a stream in memory, for readers that go through it by themselves: all of it where it
/// lies in memory anyway, or else a part that has been read ahead.
///
/// Reading byte by byte leaves traces: line starts, and whether the last byte was a carriage
/// return. So whoever reads here tells in which stretches the stream's own operations would have
/// read, some of them again, and the window brings the stream to the same state.
///
/// Places count from the start of the window. A NUL stands behind its last byte.
class TextWindow {
public:
    explicit TextWindow(InStream& in);
    /// Leaves the stream where reading has come to, unless it is handed over. Throws nothing, where
    /// `handOver` may.
    ~TextWindow();
    TextWindow(const TextWindow&) = delete;
    TextWindow& operator=(const TextWindow&) = delete;

    /// Where reading has come to.
    std::size_t position() const { return mAt; }
    std::size_t size() const { return mSize; }
    char operator[](std::size_t place) const { return mText[place]; }
    const char* at(std::size_t place) const { return mText + place; }
    std::string_view text(std::size_t begin, std::size_t end) const {
        return {mText + begin, end - begin};
    }

    /// The first place of the byte from `begin` on; the size when there is none.
    std::size_t find(char byte, std::size_t begin);
    std::size_t find(std::string_view text, std::size_t begin);
    /// The same, remembered, for bytes that are looked for again and again from further on: a
    /// quote, an apostrophe or a semicolon.
    std::size_t findAhead(char byte, std::size_t begin);

    /// The stream's operations would read from `begin` to just before `end`, at least a byte.
    void passOver(std::size_t begin, std::size_t end) {
        if (mPassed.empty() && begin >= mWalkBegin && begin <= mWalkEnd && mText[end - 1] != '\r') {
            if (end > mWalkEnd) mWalkEnd = end;
        } else {
            mPassed.emplace_back(begin, end);
        }
    }
    /// The stream's operations would leave this error text, whatever else succeeds.
    void leaveErrorText(const char* text) { mIn.mErrorMessage = text; }
    /// What was passed over counts as read, and reading has come to `place`.
    void moveTo(std::size_t place) {
        mAt = place;
        mReadEnd = mWalkEnd;
        if (!mPassed.empty()) noteLineStarts();
        mHasMissed = false;
    }
    /// What was passed over since the last move does not count.
    void forget() {
        mWalkEnd = mReadEnd;
        mPassed.clear();
        mHasMissed = false;
    }

    /// Reads more of the stream ahead where what comes next may reach beyond the window; places
    /// change. False when that is not so or there is no more.
    bool grow();
    /// Lets the stream's own operations read from where reading has come to.
    void handOver();
    /// Goes on behind what they have read.
    void takeBack();

private:
    /// Where a byte that was looked for is, and from where on it was looked for.
    struct Ahead {
        std::size_t from = 1;
        std::size_t place = 0;
    };

    bool readAhead(std::size_t count);
    void show(std::string_view text);
    void close(int position);
    void startWalk();
    void noteLineStarts();
    void noteLineStartsOf(std::size_t begin, std::size_t end);
    int positionOf(std::size_t place) const;

    InStream& mIn;
    const char* mText = "";
    std::size_t mSize = 0;
    std::size_t mAt = 0;
    std::size_t mBase = 0;       ///< the position of the window's first byte in the stream
    std::string mBuffer;         ///< what was read ahead
    std::size_t mChunk = 16384;  ///< how much to read ahead next
    bool mIsOpen = false;        ///< the stream's own position is not up to date
    bool mIsInMemory = false;    ///< all of the text lies there anyway
    bool mIsComplete = false;    ///< nothing is left to be read ahead
    bool mHasMissed = false;     ///< something was looked for in vain since the last move
    /// Stretches that were passed over and leave the same traces as one does, from the beginning
    /// of the first to the furthest end: there is no gap between them, and none ends in a carriage
    /// return, so that all are met along with the byte behind them. They are looked for in the end.
    std::size_t mWalkBegin = 0;
    std::size_t mWalkEnd = 0;
    std::size_t mReadEnd = 0;  ///< so much of it counts as read
    /// Those that follow, where that is not so, since the last move.
    std::vector<std::pair<std::size_t, std::size_t>> mPassed;
    std::array<Ahead, 3> mAhead;
    ReadStretch mLooked;  ///< for line starts, by positions in the stream
};

}  // namespace Xml
