#pragma once

#include <string>
#include <string_view>

#include "VexSys/Uni16.h"

namespace Xml {

using Uni16View = std::basic_string_view<wchar_t, VexSys::Core::uni16char_traits>;

/// The text in UTF-8. What is no UTF-16, such as half of a surrogate pair, becomes U+FFFD.
std::string toUTF8(Uni16View text);

/// Comparison keys compare byte by byte as their texts do by UTF-16 code units, which is how the
/// platform orders texts. Each unit is encoded like a character of its own; for texts without
/// surrogates that is UTF-8, so hardly any text of a document has to be converted.
std::string comparisonKey(Uni16View text);

}  // namespace Xml
