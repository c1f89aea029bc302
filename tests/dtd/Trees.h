#pragma once

#include <memory>
#include <queue>
#include <string>
#include <vector>

#include "VexXml/Dom.h"
#include "VexXml/Dtd.h"

namespace support {

/// Reads a tree such as `a(b #)`: an element a that holds an element b and character data. The
/// character data is a reference to the entity "dtd".
std::unique_ptr<Xml::Element> tree(const std::string& text);

/// The children as validation takes them. They stay the element's.
std::vector<Xml::Object*> childrenOf(Xml::Element& element);
std::queue<Xml::Object*> queueOf(Xml::Element& element);

/// Declares what tells what is bound to this DTD: the entity "dtd", and for each of the elements
/// the attribute "dtd" with a default, both with `value`.
void declareMarks(Xml::Dtd& dtd, const std::vector<std::string>& elements,
                  const std::string& value = "bound");

/// The element and all nodes below it, parents first.
std::vector<Xml::Object*> nodesOf(Xml::Element& top);

/// What a node is bound to, by such marks; "-" for nothing, or for an element without a mark.
std::string bindingOf(const Xml::Object& node);
/// That of the element and all nodes below it, parents first: `a=bound #=- b=bound`.
std::string bindings(Xml::Element& top);

}  // namespace support
