#include <gtest/gtest.h>

#include <climits>
#include <memory>
#include <string>
#include <vector>

#include "VexXml/Dom.h"
#include "dom/Build.h"
#include "support/Bindings.h"
#include "support/Dump.h"

namespace {

using support::element;
using support::text;
using Tree = std::unique_ptr<Xml::Element>;

// The places in the tree, so that a lookup can be compared as text: each element's attribute "id".
std::string idOf(const Xml::Element* found) {
    return found == nullptr ? "none" : std::string(found->getAttributeValue("id"));
}

Xml::Element* withId(const char* id, Xml::Element* made) {
    made->setAttribute("id", id);
    return made;
}

// top: x1(x2(y3) y4 "text") "x" z5(x6) X7 x8
Tree sample() {
    Xml::Element* x2 = withId("2", element("x", {withId("3", element("y"))}));
    Xml::Element* x1 = withId("1", element("x", {x2, withId("4", element("y")), text("text")}));
    Xml::Element* z5 = withId("5", element("z", {withId("6", element("x"))}));
    return Tree(withId("0", element("top", {x1, text("x"), z5, withId("7", element("X")),
                                            withId("8", element("x"))})));
}

// What is looked for, and the ids of the matches in the order of their indices.
struct Lookup {
    const char* name;
    std::vector<const char*> ids;
};

// Every index finds its match, one below 1 the first, one beyond the last nothing.
template <typename Find>
void expectByIndex(const std::vector<const char*>& ids, const Find& find) {
    for (int i = 0; i < static_cast<int>(ids.size()); ++i) {
        EXPECT_EQ(idOf(find(i)), ids[static_cast<std::size_t>(i)]) << "index " << i;
    }
    for (const int index : {-1, INT_MIN}) {
        EXPECT_EQ(idOf(find(index)), ids.empty() ? "none" : ids[0]) << "index " << index;
    }
    const int size = static_cast<int>(ids.size());
    for (const int index : {size, size + 1, INT_MAX}) {
        EXPECT_EQ(find(index), nullptr) << "index " << index;
    }
}

const Lookup kChildren[] = {
    {"x", {"1", "8"}}, {"z", {"5"}}, {"X", {"7"}}, {"y", {}}, {"top", {}}, {"", {}},
};

TEST(ElementLookup, GetElementCountsChildrenOfTheName) {
    const Tree top = sample();
    const Xml::Element& constant = *top;
    for (const Lookup& lookup : kChildren) {
        SCOPED_TRACE(lookup.name);
        expectByIndex(lookup.ids, [&](int index) { return top->getElement(lookup.name, index); });
        expectByIndex(lookup.ids,
                      [&](int index) { return constant.getElement(lookup.name, index); });
    }
}

const Lookup kDescendants[] = {
    {"x", {"1", "2", "6", "8"}},
    {"y", {"3", "4"}},
    {"z", {"5"}},
    {"X", {"7"}},
    {"top", {}},  // the element itself is no candidate
    {"text", {}},
    {"", {}},
};

TEST(ElementLookup, FindElementCountsDescendantsOfTheNameParentsFirst) {
    const Tree top = sample();
    const Xml::Element& constant = *top;
    for (const Lookup& lookup : kDescendants) {
        SCOPED_TRACE(lookup.name);
        expectByIndex(lookup.ids, [&](int index) { return top->findElement(lookup.name, index); });
        expectByIndex(lookup.ids,
                      [&](int index) { return constant.findElement(lookup.name, index); });
    }
}

TEST(ElementLookup, FindElementStaysBelowTheElement) {
    const Tree top = sample();
    EXPECT_EQ(idOf(top->findElement("x")->findElement("x")), "2");
    EXPECT_EQ(top->findElement("x")->findElement("x", 1), nullptr);
    EXPECT_EQ(top->findElement("x", 1)->findElement("x"), nullptr);
    EXPECT_EQ(top->findElement("x", 1)->findElement("z"), nullptr);
}

template <typename Pointer>
std::vector<std::string> idsOf(const std::vector<Pointer>& found) {
    std::vector<std::string> ids;
    ids.reserve(found.size());
    for (const Xml::Element* element : found) ids.push_back(idOf(element));
    return ids;
}

TEST(ElementLookup, FindAllElementsGivesEveryDescendantOfTheName) {
    const Tree top = sample();
    for (const Lookup& lookup : kDescendants) {
        SCOPED_TRACE(lookup.name);
        std::vector<Xml::Element*> found;
        top->findAllElements(lookup.name, found);
        std::vector<const Xml::Element*> constFound;
        static_cast<const Xml::Element&>(*top).findAllElements(lookup.name, constFound);
        const std::vector<std::string> expected(lookup.ids.begin(), lookup.ids.end());
        EXPECT_EQ(idsOf(found), expected);
        EXPECT_EQ(idsOf(constFound), expected);
    }
}

TEST(ElementLookup, FindAllElementsAppends) {
    const Tree top = sample();
    std::vector<Xml::Element*> found{top.get()};
    top->findAllElements("y", found);
    top->findAllElements("z", found);
    EXPECT_EQ(idsOf(found), (std::vector<std::string>{"0", "3", "4", "5"}));
    std::vector<const Xml::Element*> constFound{top.get()};
    static_cast<const Xml::Element&>(*top).findAllElements("y", constFound);
    EXPECT_EQ(idsOf(constFound), (std::vector<std::string>{"0", "3", "4"}));
}

TEST(ElementLookup, TakesTheFirstWithoutAnIndex) {
    const Tree top = sample();
    const Xml::Element& constant = *top;
    EXPECT_EQ(idOf(top->getElement("x")), "1");
    EXPECT_EQ(idOf(constant.getElement("x")), "1");
    EXPECT_EQ(idOf(top->findElement("y")), "3");
    EXPECT_EQ(idOf(constant.findElement("y")), "3");
    EXPECT_EQ(idOf(top->getElementByAttribute("id", "5")), "5");
    EXPECT_EQ(idOf(constant.getElementByAttribute("id", "5")), "5");
    EXPECT_EQ(idOf(top->findElementByAttribute("id", "6")), "6");
    EXPECT_EQ(idOf(constant.findElementByAttribute("id", "6")), "6");
}

// top: a1(k=v) e2(a3(k=v) k=V) a4(k=v) a5(k="") a6, of which a is declared with a default of k.
Tree sampleWithAttributes() {
    Tree top(withId("0", element("top")));
    const auto add = [](Xml::Element* parent, const char* name, const char* id) {
        Xml::Element* child = withId(id, element(name));
        parent->addChild(child);
        return child;
    };
    add(top.get(), "a", "1")->setAttribute("k", "v");
    Xml::Element* second = add(top.get(), "e", "2");
    add(second, "a", "3")->setAttribute("k", "v");
    second->setAttribute("k", "V");
    add(top.get(), "a", "4")->setAttribute("k", "v");
    add(top.get(), "a", "5")->setAttribute("k", "");
    add(top.get(), "a", "6");
    top->setAttribute("k", "v");
    return top;
}

struct AttributeLookup {
    const char* name;
    const char* value;
    std::vector<const char*> ids;
};

const AttributeLookup kChildrenByAttribute[] = {
    {"k", "v", {"1", "4"}}, {"k", "V", {"2"}}, {"k", "", {"5"}}, {"k", "w", {}},
    {"K", "v", {}},         {"id", "3", {}},   {"id", "0", {}},  {"none", "", {}},
};

TEST(ElementLookup, GetElementByAttributeCountsChildrenThatHaveTheValueThemselves) {
    const Tree top = sampleWithAttributes();
    const Xml::Element& constant = *top;
    for (const auto& [name, value, ids] : kChildrenByAttribute) {
        SCOPED_TRACE(std::string(name) + '=' + value);
        const Xml::DataHolder wanted(value);
        const char* const attribute = name;
        expectByIndex(
            ids, [&](int index) { return top->getElementByAttribute(attribute, wanted, index); });
        expectByIndex(ids, [&](int index) {
            return constant.getElementByAttribute(attribute, wanted, index);
        });
    }
}

const AttributeLookup kDescendantsByAttribute[] = {
    {"k", "v", {"1", "3", "4"}},
    {"k", "V", {"2"}},
    {"k", "", {"5", "6"}},  // a missing attribute has an empty value
    {"k", "w", {}},
    {"id", "3", {"3"}},
    {"id", "0", {}},  // the element itself is no candidate
    {"none", "", {"1", "2", "3", "4", "5", "6"}},
};

TEST(ElementLookup, FindElementByAttributeCountsDescendantsOfTheValueParentsFirst) {
    const Tree top = sampleWithAttributes();
    const Xml::Element& constant = *top;
    for (const auto& [name, value, ids] : kDescendantsByAttribute) {
        SCOPED_TRACE(std::string(name) + '=' + value);
        const Xml::DataHolder wanted(value);
        const char* const attribute = name;
        expectByIndex(
            ids, [&](int index) { return top->findElementByAttribute(attribute, wanted, index); });
        expectByIndex(ids, [&](int index) {
            return constant.findElementByAttribute(attribute, wanted, index);
        });
    }
}

TEST(ElementLookup, OnlyFindElementByAttributeConsultsDefaults) {
    const auto dtd = support::makeDtd("one");
    const Tree top(element("top", {withId("1", element("a", {withId("2", element("b"))})),
                                   withId("3", element("undeclared"))}));
    top->setDtd(dtd.get());
    EXPECT_EQ(idOf(top->findElementByAttribute("dtd", "one")), "1");
    EXPECT_EQ(idOf(top->findElementByAttribute("dtd", "one", 1)), "2");
    EXPECT_EQ(idOf(top->findElementByAttribute("dtd", "one", 2)), "none");
    EXPECT_EQ(idOf(top->findElementByAttribute("dtd", "")), "3");
    EXPECT_EQ(top->getElementByAttribute("dtd", "one"), nullptr);
    EXPECT_EQ(top->getElementByAttribute("dtd", ""), nullptr);
}

TEST(ElementLookup, ComparesValuesPlainAndWhole) {
    const Tree top(element("top", {withId("1", element("a")), withId("2", element("a"))}));
    const Xml::DataHolder withNul("v\0w", 3);
    top->getElement(0)->setAttribute("k", "a<b");
    top->getElement(1)->setAttribute("k", withNul);
    EXPECT_EQ(idOf(top->getElementByAttribute("k", "a<b")), "1");
    EXPECT_EQ(top->getElementByAttribute("k", "a&lt;b"), nullptr);
    EXPECT_EQ(idOf(top->getElementByAttribute("k", withNul)), "2");
    EXPECT_EQ(top->getElementByAttribute("k", "v"), nullptr);
    EXPECT_EQ(idOf(top->findElementByAttribute("k", withNul)), "2");
    EXPECT_EQ(top->findElementByAttribute("k", "v"), nullptr);
}

TEST(ElementLookup, FindsNothingInAnEmptyElement) {
    Xml::Element empty("x");
    std::vector<Xml::Element*> found;
    empty.findAllElements("x", found);
    EXPECT_TRUE(found.empty());
    EXPECT_EQ(empty.findElement("x"), nullptr);
    EXPECT_EQ(empty.getElement("x"), nullptr);
    EXPECT_EQ(empty.findElementByAttribute("k", ""), nullptr);
}

// The slow way to the same answers.
// NOLINTNEXTLINE(misc-no-recursion): the trees of this test are a few levels deep
void collect(const Xml::Element& top, const std::string& name,
             std::vector<const Xml::Element*>& out) {
    for (int i = 0; i < top.getChildCount(); ++i) {
        if (!top.getChild(i)->isElement()) continue;
        const Xml::Element* child = top.getChild(i)->toElement();
        if (child->getName() == name) out.push_back(child);
        collect(*child, name, out);
    }
}

// The tree whose node n, counted from 0, has the parent parents[n - 1]; names alternate.
Tree treeOf(const std::vector<int>& parents) {
    std::vector<Xml::Element*> nodes{element("a")};
    for (std::size_t n = 0; n < parents.size(); ++n) {
        nodes.push_back(element(n % 2 == 0 ? "a" : "b"));
        nodes[static_cast<std::size_t>(parents[n])]->addChild(nodes.back());
    }
    return Tree(nodes[0]);
}

// Counts `parents` up to the next tree of as many nodes; false behind the last.
bool nextTree(std::vector<int>& parents) {
    for (std::size_t n = parents.size(); n-- > 0;) {
        if (++parents[n] <= static_cast<int>(n)) return true;
        parents[n] = 0;
    }
    return false;
}

TEST(ElementLookup, AgreesWithTheSlowWayOnAllSmallTrees) {
    std::vector<int> parents(6, 0);
    do {
        const Tree top = treeOf(parents);
        SCOPED_TRACE(support::dump(*top));
        for (const char* name : {"a", "b"}) {
            std::vector<const Xml::Element*> expected;
            collect(*top, name, expected);
            std::vector<const Xml::Element*> found;
            static_cast<const Xml::Element&>(*top).findAllElements(name, found);
            ASSERT_EQ(found, expected);
            expected.push_back(nullptr);
            for (std::size_t i = 0; i < expected.size(); ++i) {
                ASSERT_EQ(top->findElement(name, static_cast<int>(i)), expected[i]) << i;
            }
        }
    } while (nextTree(parents));
}

}  // namespace
