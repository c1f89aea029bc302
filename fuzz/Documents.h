#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "VexXml/Dom.h"

namespace fuzz {

/// Whether a document is to be left alone, as reading it may do what no target is to do: open other
/// files, or validate for ever. A repeated particle that can match nothing repeats without an end
/// on a child that it does not match, deliberately; `((a?)*)` and all that looks like it is left
/// out.
bool isLeftAlone(std::string_view document);

/// Null when it is refused or left alone.
std::unique_ptr<Xml::Document> read(const std::string& document);

}  // namespace fuzz
