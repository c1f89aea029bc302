#include "support/FileLikeInStream.h"

#include <utility>

namespace support {

FileLikeInStream::FileLikeInStream(std::string text) : mText(std::move(text)) {}

bool FileLikeInStream::getChar(char& c) {
    if (mFailed) return false;
    if (mPosition < static_cast<int>(mText.size())) {
        c = mText[static_cast<std::size_t>(mPosition++)];
    } else {
        mFailed = mMetEnd = true;
    }
    return true;
}

int FileLikeInStream::getPosition() const { return mFailed ? -1 : mPosition; }

void FileLikeInStream::setPosition(int position) {
    mMetEnd = false;
    if (position < 0) mFailed = true;
    if (!mFailed) mPosition = position;
}

bool FileLikeInStream::eof() { return mMetEnd; }

}  // namespace support
