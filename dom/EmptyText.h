#pragma once

#include "VexXml/Values.h"

namespace Xml {

/// The one empty text to which lookups that find nothing refer.
inline const DataHolder& emptyText() {
    static const DataHolder text;
    return text;
}

}  // namespace Xml
