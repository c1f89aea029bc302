#pragma once

#include <cstdint>
#include <vector>

#include "VexXml/Dom.h"
#include "xpath/NodeTable.h"

namespace Xml {

/// What stands below the root element of a document, numbered from 0 in document order. What
/// follows or precedes a node so becomes a range of numbers.
class DocumentOrder {
public:
    using Place = std::uint32_t;
    static constexpr Place kNone = 0xFFFFFFFF;

    explicit DocumentOrder(Document& document);

    /// Null when the document has none.
    Element* root() const { return mRoot; }
    /// Neither a document nor the root element: nothing follows or precedes those.
    bool isBelowRoot(const Object& node) const { return !node.isDocument() && &node != mRoot; }

    Place size() const { return static_cast<Place>(mEntries.size()); }
    Object* node(Place place) const { return mEntries[place].node; }
    struct Range {
        Place begin;
        Place end;
    };
    /// What is below the node.
    Range below(const Object& node) const;
    /// The following siblings of the node with all below them. Nothing further on belongs to what
    /// follows a node here: deliberate, applications rely on staying inside the parent.
    Range following(const Object& node) const;

    /// What does not precede a node: the elements around it, and a range. Everything else does,
    /// also what comes behind the elements around it: deliberate, applications rely on it.
    struct NotPreceding {
        Place holder;  ///< the innermost element around the node; `kNone` when there is none
        Place begin;   ///< of the node and its following siblings, with all below them
        Place end;
    };
    NotPreceding notPreceding(const Object& node) const;
    /// The element around the node; `kNone` when that is the root.
    Place parentOf(Place place) const { return mEntries[place].parent; }
    /// Whether `place` is that of `holder` or of an element around it. `holder` may be `kNone`.
    bool isOnPath(Place place, Place holder) const;

    /// `kNone` for the root and all that is not below it.
    Place placeOf(const Object& node) const;

private:
    Place holderOf(const Object& node) const;
    Place endOfSiblings(Place place) const;

    struct Entry {
        Object* node;
        Place parent;  ///< `kNone` when that is the root
        Place end;     ///< just behind the node and all below it
    };

    Element* mRoot;
    std::vector<Entry> mEntries;
    NodeTable mPlaces;
};

}  // namespace Xml
