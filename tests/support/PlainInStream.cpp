#include "support/PlainInStream.h"

#include <utility>

namespace support {

PlainInStream::PlainInStream(std::string text) : mText(std::move(text)) {}

bool PlainInStream::getChar(char& c) {
    if (eof()) return false;
    c = mText[static_cast<std::size_t>(mPosition++)];
    return true;
}

int PlainInStream::getPosition() const { return mPosition; }

void PlainInStream::setPosition(int position) { mPosition = position; }

bool PlainInStream::eof() { return mPosition >= static_cast<int>(mText.size()); }

}  // namespace support
