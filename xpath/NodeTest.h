#pragma once

#include "VexXml/Dom.h"
#include "xpath/Program.h"

namespace Xml {

/// Whether the node is what a step asks for.
bool CompliesToKindTest(Object& node, const NodeTest& test);

}  // namespace Xml
