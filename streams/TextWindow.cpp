#include "streams/TextWindow.h"

#include <algorithm>
#include <cstring>
#include <exception>

namespace Xml {
namespace {

// So much is read ahead at once, unless more is needed.
constexpr std::size_t kLargestChunk = 65536;

// A tag that begins so near the end of the window may reach beyond it.
constexpr std::size_t kNearEnd = 4096;

bool isLineEnd(char c) { return c == '\r' || c == '\n'; }

}  // namespace

// A text that goes on behind the end that was put to its stream is read ahead like any other, as a
// NUL has to stand there.
TextWindow::TextWindow(InStream& in) : mIn(in) {
    const DataHolder* text = in.textInMemory();
    if (text != nullptr && (in.mEnd < 0 || text->getSize() <= in.mEnd)) {
        mIsComplete = true;
        mIsInMemory = true;
        show({text->toCString(), static_cast<std::size_t>(text->getSize())});
    }
    takeBack();
}

// A stream may throw when it is moved, as its owner asked, and its line starts take memory, but
// nothing comes out of a destructor; the state of the stream shows the failure.
TextWindow::~TextWindow() {
    try {
        handOver();
    } catch (const std::exception&) {
        mIsOpen = false;
    }
}

void TextWindow::show(std::string_view text) {
    mText = text.data();
    mSize = text.size();
    mAhead = {};
}

std::size_t TextWindow::find(char byte, std::size_t begin) {
    const void* found = begin < mSize ? std::memchr(mText + begin, byte, mSize - begin) : nullptr;
    mHasMissed = mHasMissed || found == nullptr;
    return found != nullptr ? static_cast<std::size_t>(static_cast<const char*>(found) - mText)
                            : mSize;
}

std::size_t TextWindow::find(std::string_view text, std::size_t begin) {
    const std::size_t found = this->text(0, mSize).find(text, begin);
    mHasMissed = mHasMissed || found == std::string_view::npos;
    return std::min(found, mSize);
}

std::size_t TextWindow::findAhead(char byte, std::size_t begin) {
    Ahead& ahead = mAhead[byte == '"' ? 0 : byte == '\'' ? 1 : 2];
    if (begin < ahead.from || begin > ahead.place) ahead = {begin, find(byte, begin)};
    mHasMissed = mHasMissed || ahead.place == mSize;
    return ahead.place;
}

// What has been gone through is dropped, and as much is read again as is kept: so hardly more than
// one piece of content is in the window, and one of any length costs in proportion to it.
bool TextWindow::grow() {
    const bool mayReachBeyond = mHasMissed || mSize - mAt < kNearEnd;
    if (mIsComplete || !mayReachBeyond) return false;
    forget();
    noteLineStarts();
    mBuffer.erase(0, mAt);
    mBase += mAt;
    mAt = 0;
    startWalk();
    const std::size_t kept = mBuffer.size();
    const std::size_t wanted = std::max(mChunk, kept);
    mChunk = std::min(2 * mChunk, kLargestChunk);
    const bool isMoved = readAhead(wanted);
    mIsOpen = mIsOpen || isMoved;
    mIsComplete = mBuffer.size() < kept + wanted;
    show(mBuffer);
    return mSize > kept;
}

// Up to so many bytes; true when the stream has to be set to its position.
bool TextWindow::readAhead(std::size_t count) {
    const std::size_t begin = mBase + mBuffer.size();
    if (mIn.mEnd >= 0) {
        const auto end = static_cast<std::size_t>(mIn.mEnd);
        count = std::min(count, end - std::min(begin, end));
    }
    const DataHolder* text = mIn.textInMemory();
    if (text == nullptr) return mIn.readAhead(begin, count, mBuffer);
    mIn.lineStarts();  // those to come are not noted in the same way
    const std::size_t size = static_cast<std::size_t>(text->getSize());
    const std::size_t first = std::min(begin, size);
    mBuffer.append(text->toCString() + first, std::min(count, size - first));
    return true;
}

void TextWindow::handOver() {
    forget();
    noteLineStarts();
    if (mIsOpen) mIn.setPosition(static_cast<int>(mBase + mAt));
    mIsOpen = false;
}

void TextWindow::takeBack() {
    if (mIsComplete && mSize == 0) return;
    const int position = mIn.getPosition();
    const std::size_t place = static_cast<std::size_t>(position) - mBase;
    if (position >= 0 && place <= mSize) {
        mAt = place;
        mIsOpen = mSize > 0;
    } else {
        close(position);
    }
    startWalk();
}

// A stream that has left what was read ahead is read ahead anew; one that has lost its position
// never is.
void TextWindow::close(int position) {
    mBuffer.clear();
    show(mBuffer);
    mAt = 0;
    mBase = static_cast<std::size_t>(std::max(position, 0));
    mIsComplete = mIsComplete || position < 0;
}

void TextWindow::startWalk() { mWalkBegin = mWalkEnd = mReadEnd = mAt; }

// Of all that counts as read.
void TextWindow::noteLineStarts() {
    noteLineStartsOf(mWalkBegin, mReadEnd);
    for (const auto& [begin, end] : mPassed) noteLineStartsOf(begin, end);
    mPassed.clear();
    startWalk();
}

void TextWindow::noteLineStartsOf(std::size_t begin, std::size_t end) {
    if (begin == end) return;
    if (mIn.mAfterCR && isLineEnd(mText[begin])) mIn.noteLineStart(positionOf(begin + 1));
    if (mIsInMemory) {
        mIn.noteLineStarts(positionOf(begin), positionOf(end));
    } else {
        const int from = mLooked.extend(positionOf(begin), positionOf(end));
        const std::size_t place = static_cast<std::size_t>(from) - mBase;
        mIn.mLineStarts.addFrom(mText + place, end - place, from);
    }
    mIn.mAfterCR = mText[end - 1] == '\r';
}

int TextWindow::positionOf(std::size_t place) const { return static_cast<int>(mBase + place); }

}  // namespace Xml
