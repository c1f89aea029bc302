#pragma once

#include <memory>

namespace Xml {

/// A deep copy of what a reader has built so far, if anything.
template <class T>
std::unique_ptr<T> copyOf(const std::unique_ptr<T>& original) {
    return original ? std::make_unique<T>(*original) : nullptr;
}

}  // namespace Xml
