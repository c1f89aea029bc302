#include <typeinfo>
#include <utility>

#include "VexXml/Streams.h"
#include "streams/SizeLimit.h"

namespace Xml {

StringInStream::StringInStream(const std::string& text) {
    if (fitsPositions(text.size())) {
        mText = DataHolder(text);
    } else {
        Message(std::string("<Xml::StringInStream::StringInStream> File too long"));
    }
}

StringInStream::StringInStream(const StringInStream&) = default;
StringInStream& StringInStream::operator=(const StringInStream&) = default;
StringInStream::~StringInStream() = default;

StringInStream::StringInStream(StringInStream&& other) noexcept
    : InStream(std::move(other)),
      mText(std::move(other.mText)),
      mPos(std::exchange(other.mPos, 0)) {}

StringInStream& StringInStream::operator=(StringInStream&& other) noexcept {
    mText = std::move(other.mText);
    mPos = std::exchange(other.mPos, 0);
    InStream::operator=(std::move(other));
    return *this;
}

bool StringInStream::getChar(char& c) {
    if (mPos < 0 || eof()) return false;
    c = mText[static_cast<std::size_t>(mPos++)];
    return true;
}

int StringInStream::getPosition() const { return mPos; }

void StringInStream::setPosition(int position) { mPos = position; }

// A class that a caller derived may read otherwise.
const DataHolder* StringInStream::textInMemory() const {
    return typeid(*this) == typeid(StringInStream) ? &mText : nullptr;
}

bool StringInStream::eof() { return mPos >= mText.getSize(); }

}  // namespace Xml
