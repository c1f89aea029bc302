#pragma once

#include <functional>
#include <string>
#include <vector>

#include "VexXml/Dom.h"
#include "VexXml/Readers.h"
#include "tools/Output.h"
#include "tools/Status.h"

namespace tools {

/// Reads each document and has its root printed, with "FILE:" above it where there are several. All
/// are tried; the worst one decides the status.
Status printEach(const std::vector<std::string>& inputs, const Xml::ReadLimits& limits,
                 const std::function<void(const Xml::Element&, BlockWriter&)>& print);

}  // namespace tools
