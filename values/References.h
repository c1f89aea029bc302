#pragma once

#include <string_view>

#include "VexXml/Values.h"

namespace Xml {

/// The reference that stands for a special character, such as "&lt;". Needs: one of & < > " '.
std::string_view stdReference(char character);

/// Appends the text with its references replaced as by `replaceEntities`. True when all are to
/// characters, so that no DTD has a say.
bool appendReplaced(DataHolder& result, const DataHolder& text, const Dtd* dtd);

}  // namespace Xml
