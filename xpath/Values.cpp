#include "xpath/Values.h"

#include <array>
#include <charconv>
#include <cmath>
#include <limits>
#include <system_error>

#include "dom/NodeAccess.h"
#include "xpath/Encoding.h"

namespace Xml {
namespace {

constexpr long long kHugeExponent = 1'000'000'000'000'000;

// The sign and 309 digits, the point, and 6 digits.
constexpr std::size_t kLongestNumber = 1 + 309 + 1 + 6;

// From this index on it is worth remembering where the first text of an element is.
constexpr std::size_t kFarIndex = 16;

// U+FFFD, which malformed bytes become.
constexpr std::string_view kReplacement = "\xEF\xBF\xBD";

std::string_view bytesOf(const DataHolder& data) {
    return {data.toCString(), static_cast<std::size_t>(data.getSize())};
}

// The escaped text is the plain one unless it holds a reference.
std::string_view plainText(const CharData& node, TextBuffer& buffer) {
    const std::string_view escaped = bytesOf(NodeAccess::textOf(node));
    if (escaped.find('&') == std::string_view::npos) return escaped;
    node.getData(&buffer.plain);
    return bytesOf(buffer.plain);
}

bool isContinuation(unsigned char byte) { return (byte & 0xC0U) == 0x80; }

// The length of the character of at most three bytes that the text begins with; 0 when it begins
// with none, be it longer or malformed.
std::size_t shortCharacter(const unsigned char* text, std::size_t size) {
    const unsigned char lead = text[0];
    if (lead < 0x80) return 1;
    if (lead < 0xC2 || lead > 0xEF || size < 2 || !isContinuation(text[1])) return 0;
    if (lead < 0xE0) return 2;
    const bool isOverlong = lead == 0xE0 && text[1] < 0xA0;
    const bool isSurrogate = lead == 0xED && text[1] > 0x9F;
    return isOverlong || isSurrogate || size < 3 || !isContinuation(text[2]) ? 0 : 3;
}

// Whether the text is UTF-8 without characters that take two units in UTF-16.
bool isItsOwnKey(std::string_view text) {
    const auto* at = reinterpret_cast<const unsigned char*>(text.data());
    const unsigned char* const end = at + text.size();
    while (at < end) {
        const std::size_t length = shortCharacter(at, static_cast<std::size_t>(end - at));
        if (length == 0) return false;
        at += length;
    }
    return true;
}

bool isSpace(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

bool isHexDigit(char c) {
    return (c >= '0' && c <= '9') || ((c | 0x20) >= 'a' && (c | 0x20) <= 'f');
}

// Whether "0x" and a number follow.
bool isHexadecimal(std::string_view text) {
    if (text.size() < 3 || text[0] != '0' || (text[1] | 0x20) != 'x') return false;
    const std::size_t first = text[2] == '.' ? 3 : 2;
    return first < text.size() && isHexDigit(text[first]);
}

// The exponent that the text begins with, behind its letter; 0 when there is none.
long long exponentOf(std::string_view text) {
    if (text.empty()) return 0;
    text.remove_prefix(text.size() > 1 && text[1] == '+' ? 2 : 1);
    long long exponent = 0;
    const auto read = std::from_chars(text.data(), text.data() + text.size(), exponent);
    const bool isHuge = read.ec == std::errc::result_out_of_range;
    return isHuge ? kHugeExponent * (text[0] == '-' ? -1 : 1) : exponent;
}

// What a number stands for that is too large or too small for a double: that depends on where its
// first digit stands.
double beyondRange(std::string_view number, bool isHex) {
    long long scale = 0;
    bool isFraction = false;
    bool hasBegun = false;
    std::size_t at = 0;
    for (; at < number.size() && (number[at] == '.' || isHexDigit(number[at])); ++at) {
        if (!isHex && (number[at] | 0x20) == 'e') break;
        if (number[at] == '.') {
            isFraction = true;
            continue;
        }
        hasBegun = hasBegun || number[at] != '0';
        if (hasBegun && !isFraction) ++scale;
        if (!hasBegun && isFraction) --scale;
    }
    const long long magnitude = scale * (isHex ? 4 : 1) + exponentOf(number.substr(at));
    return magnitude > 0 ? std::numeric_limits<double>::infinity() : 0;
}

}  // namespace

std::string_view ValueTexts::of(Object& node, TextBuffer& buffer) {
    if (NodeAccess::isAttribute(node)) {
        return bytesOf(NodeAccess::valueOf(static_cast<Attribute&>(node)));
    }
    if (NodeAccess::isCharData(node)) return plainText(static_cast<CharData&>(node), buffer);
    if (!NodeAccess::isElement(node)) return {};
    const CharData* text = firstCharData(static_cast<Element&>(node));
    return text != nullptr ? plainText(*text, buffer) : std::string_view();
}

std::string_view ValueTexts::keyOf(Object& node, TextBuffer& buffer) {
    const std::string_view text = of(node, buffer);
    if (isItsOwnKey(text)) return text;
    buffer.key = comparisonKey(VexSys::UTF8ToUni16Char(text.data(), text.size()));
    return buffer.key;
}

const CharData* ValueTexts::firstCharData(const Element& element) {
    const NodeAccess::Children children = NodeAccess::childrenOf(element);
    const NodeTable::Value* known = mFarTexts.find(&element);
    std::size_t index = known != nullptr ? *known : 0;
    while (index < children.size() && !NodeAccess::isCharData(*children[index])) ++index;
    if (known == nullptr && index > kFarIndex) {
        mFarTexts.insert(&element, static_cast<NodeTable::Value>(index));
    }
    return index < children.size() ? static_cast<const CharData*>(children[index]) : nullptr;
}

bool equalsOnlyItself(std::string_view key) {
    return isItsOwnKey(key) && key.find(kReplacement) == std::string_view::npos;
}

double toNumber(std::string_view text) {
    while (!text.empty() && isSpace(text.front())) text.remove_prefix(1);
    const bool isNegative = !text.empty() && text.front() == '-';
    if (isNegative || (!text.empty() && text.front() == '+')) text.remove_prefix(1);
    if (text.empty() || text.front() == '-') return 0;
    const bool isHex = isHexadecimal(text);
    if (isHex) text.remove_prefix(2);
    double number = 0;
    const auto format = isHex ? std::chars_format::hex : std::chars_format::general;
    const auto read = std::from_chars(text.data(), text.data() + text.size(), number, format);
    if (read.ec == std::errc::invalid_argument) return 0;
    if (read.ec == std::errc::result_out_of_range) {
        const auto length = static_cast<std::size_t>(read.ptr - text.data());
        number = beyondRange(text.substr(0, length), isHex);
    }
    if (std::isnan(number)) return 0;
    return isNegative ? -number : number;
}

std::string numberText(double number) {
    std::array<char, kLongestNumber> buffer{};
    const auto written = std::to_chars(buffer.data(), buffer.data() + buffer.size(), number,
                                       std::chars_format::fixed, 6);
    return {buffer.data(), written.ptr};
}

}  // namespace Xml
