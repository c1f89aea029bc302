#pragma once

#include "VexSys/Uni16.h"
#include "VexXml/XPath.h"

namespace Xml {

/// Why a query fails, and the piece of its expression that is to blame.
struct XPathError {
    XPath::ErrorCode code = XPath::NoError;
    VexSys::Uni16String detail;
};

/// The localisation key of a code; null when there is no such code.
const char* errorKey(XPath::ErrorCode code);
/// Whether the text of the error goes on with its detail.
bool showsDetail(XPath::ErrorCode code);

}  // namespace Xml
