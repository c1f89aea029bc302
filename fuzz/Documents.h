#pragma once

#include <memory>
#include <string>

#include "VexXml/Dom.h"
#include "VexXml/Readers.h"

namespace fuzz {

/// What reading a document must not do in any target: open other files, or validate for ever. A
/// repeated particle that can match nothing repeats without an end on a child that it does not
/// match, deliberately.
Xml::ReadLimits safeLimits();

/// Null when it is refused.
std::unique_ptr<Xml::Document> read(const std::string& document);

}  // namespace fuzz
