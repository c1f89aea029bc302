#include <memory>
#include <sstream>
#include <utility>

#include "VexXml/Dom.h"
#include "VexXml/Dtd.h"
#include "VexXml/Streams.h"
#include "bench/CostCases.h"

namespace Bench {
namespace {

using Xml::Element;

// The parent takes the child over.
Element* addNew(Element& parent, const char* name) {
    auto child = std::make_unique<Element>(name);
    parent.addChild(child.get());
    return child.release();
}

Element* growDown(Element& top, std::size_t levels) {
    Element* inner = &top;
    for (std::size_t i = 0; i < levels; ++i) inner = addNew(*inner, "a");
    return inner;
}

std::unique_ptr<Element> growUp(std::size_t levels) {
    auto top = std::make_unique<Element>("a");
    for (std::size_t i = 0; i < levels; ++i) {
        auto around = std::make_unique<Element>("a");
        around->addChild(top.get());
        static_cast<void>(top.release());
        top = std::move(around);
    }
    return top;
}

void addChildren(Element& parent, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) addNew(parent, "b");
}

std::string attributeName(std::size_t number) { return "a" + std::to_string(10000000 + number); }

void setAttributes(Element& element, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) element.setAttribute(attributeName(i), "v");
}

// What all trees of a kind are made of: a root, how many nodes it has got, and the innermost.
struct Tree {
    Tree() : root(std::make_unique<Element>("r")) {}

    Element& top() { return *root; }

    std::unique_ptr<Element> root;
    Element* inner = nullptr;
    Xml::Dtd dtd{"r"};
    Xml::Dtd other{"r"};
};

using Work = void (*)(Tree& tree, std::size_t count);

void make(Tree& /*tree*/, std::size_t /*count*/) {}
void makeDeep(Tree& tree, std::size_t count) { tree.inner = growDown(tree.top(), count); }
void makeWide(Tree& tree, std::size_t count) { addChildren(tree.top(), count); }
void makeAttributes(Tree& tree, std::size_t count) { setAttributes(tree.top(), count); }
void makeTexts(Tree& tree, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) {
        auto text = std::make_unique<Xml::CharData>(Xml::DataHolder("x"));
        tree.top().addChild(text.get());
        text.release();
    }
}
void makeDtds(Tree& tree, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) {
        const std::string name = "e" + std::to_string(i);
        for (Xml::Dtd* dtd : {&tree.dtd, &tree.other}) {
            dtd->addElementDecl(name, name, Xml::RepOptional);
            dtd->addAttDecl("r", name, Xml::AttImplied);
            dtd->setEntity(name, name);
        }
    }
}

CostCase caseOf(const std::string& name, Work prepare, Work work, std::size_t smallest = 20000) {
    return {name, "node", smallest, [=](std::size_t count) -> CostRun {
                auto tree = std::make_shared<Tree>();
                prepare(*tree, count);
                return {count, [=] { work(*tree, count); }};
            }};
}

std::size_t write(Tree& tree) {
    std::ostringstream text;
    Xml::FileOutStream out(&text);
    tree.top().toStream(out);
    return static_cast<std::size_t>(text.tellp());
}

CostCase writingCase(const std::string& name, Work prepare, std::size_t smallest) {
    return {name, "byte", smallest, [=](std::size_t count) -> CostRun {
                auto tree = std::make_shared<Tree>();
                prepare(*tree, count);
                return {write(*tree), [=] { write(*tree); }};
            }};
}

// Of a class as a caller may derive.
class Derived : public Element {
public:
    using Element::Element;
};

void growDerivedDown(Tree& tree, std::size_t count) {
    Element* inner = &tree.top();
    for (std::size_t i = 0; i < count; ++i) {
        auto child = std::make_unique<Derived>("a");
        inner->addChild(child.get());
        inner = child.release();
    }
}

void growDerivedUp(Tree& tree, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) {
        auto around = std::make_unique<Derived>("a");
        around->addChild(tree.root.get());
        static_cast<void>(tree.root.release());
        tree.root = std::move(around);
    }
}

std::vector<CostCase> costsOfDeepTrees() {
    return {
        caseOf("chain, built from the top", make, makeDeep),
        caseOf("chain, built from the bottom", make,
               [](Tree&, std::size_t count) { growUp(count); }),
        caseOf("chain, touched n times at the bottom", makeDeep,
               [](Tree& tree, std::size_t count) {
                   for (std::size_t i = 0; i < count; ++i) tree.inner->touch();
               }),
        caseOf("chain, changed n times at the bottom", makeDeep,
               [](Tree& tree, std::size_t count) {
                   for (std::size_t i = 0; i < count; ++i) tree.inner->setAttribute("k", "v");
               }),
        caseOf("chain, bound", makeDeep,
               [](Tree& tree, std::size_t) { tree.top().setDtd(&tree.dtd); }),
        caseOf("chain, bound n times", makeDeep,
               [](Tree& tree, std::size_t count) {
                   for (std::size_t i = 0; i < count; ++i) tree.top().setDtd(&tree.dtd);
               }),
        caseOf("chain, bound level by level from the bottom", makeDeep,
               [](Tree& tree, std::size_t) {
                   for (Xml::Object* at = tree.inner; at != nullptr; at = at->getParent()) {
                       at->setDtd(&tree.dtd);
                   }
               }),
        caseOf("chain, copied", makeDeep,
               [](Tree& tree, std::size_t) { const Element copy(tree.top()); }),
        caseOf("chain, freed", makeDeep, [](Tree& tree, std::size_t) { tree.root.reset(); }),
        caseOf("chain, taken apart from the top", makeDeep,
               [](Tree& tree, std::size_t) {
                   while (tree.top().getChildCount() > 0) {
                       tree.root.reset(tree.top().extractChild(0)->toElement());
                   }
               }),
        caseOf("chain, searched", makeDeep,
               [](Tree& tree, std::size_t) { tree.top().findElement("none"); }),
        writingCase("chain, written", makeDeep, 500),
        caseOf("chain of a derived class, built from the top", make, growDerivedDown, 500),
        caseOf("chain of a derived class, built from the bottom", make, growDerivedUp, 500),
        caseOf(
            "chain of a derived class, bound", growDerivedDown,
            [](Tree& tree, std::size_t) { tree.top().setDtd(&tree.dtd); }, 500),
    };
}

std::vector<CostCase> costsOfWideTrees() {
    return {
        caseOf("children, appended", make, makeWide),
        caseOf("children, inserted at the front", make,
               [](Tree& tree, std::size_t count) {
                   for (std::size_t i = 0; i < count; ++i) {
                       tree.top().insertChild(tree.top().getChild(0), new Element("b"));
                   }
               }),
        caseOf("children, inserted in front of the last", make,
               [](Tree& tree, std::size_t count) {
                   Element* last = addNew(tree.top(), "b");
                   for (std::size_t i = 0; i < count; ++i) {
                       tree.top().insertChild(last, new Element("b"));
                   }
               }),
        caseOf("children, taken from the front by index", makeWide,
               [](Tree& tree, std::size_t count) {
                   for (std::size_t i = 0; i < count; ++i) delete tree.top().extractChild(0);
               }),
        caseOf("children, taken from the front by address", makeWide,
               [](Tree& tree, std::size_t count) {
                   for (std::size_t i = 0; i < count; ++i) {
                       delete tree.top().extractChild(tree.top().getChild(0));
                   }
               }),
        caseOf("children, taken from the back by index", makeWide,
               [](Tree& tree, std::size_t count) {
                   for (std::size_t i = count; i > 0; --i) {
                       delete tree.top().extractChild(static_cast<int>(i - 1));
                   }
               }),
        caseOf("children, taken from the back by address", makeWide,
               [](Tree& tree, std::size_t count) {
                   for (std::size_t i = count; i > 0; --i) {
                       delete tree.top().extractChild(tree.top().getChild(static_cast<int>(i - 1)));
                   }
               }),
        caseOf("children, moved from the front to the back", makeWide,
               [](Tree& tree, std::size_t count) {
                   for (std::size_t i = 0; i < count; ++i) {
                       tree.top().addChild(tree.top().extractChild(0));
                   }
               }),
        caseOf("children, by index", makeWide,
               [](Tree& tree, std::size_t count) {
                   for (std::size_t i = 0; i < count; ++i) {
                       tree.top().getChild(static_cast<int>(i))->touch();
                   }
               }),
        caseOf("child elements, by index", makeWide,
               [](Tree& tree, std::size_t count) {
                   for (std::size_t i = 0; i < count; ++i) {
                       tree.top().getElement(static_cast<int>(i))->touch();
                   }
               }),
        caseOf("texts, replaced", makeTexts,
               [](Tree& tree, std::size_t) { tree.top().setCharData("y"); }),
        caseOf("children, copied", makeWide,
               [](Tree& tree, std::size_t) { const Element copy(tree.top()); }),
        caseOf("children, bound", makeWide,
               [](Tree& tree, std::size_t) { tree.top().setDtd(&tree.dtd); }),
        caseOf("children, freed", makeWide, [](Tree& tree, std::size_t) { tree.root.reset(); }),
        writingCase("children, written", makeWide, 20000),
    };
}

std::vector<CostCase> costsOfAttributes() {
    return {
        caseOf("attributes, set, ascending", make, makeAttributes),
        caseOf("attributes, set, descending", make,
               [](Tree& tree, std::size_t count) {
                   for (std::size_t i = count; i > 0; --i) {
                       tree.top().setAttribute(attributeName(i), "v");
                   }
               }),
        caseOf("attributes, by name", makeAttributes,
               [](Tree& tree, std::size_t count) {
                   for (std::size_t i = 0; i < count; ++i) {
                       tree.top().getAttribute(attributeName(i))->touch();
                   }
               }),
        caseOf("attributes, by index", makeAttributes,
               [](Tree& tree, std::size_t count) {
                   for (std::size_t i = 0; i < count; ++i) {
                       tree.top().getAttribute(static_cast<int>(i))->touch();
                   }
               }),
        caseOf("attributes, removed from the front by index", makeAttributes,
               [](Tree& tree, std::size_t count) {
                   for (std::size_t i = 0; i < count; ++i) tree.top().removeAttribute(0);
               }),
        caseOf("attributes, removed from the back by index", makeAttributes,
               [](Tree& tree, std::size_t count) {
                   for (std::size_t i = count; i > 0; --i) {
                       tree.top().removeAttribute(static_cast<int>(i - 1));
                   }
               }),
        caseOf("attributes, removed by name", makeAttributes,
               [](Tree& tree, std::size_t count) {
                   for (std::size_t i = 0; i < count; ++i) {
                       tree.top().removeAttribute(attributeName(i));
                   }
               }),
        caseOf("attributes, copied", makeAttributes,
               [](Tree& tree, std::size_t) { const Element copy(tree.top()); }),
    };
}

std::vector<CostCase> costsOfDtds() {
    return {
        caseOf("declarations, added", make, makeDtds, 5000),
        caseOf(
            "declarations, merged", makeDtds,
            [](Tree& tree, std::size_t) { tree.dtd.merge(tree.other, true); }, 5000),
        caseOf(
            "declarations, merged without overwriting", makeDtds,
            [](Tree& tree, std::size_t) { tree.dtd.merge(tree.other, false); }, 5000),
        caseOf(
            "declarations, merged with themselves", makeDtds,
            [](Tree& tree, std::size_t) { tree.dtd.merge(tree.dtd, true); }, 5000),
        caseOf(
            "declarations, copied", makeDtds,
            [](Tree& tree, std::size_t) { const Xml::Dtd copy(tree.dtd); }, 5000),
        caseOf(
            "entities, by value", makeDtds,
            [](Tree& tree, std::size_t count) {
                for (std::size_t i = 0; i < count; ++i) {
                    static_cast<void>(tree.dtd.getEntityName("e" + std::to_string(i)));
                }
            },
            500),
    };
}

}  // namespace

std::vector<CostCase> costsOfTrees() {
    std::vector<CostCase> all;
    for (const auto& cases :
         {costsOfDeepTrees(), costsOfWideTrees(), costsOfAttributes(), costsOfDtds()}) {
        all.insert(all.end(), cases.begin(), cases.end());
    }
    return all;
}

}  // namespace Bench
