#include <algorithm>
#include <string>

#include "VexXml/Values.h"
#include "values/ByteClass.h"

namespace Xml {
namespace {

bool isName(const char* begin, const char* end) {
    return begin != end && ByteClass::isNameStart(*begin) &&
           std::all_of(begin + 1, end, ByteClass::isNameChar);
}

}  // namespace

// None of these asks the locale: names are the same wherever a document is read.
bool isWhite(char c) { return ByteClass::isWhite(c); }

bool isDigit(char c) { return c >= '0' && c <= '9'; }

bool isLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }

bool isNameChar(char c) { return ByteClass::isNameChar(c); }

bool isName(const char* bytes, int count) { return count > 0 && isName(bytes, bytes + count); }

bool isName(const std::string& text) { return isName(text.data(), text.data() + text.size()); }

}  // namespace Xml
