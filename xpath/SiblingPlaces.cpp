#include "xpath/SiblingPlaces.h"

namespace Xml {
namespace {

// To search so many times as long as a list of siblings is still cheaper than to remember it.
constexpr std::size_t kPatience = 4;
constexpr std::size_t kFewSiblings = 16;

}  // namespace

int SiblingPlaces::indexOf(Element& parent, const Object& child) {
    if (mRemembered.find(&parent) != nullptr) {
        const NodeTable::Value* index = mIndices.find(&child);
        return index != nullptr ? static_cast<int>(*index) : -1;
    }
    const int index = search(parent, child);
    const auto count = static_cast<std::size_t>(parent.getChildCount());
    if (count > kFewSiblings && mPassed > kPatience * count) remember(parent);
    return index;
}

int SiblingPlaces::search(Element& parent, const Object& child) {
    const int count = parent.getChildCount();
    const int first = &parent == mLastParent && mLastIndex < count ? mLastIndex : 0;
    for (int passed = 0; passed < count; ++passed) {
        const int index = passed < count - first ? first + passed : passed - (count - first);
        if (parent.getChild(index) != &child) continue;
        mLastParent = &parent;
        mLastIndex = index;
        mPassed += static_cast<std::size_t>(passed);
        return index;
    }
    mPassed += static_cast<std::size_t>(count);
    return -1;
}

void SiblingPlaces::remember(Element& parent) {
    const int count = parent.getChildCount();
    mRemembered.insert(&parent);
    mIndices.reserve(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i) {
        mIndices.insert(parent.getChild(i), static_cast<NodeTable::Value>(i));
    }
}

}  // namespace Xml
