#include <gtest/gtest.h>

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

std::string charDataOf(const Xml::Element& element) { return element.getCharData(); }

TEST(ElementCharData, IsThatOfTheFirstChildThatHasSome) {
    const Tree top(element("a", {element("b", {text("inner")}), text("x<y"), text("later")}));
    EXPECT_EQ(charDataOf(*top), "x<y");
}

TEST(ElementCharData, MayBeEmptyInFrontOfMore) {
    const Tree top(element("a", {text(""), text("later")}));
    EXPECT_EQ(charDataOf(*top), "");
}

TEST(ElementCharData, ResolvesWhatTheDtdDeclares) {
    const auto dtd = support::makeDtd("one");
    const Tree top(element("a", {new Xml::CharData(Xml::Entity("dtd"))}));
    EXPECT_EQ(charDataOf(*top), "&dtd;");
    top->setDtd(dtd.get());
    EXPECT_EQ(charDataOf(*top), "one");
}

TEST(ElementCharData, ThatIsMissingIsOneSharedEmptyText) {
    const Tree top(element("a", {element("b", {element("c")})}));
    const Xml::DataHolder* shared = &Xml::Element("x").getCharData();
    EXPECT_TRUE(shared->isEmpty());
    EXPECT_EQ(&top->getCharData(), shared);
    EXPECT_EQ(&top->getElementCharData("b"), shared);
    EXPECT_EQ(&top->getElementCharData("none"), shared);
    EXPECT_EQ(&top->findElementCharData("c"), shared);
    EXPECT_EQ(&top->findElementCharData("none"), shared);
    EXPECT_EQ(&top->getAttributeValue("none"), shared);
}

TEST(ElementCharData, IsReplaced) {
    const Tree top(element("a", {text("old")}));
    top->setCharData("new & <better>");
    EXPECT_EQ(support::dump(*top), "a(\"new &amp; &lt;better&gt;\")");
    EXPECT_EQ(top->getChild(0)->getParent(), top.get());
}

TEST(ElementCharData, IsAddedWhereThereWasNone) {
    Xml::Element top("a");
    top.setCharData("new");
    EXPECT_EQ(support::dump(top), "a(\"new\")");
}

TEST(ElementCharData, MayBeReplacedByNothing) {
    const Tree top(element("a", {text("old")}));
    top->setCharData("");
    EXPECT_EQ(support::dump(*top), "a(\"\")");
}

TEST(ElementCharData, MovesBehindChildElements) {
    const Tree top(element("a", {text("old"), element("b"), element("c")}));
    top->setCharData("new");
    EXPECT_EQ(support::dump(*top), "a(b() c() \"new\")");
}

TEST(ElementCharData, IsRemovedInOnePassThatSkipsTheNextChild) {
    const Tree top(element("a", {text("one"), text("two"), element("b")}));
    top->setCharData("new");
    EXPECT_EQ(support::dump(*top), "a(\"two\" b() \"new\")");
}

// What the single pass over the children leaves, each child a letter: the pass moves on by one
// after a removal too, and so steps over the child that took the removed one's place.
std::string leftBySinglePass(std::string children) {
    for (std::size_t i = 0; i < children.size(); ++i) {
        if (children[i] != 'E') children.erase(i, 1);
    }
    return children;
}

// An element with a child for each letter: an element for "E", else a text of that letter.
Tree treeOf(const std::string& children) {
    Tree top(element("a"));
    for (const char child : children) {
        top->addChild(child == 'E' ? static_cast<Xml::Object*>(element("E"))
                                   : text(std::string(1, child)));
    }
    return top;
}

std::string childrenOf(const Xml::Element& top) {
    std::string letters;
    for (int i = 0; i < top.getChildCount(); ++i) {
        const Xml::Object* child = top.getChild(i);
        letters += child->isElement() ? std::string("E") : child->toString();
    }
    return letters;
}

TEST(ElementCharData, IsReplacedAlikeAmongAllArrangementsOfChildren) {
    constexpr unsigned kMostChildren = 8;
    for (unsigned count = 0; count <= kMostChildren; ++count) {
        for (unsigned bits = 0; bits < 1U << count; ++bits) {
            std::string children;
            for (unsigned i = 0; i < count; ++i) {
                children += (bits >> i & 1U) != 0 ? 'E' : static_cast<char>('a' + i);
            }
            SCOPED_TRACE(children);
            const Tree top = treeOf(children);
            top->setCharData("!");
            EXPECT_EQ(childrenOf(*top), leftBySinglePass(children) + '!');
        }
    }
}

TEST(ElementCharData, CanBeSetToItself) {
    const Tree top(element("a", {text("a text that is too long for a small one <")}));
    top->setCharData(top->getCharData());
    EXPECT_EQ(charDataOf(*top), "a text that is too long for a small one <");
    top->setCharData(top->getChild(0)->toCharData()->data());
    EXPECT_EQ(charDataOf(*top), "a text that is too long for a small one &lt;");
}

TEST(ElementCharData, CanBeSetToAnAttributeOfTheElement) {
    Xml::Element top("a");
    top.setAttribute("k", "v");
    top.setCharData(top.getAttributeValue("k"));
    EXPECT_EQ(support::dump(top), "a(k=\"v\" \"v\")");
}

TEST(ElementCharData, IsBoundToTheDtdThatTheElementHad) {
    const auto dtd = support::makeDtd("one");
    const Tree top(element("a", {text("old"), text("kept"), element("b")}));
    top->setDtd(dtd.get());
    top->setCharData("new");
    EXPECT_EQ(support::bindings(*top), "a=none #=one b=one #=one");
}

TEST(ElementCharData, OfAChildIsFoundByName) {
    const Tree top(element(
        "a", {element("x", {element("b", {text("deep")})}),
              element("b", {element("c"), text("first")}), element("b", {text("second")})}));
    EXPECT_EQ(std::string(top->getElementCharData("b")), "first");
    EXPECT_EQ(std::string(top->getElementCharData("x")), "");
    EXPECT_EQ(std::string(top->getElementCharData("B")), "");
}

TEST(ElementCharData, OfAChildIsSetByName) {
    const Tree top(element("a", {element("x", {element("b", {text("deep")})}),
                                 element("b", {text("old"), element("c")}), element("b")}));
    top->setElementCharData("b", "new");
    top->setElementCharData("none", "lost");
    EXPECT_EQ(support::dump(*top), "a(x(b(\"deep\")) b(c() \"new\") b())");
}

TEST(ElementCharData, OfADescendantIsFoundByName) {
    const Tree top(element(
        "a", {element("x", {element("b", {text("deep")})}), element("b", {text("shallow")})}));
    EXPECT_EQ(std::string(top->findElementCharData("b")), "deep");
    EXPECT_EQ(std::string(top->findElementCharData("a")), "");
}

TEST(ElementCharData, OfADescendantIsSetByName) {
    const Tree top(element(
        "a", {element("x", {element("b", {text("deep")})}), element("b", {text("shallow")})}));
    top->findAndSetElementCharData("b", "new");
    top->findAndSetElementCharData("a", "lost");
    EXPECT_EQ(support::dump(*top), "a(x(b(\"new\")) b(\"shallow\"))");
}

TEST(ElementCharData, OfAnotherElementCanBeSetToItself) {
    const Tree top(element("a", {element("b", {text("x")})}));
    top->setElementCharData("b", top->getElementCharData("b"));
    top->findAndSetElementCharData("b", top->findElementCharData("b"));
    top->findAndSetElementCharData(top->getElement(0)->getName(), "y");
    EXPECT_EQ(support::dump(*top), "a(b(\"y\"))");
}

}  // namespace
