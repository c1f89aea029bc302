#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "VexXml/Dom.h"
#include "VexXml/Dtd.h"
#include "VexXml/Streams.h"
#include "dom/Build.h"
#include "support/Bindings.h"
#include "support/LogStream.h"

namespace {

using support::bindings;
using support::element;
using support::text;
using Tree = std::unique_ptr<Xml::Element>;

// A tree to bind and touch: a(b(c "x") e("y")). Two DTDs, told apart by name.
class Touching : public testing::Test {
protected:
    const std::unique_ptr<Xml::Dtd> mOne = support::makeDtd("one");
    const std::unique_ptr<Xml::Dtd> mTwo = support::makeDtd("two");
    const Tree mTop{
        element("a", {element("b", {element("c"), text("x")}), element("e", {text("y")})})};
    Xml::Element& mInner = *mTop->findElement("c");
};

using Binding = Touching;

TEST_F(Binding, StartsWithNone) {
    EXPECT_EQ(bindings(*mTop), "a=none b=none c=none #=none e=none #=none");
}

TEST_F(Binding, ReachesEverythingBelow) {
    mTop->setDtd(mOne.get());
    EXPECT_EQ(bindings(*mTop), "a=one b=one c=one #=one e=one #=one");
    mTop->setDtd(mTwo.get());
    EXPECT_EQ(bindings(*mTop), "a=two b=two c=two #=two e=two #=two");
    mTop->setDtd(nullptr);
    EXPECT_EQ(bindings(*mTop), "a=none b=none c=none #=none e=none #=none");
}

TEST_F(Binding, CanBeSetForParts) {
    mTop->getElement("b")->setDtd(mOne.get());
    mTop->getElement("e")->getChild(0)->setDtd(mTwo.get());
    EXPECT_EQ(bindings(*mTop), "a=none b=one c=one #=one e=none #=two");
    mTop->setDtd(nullptr);
    EXPECT_EQ(bindings(*mTop), "a=none b=none c=none #=none e=none #=none");
    mInner.setDtd(mTwo.get());
    mTop->setDtd(mOne.get());
    EXPECT_EQ(bindings(*mTop), "a=one b=one c=one #=one e=one #=one");
    mInner.setDtd(mTwo.get());
    mTop->setDtd(mOne.get());
    EXPECT_EQ(bindings(*mTop), "a=one b=one c=one #=one e=one #=one");
}

TEST_F(Binding, DoesNotTouch) {
    const support::OptimizedRewriting rewriting;
    const std::string length = std::to_string(support::writeAt(0, *mTop).size());
    mTop->setDtd(mOne.get());
    mInner.setDtd(mTwo.get());
    EXPECT_EQ(support::writeAt(0, *mTop), "[to " + length + ']');
}

TEST_F(Touching, UnbindsTheNodeAndAllAboveButNothingElse) {
    mTop->setDtd(mOne.get());
    mInner.touch();
    EXPECT_EQ(bindings(*mTop), "a=none b=none c=none #=one e=one #=one");
    mTop->getElement("e")->getChild(0)->touch();
    EXPECT_EQ(bindings(*mTop), "a=none b=none c=none #=one e=none #=none");
}

TEST_F(Touching, UnbindsAgainWhatWasBoundAgain) {
    for (const auto& dtd : {mOne.get(), mTwo.get(), mOne.get(), mOne.get()}) {
        mTop->setDtd(dtd);
        EXPECT_EQ(support::bindingOf(mInner), support::bindingOf(*mTop->getElement("e")));
        mInner.touch();
        EXPECT_EQ(support::bindingOf(mInner), "none");
        EXPECT_EQ(support::bindingOf(*mTop->getElement("b")), "none");
        EXPECT_EQ(support::bindingOf(*mTop), "none");
    }
}

TEST_F(Touching, ReachesAboveNodesThatAreTouchedAlready) {
    mInner.touch();
    mTop->getElement("b")->setDtd(mOne.get());
    mInner.touch();
    EXPECT_EQ(bindings(*mTop), "a=none b=none c=none #=one e=none #=none");
}

// Everything in between is touched and unbound, so only the way up leads to what is not.
TEST_F(Touching, ReachesWhatWasWrittenAboveNodesThatWereNot) {
    const support::OptimizedRewriting rewriting;
    Xml::Element apart("n");
    Xml::Element above("m");
    apart.setParent(&above);
    apart.touch();
    for (int round = 0; round < 3; ++round) {
        EXPECT_EQ(support::writeAt(0, above), "<m/>");
        EXPECT_EQ(support::writeAt(0, above), "[to 4]");
        apart.touch();
    }
}

// An element whose text is its own affair: writing it says nothing of its children.
class Opaque : public Xml::Element {
public:
    using Xml::Element::Element;

protected:
    void write(Xml::OutStream& out) const override { out << "opaque"; }
};

TEST_F(Touching, ReachesAnElementThatWasWrittenWithoutItsChildren) {
    const support::OptimizedRewriting rewriting;
    Opaque opaque("a");
    opaque.addChild(element("b", {element("c", {text("x")})}));
    Xml::Object* inner = opaque.findElement("c")->getChild(0);
    for (int round = 0; round < 3; ++round) {
        EXPECT_EQ(support::writeAt(0, opaque), "opaque");
        EXPECT_EQ(support::writeAt(0, opaque), "[to 6]");
        inner->touch();
    }
}

TEST_F(Touching, FollowsTheAttributeThatWasAssigned) {
    mTop->setAttribute("k", "v");
    Xml::Element other("a");
    other.setAttribute("k", "w");
    *other.getAttribute("k") = *mTop->getAttribute("k");
    mTop->setDtd(mOne.get());
    other.setDtd(mOne.get());
    other.getAttribute("k")->touch();
    EXPECT_EQ(support::bindingOf(other), "one");
    EXPECT_EQ(support::bindingOf(*mTop), "none");
}

TEST_F(Touching, FollowsAParentThatIsSetAboveADocument) {
    Xml::CharData above{Xml::DataHolder("x")};
    Xml::Document document(element("a", {element("b", {text("y")})}));
    Xml::Object* inner = document.getRoot()->getElement(0)->getChild(0);
    inner->touch();
    document.setParent(&above);
    for (Xml::Object* node : {inner, inner->getParent()}) {
        above.setDtd(mOne.get());
        node->touch();
        EXPECT_EQ(support::bindingOf(above), "none");
    }
}

TEST_F(Touching, ReachesAParentThatWasBoundByItself) {
    Xml::CharData above{Xml::DataHolder("x")};
    mTop->setParent(&above);
    for (int round = 0; round < 3; ++round) {
        above.setDtd(mOne.get());
        mInner.touch();
        EXPECT_EQ(support::bindingOf(above), "none");
    }
}

TEST_F(Touching, FollowsTheParentOfItsParentThatIsSetLater) {
    Xml::CharData above{Xml::DataHolder("z")};
    above.setDtd(mOne.get());
    auto* inner = mTop->getElement("e")->getChild(0)->toCharData();
    inner->setData(Xml::DataHolder("one"));
    mTop->setParent(&above);
    inner->setData(Xml::DataHolder("two"));
    EXPECT_EQ(support::bindingOf(above), "none");
}

TEST_F(Touching, FollowsAParentThatIsSetLater) {
    const support::OptimizedRewriting rewriting;
    Xml::Element above("a");
    above.setDtd(mOne.get());
    support::writeAt(0, above);
    mInner.touch();
    mTop->setParent(&above);
    mInner.touch();
    EXPECT_EQ(support::bindingOf(above), "none");
    EXPECT_EQ(support::writeAt(0, above), "<a/>");
}

TEST_F(Touching, FollowsTheParentLinkAndNotTheTree) {
    Xml::Element above("a");
    mTop->setDtd(mOne.get());
    above.setDtd(mTwo.get());
    mInner.setParent(&above);
    mInner.touch();
    EXPECT_EQ(support::bindingOf(above), "none");
    EXPECT_EQ(bindings(*mTop), "a=one b=one c=none #=one e=one #=one");
    mTop->setDtd(mOne.get());
    EXPECT_EQ(bindings(*mTop), "a=one b=one c=one #=one e=one #=one");
}

TEST_F(Touching, ByAnAttributeUnbindsItsElementAndAllAbove) {
    mInner.setAttribute("k", "v");
    Xml::Attribute* attribute = mInner.getAttribute("k");
    for (int round = 0; round < 3; ++round) {
        mTop->setDtd(mOne.get());
        EXPECT_EQ(support::bindingOf(mInner), "one");
        attribute->touch();
        EXPECT_EQ(bindings(*mTop), "a=none b=none c=none #=one e=one #=one");
    }
}

TEST_F(Touching, ByANewTextUnbindsAllAbove) {
    mTop->setDtd(mOne.get());
    mTop->getElement("b")->getChild(1)->toCharData()->setData(Xml::DataHolder("new"));
    EXPECT_EQ(bindings(*mTop), "a=none b=none c=one #=none e=one #=one");
    mTop->setDtd(mOne.get());
    mTop->getElement("b")->getChild(1)->toCharData()->setData(Xml::Entity("new"));
    EXPECT_EQ(bindings(*mTop), "a=none b=none c=one #=none e=one #=one");
}

// What is done to the element b in a(b(c "x") e("y")), all bound to "one", and what stays bound.
struct Change {
    const char* what;
    void (*act)(Xml::Element& b);
    const char* left;
};

const Change kChanges[] = {
    {"addChild gives the child what the element had",
     [](Xml::Element& b) { b.addChild(element("e", {text("new")})); },
     "a=none b=none c=one #=one e=one #=one e=one #=one"},
    {"addElement alike", [](Xml::Element& b) { b.addElement("e", "new"); },
     "a=none b=none c=one #=one e=one #=one e=one #=one"},
    {"insertChild alike", [](Xml::Element& b) { b.insertChild(b.getChild(0), element("e")); },
     "a=none b=none e=one c=one #=one e=one #=one"},
    {"a second child finds nothing to be given",
     [](Xml::Element& b) {
         b.addChild(text("first"));
         b.addChild(element("e", {text("second")}));
     },
     "a=none b=none c=one #=one #=one e=none #=none e=one #=one"},
    {"extractChild", [](Xml::Element& b) { delete b.extractChild(0); },
     "a=none b=none #=one e=one #=one"},
    {"killChildren", [](Xml::Element& b) { b.killChildren(); }, "a=none b=none e=one #=one"},
    {"setName", [](Xml::Element& b) { b.setName("c"); }, "a=none c=none c=one #=one e=one #=one"},
    {"setAttribute", [](Xml::Element& b) { b.setAttribute("k", "v"); },
     "a=none b=none c=one #=one e=one #=one"},
    {"setCharData", [](Xml::Element& b) { b.setCharData("new"); },
     "a=none b=none c=one #=one e=one #=one"},
    {"assignment", [](Xml::Element& b) { b = Xml::Element("c", "new"); },
     "a=none c=none #=none e=one #=one"},
    {"removing what is not there", [](Xml::Element& b) { b.removeAttribute("k"); },
     "a=one b=one c=one #=one e=one #=one"},
};

TEST_F(Touching, UnbindsWithEveryChange) {
    for (const Change& change : kChanges) {
        SCOPED_TRACE(change.what);
        const Tree top(mTop->clone()->toElement());
        top->setDtd(mOne.get());
        change.act(*top->getElement("b"));
        EXPECT_EQ(bindings(*top), change.left);
        top->setDtd(mTwo.get());
        EXPECT_EQ(bindings(*top).find("one"), std::string::npos) << bindings(*top);
        EXPECT_EQ(bindings(*top).find("none"), std::string::npos) << bindings(*top);
    }
}

TEST_F(Touching, ByRemovingAnAttributeUnbindsAllAbove) {
    mInner.setAttribute("k", "v");
    mTop->setDtd(mOne.get());
    mInner.removeAttribute(0);
    EXPECT_EQ(bindings(*mTop), "a=none b=none c=none #=one e=one #=one");
}

TEST_F(Binding, IsTakenFromAllThatIsExtracted) {
    mTop->setDtd(mOne.get());
    const std::unique_ptr<Xml::Object> extracted(mTop->extractChild(0));
    EXPECT_EQ(bindings(*extracted), "b=none c=none #=none");
    EXPECT_EQ(bindings(*mTop), "a=none e=one #=one");
}

TEST_F(Binding, ComesWithANewPlace) {
    mTop->setDtd(mOne.get());
    Xml::Object* moved = mTop->extractChild(0);
    mTop->setDtd(mTwo.get());
    mTop->getElement("e")->addChild(moved);
    EXPECT_EQ(bindings(*mTop), "a=none e=none #=two b=two c=two #=two");
    mInner.touch();
    EXPECT_EQ(bindings(*mTop), "a=none e=none #=two b=none c=none #=two");
    mTop->setDtd(mOne.get());
    EXPECT_EQ(bindings(*mTop), "a=one e=one #=one b=one c=one #=one");
}

TEST_F(Binding, OfAChildIsReplacedByThatOfItsNewParent) {
    auto* child = element("b", {text("x")});
    child->setDtd(mOne.get());
    Xml::Element top("a");
    top.addChild(child);
    EXPECT_EQ(bindings(top), "a=none b=none #=none");
}

TEST_F(Binding, IsHandedDownOnceWhenBuildingTopDown) {
    Xml::Element top("a");
    top.setDtd(mOne.get());
    Xml::Element* bottom = &top;
    for (const char* name : {"b", "c", "e"}) {
        auto* child = element(name);
        bottom->addChild(child);
        bottom = child;
    }
    EXPECT_EQ(bindings(top), "a=none b=none c=none e=one");
    bottom->addChild(text("x"));
    EXPECT_EQ(bindings(top), "a=none b=none c=none e=none #=one");
}

TEST_F(Binding, IsHandedDownFromTheNewTopWhenBuildingBottomUp) {
    Xml::Element* top = element("e", {text("x")});
    for (const char* name : {"c", "b"}) {
        auto* above = element(name);
        above->setDtd(mOne.get());
        above->addChild(top);
        top = above;
    }
    const Tree owner(top);
    EXPECT_EQ(bindings(*top), "b=none c=one e=one #=one");
    mTwo->validate(top);
    EXPECT_EQ(bindings(*top), "b=two c=two e=two #=two");
}

TEST_F(Binding, ReachesCharacterDataThatWasAssignedTo) {
    mTop->setDtd(mOne.get());
    Xml::CharData unbound{Xml::DataHolder("z")};
    auto* inside = mTop->getElement("b")->getChild(1)->toCharData();
    *inside = unbound;
    EXPECT_EQ(inside->getParent(), nullptr);
    EXPECT_EQ(bindings(*mTop), "a=one b=one c=one #=none e=one #=one");
    mTop->setDtd(mOne.get());
    EXPECT_EQ(bindings(*mTop), "a=one b=one c=one #=one e=one #=one");
}

TEST_F(Binding, ReachesCharacterDataThatWasAssignedTheSameDtd) {
    const Tree other(mTop->clone()->toElement());
    mTop->setDtd(mOne.get());
    other->setDtd(mOne.get());
    auto* inside = mTop->getElement("e")->getChild(0)->toCharData();
    *inside = *other->getElement("e")->getChild(0)->toCharData();
    inside->setDtd(mTwo.get());
    mTop->setDtd(mOne.get());
    EXPECT_EQ(bindings(*mTop), "a=one b=one c=one #=one e=one #=one");
}

TEST_F(Binding, ReachesBelowAnElementWhoseParentLinkWasCut) {
    mTop->getElement("b")->setParent(nullptr);
    mTop->setDtd(mOne.get());
    mInner.setDtd(mTwo.get());
    mTop->setDtd(mOne.get());
    EXPECT_EQ(bindings(*mTop), "a=one b=one c=one #=one e=one #=one");
    mInner.setParent(nullptr);
    mTop->setDtd(mTwo.get());
    mInner.setDtd(mOne.get());
    mTop->setDtd(mTwo.get());
    EXPECT_EQ(bindings(*mTop), "a=two b=two c=two #=two e=two #=two");
}

TEST_F(Touching, FollowsTheParentThatWasAssigned) {
    mTop->setDtd(mOne.get());
    Xml::CharData apart{Xml::DataHolder("z")};
    apart.touch();
    apart = *mTop->getElement("e")->getChild(0)->toCharData();
    apart.touch();
    EXPECT_EQ(support::bindingOf(apart), "none");
    EXPECT_EQ(bindings(*mTop), "a=none b=one c=one #=one e=none #=one");
}

TEST_F(Binding, IsSetAgainByEachValidation) {
    for (int round = 0; round < 3; ++round) {
        ASSERT_TRUE(mOne->validate(mTop.get()));
        EXPECT_EQ(bindings(*mTop), "a=one b=one c=one #=one e=one #=one");
        mInner.touch();
        EXPECT_EQ(bindings(*mTop), "a=none b=none c=none #=one e=one #=one");
    }
}

TEST_F(Binding, OfAPartIsSetByValidatingThat) {
    ASSERT_TRUE(mOne->validate(mTop->getElement("b")));
    EXPECT_EQ(bindings(*mTop), "a=none b=one c=one #=one e=none #=none");
    mInner.touch();
    EXPECT_EQ(bindings(*mTop), "a=none b=none c=none #=one e=none #=none");
}

// Validation binds no element without an attribute list, so a document can be bound above a root
// that is not, above an element that is.
TEST_F(Touching, ReachesADocumentThatIsBoundAboveAnUnboundRoot) {
    const support::OptimizedRewriting rewriting;
    auto* dtd = new Xml::Dtd("d");
    dtd->addElementDecl("root", new Xml::AnySpec(dtd));
    Xml::Document document(element("root", {element("root", {text("x")})}), dtd);
    Xml::Element* inner = document.getRoot()->getElement(0);
    inner->touch();
    const std::string passedOver =
        "[to " + std::to_string(support::writeAt(0, document).size()) + ']';
    for (int round = 0; round < 3; ++round) {
        ASSERT_TRUE(document.validate());
        EXPECT_EQ(support::writeAt(0, document), passedOver);
        inner->setName(inner->getName());
        EXPECT_NE(support::writeAt(0, document), passedOver);
        inner->touch();
        EXPECT_NE(support::writeAt(0, document), passedOver);
    }
}

TEST_F(Touching, UnbindsAMixedTreeWhoseElementsAreBoundInPart) {
    Xml::Dtd dtd("d");
    auto* model = new Xml::MixedSpec(&dtd);
    model->addName("b");
    dtd.addElementDecl("a", model);  // no attribute list: validation binds only what is below
    dtd.addElementDecl("b");
    dtd.addAttDecl("b", "dtd", new Xml::AttStringType(Xml::AttValue, "mixed"));
    dtd.setEntity("dtd", "mixed");
    const Tree top(element("a", {element("b", {text("x")}), text("y")}));
    ASSERT_TRUE(dtd.validate(top.get()));
    EXPECT_EQ(bindings(*top), "a=none b=mixed #=mixed #=mixed");
    top->getElement(0)->getChild(0)->touch();
    EXPECT_EQ(bindings(*top), "a=none b=none #=none #=mixed");
    top->setDtd(mOne.get());
    EXPECT_EQ(bindings(*top), "a=one b=one #=one #=one");
}

}  // namespace
