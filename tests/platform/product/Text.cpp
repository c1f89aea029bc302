#include <codecvt>
#include <locale>

#include "VexSys/Localization.h"
#include "VexSys/Uni16.h"

namespace VexSys {
namespace {

using Converter = std::wstring_convert<std::codecvt_utf8_utf16<wchar_t>>;

}  // namespace

unsigned long long Uni16CharPartialFindCharacter(const wchar_t* text, wchar_t unit,
                                                 unsigned long long count) {
    unsigned long long place = 0;
    while (place < count && text[place] != unit) ++place;
    return place;
}

Uni16String UTF8ToUni16Char(const std::string& bytes) {
    Converter converter("", L"\xFFFD");
    const std::wstring text = converter.from_bytes(bytes);
    return Uni16String(text.data(), text.size());
}

Uni16String UTF8ToUni16Char(const char* bytes, unsigned long long size) {
    return UTF8ToUni16Char(std::string(bytes, size));
}

Uni16String PlatformCStringToUni16Char(const std::string& text) { return UTF8ToUni16Char(text); }

const Uni16String& Localization::GetString(const std::string& key, const std::string& module,
                                           const std::string& fallback) {
    static Uni16String last;
    last = UTF8ToUni16Char("<" + module + "> " + key + fallback);
    return last;
}

}  // namespace VexSys
