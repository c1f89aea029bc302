#pragma once

#include <string>
#include <string_view>

#include "VexXml/Dom.h"

namespace tools {

/// The bytes of a text, valid as long as it does not change.
std::string_view bytesOf(const Xml::DataHolder& text);
/// The plain text of character data, without keeping it there.
std::string plainText(const Xml::CharData& text);

/// A text as part of a line: shortened, between quotes, with white space as single spaces and with
/// "?" for what a terminal would act on.
std::string shown(std::string_view text);
/// The same, but beginning shortly in front of a place in the text.
std::string shownFrom(std::string_view text, std::size_t place);

/// How the parts of an element are coloured; empty for no colours.
struct ElementColours {
    std::string_view name;
    std::string_view attribute;
    std::string_view value;
    std::string_view plain;
};

/// An element as a line: its name, its attributes, and its text if it holds nothing else.
std::string shownElement(const Xml::Element& element, const ElementColours& colours = {});
/// Whether all that an element holds is a text, if anything.
bool isShownWhole(const Xml::Element& element);

}  // namespace tools
