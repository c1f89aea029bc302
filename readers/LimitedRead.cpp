#include "readers/LimitedRead.h"

namespace Xml {

LimitedRead::LimitedRead(Reader& reader, InStream& in) : mReader(reader), mIn(in) {
    if (reader.mBudget == nullptr && reader.mLimits != nullptr) {
        mBudget.emplace(reader.mLimits);
        reader.mBudget = &*mBudget;
    }
    if (reader.mBudget != nullptr) mEnd.emplace(in, reader.mBudget->limits().totalBytes);
}

LimitedRead::~LimitedRead() {
    if (mBudget) mReader.mBudget = nullptr;
}

bool LimitedRead::end(bool isRead) {
    constexpr std::uint64_t kTooMany = ReadLimits::kNone;
    if (!mEnd || !mEnd->wasMet()) return isRead;
    return mReader.isWithin(&ReadLimits::totalBytes, kTooMany, mIn);
}

}  // namespace Xml
