#pragma once

#include <string>
#include <string_view>

#include "VexXml/Dom.h"

namespace Xml {

/// Where a text is put together that does not stand in the tree as it is needed.
struct TextBuffer {
    DataHolder plain;
    std::string key;
};

/// The value text of a node, in bytes. It refers to the node or to the buffer.
///
/// That is the value of an attribute, the plain text of character data or, for an element, of the
/// first of its children that is character data; for anything else an empty text.
std::string_view valueText(Object& node, TextBuffer& buffer);

/// The comparison key of the node's value text. It refers to the node or to the buffer.
std::string_view comparisonKey(Object& node, TextBuffer& buffer);

/// The number that the text begins with, behind white space, as `atof` reads it in the "C" locale,
/// but 0 where that is not a number.
double toNumber(std::string_view text);
/// Six decimals, as "%f" has them in the "C" locale.
std::string numberText(double number);

}  // namespace Xml
