#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "VexXml/Dom.h"
#include "VexXml/XPath.h"

// However a node came by its name, and however it holds it, a query finds it by that name.

namespace {

unsigned long countOf(Xml::Document& document, const std::string& expression) {
    return Xml::XPath(&document).GetValues(expression);
}

/// A document with one element in its root, which has one attribute.
class NameTest : public ::testing::Test {
protected:
    NameTest() { root->addChild(item); }

    void expectNames(const std::string& element, const std::string& attribute) {
        EXPECT_EQ(countOf(document, "/r/" + element), 1U);
        EXPECT_EQ(countOf(document, "//" + element), 1U);
        EXPECT_EQ(countOf(document, "//*[self::" + element + "]"), 1U);
        EXPECT_EQ(countOf(document, "//@" + attribute), 1U);
        EXPECT_EQ(countOf(document, "//*[@" + attribute + " = 'x']"), 1U);
    }
    void expectNoName(const std::string& name) {
        EXPECT_EQ(countOf(document, "//" + name), 0U) << name;
        EXPECT_EQ(countOf(document, "//@" + name), 0U) << name;
        EXPECT_EQ(countOf(document, "//*[@" + name + " = 'x']"), 0U) << name;
    }

    Xml::Element* root = new Xml::Element("r");
    Xml::Element* item = new Xml::Element("i");
    Xml::Document document{root};
};

TEST_F(NameTest, IsFoundWhenItIsNew) {
    expectNoName("a-name-of-this-test");
    item->setName("a-name-of-this-test");
    item->setAttribute("another-name-of-this-test", "x");
    expectNames("a-name-of-this-test", "another-name-of-this-test");
    expectNoName("a-third-name-of-this-test");
}

TEST_F(NameTest, IsFoundHoweverLongItIs) {
    for (std::size_t size = 1; size < 200; ++size) {
        const std::string name(size, 'n');
        item->setName(name);
        item->setAttribute(name, "x");
        expectNames(name, name);
        item->removeAttribute(name);
        expectNoName(name + 'n');
    }
}

TEST_F(NameTest, IsFoundWhenNodesWereShownByIt) {
    item->setAttribute("a", "x");
    EXPECT_EQ(item->toString(), "i a=\"x\"");
    EXPECT_EQ(item->getAttribute("a")->toString(), "a=\"x\"");
    expectNames("i", "a");
    expectNoName("b");
}

TEST_F(NameTest, IsFoundAfterAChange) {
    item->setAttribute("a", "x");
    item->toString();
    item->setName("j");
    *item->getAttribute("a") = Xml::Attribute("b", "x");
    expectNames("j", "b");
    expectNoName("i");
    expectNoName("a");
}

TEST_F(NameTest, IsFoundAmongSeveralAttributesOfIt) {
    for (const char* name : {"a", "b", "c"}) item->setAttribute(name, "y");
    *item->getAttribute("a") = Xml::Attribute("b", "z");
    *item->getAttribute("c") = Xml::Attribute("b", "x");
    EXPECT_EQ(countOf(document, "//@b"), 3U);
    for (const char* value : {"x", "y", "z"}) {
        EXPECT_EQ(countOf(document, std::string("//i[@b = '") + value + "']"), 1U) << value;
    }
    expectNoName("a");
}

TEST_F(NameTest, IsFoundHoweverManyThereAre) {
    std::vector<std::string> names;
    names.reserve(20000);
    for (int i = 0; i < 20000; ++i) names.push_back("many" + std::to_string(i));
    for (const std::string& name : names) root->addChild(new Xml::Element(name));
    for (std::size_t i = 0; i < names.size(); i += 1000) {
        EXPECT_EQ(countOf(document, "/r/" + names[i]), 1U) << names[i];
    }
    EXPECT_EQ(countOf(document, "/r/many20000"), 0U);
}

}  // namespace
