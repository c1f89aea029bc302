#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "VexXml/Dom.h"
#include "support/Diagnostics.h"
#include "support/Dump.h"
#include "support/LogStream.h"

namespace {

std::string valueOf(const Xml::Attribute& attribute) { return attribute.getValue(); }

TEST(Attribute, IsEmptyAndSilentByDefault) {
    support::Diagnostics diagnostics;
    const Xml::Attribute attribute;
    EXPECT_EQ(attribute.getName(), "");
    EXPECT_EQ(valueOf(attribute), "");
    EXPECT_FALSE(attribute.isOk());
    EXPECT_EQ(diagnostics.take(), std::vector<std::string>());
}

TEST(Attribute, KeepsNameAndValueAsGiven) {
    support::Diagnostics diagnostics;
    for (const char* name : {"x", "_", ":a", "a-b.c_d:e", "A9"}) {
        const Xml::Attribute attribute(name, "&lt; <'\"> &x;");
        EXPECT_EQ(attribute.getName(), name);
        EXPECT_EQ(valueOf(attribute), "&lt; <'\"> &x;");
        EXPECT_TRUE(attribute.isOk());
    }
    EXPECT_EQ(diagnostics.take(), std::vector<std::string>());
}

TEST(Attribute, ReportsAnInvalidNameAndKeepsIt) {
    support::Diagnostics diagnostics;
    for (const char* name : {"", "1a", "-a", "a b", "a=", "\xC3\xA9", " a"}) {
        SCOPED_TRACE(name);
        const Xml::Attribute attribute(name, "v");
        EXPECT_EQ(diagnostics.take(),
                  std::vector<std::string>{"<Attribute::Attribute> not a valid name"});
        EXPECT_EQ(attribute.getName(), name);
        EXPECT_EQ(valueOf(attribute), "v");
        EXPECT_EQ(attribute.isOk(), *name != '\0');
    }
}

// Each value, and how it is written behind the name.
const std::pair<std::string, std::string> kValues[] = {
    {"", "\"\""},
    {"a<b", "\"a&lt;b\""},
    {"&<>\"'", "\"&amp;&lt;&gt;&quot;&apos;\""},
    {"&amp;", "\"&amp;amp;\""},
    {"one\ntwo\t\xFF", "\"one\ntwo\t\xFF\""},
    {std::string("a\0b", 3), std::string("\"a\0b\"", 5)},
};

TEST(Attribute, QuotesAndEscapesItsText) {
    for (const auto& [value, quoted] : kValues) {
        SCOPED_TRACE(value);
        Xml::Attribute attribute("id", value);
        EXPECT_EQ(attribute.toString(), "id=" + quoted);
        EXPECT_EQ(support::written(attribute), "id=" + quoted);
        EXPECT_EQ(valueOf(attribute), value);
    }
}

TEST(Attribute, IsWrittenUnderAnInvalidName) {
    support::Diagnostics diagnostics;
    Xml::Attribute attribute("1 x", "v");
    EXPECT_EQ(support::written(attribute), "1 x=\"v\"");
}

TEST(Attribute, WithoutANameWritesNothing) {
    support::Diagnostics diagnostics;
    Xml::Attribute nameless;
    Xml::Attribute valued("", "v");
    EXPECT_EQ(support::written(nameless), "");
    EXPECT_EQ(support::written(valued), "");
    EXPECT_EQ(nameless.toString(), "=\"\"");
    EXPECT_EQ(valued.toString(), "=\"v\"");
}

TEST(Attribute, TakesANewValue) {
    Xml::Attribute attribute("id", "1");
    attribute.toString();
    attribute.setValue("2");
    EXPECT_EQ(valueOf(attribute), "2");
    EXPECT_EQ(attribute.toString(), "id=\"2\"");
    attribute.setValue(attribute.getValue());
    EXPECT_EQ(valueOf(attribute), "2");
}

TEST(Attribute, TakesNumbersAsValues) {
    EXPECT_EQ(Xml::Attribute("n", -12).toString(), "n=\"-12\"");
    EXPECT_EQ(Xml::Attribute("n", 2.5).toString(), "n=\"2.5\"");
}

TEST(Attribute, DoesNotTouchWhenItsValueIsSetDirectly) {
    const support::OptimizedRewriting rewriting;
    Xml::Element element("e");
    element.setAttribute("id", "1");
    support::writeAt(0, element);
    element.getAttribute("id")->setValue("2");
    EXPECT_EQ(support::writeAt(0, element), "[to 11]");
    element.touch();
    EXPECT_EQ(support::writeAt(0, element), "<e id=\"2\"/>");
}

TEST(Attribute, TouchesTheElementThatHoldsIt) {
    const support::OptimizedRewriting rewriting;
    Xml::Element element("e");
    element.setAttribute("id", "1");
    Xml::Attribute* attribute = element.getAttribute("id");
    // More than once: writing the element does not write the attribute itself, which so stays
    // touched.
    for (int round = 0; round < 3; ++round) {
        support::writeAt(0, element);
        attribute->touch();
        EXPECT_EQ(support::writeAt(0, element), "<e id=\"1\"/>");
    }
}

TEST(Attribute, CanBePassedOverWhenWrittenByItself) {
    const support::OptimizedRewriting rewriting;
    Xml::Attribute attribute("id", "1");
    EXPECT_EQ(support::writeAt(5, attribute), "id=\"1\"");
    EXPECT_EQ(support::writeAt(5, attribute), "[to 11]");
    EXPECT_EQ(support::writeAt(0, attribute), "id=\"1\"");
}

TEST(Attribute, ClonesDetached) {
    Xml::Element element("e");
    element.setAttribute("id", "1");
    const std::unique_ptr<Xml::Object> clone(element.getAttribute("id")->clone());
    EXPECT_EQ(clone->getParent(), nullptr);
    clone->toAttribute()->setValue("2");
    EXPECT_EQ(clone->toString(), "id=\"2\"");
    EXPECT_EQ(element.toString(), "e id=\"1\"");
}

TEST(Attribute, CopiesDetachedUnwrittenAndTouched) {
    const support::OptimizedRewriting rewriting;
    Xml::Element element("e");
    element.setAttribute("id", "1");
    support::writeAt(0, *element.getAttribute("id"));
    Xml::Attribute copy(*element.getAttribute("id"));
    EXPECT_EQ(copy.getParent(), nullptr);
    EXPECT_EQ(support::writeAt(0, copy), "id=\"1\"");
}

TEST(Attribute, AssignmentTakesOverNameValueAndParent) {
    Xml::Element element("e");
    element.setAttribute("id", "1");
    Xml::Attribute other("x", "2");
    other.toString();
    other = *element.getAttribute("id");
    EXPECT_EQ(other.toString(), "id=\"1\"");
    EXPECT_EQ(other.getParent(), &element);
}

TEST(Attribute, AssignmentTakesOverWhatIsKnownOfTheLastWriting) {
    const support::OptimizedRewriting rewriting;
    Xml::Attribute source("id", "1");
    support::writeAt(3, source);
    Xml::Attribute target("other", "22");
    target = source;
    EXPECT_EQ(support::writeAt(3, target), "[to 9]");
}

TEST(Attribute, CanBeAssignedToItself) {
    Xml::Attribute attribute("id", "1");
    const Xml::Attribute& same = attribute;
    attribute = same;
    EXPECT_EQ(attribute.toString(), "id=\"1\"");
}

TEST(Attribute, IsEmptyOnceMovedFrom) {
    const auto source = std::make_unique<Xml::Attribute>("a-name-too-long-for-a-small-text",
                                                         "a value too long for a small text");
    source->toString();
    const Xml::Attribute target(std::move(*source));
    EXPECT_EQ(target.toString(),
              "a-name-too-long-for-a-small-text=\"a value too long for a small text\"");
    EXPECT_EQ(source->getName(), "");
    EXPECT_EQ(valueOf(*source), "");
    EXPECT_EQ(source->toString(), "=\"\"");
    *source = Xml::Attribute("b", "2");
    EXPECT_EQ(source->toString(), "b=\"2\"");
}

TEST(Attribute, IsEmptyOnceMoveAssignedFrom) {
    const auto source = std::make_unique<Xml::Attribute>("id", "1");
    Xml::Attribute target("x", "2");
    target.toString();
    target = std::move(*source);
    EXPECT_EQ(target.toString(), "id=\"1\"");
    EXPECT_EQ(source->toString(), "=\"\"");
}

TEST(Attribute, OutlivesTheElementOfTheOneThatItWasCopiedFrom) {
    Xml::Attribute kept;
    {
        Xml::Element element("e");
        element.setAttribute("x", "1");
        kept = *element.getAttribute("x");
    }
    kept = Xml::Attribute("y", "2");
    EXPECT_EQ(kept.toString(), "y=\"2\"");
}

TEST(Attribute, IsFoundByTheNameItIsHeldUnderHoweverOftenItIsAssigned) {
    Xml::Element element("e");
    element.setAttribute("x", "1");
    Xml::Attribute* held = element.getAttribute("x");
    *held = Xml::Attribute("y", "2");
    *held = Xml::Attribute("z", "3");
    EXPECT_EQ(element.getAttribute("x"), held);
    EXPECT_EQ(element.getAttribute("y"), nullptr);
    EXPECT_EQ(element.toString(), "e z=\"3\"");
    element.setAttribute("x", "4");
    EXPECT_EQ(element.toString(), "e x=\"4\"");
}

TEST(Attribute, IsFoundByTheNameItIsHeldUnderAfterItsParentIsSet) {
    Xml::Element element("e");
    element.setAttribute("x", "1");
    element.getAttribute("x")->setParent(nullptr);
    *element.getAttribute("x") = Xml::Attribute("y", "2");
    element.setAttribute("x", "5");
    EXPECT_EQ(element.toString(), "e x=\"5\"");
}

}  // namespace
