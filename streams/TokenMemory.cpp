#include "streams/TokenMemory.h"

#include <exception>
#include <memory>
#include <utility>

#include "streams/TokenReader.h"

namespace Xml {

// Without memory for the text there is none.
TokenMemory::~TokenMemory() {
    try {
        giveErrorText();
    } catch (const std::exception&) {
        mNotAName = -1;
    }
}

bool TokenMemory::getToken(std::string& token) {
    mIn.mParseBuffer.clear();
    if (!TokenReader(mIn, this).read()) return false;
    token = mIn.mParseBuffer;
    return true;
}

bool TokenMemory::checkToken(const std::string& expected) {
    std::string token;
    return getToken(token) && mIn.expectAtEnd(expected.data(), static_cast<int>(expected.size()));
}

bool TokenMemory::knowsReference(int position) const {
    return mReference.begin >= 0 && position >= mReference.begin && position < mReference.end;
}

void TokenMemory::keepReference(Reference reference) {
    giveErrorText();
    mReference = std::move(reference);
}

const TokenMemory::Opener* TokenMemory::openerAt(int position) {
    while (!mOpeners.empty() && mOpeners.back().behind < position) mOpeners.pop_back();
    const bool isKnown = !mOpeners.empty() && mOpeners.back().behind == position;
    return isKnown ? &mOpeners.back() : nullptr;
}

// The text is as long as the reference, so it is not made for each of them. Whatever else fails
// puts another one there, none of which is empty.
void TokenMemory::leaveNotAName(int position) {
    mIn.mErrorMessage.clear();
    mNotAName = position;
}

void TokenMemory::giveErrorText() {
    const int position = std::exchange(mNotAName, -1);
    if (position < 0 || !mIn.mErrorMessage.empty()) return;
    const auto skipped = static_cast<std::size_t>(position - mReference.begin);
    mIn.mErrorMessage = "not a name: &" + mReference.text.substr(skipped);
}

}  // namespace Xml
