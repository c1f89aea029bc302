#pragma once

/// The 16-bit text of a product: it differs from ours wherever it may. Traits are a class, bytes
/// come in strings, numbers are wider, and nothing is there that is not required.

#include <cstddef>
#include <string>

namespace VexSys {
namespace Core {

class uni16char_traits : public std::char_traits<wchar_t> {};

}  // namespace Core

typedef std::basic_string<wchar_t, Core::uni16char_traits> Uni16String;

unsigned long long Uni16CharPartialFindCharacter(const wchar_t* text, wchar_t unit,
                                                 unsigned long long count);
Uni16String UTF8ToUni16Char(const std::string& bytes);
Uni16String UTF8ToUni16Char(const char* bytes, unsigned long long size);
Uni16String PlatformCStringToUni16Char(const std::string& text);

}  // namespace VexSys
