#pragma once

#include <cstddef>

#include "VexXml/Dom.h"
#include "xpath/NodeTable.h"

namespace Xml {

/// Tells where nodes stand among the children of their parent.
///
/// It goes on from the place that it told last and remembers all places of a parent when that has
/// become the cheaper way.
class SiblingPlaces {
public:
    /// The index of the child; -1 when it is none.
    int indexOf(Element& parent, const Object& child);

private:
    int search(Element& parent, const Object& child);
    void remember(Element& parent);

    Element* mLastParent = nullptr;
    int mLastIndex = 0;
    std::size_t mPassed = 0;  ///< children that were gone past in vain
    NodeTable mRemembered;    ///< parents
    NodeTable mIndices;       ///< of the children of those parents
};

}  // namespace Xml
