#pragma once

/// Texts in UTF-16, and the way between them and bytes.
///
/// A product that brings its own VexSys links that in place of this one; the XML library calls
/// nothing but what is marked as required.

#include <cstddef>
#include <string>

#include "VexSys/Export.h"

namespace VexSys {
namespace Core {

/// Required. The traits of a 16-bit text.
// NOLINTNEXTLINE(readability-identifier-naming): the name that products know
struct uni16char_traits : std::char_traits<wchar_t> {};

}  // namespace Core

/// Required. A text of UTF-16 code units, one in each `wchar_t`, also where that is wider. It may
/// hold NULs.
using Uni16String = std::basic_string<wchar_t, Core::uni16char_traits>;

/// The number of code units in front of the NUL.
VEXSYS_API std::size_t Uni16CharGetLength(const wchar_t* text);

/// Below, equal to or above 0 as `left` comes before, equals or comes behind `right`.
///
/// The order is that of the code units, from the first that differs; of two texts of which one
/// begins the other, the shorter comes first. Queries order texts so, in a faster way.
VEXSYS_API int Uni16CharCompare(const Uni16String& left, const Uni16String& right);

/// The same for the first `count` code units of each. Needs: so many are there.
VEXSYS_API int Uni16CharPartialCompare(const wchar_t* left, const wchar_t* right,
                                       std::size_t count);

/// Required. The first place of `unit` among the first `count` code units; `count` when there is
/// none.
VEXSYS_API std::size_t Uni16CharPartialFindCharacter(const wchar_t* text, wchar_t unit,
                                                     std::size_t count);

/// Decodes UTF-8, exactly `size` bytes (required) or up to the NUL.
///
/// Characters beyond U+FFFF become surrogate pairs. What is malformed becomes U+FFFD, one for each
/// longest part that could still have begun a character, as the Unicode standard recommends.
VEXSYS_API Uni16String UTF8ToUni16Char(const char* bytes, std::size_t size);
VEXSYS_API Uni16String UTF8ToUni16Char(const char* text);

/// Encodes in UTF-8. A surrogate without its other half, and a unit above U+FFFF, become U+FFFD.
/// Required by the program vexxml alone.
VEXSYS_API std::string Uni16CharToUTF8(const Uni16String& text);

/// Required. A text in the platform's 8-bit encoding, which is UTF-8 here, up to the NUL.
VEXSYS_API Uni16String PlatformCStringToUni16Char(const char* text);

/// The same in the other direction: writes the text up to its first NUL, and a NUL behind it, to
/// `buffer`, which has room for `size` bytes. What has no room is left out, in whole characters; 3
/// bytes for each code unit and one more always suffice. Needs: `size` is above 0.
VEXSYS_API void Uni16CharToPlatformCString(const Uni16String& text, char* buffer, std::size_t size);

}  // namespace VexSys
