#pragma once

#include <cstddef>
#include <vector>

#include "VexXml/Dom.h"

namespace tools {

/// Goes through an element and all below it in the order of the document, without call stack for
/// each level.
class Walk {
public:
    explicit Walk(const Xml::Element& top) : mTop(&top) {}

    /// The next node, a parent in front of its children; null behind the last one.
    const Xml::Object* next();
    /// The level of the node that `next` gave. The top is on level 1.
    std::size_t level() const { return mOpen.size() + 1; }
    /// Passes over what is below the node that `next` gave.
    void leaveOut() { mEntered = nullptr; }

private:
    /// An element, and how many of its children were given.
    struct Open {
        const Xml::Element* element;
        int given;
    };

    const Xml::Object* give(const Xml::Object* node);

    const Xml::Element* mTop;                ///< null once it was given
    const Xml::Element* mEntered = nullptr;  ///< what was given last, if its children come next
    std::vector<Open> mOpen;                 ///< around the node that was given last
};

}  // namespace tools
