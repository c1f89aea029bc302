#include "tools/Shown.h"

#include <algorithm>

#include "tools/Place.h"
#include "tools/Utf8.h"

namespace tools {
namespace {

constexpr std::size_t kLongest = 60;       ///< in characters
constexpr std::size_t kShownInFront = 20;  ///< in bytes

constexpr std::string_view kWhite = " \t\r\n";
constexpr std::string_view kGap = "...";

// The first of several characters of white space stands for all.
std::string onOneLine(std::string_view text) {
    std::string out;
    for (std::size_t count = 0; !text.empty(); ++count) {
        if (count == kLongest) return out.append(kGap);
        const std::string_view character = firstCharacter(text);
        const bool isWhite = kWhite.find(character) != std::string_view::npos;
        out += isWhite ? " " : harmless(character);
        const std::size_t next = isWhite ? text.find_first_not_of(kWhite) : character.size();
        text.remove_prefix(std::min(next, text.size()));
    }
    return out;
}

std::string quoted(const std::string& text) { return '"' + text + '"'; }

std::string painted(std::string_view colour, const std::string& text, std::string_view plain) {
    return std::string(colour).append(text).append(plain);
}

const Xml::CharData* onlyText(const Xml::Element& element) {
    const Xml::Object* child = element.getChildCount() == 1 ? element.getChild(0) : nullptr;
    return child != nullptr && child->isCharData() ? child->toCharData() : nullptr;
}

}  // namespace

std::string_view bytesOf(const Xml::DataHolder& text) {
    return {text.toCString(), static_cast<std::size_t>(text.getSize())};
}

std::string plainText(const Xml::CharData& text) {
    Xml::DataHolder plain;
    text.getData(&plain);
    return plain;
}

std::string shown(std::string_view text) { return quoted(onOneLine(text)); }

std::string shownFrom(std::string_view text, std::size_t place) {
    if (place <= kShownInFront) return shown(text);
    std::size_t first = std::min(place, text.size()) - kShownInFront;
    while (first < text.size() && isContinuation(text[first])) ++first;
    return quoted(std::string(kGap) + onOneLine(text.substr(first)));
}

std::string shownElement(const Xml::Element& element, const ElementColours& colours) {
    std::string out = painted(colours.name, harmless(element.getName()), colours.plain);
    for (int i = 0; i < element.getAttributeCount(); ++i) {
        const Xml::Attribute& attribute = *element.getAttribute(i);
        out += ' ' + painted(colours.attribute, harmless(attribute.getName()), colours.plain) +
               '=' + painted(colours.value, shown(bytesOf(attribute.getValue())), colours.plain);
    }
    const Xml::CharData* text = onlyText(element);
    if (text != nullptr)
        out += ' ' + painted(colours.value, shown(plainText(*text)), colours.plain);
    return out;
}

bool isShownWhole(const Xml::Element& element) {
    return element.getChildCount() == 0 || onlyText(element) != nullptr;
}

}  // namespace tools
