#pragma once

#include <cstddef>
#include <deque>
#include <queue>
#include <vector>

#include "VexXml/Dom.h"

namespace Xml {

/// The nodes that a content model is matched against: the children of an element, or what a queue
/// holds. They are read in place and must outlive this view.
class Children {
public:
    explicit Children(const std::vector<Object*>& nodes) : mVector(&nodes) {}
    explicit Children(const std::queue<Object*>& nodes) : mDeque(&Queue::nodesOf(nodes)) {}

    std::size_t size() const { return mVector != nullptr ? mVector->size() : mDeque->size(); }
    Object& operator[](std::size_t index) const {
        return mVector != nullptr ? *(*mVector)[index] : *(*mDeque)[index];
    }

private:
    /// Reaches the container of a queue, which can otherwise be read by copying it only.
    struct Queue : std::queue<Object*> {
        static const std::deque<Object*>& nodesOf(const std::queue<Object*>& queue) {
            return queue.*&Queue::c;
        }
    };

    const std::vector<Object*>* mVector = nullptr;
    const std::deque<Object*>* mDeque = nullptr;
};

}  // namespace Xml
