#pragma once

#include <memory>
#include <string>

#include "VexXml/Dom.h"
#include "VexXml/Dtd.h"

namespace support {

/// A DTD that can be told from others by what is bound to it: its `name` is the value of the entity
/// "dtd" and the default of the attribute "dtd" of the elements a, b, c and e. All four are
/// declared with the model ANY.
std::unique_ptr<Xml::Dtd> makeDtd(const std::string& name);

/// The name of the DTD that an element or character data is bound to, "none" without one.
/// Changes nothing that a caller can see.
std::string bindingOf(Xml::Object& node);

/// That of a node and everything below it, parents first: `a=one b=none #=one`.
std::string bindings(Xml::Object& top);

}  // namespace support
