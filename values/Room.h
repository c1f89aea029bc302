#pragma once

#include <algorithm>
#include <cstddef>

namespace Xml {

/// Makes room for one more item, so that adding one cannot fail any more.
template <class Vector>
void makeRoom(Vector& items) {
    constexpr std::size_t kFew = 4;
    if (items.size() == items.capacity()) items.reserve(std::max(kFew, 2 * items.size()));
}

}  // namespace Xml
