#include "tools/Walk.h"

#include <utility>

namespace tools {

const Xml::Object* Walk::next() {
    if (mTop != nullptr) return give(std::exchange(mTop, nullptr));
    if (mEntered != nullptr) mOpen.push_back({mEntered, 0});
    while (!mOpen.empty() && mOpen.back().given == mOpen.back().element->getChildCount()) {
        mOpen.pop_back();
    }
    if (mOpen.empty()) return give(nullptr);
    return give(mOpen.back().element->getChild(mOpen.back().given++));
}

const Xml::Object* Walk::give(const Xml::Object* node) {
    mEntered = node != nullptr && node->isElement() ? node->toElement() : nullptr;
    return node;
}

}  // namespace tools
