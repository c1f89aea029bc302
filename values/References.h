#pragma once

#include <array>
#include <cstddef>
#include <string_view>

#include "VexXml/Values.h"

namespace Xml {

/// The reference that stands for a special character, such as "&lt;". Needs: one of & < > " '.
std::string_view stdReference(char character);

/// How long the text is with its references replaced; some size above `limit` if it is longer.
std::size_t replacedSize(const DataHolder& text, const Dtd* dtd, std::size_t limit);

/// A text with its references replaced as by `replaceEntities`.
class ReplacedText {
public:
    ReplacedText(const DataHolder& text, const Dtd* dtd);
    ReplacedText(const ReplacedText&) = delete;
    ReplacedText& operator=(const ReplacedText&) = delete;

    std::string_view view() const { return mView; }
    /// Whether all references are to characters, so that no DTD has a say.
    bool areCharacters() const { return mAreCharacters; }

private:
    std::string_view mView;
    bool mAreCharacters = true;
    /// Short texts are put together here, as appending one small piece after another is slow.
    std::array<char, 256> mShort;
    DataHolder mLong;  ///< others, and those with unusual references
};

}  // namespace Xml
