#pragma once

namespace Xml {

/// What was read of the content of an element.
enum class ElementContent : int {
    Failed,           ///< a mistake
    Leaf,             ///< character data, a comment or a processing instruction, wholly dealt with
    StartTag,         ///< of a child
    EmptyElementTag,  ///< a whole child
    EndTag            ///< of the element itself
};

}  // namespace Xml
