#include <gtest/gtest.h>

#include <climits>
#include <string>
#include <utility>
#include <vector>

#include "VexXml/Dom.h"
#include "VexXml/Dtd.h"
#include "support/Bindings.h"
#include "support/Diagnostics.h"
#include "support/Dump.h"

namespace {

std::string valueOf(const Xml::Element& element, const std::string& name) {
    return element.getAttributeValue(name);
}

// An element with the attributes in that order of setting, each valued by its own name.
Xml::Element withAttributes(const std::vector<std::string>& names) {
    support::Diagnostics diagnostics;
    Xml::Element element("e");
    for (const std::string& name : names) element.setAttribute(name, name);
    return element;
}

TEST(ElementAttributes, AreFoundByName) {
    Xml::Element element = withAttributes({"a", "B", "a.b"});
    const Xml::Element& constant = element;
    for (const char* name : {"a", "B", "a.b"}) {
        ASSERT_NE(element.getAttribute(name), nullptr) << name;
        EXPECT_EQ(element.getAttribute(name)->getName(), name);
        EXPECT_EQ(constant.getAttribute(name), element.getAttribute(name));
        EXPECT_EQ(valueOf(element, name), name);
    }
    for (const char* name : {"", "A", "b", "a.", "a.b ", "zz"}) {
        EXPECT_EQ(element.getAttribute(name), nullptr) << name;
        EXPECT_EQ(constant.getAttribute(name), nullptr) << name;
        EXPECT_EQ(valueOf(element, name), "") << name;
    }
}

TEST(ElementAttributes, StandInByteOrderOfTheirNames) {
    Xml::Element element =
        withAttributes({"b", "\xFFz", "a-b", "a", "ab", "_a", "Z", "\x7F", "a.b", ":", "a9"});
    EXPECT_EQ(element.toString(),
              "e :=\":\" Z=\"Z\" _a=\"_a\" a=\"a\" a-b=\"a-b\" a.b=\"a.b\" a9=\"a9\" ab=\"ab\" "
              "b=\"b\" \x7F=\"\x7F\" \xFFz=\"\xFFz\"");
}

TEST(ElementAttributes, HaveIndicesInThatOrder) {
    Xml::Element element = withAttributes({"c", "a", "b"});
    const Xml::Element& constant = element;
    ASSERT_EQ(element.getAttributeCount(), 3);
    const char* const names[] = {"a", "b", "c"};
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(element.getAttribute(i), element.getAttribute(names[i])) << i;
        EXPECT_EQ(constant.getAttribute(i), element.getAttribute(i)) << i;
    }
    for (const int index : {-1, 3, 4, INT_MIN, INT_MAX}) {
        EXPECT_EQ(element.getAttribute(index), nullptr) << index;
        EXPECT_EQ(constant.getAttribute(index), nullptr) << index;
    }
    EXPECT_EQ(Xml::Element("e").getAttribute(0), nullptr);
}

TEST(ElementAttributes, BelongToTheirElement) {
    Xml::Element element = withAttributes({"a"});
    EXPECT_EQ(element.getAttribute("a")->getParent(), &element);
    element.setAttribute("a", "new");
    EXPECT_EQ(element.getAttribute("a")->getParent(), &element);
}

TEST(ElementAttributes, OfTheSameNameReplaceEachOther) {
    Xml::Element element = withAttributes({"a", "b", "c"});
    element.setAttribute("b", "new & <better>");
    EXPECT_EQ(element.getAttributeCount(), 3);
    EXPECT_EQ(element.toString(), "e a=\"a\" b=\"new &amp; &lt;better&gt;\" c=\"c\"");
}

TEST(ElementAttributes, StayWhereTheyAreWhileOthersComeAndGo) {
    Xml::Element element = withAttributes({"m"});
    Xml::Attribute* kept = element.getAttribute("m");
    for (int i = 0; i < 100; ++i) element.setAttribute("a" + std::to_string(i), i);
    for (int i = 0; i < 100; ++i) element.setAttribute("z" + std::to_string(i), i);
    element.setAttribute("m", "new");
    for (int i = 0; i < 100; ++i) element.removeAttribute("a" + std::to_string(i));
    EXPECT_EQ(element.getAttribute("m"), kept);
    EXPECT_EQ(std::string(kept->getValue()), "new");
    EXPECT_EQ(kept->getName(), "m");
}

TEST(ElementAttributes, TakeNumbers) {
    Xml::Element element("e");
    element.setAttribute("i", -7);
    element.setAttribute("d", 0.5);
    EXPECT_EQ(element.toString(), "e d=\"0.5\" i=\"-7\"");
    EXPECT_EQ(element.getAttributeValue("i").toInt(), -7);
}

TEST(ElementAttributes, AreStoredUnderAnInvalidNameThatIsReported) {
    support::Diagnostics diagnostics;
    Xml::Element element("e");
    for (int round = 0; round < 2; ++round) {
        element.setAttribute("1 x", round);
        EXPECT_EQ(diagnostics.take(),
                  std::vector<std::string>{"<Attribute::Attribute> not a valid name"});
    }
    EXPECT_EQ(element.getAttributeCount(), 1);
    EXPECT_EQ(support::written(element), "<e 1 x=\"1\"/>");
}

TEST(ElementAttributes, WithoutANameAreStoredButNotWritten) {
    support::Diagnostics diagnostics;
    Xml::Element element("e");
    element.setAttribute("", "v");
    element.setAttribute("a", "1");
    EXPECT_EQ(diagnostics.take(),
              std::vector<std::string>{"<Attribute::Attribute> not a valid name"});
    EXPECT_EQ(element.getAttributeCount(), 2);
    EXPECT_EQ(element.getAttribute(0), element.getAttribute(""));
    EXPECT_EQ(valueOf(element, ""), "v");
    EXPECT_EQ(element.toString(), "e a=\"1\"");
    EXPECT_EQ(support::written(element), "<e a=\"1\"/>");
}

TEST(ElementAttributes, AreRemovedByName) {
    Xml::Element element = withAttributes({"a", "b", "c"});
    element.removeAttribute("b");
    element.removeAttribute("B");
    element.removeAttribute("b");
    EXPECT_EQ(element.toString(), "e a=\"a\" c=\"c\"");
    EXPECT_EQ(element.getAttribute("b"), nullptr);
}

TEST(ElementAttributes, AreRemovedByIndex) {
    Xml::Element element = withAttributes({"c", "a", "b"});
    for (const int index : {-1, 3, INT_MIN, INT_MAX}) element.removeAttribute(index);
    EXPECT_EQ(element.getAttributeCount(), 3);
    element.removeAttribute(1);
    EXPECT_EQ(element.toString(), "e a=\"a\" c=\"c\"");
    element.removeAttribute(0);
    element.removeAttribute(0);
    element.removeAttribute(0);
    EXPECT_EQ(element.toString(), "e");
}

TEST(ElementAttributes, CanBeNamedByThemselves) {
    Xml::Element element = withAttributes({"a", "an-attribute-with-a-long-name", "c"});
    element.removeAttribute(element.getAttribute(0)->getName());
    element.removeAttribute(element.getAttribute(0)->getName());
    EXPECT_EQ(element.toString(), "e c=\"c\"");
    const Xml::Attribute* last = element.getAttribute(0);
    element.setAttribute(last->getName(), last->getValue());
    EXPECT_EQ(element.toString(), "e c=\"c\"");
    element.setAttribute("copy", last->getValue());
    element.setAttribute(element.getName(), element.getAttributeValue("copy"));
    EXPECT_EQ(element.toString(), "e c=\"c\" copy=\"c\" e=\"c\"");
}

// Attributes are looked up by the name they were stored by, whatever is assigned to them later.
TEST(ElementAttributes, KeepTheirPlaceWhenAnotherIsAssignedToThem) {
    Xml::Element element = withAttributes({"a", "b", "c"});
    *element.getAttribute("a") = Xml::Attribute("z", "26");
    EXPECT_EQ(element.toString(), "e z=\"26\" b=\"b\" c=\"c\"");
    EXPECT_EQ(valueOf(element, "a"), "26");
    EXPECT_EQ(valueOf(element, "b"), "b");
    EXPECT_EQ(element.getAttribute("z"), nullptr);
    element.removeAttribute("a");
    EXPECT_EQ(element.toString(), "e b=\"b\" c=\"c\"");
}

TEST(ElementText, IsTheNameAndTheAttributes) {
    Xml::Element element("item");
    EXPECT_EQ(element.toString(), "item");
    element.setAttribute("b", "2");
    element.setAttribute("a", "1");
    element.addElement("child", "text");
    EXPECT_EQ(element.toString(), "item a=\"1\" b=\"2\"");
    element.setAttribute("a", "<\">");
    EXPECT_EQ(element.toString(), "item a=\"&lt;&quot;&gt;\" b=\"2\"");
}

TEST(ElementText, IsEmptyWithoutName) {
    support::Diagnostics diagnostics;
    Xml::Element element("1");
    EXPECT_EQ(element.toString(), "");
    element.setAttribute("a", "1");
    EXPECT_EQ(element.toString(), " a=\"1\"");
}

// A DTD with a default of each kind for the element "e", and one for another element.
Xml::Dtd defaults() {
    Xml::Dtd dtd("d");
    dtd.addAttDecl("e", "value", new Xml::AttStringType(Xml::AttValue, "by default"));
    dtd.addAttDecl("e", "fixed", new Xml::AttStringType(Xml::AttFixed, "for ever"));
    dtd.addAttDecl("e", "required", Xml::AttRequired);
    dtd.addAttDecl("e", "implied", Xml::AttImplied);
    dtd.addAttDecl("other", "foreign", new Xml::AttStringType(Xml::AttValue, "foreign"));
    return dtd;
}

TEST(ElementAttributes, TakeValuesThatTheDtdDeclares) {
    const Xml::Dtd dtd = defaults();
    Xml::Element element("e");
    element.setDtd(&dtd);
    EXPECT_EQ(valueOf(element, "value"), "by default");
    EXPECT_EQ(valueOf(element, "fixed"), "for ever");
    for (const char* name : {"required", "implied", "foreign", "unknown", ""}) {
        EXPECT_EQ(valueOf(element, name), "") << name;
    }
    EXPECT_EQ(element.getAttribute("value"), nullptr);
    EXPECT_EQ(element.getAttributeCount(), 0);
    EXPECT_EQ(element.toString(), "e");
    EXPECT_EQ(support::written(element), "<e/>");
}

TEST(ElementAttributes, TakeDefaultsByTheNameOfTheElement) {
    const Xml::Dtd dtd = defaults();
    Xml::Element other("other");
    other.setDtd(&dtd);
    EXPECT_EQ(valueOf(other, "foreign"), "foreign");
    EXPECT_EQ(valueOf(other, "value"), "");
}

TEST(ElementAttributes, PreferTheirOwnValueToADefault) {
    const Xml::Dtd dtd = defaults();
    Xml::Element element("e");
    element.setAttribute("value", "own");
    element.setAttribute("fixed", "");
    element.setDtd(&dtd);
    EXPECT_EQ(valueOf(element, "value"), "own");
    EXPECT_EQ(valueOf(element, "fixed"), "");
}

TEST(ElementAttributes, LoseDefaultsWithTheDtd) {
    const Xml::Dtd dtd = defaults();
    Xml::Element element("e");
    EXPECT_EQ(valueOf(element, "value"), "");
    element.setDtd(&dtd);
    element.setAttribute("x", "1");
    EXPECT_EQ(valueOf(element, "value"), "");
    element.setDtd(&dtd);
    EXPECT_EQ(valueOf(element, "value"), "by default");
    element.setDtd(nullptr);
    EXPECT_EQ(valueOf(element, "value"), "");
}

}  // namespace
