#pragma once

#include <typeinfo>

#include "VexXml/Dom.h"

namespace Xml {

/// Whether the node is of that class of the library itself, and not of one that a caller derived
/// from it, which may do everything in another way.
///
/// The address tells, as the library has each of its classes once. Comparing type information for
/// equality would compare names of classes.
template <class Class>
bool isExactly(const Object& node) {
    return &typeid(node) == &typeid(Class);
}

}  // namespace Xml
