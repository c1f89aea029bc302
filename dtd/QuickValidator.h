#pragma once

#include <cstddef>
#include <vector>

#include "VexXml/Dtd.h"
#include "dtd/ElementRules.h"
#include "dtd/ModelProgram.h"

namespace Xml {

/// A run of validation that trusts a document to be valid.
///
/// If every child of an element is valid, the names alone tell whether they fit the model. So each
/// element is first compared with its model and then gone down to, in the order of the document.
/// What is bound on the way would be so in any case: up to the first child that is not valid,
/// matching takes the same steps. Once anything is found that is not valid, or that belongs to a
/// class of a caller's, the run gives up, and whoever asked must begin again with a `Validator`.
class QuickValidator {
public:
    explicit QuickValidator(const Dtd& dtd) : mRules(dtd) {}

    /// False when the run gave up. Until then nothing of a caller's was called.
    bool accepts(Element& root);

private:
    /// An element that keeps to its rule, but for the child elements from `next` on.
    struct Open {
        Element* element;
        const ElementRule* rule;
        std::size_t next;
        std::size_t firstKind;  ///< where in `mKinds` those of its children begin, if in order
        bool bindsItself;       ///< when it is done, that is
        bool willBeBound;       ///< by itself or an element around it
    };

    bool take(Element& element, ElementRule& rule, bool isBoundByParent, bool willBeBound);
    bool takeChildren();
    bool takeMember(Open& open);
    bool takeInOrder(Open& open);
    std::size_t takeText(const Element& element, const ElementRule& rule, std::size_t next,
                         bool willBeBound) const;
    void open(Element& element, const ElementRule& rule, std::size_t next, bool bindsItself,
              bool willBeBound);
    void close(const Open& open);
    bool fits(const Element& element, const ElementRule& rule);
    static bool hasSharedNames(const Element& element, const ElementRule& rule);
    static bool hasRightAttributes(const Element& element, const ElementRule& rule);

    ElementRules mRules;
    std::vector<Open> mOpen;
    /// Of the children of the open elements, those of the innermost last.
    std::vector<ModelProgram::Kind> mKinds;
    std::vector<ModelProgram::Place> mPlaces;
};

}  // namespace Xml
