#pragma once

#include <string>

#include "VexXml/Dom.h"

namespace support {

/// What `toStream` writes for the node.
std::string written(Xml::Object& node);

/// The tree below an element as one canonical text that shows every node and its escaped text:
/// `a(x="1" "text" b())`. Bytes outside printable ASCII, quotes and backslashes appear as \xNN.
std::string dump(const Xml::Element& element);

/// The same of a document, behind what its DTD is written as: `doctype... a()`; "no root" without
/// one.
std::string dump(Xml::Document& document);

/// A chain of `depth` elements named "e" inside one another, owned by the caller.
Xml::Element* makeChain(int depth);

/// Runs `work` in a thread whose stack has 256 KiB.
void runOnSmallStack(void (*work)());

}  // namespace support
