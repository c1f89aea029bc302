#pragma once

#include <initializer_list>
#include <string>

#include "VexXml/Dom.h"

namespace support {

/// An element with the children in that order, all of them its own; the element is the caller's.
/// So trees read as they nest: `element("a", {text("x"), element("b")})`.
Xml::Element* element(const std::string& name, std::initializer_list<Xml::Object*> children = {});

/// Character data that holds the plain text; the caller's.
Xml::CharData* text(const std::string& plain);

}  // namespace support
