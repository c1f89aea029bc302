#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "VexXml/Dom.h"
#include "VexXml/Dtd.h"
#include "VexXml/Streams.h"
#include "dom/Build.h"
#include "support/Diagnostics.h"
#include "support/Dump.h"
#include "support/LogStream.h"

namespace {

template <typename Class>
constexpr bool kHasValueSemantics =
    std::is_copy_constructible_v<Class>&& std::is_move_constructible_v<Class>&&
        std::is_copy_assignable_v<Class>&& std::is_move_assignable_v<Class>;

static_assert(kHasValueSemantics<Xml::Attribute>);
static_assert(kHasValueSemantics<Xml::CharData>);
static_assert(kHasValueSemantics<Xml::Entity>);
static_assert(kHasValueSemantics<Xml::Element>);
static_assert(kHasValueSemantics<Xml::Document>);
static_assert(std::is_abstract_v<Xml::Object>);
static_assert(std::has_virtual_destructor_v<Xml::Object>);
// A name must not pass for an entity unasked, else CharData("text") could mean either.
static_assert(!std::is_convertible_v<std::string, Xml::Entity>);

// A node as a caller may derive one: of no kind that the library knows.
class Remark : public Xml::Object {
public:
    explicit Remark(std::string text) : mText(std::move(text)) {}

    Xml::Object* clone() const override { return new Remark(*this); }
    const std::string& toString() const override { return mText; }

protected:
    void write(Xml::OutStream& out) const override { out << mText; }

private:
    std::string mText;
};

struct Nodes {
    Xml::Element element{"e"};
    Xml::Attribute attribute{"a", "1"};
    Xml::CharData charData{Xml::DataHolder("text")};
    Xml::Dtd dtd{"d"};
    Xml::Document document;
    Remark remark{"remark"};
};

std::string kindsOf(const Xml::Object& node) {
    std::string kinds;
    if (node.isElement()) kinds += "element ";
    if (node.isAttribute()) kinds += "attribute ";
    if (node.isCharData()) kinds += "charData ";
    if (node.isDtd()) kinds += "dtd ";
    if (node.isDocument()) kinds += "document ";
    return kinds;
}

TEST(Object, EachKindNamesItselfAndNoOther) {
    const Nodes nodes;
    EXPECT_EQ(kindsOf(nodes.element), "element ");
    EXPECT_EQ(kindsOf(nodes.attribute), "attribute ");
    EXPECT_EQ(kindsOf(nodes.charData), "charData ");
    EXPECT_EQ(kindsOf(nodes.dtd), "dtd ");
    EXPECT_EQ(kindsOf(nodes.document), "document ");
}

TEST(Object, IsOfNoKindUnlessAClassSaysSo) { EXPECT_EQ(kindsOf(Nodes().remark), ""); }

TEST(Object, CastsToItsOwnKindSilently) {
    support::Diagnostics diagnostics;
    Nodes nodes;
    const Nodes& constant = nodes;
    EXPECT_EQ(static_cast<Xml::Object&>(nodes.element).toElement(), &nodes.element);
    EXPECT_EQ(static_cast<Xml::Object&>(nodes.attribute).toAttribute(), &nodes.attribute);
    EXPECT_EQ(static_cast<Xml::Object&>(nodes.charData).toCharData(), &nodes.charData);
    EXPECT_EQ(static_cast<Xml::Object&>(nodes.dtd).toDtd(), &nodes.dtd);
    EXPECT_EQ(static_cast<Xml::Object&>(nodes.document).toDocument(), &nodes.document);
    EXPECT_EQ(static_cast<const Xml::Object&>(constant.element).toElement(), &nodes.element);
    EXPECT_EQ(static_cast<const Xml::Object&>(constant.attribute).toAttribute(), &nodes.attribute);
    EXPECT_EQ(static_cast<const Xml::Object&>(constant.charData).toCharData(), &nodes.charData);
    EXPECT_EQ(static_cast<const Xml::Object&>(constant.dtd).toDtd(), &nodes.dtd);
    EXPECT_EQ(static_cast<const Xml::Object&>(constant.document).toDocument(), &nodes.document);
    EXPECT_EQ(diagnostics.take(), std::vector<std::string>());
}

// Tries every cast on the node and returns what was reported; a cast that gives a node adds "ok".
template <typename Node>
std::vector<std::string> reportsOfAllCasts(Node& node) {
    support::Diagnostics diagnostics;
    std::vector<std::string> reports;
    const auto note = [&](const Xml::Object* result) {
        if (result != nullptr) reports.emplace_back("ok");
        for (std::string& text : diagnostics.take()) reports.push_back(std::move(text));
    };
    note(node.toElement());
    note(node.toAttribute());
    note(node.toCharData());
    note(node.toDtd());
    note(node.toDocument());
    return reports;
}

const std::vector<std::string> kCastTexts = {
    "<Object::toElement> Not a Element",  // "a Element": callers compare this
    "<Object::toAttribute> Not an Attribute",
    "<Object::toCharData> Not a CharData",
    "<Object::toDtd> Not a Dtd",
    "<Object::toDocument> Not a Document",
};

TEST(Object, ReportsACastToAnotherKindAndGivesNull) {
    Nodes nodes;
    Xml::Object* const kinds[] = {&nodes.element, &nodes.attribute, &nodes.charData, &nodes.dtd,
                                  &nodes.document};
    for (std::size_t kind = 0; kind < std::size(kinds); ++kind) {
        SCOPED_TRACE(kindsOf(*kinds[kind]));
        std::vector<std::string> expected = kCastTexts;
        expected[kind] = "ok";
        EXPECT_EQ(reportsOfAllCasts(*kinds[kind]), expected);
        EXPECT_EQ(reportsOfAllCasts(std::as_const(*kinds[kind])), expected);
    }
}

TEST(Object, OfNoKindFailsEveryCast) {
    Remark remark("x");
    EXPECT_EQ(reportsOfAllCasts(static_cast<Xml::Object&>(remark)), kCastTexts);
}

TEST(Object, StartsWithoutParent) {
    const Nodes nodes;
    EXPECT_EQ(nodes.element.getParent(), nullptr);
    EXPECT_EQ(nodes.attribute.getParent(), nullptr);
    EXPECT_EQ(nodes.charData.getParent(), nullptr);
    EXPECT_EQ(nodes.dtd.getParent(), nullptr);
    EXPECT_EQ(nodes.document.getParent(), nullptr);
}

TEST(Object, SettingTheParentMakesNoChild) {
    Xml::Element parent("p");
    Xml::Element node("n");
    node.setParent(&parent);
    EXPECT_EQ(node.getParent(), &parent);
    EXPECT_EQ(parent.getChildCount(), 0);
    node.setParent(nullptr);
    EXPECT_EQ(node.getParent(), nullptr);
}

TEST(Object, SettingTheParentTouchesNeither) {
    const support::OptimizedRewriting rewriting;
    Xml::Element parent("p");
    Xml::Element node("n");
    support::writeAt(0, parent);
    support::writeAt(0, node);
    node.setParent(&parent);
    EXPECT_EQ(support::writeAt(0, parent), "[to 4]");
    EXPECT_EQ(support::writeAt(0, node), "[to 4]");
}

// Children of a class that the library does not know are nodes like any other.
TEST(Object, OfACallersClassLivesInATree) {
    Xml::Element top("top");
    top.addChild(new Remark("one"));
    top.addElement("a", "text");
    EXPECT_EQ(top.getElement(0), top.getChild(1));
    EXPECT_EQ(top.findElement("a"), top.getChild(1));
    EXPECT_EQ(&top.getCharData(), &top.getAttributeValue("none"));
    // It is no character data, so the content is element-only.
    EXPECT_EQ(support::written(top), "<top>\n\tone\n\t<a>text</a>\n</top>");
    Xml::Element copy(top);
    EXPECT_EQ(support::written(copy), support::written(top));
    EXPECT_NE(copy.getChild(0), top.getChild(0));
    EXPECT_EQ(copy.getChild(0)->getParent(), &copy);
}

}  // namespace
