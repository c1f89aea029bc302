#pragma once

#include "VexXml/Dom.h"
#include "values/Pool.h"

namespace Xml {

/// What `delete` does. Needs: `isExactly<Class>`.
template <class Class>
void deleteExactly(Class* node) {
    node->Class::~Class();
    Pool::release(node, sizeof *node);
}

/// For going backwards through many nodes. A tree that was built from its beginning to its end
/// mostly lies so in memory, and processors hardly foresee that something goes there backwards.
inline void prefetchBefore(const Object& node) {
    constexpr int kDistance = 2048;
    __builtin_prefetch(reinterpret_cast<const char*>(&node) - kDistance);
}

}  // namespace Xml
