#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "VexXml/Dom.h"
#include "VexXml/Streams.h"
#include "dom/Build.h"
#include "support/Bindings.h"
#include "support/Diagnostics.h"
#include "support/Dump.h"
#include "support/LogStream.h"

namespace {

using support::element;
using support::text;
using Tree = std::unique_ptr<Xml::Element>;

Tree sample() {
    Tree top(element("a", {element("b", {text("x<y"), element("c")}), text("z")}));
    top->setAttribute("k", "v");
    top->findElement("c")->setAttribute("l", "w");
    return top;
}

const char* const kSample = "a(k=\"v\" b(\"x&lt;y\" c(l=\"w\")) \"z\")";

// Whether every child and attribute in the tree has the right parent.
// NOLINTNEXTLINE(misc-no-recursion): the trees of this test are a few levels deep
void expectLinked(Xml::Element& top) {
    for (int i = 0; i < top.getAttributeCount(); ++i) {
        EXPECT_EQ(top.getAttribute(i)->getParent(), &top) << support::dump(top);
    }
    for (int i = 0; i < top.getChildCount(); ++i) {
        EXPECT_EQ(top.getChild(i)->getParent(), &top) << support::dump(top);
        if (top.getChild(i)->isElement()) expectLinked(*top.getChild(i)->toElement());
    }
}

TEST(ElementCopy, HasEverythingOfItsOwn) {
    const Tree source = sample();
    source->toString();
    Xml::Element copy(*source);
    const Tree clone(source->clone()->toElement());
    source->findElement("c")->setAttribute("l", "changed");
    source->setAttribute("k", "changed");
    source->killChildren();
    for (Xml::Element* top : {&copy, clone.get()}) {
        EXPECT_EQ(support::dump(*top), kSample);
        EXPECT_EQ(top->toString(), "a k=\"v\"");
        EXPECT_EQ(support::written(*top), "<a k=\"v\"><b>x&lt;y<c l=\"w\"/></b>z</a>");
        expectLinked(*top);
    }
}

TEST(ElementCopy, IsDetached) {
    const Tree source = sample();
    Xml::Element copy(*source->getElement("b"));
    EXPECT_EQ(copy.getParent(), nullptr);
    EXPECT_EQ(source->getElement("b")->getParent(), source.get());
    const Tree clone(source->getElement("b")->clone()->toElement());
    EXPECT_EQ(clone->getParent(), nullptr);
}

TEST(ElementCopy, IsTouchedAndUnwrittenAtEveryLevel) {
    const support::OptimizedRewriting rewriting;
    const Tree source = sample();
    const std::string text = support::writeAt(0, *source);
    Xml::Element copy(*source);
    EXPECT_EQ(support::writeAt(0, copy), text);
    EXPECT_NE(support::writeAt(0, *source), text) << "the source stays written";
}

// Copying touches the copy of each element, which unbinds it; character data is only copied.
TEST(ElementCopy, UnbindsElementsButNotCharacterData) {
    const auto dtd = support::makeDtd("one");
    const Tree source = sample();
    source->setDtd(dtd.get());
    Xml::Element copy(*source);
    EXPECT_EQ(support::bindings(copy), "a=none b=none #=one c=none #=one");
    EXPECT_EQ(support::bindings(*source), "a=one b=one #=one c=one #=one");
}

TEST(ElementCopy, CanBeBoundAgain) {
    const auto one = support::makeDtd("one");
    const auto two = support::makeDtd("two");
    const Tree source = sample();
    source->setDtd(one.get());
    Xml::Element copy(*source);
    copy.setDtd(nullptr);
    EXPECT_EQ(support::bindings(copy), "a=none b=none #=none c=none #=none");
    copy.setDtd(two.get());
    EXPECT_EQ(support::bindings(copy), "a=two b=two #=two c=two #=two");
}

TEST(ElementCopy, MayLackAName) {
    support::Diagnostics diagnostics;
    const Xml::Element source("1", "x");
    diagnostics.take();
    EXPECT_EQ(support::dump(Xml::Element(source)), "(\"x\")");
    EXPECT_EQ(diagnostics.take(), std::vector<std::string>());
}

// Classes that callers derive are asked for their own copies, texts and bindings.
class Marked : public Xml::Element {
public:
    using Xml::Element::Element;

    Xml::Object* clone() const override { return new Marked(*this); }
    void setDtd(const Xml::Dtd* dtd) override {
        lastDtd = dtd;
        Xml::Element::setDtd(dtd);
    }

    const Xml::Dtd* lastDtd = nullptr;

protected:
    void write(Xml::OutStream& out) const override {
        out << "[";
        Xml::Element::write(out);
        out << "]";
    }
};

TEST(ElementOfACallersClass, IsClonedAsSuch) {
    const Tree source(element("a", {element("b", {new Marked("m", "x")})}));
    const Xml::Element copy(*source);
    const auto* inner = dynamic_cast<const Marked*>(copy.findElement("m"));
    ASSERT_NE(inner, nullptr);
    EXPECT_EQ(support::dump(*inner), "m(\"x\")");
    EXPECT_EQ(inner->getParent(), copy.getElement("b"));
    Xml::Element assigned("z");
    assigned = *source;
    EXPECT_NE(dynamic_cast<Marked*>(assigned.findElement("m")), nullptr);
}

TEST(ElementOfACallersClass, IsWrittenAsSuch) {
    auto* marked = new Marked("m");
    marked->addChild(element("c"));
    const Tree top(element("a", {marked, element("b")}));
    EXPECT_EQ(support::written(*top), "<a>\n\t[<m>\n\t\t<c/>\n\t</m>]\n\t<b/>\n</a>");
}

TEST(ElementOfACallersClass, IsBoundAsSuch) {
    const auto dtd = support::makeDtd("one");
    auto* marked = new Marked("c", "x");
    const Tree top(element("a", {element("b", {marked})}));
    top->setDtd(dtd.get());
    EXPECT_EQ(marked->lastDtd, dtd.get());
    EXPECT_EQ(support::bindings(*top), "a=one b=one c=one #=one");
}

TEST(ElementAssignment, CopiesEverything) {
    const Tree source = sample();
    Xml::Element target("old", "text");
    target.setAttribute("old", "1");
    target.toString();
    target = *source;
    source->findElement("c")->setAttribute("l", "changed");
    source->killChildren();
    EXPECT_EQ(support::dump(target), kSample);
    EXPECT_EQ(target.toString(), "a k=\"v\"");
    expectLinked(target);
}

TEST(ElementAssignment, KeepsThePlaceOfItsTarget) {
    const Tree source = sample();
    const Tree top(element("top", {element("first"), element("target"), element("last")}));
    Xml::Element* target = top->getElement("target");
    *target = *source->getElement("b");
    EXPECT_EQ(support::dump(*top), "top(first() b(\"x&lt;y\" c(l=\"w\")) last())");
    EXPECT_EQ(target->getParent(), top.get());
    EXPECT_EQ(top->getChild(1), target);
    Xml::Element detached("d");
    detached = *target;
    EXPECT_EQ(detached.getParent(), nullptr);
}

TEST(ElementAssignment, TouchesItsTargetAndAllAbove) {
    const support::OptimizedRewriting rewriting;
    const auto dtd = support::makeDtd("one");
    const Tree top(element("a", {element("b", {element("c")})}));
    top->setDtd(dtd.get());
    support::writeAt(0, *top);
    *top->findElement("c") = Xml::Element("d");
    EXPECT_EQ(support::bindings(*top), "a=none b=none d=none");
    EXPECT_EQ(support::writeAt(0, *top), "<a>\n\t<b>\n\t\t<d/>\n\t</b>\n</a>");
}

TEST(ElementAssignment, LeavesItsSourceBoundAndWritten) {
    const support::OptimizedRewriting rewriting;
    const auto dtd = support::makeDtd("one");
    const Tree source(element("a", {element("b"), text("x")}));
    source->setDtd(dtd.get());
    support::writeAt(0, *source);
    Xml::Element target("t");
    target = *source;
    EXPECT_EQ(support::bindings(target), "a=none b=none #=one");
    EXPECT_EQ(support::bindings(*source), "a=one b=one #=one");
    EXPECT_EQ(support::writeAt(0, *source), "[to 12]");
    EXPECT_EQ(support::writeAt(0, target), "<a><b/>x</a>");
}

// Hides from compilers and checkers that both are one.
void assign(Xml::Element& target, const Xml::Element& source) { target = source; }

TEST(ElementAssignment, FromItselfChangesNoContent) {
    const Tree top(element("top", {sample().release()}));
    Xml::Element* target = top->getElement("a");
    assign(*target, *target);
    EXPECT_EQ(support::dump(*target), kSample);
    EXPECT_EQ(target->getParent(), top.get());
    expectLinked(*top);
}

TEST(ElementAssignment, FromItselfTouches) {
    const support::OptimizedRewriting rewriting;
    Xml::Element target("a");
    support::writeAt(0, target);
    assign(target, target);
    EXPECT_EQ(support::writeAt(0, target), "<a/>");
}

TEST(ElementAssignment, TakesADescendant) {
    const Tree top = sample();
    *top = *top->getElement("b");
    EXPECT_EQ(support::dump(*top), "b(\"x&lt;y\" c(l=\"w\"))");
    expectLinked(*top);
    *top = *top->findElement("c");
    EXPECT_EQ(support::dump(*top), "c(l=\"w\")");
    expectLinked(*top);
}

TEST(ElementAssignment, TakesAnAncestor) {
    const Tree top = sample();
    *top->findElement("c") = *top;
    EXPECT_EQ(support::dump(*top), std::string("a(k=\"v\" b(\"x&lt;y\" ") + kSample + ") \"z\")");
    expectLinked(*top);
}

TEST(ElementMove, TakesEverythingAlong) {
    const Tree source = sample();
    Xml::Object* child = source->getChild(0);
    Xml::Element target(std::move(*source));
    EXPECT_EQ(support::dump(target), kSample);
    EXPECT_EQ(target.getChild(0), child);
    EXPECT_EQ(target.getParent(), nullptr);
    expectLinked(target);
}

TEST(ElementMove, LeavesAnEmptyElementThatCanBeUsed) {
    const Tree source = sample();
    source->toString();
    const Xml::Element target(std::move(*source));
    EXPECT_EQ(support::dump(*source), "()");
    EXPECT_EQ(source->toString(), "");
    EXPECT_EQ(source->getAttribute("k"), nullptr);
    source->setName("again");
    source->addElement("b", "x");
    EXPECT_EQ(support::dump(*source), "again(b(\"x\"))");
    EXPECT_EQ(support::dump(target), kSample);
}

TEST(ElementMove, LeavesItsSourceInItsPlace) {
    const support::OptimizedRewriting rewriting;
    const Tree top(element("top", {sample().release()}));
    support::writeAt(0, *top);
    Xml::Element* source = top->getElement("a");
    const Xml::Element target(std::move(*source));
    EXPECT_EQ(source->getParent(), top.get());
    EXPECT_EQ(top->getChild(0), source);
    EXPECT_EQ(support::writeAt(0, *top), "<top>\n\t</>\n</top>");
}

TEST(ElementMoveAssignment, TakesEverythingButThePlace) {
    const Tree source = sample();
    const Tree top(element("top", {element("target", {text("old")})}));
    Xml::Element* target = top->getElement("target");
    *target = std::move(*source);
    EXPECT_EQ(support::dump(*top), std::string("top(") + kSample + ')');
    EXPECT_EQ(target->getParent(), top.get());
    EXPECT_EQ(support::dump(*source), "()");
    expectLinked(*top);
}

TEST(ElementMoveAssignment, TouchesItsTargetAndAllAbove) {
    const support::OptimizedRewriting rewriting;
    const Tree top(element("a", {element("b", {element("c")})}));
    support::writeAt(0, *top);
    *top->findElement("c") = Xml::Element("d");
    EXPECT_EQ(support::writeAt(0, *top), "<a>\n\t<b>\n\t\t<d/>\n\t</b>\n</a>");
}

TEST(ElementMoveAssignment, TakesADescendant) {
    const Tree top = sample();
    *top = std::move(*top->getElement("b"));
    EXPECT_EQ(support::dump(*top), "b(\"x&lt;y\" c(l=\"w\"))");
    expectLinked(*top);
}

TEST(ElementMoveAssignment, ToItselfKeepsItsContent) {
    const Tree top = sample();
    Xml::Element& same = *top;
    *top = std::move(same);
    EXPECT_EQ(support::dump(*top), kSample);
    expectLinked(*top);
}

// Moved content is content like any other to the shortcuts that binding and touching take.
TEST(ElementMove, CanBeBoundAndTouchedAfterwards) {
    const auto one = support::makeDtd("one");
    const auto two = support::makeDtd("two");
    const Tree source = sample();
    source->setDtd(one.get());
    Xml::Element target(std::move(*source));
    target.setDtd(two.get());
    EXPECT_EQ(support::bindings(target), "a=two b=two #=two c=two #=two");
    target.findElement("c")->touch();
    EXPECT_EQ(support::bindings(target), "a=none b=none #=two c=none #=two");
    target.setDtd(nullptr);
    EXPECT_EQ(support::bindings(target), "a=none b=none #=none c=none #=none");
}

TEST(ElementMove, KeepsThePlaceOfAChildOfAMovedParent) {
    const Tree source = sample();
    const auto dtd = support::makeDtd("one");
    Xml::Element* inner = source->findElement("c");
    Xml::Element target(std::move(*source));
    target.setDtd(dtd.get());
    inner->setName("e");
    EXPECT_EQ(support::bindings(target), "a=none b=none #=one e=none #=one");
    EXPECT_EQ(inner->getParent()->getParent(), &target);
}

}  // namespace
