#pragma once

#include <cstddef>
#include <deque>
#include <queue>

#include "VexXml/Dom.h"

namespace Xml {

/// The nodes that a content model is matched against: the children of an element, or what a queue
/// holds. They are read in place and must outlive this view.
class Children {
public:
    Children(Object* const* nodes, std::size_t count) : mNodes(nodes), mCount(count) {}
    explicit Children(const std::queue<Object*>& nodes) : mDeque(&Queue::nodesOf(nodes)) {}

    std::size_t size() const { return mDeque == nullptr ? mCount : mDeque->size(); }
    Object& operator[](std::size_t index) const {
        return mDeque == nullptr ? *mNodes[index] : *(*mDeque)[index];
    }

private:
    /// Reaches the container of a queue, which can otherwise be read by copying it only.
    struct Queue : std::queue<Object*> {
        static const std::deque<Object*>& nodesOf(const std::queue<Object*>& queue) {
            return queue.*&Queue::c;
        }
    };

    Object* const* mNodes = nullptr;
    std::size_t mCount = 0;
    const std::deque<Object*>* mDeque = nullptr;
};

}  // namespace Xml
