#include <gtest/gtest.h>

#include <iterator>
#include <memory>
#include <random>
#include <set>
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

TEST(WideTree, IsTakenApartFromItsFront) {
    Xml::Element top = withChildren("b");
    for (int i = 0; i < kCount; ++i) delete top.extractChild(top.getChild(0));
    EXPECT_EQ(top.getChildCount(), 0);
}

TEST(WideTree, IsTakenApartFromItsEndByAddress) {
    Xml::Element top = withChildren("b");
    for (int i = kCount - 1; i >= 0; --i) delete top.extractChild(top.getChild(i));
    EXPECT_EQ(top.getChildCount(), 0);
}

TEST(WideTree, GrowsAtItsFront) {
    Xml::Element top("a");
    for (int i = 0; i < kCount; ++i) top.insertChild(top.getChild(0), new Xml::Element("b"));
    EXPECT_EQ(top.getChildCount(), kCount);
}

TEST(WideTree, TurnsChildByChild) {
    Xml::Element top = withChildren("b");
    Xml::Object* const first = top.getChild(0);
    Xml::Object* const second = top.getChild(1);
    for (int i = 0; i < kCount + 1; ++i) top.addChild(top.extractChild(0));
    EXPECT_EQ(top.getChild(0), second);
    EXPECT_EQ(top.getChild(kCount - 1), first);
}

TEST(WideTree, GivesEachOfItsElements) {
    Xml::Element top = withChildren("b");
    for (int i = 0; i < kCount; ++i) ASSERT_EQ(top.getElement(i), top.getChild(i));
    EXPECT_EQ(top.getElement(kCount), nullptr);
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

Xml::Element withAttributes(int count) {
    Xml::Element element("e");
    for (int i = 0; i < count; ++i) element.setAttribute("n" + std::to_string(1'000'000 + i), i);
    return element;
}

TEST(ManyAttributes, AreFoundByIndex) {
    constexpr int kAttributes = 300'000;
    Xml::Element element = withAttributes(kAttributes);
    for (int i = 0; i < kAttributes; ++i) {
        ASSERT_EQ(element.getAttribute(i)->getValue().toInt(), i);
    }
}

TEST(ManyAttributes, AreRemovedFromTheBack) {
    constexpr int kAttributes = 300'000;
    Xml::Element element = withAttributes(kAttributes);
    for (int i = kAttributes - 1; i > 0; --i) element.removeAttribute(i);
    EXPECT_EQ(element.toString(), "e n1000000=\"0\"");
}

// Against a plain list of the names.
TEST(ManyAttributes, KeepTheirIndicesThroughChanges) {
    std::mt19937 random(1);
    Xml::Element element("e");
    std::set<std::string> names;
    for (int step = 0; step < 20'000; ++step) {
        const bool isShrinking = step / 4'000 % 2 == 1;
        const std::string name = "n" + std::to_string(random() % 100'000);
        if (!isShrinking || names.empty()) {
            element.setAttribute(name, "v");
            names.insert(name);
        } else {
            const auto index = static_cast<int>(random() % names.size());
            const auto removed = std::next(names.begin(), index);
            ASSERT_EQ(element.getAttribute(index)->getName(), *removed);
            element.removeAttribute(index);
            names.erase(removed);
        }
    }
    int index = 0;
    for (const std::string& name : names) {
        ASSERT_EQ(element.getAttribute(index++)->getName(), name);
    }
    EXPECT_EQ(element.getAttributeCount(), index);
}

// Children that come and go anywhere, mostly at the ends, against a plain list of them.
TEST(Children, KeepTheirOrderThroughChanges) {
    std::mt19937 random(1);
    for (const unsigned round : {0U, 1U, 2U, 3U}) {
        SCOPED_TRACE(round);
        Xml::Element top("a");
        std::vector<Xml::Object*> expected;
        for (int step = 0; step < 6'000; ++step) {
            const std::size_t size = expected.size();
            const bool isAtFront = round < 3 ? round % 2 == 0 : random() % 2 == 0;
            const bool isAnywhere = random() % 8 == 0;
            const std::size_t place = isAnywhere ? random() % (size + 1) : isAtFront ? 0 : size;
            const auto at = std::next(expected.begin(), static_cast<std::ptrdiff_t>(place));
            const bool isShrinking = random() % 16 < (step / 1'000 % 2 == 0 ? 4U : 12U);
            if (!isShrinking) {
                auto* child = new Xml::Element("b");
                top.insertChild(top.getChild(static_cast<int>(place)), child);
                expected.insert(at, child);
            } else if (place < size) {
                ASSERT_EQ(top.extractChild(*at), *at);
                delete *at;
                expected.erase(at);
            } else if (size > 0) {
                delete top.extractChild(static_cast<int>(size - 1));
                expected.pop_back();
            }
            ASSERT_EQ(top.getChildCount(), static_cast<int>(expected.size()));
        }
        for (std::size_t i = 0; i < expected.size(); ++i) {
            ASSERT_EQ(top.getChild(static_cast<int>(i)), expected[i]);
        }
        Xml::Element copy(top);
        EXPECT_EQ(support::written(copy), support::written(top));
    }
}

}  // namespace
