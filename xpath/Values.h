#pragma once

#include <string>
#include <string_view>

#include "VexXml/Dom.h"
#include "xpath/NodeTable.h"

namespace Xml {

/// Where a text is put together that does not stand in the tree as it is needed.
struct TextBuffer {
    DataHolder plain;
    std::string key;
};

/// Finds the value texts of nodes. The tree must not change meanwhile.
class ValueTexts {
public:
    /// The value text, in bytes. It refers to the node or to the buffer.
    ///
    /// That is the value of an attribute, the plain text of character data or, for an element, of
    /// the first of its children that is character data; for anything else an empty text.
    std::string_view of(Object& node, TextBuffer& buffer);
    /// The comparison key of that text. It refers to the node or to the buffer.
    std::string_view keyOf(Object& node, TextBuffer& buffer);

private:
    const CharData* firstCharData(const Element& element);

    /// Elements whose first text was far to seek, each with its index, or the number of children
    /// when there is none.
    NodeTable mFarTexts;
};

/// Whether a text has that comparison key only if it consists of the same bytes. Not so if there is
/// what malformed bytes, or characters beyond U+FFFF, become in a key.
bool equalsOnlyItself(std::string_view key);

/// The number that the text begins with, behind white space, as `atof` reads it in the "C" locale,
/// but 0 where that is not a number.
double toNumber(std::string_view text);
/// Six decimals, as "%f" has them in the "C" locale.
std::string numberText(double number);

}  // namespace Xml
