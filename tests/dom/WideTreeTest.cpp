#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "VexXml/Dom.h"
#include "dom/Build.h"
#include "support/Bindings.h"
#include "support/Dump.h"
#include "support/LogStream.h"

// Elements with as many children as documents may have. Nothing is timed: whatever cost grows with
// the square of their number would not end.

namespace {

constexpr int kCount = 1'000'000;

Xml::Element withChildren(const std::string& name) {
    Xml::Element top("a");
    for (int i = 0; i < kCount; ++i) top.addChild(new Xml::Element(name));
    return top;
}

TEST(WideTree, IsBuiltChildByChild) {
    const auto dtd = support::makeDtd("one");
    Xml::Element top("a");
    top.setDtd(dtd.get());
    for (int i = 0; i < kCount / 4; ++i) {
        top.addChild(new Xml::Element("b"));
        top.addElement("c", "x");
        top.insertChild(nullptr, support::text("x"));
        top.insertChild(top.getChild(top.getChildCount()), support::text("y"));
    }
    EXPECT_EQ(top.getChildCount(), kCount);
    EXPECT_EQ(support::bindingOf(*top.getChild(0)), "one");
    EXPECT_EQ(support::bindingOf(*top.getChild(kCount - 1)), "none");
}

TEST(WideTree, IsTouchedByEveryChild) {
    Xml::Element top = withChildren("b");
    for (int i = 0; i < kCount; ++i) top.getChild(i)->toElement()->setAttribute("k", i);
    EXPECT_EQ(top.getChild(kCount - 1)->toString(), "b k=\"999999\"");
}

TEST(WideTree, IsBoundAfterEachOfSomeChanges) {
    const auto one = support::makeDtd("one");
    Xml::Element top = withChildren("b");
    for (int i = 0; i < 10; ++i) {
        top.setDtd(one.get());
        top.getChild(i)->touch();
    }
    EXPECT_EQ(support::bindingOf(*top.getChild(9)), "none");
    EXPECT_EQ(support::bindingOf(*top.getChild(8)), "one");
    EXPECT_EQ(support::bindingOf(*top.getChild(kCount - 1)), "one");
}

TEST(WideTree, LosesEveryOtherTextInOnePass) {
    Xml::Element top("a");
    for (int i = 0; i < kCount; ++i) top.addChild(support::text("x"));
    top.setCharData("y");
    EXPECT_EQ(top.getChildCount(), kCount / 2 + 1);
}

TEST(WideTree, LosesEveryTextBetweenElements) {
    Xml::Element top("a");
    for (int i = 0; i < kCount / 2; ++i) {
        top.addChild(support::text("x"));
        top.addChild(new Xml::Element("b"));
    }
    top.setCharData("y");
    EXPECT_EQ(top.getChildCount(), kCount / 2 + 1);
}

TEST(WideTree, IsTakenApartFromItsEnd) {
    Xml::Element top = withChildren("b");
    for (int i = kCount - 1; i >= 0; --i) delete top.extractChild(i);
    EXPECT_EQ(top.getChildCount(), 0);
}

TEST(WideTree, IsCopiedAssignedAndSearched) {
    Xml::Element top = withChildren("b");
    Xml::Element assigned("z");
    assigned = Xml::Element(top);
    assigned = top;
    std::vector<Xml::Element*> found;
    assigned.findAllElements("b", found);
    EXPECT_EQ(found.size(), static_cast<std::size_t>(kCount));
    EXPECT_EQ(assigned.findElement("b", kCount - 1), assigned.getChild(kCount - 1));
    EXPECT_EQ(assigned.getElement("b", kCount - 1), assigned.getChild(kCount - 1));
    EXPECT_EQ(assigned.findElement("b", kCount), nullptr);
    assigned.killChildren();
    EXPECT_EQ(assigned.getChildCount(), 0);
}

TEST(WideTree, IsWritten) {
    Xml::Element top = withChildren("b");
    EXPECT_EQ(support::written(top).size(), static_cast<std::size_t>(kCount) * 6 + 8);
}

// Written one way, the names are in order; the other way, each comes in front of all the others.
TEST(ManyAttributes, AreSetInAnyOrder) {
    constexpr int kAttributes = 300'000;
    for (const bool ascending : {true, false}) {
        SCOPED_TRACE(ascending);
        Xml::Element element("e");
        for (int i = 0; i < kAttributes; ++i) {
            const int number = 1'000'000 + (ascending ? i : kAttributes - i);
            element.setAttribute("n" + std::to_string(number), number);
        }
        EXPECT_EQ(element.getAttributeCount(), kAttributes);
        EXPECT_EQ(element.getAttributeValue("n1000007").toInt(), 1'000'007);
        const Xml::Element copy(element);
        EXPECT_EQ(copy.getAttributeCount(), kAttributes);
    }
}

}  // namespace
