#include "streams/TextWindow.h"

#include <algorithm>
#include <cstring>

namespace Xml {
namespace {

bool isLineEnd(char c) { return c == '\r' || c == '\n'; }

}  // namespace

TextWindow::TextWindow(InStream& in) : mIn(in) {
    const std::string* text = in.textInMemory();
    if (text == nullptr) return;
    mText = text->data();
    mSize = text->size();
    takeBack();
}

TextWindow::~TextWindow() {
    if (!mIsHandedOver) handOver();
}

std::size_t TextWindow::find(char byte, std::size_t begin) const {
    if (begin >= mSize) return mSize;
    const void* found = std::memchr(mText + begin, byte, mSize - begin);
    return found != nullptr ? static_cast<std::size_t>(static_cast<const char*>(found) - mText)
                            : mSize;
}

std::size_t TextWindow::findAhead(char byte, std::size_t begin) {
    Ahead& ahead = mAhead[byte == '"' ? 0 : byte == '\'' ? 1 : 2];
    if (begin < ahead.from || begin > ahead.place) ahead = {begin, find(byte, begin)};
    return ahead.place;
}

void TextWindow::moveTo(std::size_t place) {
    noteLineStarts();
    mPassed.clear();
    mAt = place;
}

void TextWindow::handOver() {
    forget();
    mIsHandedOver = true;
    if (mText != nullptr) mIn.setPosition(static_cast<int>(mAt));
}

// A position outside the text closes the window.
void TextWindow::takeBack() {
    if (mText == nullptr) return;
    mIsHandedOver = false;
    const int position = mIn.getPosition();
    mAt = position < 0 ? mSize : static_cast<std::size_t>(position);
    mNextReturn = mAt;
}

// Without carriage returns, which is how most texts are, there is nothing to note.
void TextWindow::noteLineStarts() {
    std::size_t end = mAt;
    for (const auto& stretch : mPassed) end = std::max(end, stretch.second);
    if (!mIn.mAfterCR && end <= mNextReturn) return;
    mNextReturn = find('\r', mAt);
    if (!mIn.mAfterCR && end <= mNextReturn) return;
    for (const auto& [from, to] : mPassed) noteLineStarts(from, to);
}

void TextWindow::noteLineStarts(std::size_t begin, std::size_t end) {
    if (begin == end) return;
    if (mIn.mAfterCR && isLineEnd(mText[begin])) noteLineStart(begin + 1);
    for (std::size_t place = begin; place + 1 < end; ++place) {
        const void* found = std::memchr(mText + place, '\r', end - 1 - place);
        if (found == nullptr) break;
        place = static_cast<std::size_t>(static_cast<const char*>(found) - mText);
        if (isLineEnd(mText[place + 1])) noteLineStart(place + 2);
    }
    mIn.mAfterCR = mText[end - 1] == '\r';
}

void TextWindow::noteLineStart(std::size_t place) { mIn.mLineStarts.add(static_cast<int>(place)); }

}  // namespace Xml
