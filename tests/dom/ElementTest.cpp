#include <gtest/gtest.h>

#include <climits>
#include <memory>
#include <string>
#include <vector>

#include "VexXml/Dom.h"
#include "VexXml/Streams.h"
#include "dom/Build.h"
#include "support/Bindings.h"
#include "support/Diagnostics.h"
#include "support/Dump.h"
#include "support/LogStream.h"

namespace {

using support::element;
using support::text;
using Tree = std::unique_ptr<Xml::Element>;

constexpr const char* kInvalidNames[] = {"",   "1a",  "-a",  ".a",        "a b",
                                         "a<", " a ", "a\n", "\xC3\xA9 ", "%d"};

std::vector<std::string> invalidName(const std::string& name) {
    return {"<Element::setName> not a valid name " + name};
}

TEST(Element, StartsEmptyUnderItsName) {
    support::Diagnostics diagnostics;
    for (const char* name : {"a", "_", ":", "a-b.c_d:e9", "A"}) {
        const Xml::Element built(name);
        EXPECT_EQ(built.getName(), name);
        EXPECT_EQ(support::dump(built), std::string(name) + "()");
        EXPECT_EQ(built.getAttributeCount(), 0);
        EXPECT_EQ(built.getParent(), nullptr);
    }
    EXPECT_EQ(diagnostics.take(), std::vector<std::string>());
}

TEST(Element, ReportsAnInvalidNameAndStaysWithoutOne) {
    support::Diagnostics diagnostics;
    for (const char* name : kInvalidNames) {
        const Xml::Element built(name);
        EXPECT_EQ(diagnostics.take(), invalidName(name));
        EXPECT_EQ(built.getName(), "");
    }
}

TEST(Element, ReportsAnInvalidNameOfAnyLengthWhole) {
    support::Diagnostics diagnostics;
    const std::string name(5000, ' ');
    const Xml::Element built(name);
    EXPECT_EQ(diagnostics.take(), invalidName(name));
}

TEST(Element, CanStartWithAText) {
    const Xml::Element built("a", "x<y");
    EXPECT_EQ(support::dump(built), "a(\"x&lt;y\")");
    EXPECT_EQ(built.getChild(0)->getParent(), &built);
}

TEST(Element, CanStartWithAnEmptyText) {
    const Xml::Element built("a", "");
    EXPECT_EQ(support::dump(built), "a(\"\")");
}

TEST(Element, HoldsItsTextUnderAnInvalidName) {
    support::Diagnostics diagnostics;
    const Xml::Element built("1", "x");
    EXPECT_EQ(diagnostics.take(), invalidName("1"));
    EXPECT_EQ(support::dump(built), "(\"x\")");
}

TEST(Element, TakesAnotherName) {
    Xml::Element renamed("a");
    renamed.toString();
    renamed.setName("b");
    EXPECT_EQ(renamed.getName(), "b");
    EXPECT_EQ(renamed.toString(), "b");
    renamed.setName(renamed.getName());
    EXPECT_EQ(renamed.getName(), "b");
}

TEST(Element, ReportsAnInvalidNewNameAndKeepsItsOwn) {
    support::Diagnostics diagnostics;
    Xml::Element kept("kept");
    for (const char* name : kInvalidNames) {
        kept.setName(name);
        EXPECT_EQ(diagnostics.take(), invalidName(name));
        EXPECT_EQ(kept.getName(), "kept");
    }
}

TEST(ElementChildren, AreAppendedInOrder) {
    Xml::Element parent("p");
    auto* first = element("a");
    auto* second = text("x");
    auto* third = element("b");
    parent.addChild(first);
    parent.addChild(second);
    parent.addChild(third);
    EXPECT_EQ(support::dump(parent), "p(a() \"x\" b())");
    EXPECT_EQ(parent.getChildCount(), 3);
    for (Xml::Object* child : {static_cast<Xml::Object*>(first), static_cast<Xml::Object*>(second),
                               static_cast<Xml::Object*>(third)}) {
        EXPECT_EQ(child->getParent(), &parent);
    }
}

TEST(ElementChildren, AreFoundByIndex) {
    const Tree parent(element("p", {element("a"), text("x")}));
    const Xml::Element& constant = *parent;
    EXPECT_EQ(support::written(*parent->getChild(0)), "<a/>");
    EXPECT_EQ(support::written(*parent->getChild(1)), "x");
    for (const int index : {-1, 2, 3, INT_MIN, INT_MAX}) {
        EXPECT_EQ(parent->getChild(index), nullptr) << index;
        EXPECT_EQ(constant.getChild(index), nullptr) << index;
    }
    EXPECT_EQ(constant.getChild(1), parent->getChild(1));
}

TEST(ElementChildren, CanBeMadeFromNameAndText) {
    Xml::Element parent("p");
    Xml::Element* first = parent.addElement("a", "x<y");
    Xml::Element* second = parent.addElement("b", "");
    EXPECT_EQ(support::dump(parent), "p(a(\"x&lt;y\") b(\"\"))");
    EXPECT_EQ(first, parent.getChild(0));
    EXPECT_EQ(second, parent.getChild(1));
    EXPECT_EQ(first->getParent(), &parent);
    EXPECT_EQ(first->getChild(0)->getParent(), first);
}

TEST(ElementChildren, CanBeMadeFromTextsOfTheParent) {
    const Tree parent(element("p", {text("x")}));
    parent->addElement(parent->getName(), parent->getCharData());
    EXPECT_EQ(support::dump(*parent), "p(\"x\" p(\"x\"))");
}

TEST(ElementChildren, AreAddedUnderAnInvalidName) {
    support::Diagnostics diagnostics;
    Xml::Element parent("p");
    parent.addElement("1", "x");
    EXPECT_EQ(diagnostics.take(), invalidName("1"));
    EXPECT_EQ(support::dump(parent), "p((\"x\"))");
}

TEST(ElementChildren, AreInsertedInFrontOfAnother) {
    const Tree parent(element("p", {element("a"), text("x"), element("b")}));
    parent->insertChild(parent->getChild(0), element("first"));
    parent->insertChild(parent->getChild(2), element("middle"));
    parent->insertChild(parent->getChild(4), text("last"));
    EXPECT_EQ(support::dump(*parent), "p(first() a() middle() \"x\" \"last\" b())");
    for (int i = 0; i < parent->getChildCount(); ++i) {
        EXPECT_EQ(parent->getChild(i)->getParent(), parent.get()) << i;
    }
}

TEST(ElementChildren, AreAppendedWhenThereIsNoSuchOtherChild) {
    const Tree parent(element("p", {element("a", {element("inner")}), element("b")}));
    Xml::Element stranger("s");
    parent->insertChild(nullptr, element("one"));
    parent->insertChild(parent->getElement("a")->getChild(0), element("two"));
    parent->insertChild(&stranger, element("three"));
    parent->insertChild(parent.get(), element("four"));
    EXPECT_EQ(support::dump(*parent), "p(a(inner()) b() one() two() three() four())");
}

TEST(ElementChildren, AreAppendedWhenOnlyTheParentLinkSuggestsAnother) {
    Xml::Element parent("p");
    Xml::Element claimant("c");
    claimant.setParent(&parent);
    parent.addChild(element("a"));
    parent.insertChild(&claimant, element("b"));
    EXPECT_EQ(support::dump(parent), "p(a() b())");
    EXPECT_FALSE(parent.isChild(&claimant));
    EXPECT_EQ(parent.extractChild(&claimant), nullptr);
}

TEST(ElementChildren, AreInsertedIntoAnEmptyParent) {
    Xml::Element parent("p");
    parent.insertChild(nullptr, text("x"));
    EXPECT_EQ(support::dump(parent), "p(\"x\")");
}

TEST(ElementChildren, AreTakenOutByPointer) {
    const Tree parent(element("p", {element("a", {text("x")}), text("y"), element("b")}));
    Xml::Object* second = parent->getChild(1);
    const std::unique_ptr<Xml::Object> extracted(parent->extractChild(second));
    EXPECT_EQ(extracted.get(), second);
    EXPECT_EQ(extracted->getParent(), nullptr);
    EXPECT_EQ(support::dump(*parent), "p(a(\"x\") b())");
    const Tree other(parent->extractChild(parent->getChild(0))->toElement());
    EXPECT_EQ(support::dump(*other), "a(\"x\")");
    EXPECT_EQ(support::dump(*parent), "p(b())");
}

TEST(ElementChildren, AreTakenOutByIndex) {
    const Tree parent(element("p", {element("a"), element("b"), element("c")}));
    for (const int index : {-1, 3, INT_MIN, INT_MAX}) {
        EXPECT_EQ(parent->extractChild(index), nullptr) << index;
    }
    Xml::Object* last = parent->getChild(2);
    const std::unique_ptr<Xml::Object> extracted(parent->extractChild(2));
    EXPECT_EQ(extracted.get(), last);
    EXPECT_EQ(extracted->getParent(), nullptr);
    EXPECT_EQ(support::dump(*parent), "p(a() b())");
}

TEST(ElementChildren, AreTakenOutOnlyOfTheirOwnParent) {
    const Tree parent(element("p", {element("a", {element("inner")})}));
    Xml::Element stranger("s");
    EXPECT_EQ(parent->extractChild(static_cast<Xml::Object*>(nullptr)), nullptr);
    EXPECT_EQ(parent->extractChild(&stranger), nullptr);
    EXPECT_EQ(parent->extractChild(parent.get()), nullptr);
    EXPECT_EQ(parent->extractChild(parent->getElement("a")->getChild(0)), nullptr);
    EXPECT_EQ(support::dump(*parent), "p(a(inner()))");
}

TEST(ElementChildren, TakenOutCanBePutBack) {
    const Tree parent(element("p", {element("a"), element("b")}));
    Xml::Object* moved = parent->extractChild(0);
    parent->addChild(moved);
    EXPECT_EQ(support::dump(*parent), "p(b() a())");
    EXPECT_EQ(moved->getParent(), parent.get());
}

// Tells when it dies.
class Witness : public Xml::Element {
public:
    Witness(const std::string& name, std::string& deaths) : Xml::Element(name), mDeaths(deaths) {}
    Witness(const Witness&) = delete;
    Witness& operator=(const Witness&) = delete;
    ~Witness() override { mDeaths += getName(); }

private:
    std::string& mDeaths;
};

TEST(ElementChildren, AreDeletedTogether) {
    std::string deaths;
    Xml::Element parent("p");
    parent.addChild(new Witness("a", deaths));
    parent.addChild(text("x"));
    parent.addChild(new Witness("b", deaths));
    parent.killChildren();
    EXPECT_EQ(deaths.size(), 2U) << deaths;
    EXPECT_EQ(support::dump(parent), "p()");
    parent.killChildren();
    parent.addChild(text("y"));
    EXPECT_EQ(support::dump(parent), "p(\"y\")");
}

TEST(ElementChildren, DieWithTheirParent) {
    std::string deaths;
    {
        Xml::Element top("top");
        auto* inner = new Witness("i", deaths);
        inner->addChild(new Witness("c", deaths));
        top.addChild(inner);
    }
    EXPECT_EQ(deaths.size(), 2U) << deaths;
}

TEST(ElementChildren, OutliveTheirParentOnceTakenOut) {
    std::string deaths;
    std::unique_ptr<Xml::Object> extracted;
    {
        Xml::Element top("top");
        top.addChild(new Witness("a", deaths));
        extracted.reset(top.extractChild(0));
    }
    EXPECT_EQ(deaths, "");
    extracted.reset();
    EXPECT_EQ(deaths, "a");
}

TEST(ElementChildren, AreKnownToTheirOwnParentOnly) {
    const Tree parent(element("p", {element("a", {element("inner")}), text("x")}));
    EXPECT_TRUE(parent->isChild(parent->getChild(0)));
    EXPECT_TRUE(parent->isChild(parent->getChild(1)));
    EXPECT_FALSE(parent->isChild(parent->getElement("a")->getChild(0)));
    EXPECT_FALSE(parent->isChild(parent.get()));
    EXPECT_FALSE(parent->isChild(nullptr));
}

TEST(ElementChildren, ThatAreElementsHaveAnIndexOfTheirOwn) {
    const Tree parent(
        element("p", {text("x"), element("a", {element("inner")}), text("y"), element("b")}));
    const Xml::Element& constant = *parent;
    EXPECT_EQ(parent->getElement(0), parent->getChild(1));
    EXPECT_EQ(parent->getElement(1), parent->getChild(3));
    EXPECT_EQ(constant.getElement(1), parent->getChild(3));
    for (const int index : {-1, 2, 3, INT_MIN, INT_MAX}) {
        EXPECT_EQ(parent->getElement(index), nullptr) << index;
        EXPECT_EQ(constant.getElement(index), nullptr) << index;
    }
}

// What is done to an element `<a>x</a>` that stands in `<top>`, and what is then written again.
// Changes touch everything above; the rest must not.
struct Change {
    const char* what;
    void (*act)(Xml::Element& a);
    const char* rewritten;
};

const char* const kUnchanged = "[to 22]";

const Change kChanges[] = {
    {"setName", [](Xml::Element& a) { a.setName("b"); }, "<top>\n\t<b>[to 11]</b>\n</top>"},
    {"setName to the same", [](Xml::Element& a) { a.setName("a"); },
     "<top>\n\t<a>[to 11]</a>\n</top>"},
    {"setName to an invalid one", [](Xml::Element& a) { a.setName("1"); }, kUnchanged},
    {"addChild", [](Xml::Element& a) { a.addChild(text("y")); },
     "<top>\n\t<a>[to 11]y</a>\n</top>"},
    {"addElement", [](Xml::Element& a) { a.addElement("b", "y"); },
     "<top>\n\t<a>[to 11]<b>y</b></a>\n</top>"},
    {"insertChild", [](Xml::Element& a) { a.insertChild(nullptr, element("b")); },
     "<top>\n\t<a>[to 11]<b/></a>\n</top>"},
    {"extractChild", [](Xml::Element& a) { delete a.extractChild(0); }, "<top>\n\t<a/>\n</top>"},
    {"extractChild of a stranger", [](Xml::Element& a) { a.extractChild(&a); }, kUnchanged},
    {"extractChild of null", [](Xml::Element& a) { a.extractChild(nullptr); }, kUnchanged},
    {"extractChild out of range", [](Xml::Element& a) { a.extractChild(1); }, kUnchanged},
    {"killChildren", [](Xml::Element& a) { a.killChildren(); }, "<top>\n\t<a/>\n</top>"},
    {"setAttribute", [](Xml::Element& a) { a.setAttribute("k", "v"); },
     "<top>\n\t<a k=\"v\">x</a>\n</top>"},
    {"removeAttribute of a missing one", [](Xml::Element& a) { a.removeAttribute("k"); },
     kUnchanged},
    {"removeAttribute out of range", [](Xml::Element& a) { a.removeAttribute(0); }, kUnchanged},
    {"removeAttribute below 0", [](Xml::Element& a) { a.removeAttribute(-1); }, kUnchanged},
    {"setCharData", [](Xml::Element& a) { a.setCharData("y"); }, "<top>\n\t<a>y</a>\n</top>"},
    {"setElementCharData of a missing one", [](Xml::Element& a) { a.setElementCharData("b", "y"); },
     kUnchanged},
    {"findAndSetElementCharData of a missing one",
     [](Xml::Element& a) { a.findAndSetElementCharData("b", "y"); }, kUnchanged},
    {"touch", [](Xml::Element& a) { a.touch(); }, "<top>\n\t<a>[to 11]</a>\n</top>"},
    {"setDtd", [](Xml::Element& a) { a.setDtd(nullptr); }, kUnchanged},
    {"getCharData", [](Xml::Element& a) { a.getCharData(); }, kUnchanged},
    {"toString", [](Xml::Element& a) { a.toString(); }, kUnchanged},
    {"clone", [](Xml::Element& a) { delete a.clone(); }, kUnchanged},
};

TEST(Element, TouchesItselfAndAllAboveWithEveryChangeAndOnlyThen) {
    support::Diagnostics diagnostics;
    const support::OptimizedRewriting rewriting;
    for (const Change& change : kChanges) {
        SCOPED_TRACE(change.what);
        const Tree top(element("top", {element("a", {text("x")})}));
        EXPECT_EQ(support::writeAt(0, *top), "<top>\n\t<a>x</a>\n</top>");
        change.act(*top->getElement("a"));
        EXPECT_EQ(support::writeAt(0, *top), change.rewritten);
    }
}

TEST(Element, IsTouchedByKillingNoChildren) {
    const support::OptimizedRewriting rewriting;
    Xml::Element childless("a");
    support::writeAt(0, childless);
    childless.killChildren();
    EXPECT_EQ(support::writeAt(0, childless), "<a/>");
}

TEST(Element, IsTouchedByRemovingAnAttribute) {
    const support::OptimizedRewriting rewriting;
    Xml::Element changed("a");
    for (int byIndex = 0; byIndex < 2; ++byIndex) {
        changed.setAttribute("k", "v");
        EXPECT_EQ(support::writeAt(0, changed), "<a k=\"v\"/>");
        byIndex != 0 ? changed.removeAttribute(0) : changed.removeAttribute("k");
        EXPECT_EQ(support::writeAt(0, changed), "<a/>");
    }
}

}  // namespace
