#include "xpath/DocumentOrder.h"

namespace Xml {

// Invariant: what comes in front of the child `next` of the last of `open` is numbered.
DocumentOrder::DocumentOrder(Document& document) : mRoot(document.getRoot()) {
    struct Open {
        Element* element;
        Place place;
        int next;
    };
    std::vector<Open> open;
    if (mRoot != nullptr) open.push_back({mRoot, kNone, 0});
    while (!open.empty()) {
        const auto [element, place, next] = open.back();
        Object* child = element->getChild(next);
        if (child == nullptr) {
            if (place != kNone) mEntries[place].end = size();
            open.pop_back();
            continue;
        }
        ++open.back().next;
        const Place here = size();
        mEntries.push_back({child, place, here + 1});
        if (child->isElement()) open.push_back({child->toElement(), here, 0});
    }
    mPlaces.reserve(mEntries.size());
    for (Place place = 0; place < size(); ++place) mPlaces.insert(node(place), place);
}

DocumentOrder::Range DocumentOrder::below(const Object& node) const {
    if (node.isDocument() || &node == mRoot) return {0, size()};
    const Place place = placeOf(node);
    return place == kNone ? Range{size(), size()} : Range{place + 1, mEntries[place].end};
}

DocumentOrder::Range DocumentOrder::following(const Object& node) const {
    const Place place = placeOf(node);
    if (place == kNone) return {size(), size()};
    return {mEntries[place].end, endOfSiblings(place)};
}

// An attribute has no siblings.
DocumentOrder::NotPreceding DocumentOrder::notPreceding(const Object& node) const {
    const Place place = placeOf(node);
    if (place == kNone) return {holderOf(node), size(), size()};
    return {parentOf(place), place, endOfSiblings(place)};
}

bool DocumentOrder::isOnPath(Place place, Place holder) const {
    return holder != kNone && place <= holder && holder < mEntries[place].end;
}

DocumentOrder::Place DocumentOrder::placeOf(const Object& node) const {
    const NodeTable::Value* place = mPlaces.find(&node);
    return place != nullptr ? *place : kNone;
}

DocumentOrder::Place DocumentOrder::holderOf(const Object& node) const {
    for (const Object* above = node.getParent(); above != nullptr; above = above->getParent()) {
        const Place place = placeOf(*above);
        if (place != kNone) return place;
    }
    return kNone;
}

// Just behind the last sibling and all below that.
DocumentOrder::Place DocumentOrder::endOfSiblings(Place place) const {
    const Place parent = parentOf(place);
    return parent == kNone ? size() : mEntries[parent].end;
}

}  // namespace Xml
