#pragma once

#include <cstddef>
#include <string>
#include <utility>
#include <vector>

#include "VexXml/Streams.h"

namespace Xml {

/// The text of a stream that has it in memory, for readers that go through it by themselves.
///
/// Reading byte by byte leaves traces: line starts, and whether the last byte was a carriage
/// return. So whoever reads here tells in which stretches the stream's own operations would have
/// read, some of them again, and the window brings the stream to the same state.
class TextWindow {
public:
    explicit TextWindow(InStream& in);
    /// Leaves the stream where reading has come to.
    ~TextWindow();
    TextWindow(const TextWindow&) = delete;
    TextWindow& operator=(const TextWindow&) = delete;

    /// False when the stream's text does not lie in memory, or all of it is read.
    bool isOpen() const { return mAt < mSize; }
    /// Where reading has come to.
    std::size_t position() const { return mAt; }
    /// The byte there, which must not be behind the end; at the end it is a NUL.
    char operator[](std::size_t place) const { return mText[place]; }
    const char* at(std::size_t place) const { return mText + place; }
    std::size_t size() const { return mSize; }

    /// The first place of the byte from `begin` on; the size when there is none.
    std::size_t find(char byte, std::size_t begin) const;
    /// The same, remembered, for bytes that are looked for again and again from further on: a
    /// quote, an apostrophe or a semicolon.
    std::size_t findAhead(char byte, std::size_t begin);

    /// The stream's operations would read from `begin` to just before `end`.
    void passOver(std::size_t begin, std::size_t end) { mPassed.emplace_back(begin, end); }
    /// What was passed over counts as read, and reading has come to `place`.
    void moveTo(std::size_t place);
    /// What was passed over since the last move does not count.
    void forget() { mPassed.clear(); }
    /// Lets the stream's own operations read from where reading has come to.
    void handOver();
    /// Goes on behind what they have read.
    void takeBack();

private:
    void noteLineStarts();
    void noteLineStarts(std::size_t begin, std::size_t end);
    void noteLineStart(std::size_t place);

    InStream& mIn;
    const char* mText = nullptr;
    std::size_t mSize = 0;
    std::size_t mAt = 0;
    bool mIsHandedOver = true;
    std::size_t mNextReturn = 0;  ///< no carriage return stands from `mAt` to before this place
    std::vector<std::pair<std::size_t, std::size_t>> mPassed;
    /// For each of the bytes of `findAhead`, from where it was last looked for, and where it is.
    struct Ahead {
        std::size_t from = 1;
        std::size_t place = 0;
    };
    Ahead mAhead[3];
};

}  // namespace Xml
