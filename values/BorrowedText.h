#pragma once

#include <cstddef>
#include <cstdint>

#include "VexXml/Values.h"

namespace Xml {

/// A text whose bytes lie in memory of someone else's, to be looked at only.
class BorrowedText {
public:
    /// Needs: a NUL stands behind the bytes, and both outlive it.
    BorrowedText(char* bytes, std::size_t size) : mText() {
        mText.setLongText({bytes, static_cast<std::uint32_t>(size), 0, {}, DataHolder::kLong});
    }
    ~BorrowedText() {}
    BorrowedText(const BorrowedText&) = delete;
    BorrowedText& operator=(const BorrowedText&) = delete;

    const DataHolder& text() const { return mText; }

private:
    union {
        DataHolder mText;  ///< never destroyed, as it owns nothing
    };
};

}  // namespace Xml
