#pragma once

/// Which nodes a location step selects, found by recursion and linear search.

#include <vector>

#include "VexXml/Dom.h"
#include "support/ReferenceXPathScan.h"

namespace support::xpath {

using Items = std::vector<Query::ResultItem>;

Query::ResultItem nodeItem(Xml::Object* node);
/// Appends the node unless it is there already.
void addNode(Xml::Object* node, Items& nodes);
/// The value, the character data or the first of the character data inside; else an empty text.
Text valueText(Xml::Object& node);

/// Adds what the step's axis and test select from one context node.
void selectFrom(Xml::Object& node, const Step& step, Xml::Document& document, Items& selected);
/// Adds the node and all below it that is no attribute.
void selectDescendantsOrSelf(Xml::Object& node, Items& selected);

}  // namespace support::xpath
