#pragma once

#include <utility>
#include <vector>

#include "VexXml/Dom.h"

namespace Xml {

/// The elements below one, parents before their children, for `Element` or `const Element`.
///
/// The tree must not change meanwhile. No call stack is used: a tree may be deeper than that.
template <class ElementType>
class DescendantElements {
public:
    explicit DescendantElements(ElementType& top) : mOpen{{&top, 0}} {}

    /// The next element; null when there is none left.
    ElementType* next() {
        while (!mOpen.empty()) {
            auto& [parent, index] = mOpen.back();
            auto* child = parent->getChild(index++);
            if (child == nullptr) {
                mOpen.pop_back();
            } else if (child->isElement()) {
                mOpen.emplace_back(child->toElement(), 0);
                return mOpen.back().first;
            }
        }
        return nullptr;
    }

private:
    /// The elements around the place reached, each with the index of the child to go to next.
    std::vector<std::pair<ElementType*, int>> mOpen;
};

}  // namespace Xml
