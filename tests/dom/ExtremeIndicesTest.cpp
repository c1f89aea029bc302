#include <gtest/gtest.h>

#include <limits>
#include <memory>
#include <string>

#include "VexXml/Dom.h"
#include "support/Dump.h"

namespace {

constexpr int kLeast = std::numeric_limits<int>::min();
constexpr int kMost = std::numeric_limits<int>::max();

class ExtremeIndices : public testing::Test {
protected:
    ExtremeIndices() {
        root().setAttribute("x", "1");
        root().addElement("b", "text")->setAttribute("y", "2");
    }

    Xml::Element& root() { return *document.getRoot(); }
    const Xml::Element& constRoot() { return root(); }

    Xml::Document document{new Xml::Element("a")};
};

TEST_F(ExtremeIndices, FindNothingByPlace) {
    for (const int index : {kLeast, kLeast + 1, -1, 1, kMost - 1, kMost}) {
        SCOPED_TRACE(index);
        EXPECT_EQ(root().getChild(index), nullptr);
        EXPECT_EQ(constRoot().getChild(index), nullptr);
        EXPECT_EQ(root().getElement(index), nullptr);
        EXPECT_EQ(constRoot().getElement(index), nullptr);
        EXPECT_EQ(root().getAttribute(index), nullptr);
        EXPECT_EQ(constRoot().getAttribute(index), nullptr);
        EXPECT_EQ(root().extractChild(index), nullptr);
        root().removeAttribute(index);
        EXPECT_EQ(support::dump(document), "a(x=\"1\" b(y=\"2\" \"text\"))");
    }
}

TEST_F(ExtremeIndices, BelowOneCountAsTheFirstByName) {
    Xml::Element* const inner = root().getElement(0);
    for (const int index : {kLeast, kLeast + 1, -1, 0}) {
        SCOPED_TRACE(index);
        EXPECT_EQ(root().getElement("b", index), inner);
        EXPECT_EQ(constRoot().getElement("b", index), inner);
        EXPECT_EQ(root().getElementByAttribute("y", "2", index), inner);
        EXPECT_EQ(constRoot().getElementByAttribute("y", "2", index), inner);
        EXPECT_EQ(root().findElement("b", index), inner);
        EXPECT_EQ(constRoot().findElement("b", index), inner);
        EXPECT_EQ(root().findElementByAttribute("y", "2", index), inner);
        EXPECT_EQ(constRoot().findElementByAttribute("y", "2", index), inner);
        EXPECT_EQ(document.find("a", index), &root());
        EXPECT_EQ(document.find("b", index), inner);
        EXPECT_EQ(document.find("c", index), nullptr);
    }
}

TEST_F(ExtremeIndices, FindNothingByNameWhenTheyAreLarge) {
    for (const int index : {1, kMost - 1, kMost}) {
        SCOPED_TRACE(index);
        EXPECT_EQ(root().getElement("b", index), nullptr);
        EXPECT_EQ(root().getElementByAttribute("y", "2", index), nullptr);
        EXPECT_EQ(root().findElement("b", index), nullptr);
        EXPECT_EQ(root().findElementByAttribute("y", "2", index), nullptr);
        EXPECT_EQ(document.find("a", index), nullptr);
        EXPECT_EQ(document.find("b", index), nullptr);
    }
}

TEST(ExtremeSizes, OfCharacterDataBelowZeroChangeNothing) {
    Xml::CharData text(Xml::DataHolder("text"));
    for (const int size : {kLeast, kLeast + 1, -1}) {
        SCOPED_TRACE(size);
        EXPECT_FALSE(text.setSize(size));
        EXPECT_TRUE(text.reserve(size));
        EXPECT_EQ(std::string(text.data()), "text");
    }
    EXPECT_TRUE(text.reserve(0));
    EXPECT_EQ(std::string(text.data()), "text");
    EXPECT_TRUE(text.setSize(0));
    EXPECT_EQ(text.getSize(), 0);
}

TEST(ExtremeSizes, OfCharacterDataMayBeTheLargestInt) {
    Xml::CharData text(Xml::DataHolder("text"));
    EXPECT_TRUE(text.setSize(kMost));
    EXPECT_EQ(text.getSize(), kMost);
    EXPECT_EQ(text[0], 't');
    EXPECT_EQ(text[kMost - 1], '\0');
}

}  // namespace
