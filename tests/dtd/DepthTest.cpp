#include <gtest/gtest.h>

#include <cstddef>
#include <memory>
#include <queue>
#include <string>
#include <utility>
#include <vector>

#include "VexXml/Dtd.h"
#include "dtd/Models.h"
#include "dtd/ReferenceValidator.h"
#include "dtd/Trees.h"
#include "support/Dump.h"

namespace {

constexpr int kGroups = 100000;
constexpr int kElements = 1000000;

// Sequences and choices in turn, `kGroups` of them inside one another around the name a.
std::unique_ptr<Xml::ChildrenSpec> nested(Xml::Dtd* dtd) {
    auto inner = std::make_unique<Xml::ChildrenSpec>(dtd, "a", Xml::RepOnce);
    for (int group = 0; group < kGroups; ++group) {
        std::unique_ptr<Xml::CpSpec> list;
        if (group % 2 == 0) {
            auto sequence = std::make_unique<Xml::SeqSpec>(dtd);
            sequence->add(inner.release());
            sequence->add("b", Xml::RepOptional);
            list = std::move(sequence);
        } else {
            auto choice = std::make_unique<Xml::ChoiceSpec>(dtd);
            choice->addChoice("c", Xml::RepOnce);
            choice->addChoice(inner.release());
            list = std::move(choice);
        }
        inner = std::make_unique<Xml::ChildrenSpec>(dtd, list.release(), Xml::RepOptional);
    }
    return inner;
}

std::string nestedText() {
    std::string before;
    std::string behind;
    for (int group = 0; group < kGroups; ++group) {
        before += group % 2 == 0 ? "(c | " : "(";
        behind += group % 2 == 0 ? ", b?)?" : ")?";
    }
    return before + "a" + behind;
}

// Whether both texts are the same, without writing them out if not.
bool isNestedText(const std::string& text) { return text == nestedText(); }

TEST(DeepModels, AreDestroyed) {
    support::runOnSmallStack([] {
        Xml::Dtd dtd("doc");
        nested(&dtd);
        const Xml::ChildrenSpec assigned = std::move(*nested(&dtd));
        Xml::SeqSpec sequence(&dtd);
        sequence.add(nested(&dtd).release());
        sequence = Xml::SeqSpec(&dtd);
        dtd.addElementDecl("p", nested(&dtd).release());
        dtd.merge(Xml::Dtd(dtd), true);
    });
}

TEST(DeepModels, AreWritten) {
    support::runOnSmallStack([] {
        Xml::Dtd dtd("doc");
        EXPECT_TRUE(isNestedText(support::textOf(*nested(&dtd))));
        dtd.addElementDecl("p", nested(&dtd).release());
        EXPECT_TRUE(support::written(dtd) ==
                    "<!DOCTYPE doc [\n<!ELEMENT p " + nestedText() + ">\n]>\n");
    });
}

TEST(DeepModels, AreCopiedAndCloned) {
    support::runOnSmallStack([] {
        Xml::Dtd dtd("doc");
        const auto model = nested(&dtd);
        const Xml::ChildrenSpec copy(*model);
        EXPECT_TRUE(isNestedText(support::textOf(copy)));
        Xml::ChildrenSpec assigned(&dtd, "x", Xml::RepOnce);
        assigned = *model;
        EXPECT_TRUE(isNestedText(support::textOf(assigned)));
        const std::unique_ptr<Xml::ChildrenSpec> clone(model->clone(nullptr));
        EXPECT_TRUE(isNestedText(support::textOf(*clone)));
    });
}

TEST(DeepModels, MoveWithTheirDtd) {
    support::runOnSmallStack([] {
        Xml::Dtd dtd("doc");
        dtd.addElementDecl("a", new Xml::EmptySpec(&dtd));
        dtd.addElementDecl("p", nested(&dtd).release());
        Xml::Dtd copy("other");
        copy = dtd;
        Xml::Dtd moved(std::move(dtd));
        EXPECT_TRUE(moved.validate(support::tree("p(a)").get()));
        EXPECT_TRUE(copy.validate(support::tree("p(a)").get()));
    });
}

TEST(DeepModels, AreMatched) {
    support::runOnSmallStack([] {
        Xml::Dtd dtd("doc");
        for (const char* name : {"a", "b", "c", "x"}) dtd.addElementDecl(name);
        dtd.addElementDecl("p", nested(&dtd).release());
        for (const char* text : {"p", "p(a)", "p(a b)", "p(c)", "p(a b b b)"}) {
            EXPECT_TRUE(dtd.validate(support::tree(text).get())) << text;
        }
        for (const char* text : {"p(x)", "p(a c)"}) {
            EXPECT_FALSE(dtd.validate(support::tree(text).get())) << text;
        }
        const auto parent = support::tree("p(a b x)");
        std::queue<Xml::Object*> pending = support::queueOf(*parent);
        EXPECT_TRUE(nested(&dtd)->validate(&pending));
        EXPECT_EQ(pending.size(), 1U);
    });
}

// A chain of elements e with that model, which all become bound.
void validateChain(const char* model) {
    Xml::Dtd dtd("doc");
    support::declare(dtd, {{"e", model}, {"b", "EMPTY"}});
    support::declareMarks(dtd, {"e"});
    const std::unique_ptr<Xml::Element> top(support::makeChain(kElements));
    EXPECT_TRUE(dtd.validate(top.get()));
    int bound = 0;
    Xml::Element* bottom = top.get();
    for (Xml::Element* e = top.get(); e != nullptr; e = e->getElement(0)) {
        bound += support::bindingOf(*e) == "bound" ? 1 : 0;
        bottom = e;
    }
    EXPECT_EQ(bound, kElements);
    bottom->addChild(new Xml::Element("x"));
    EXPECT_FALSE(dtd.validate(top.get()));
}

TEST(DeepTrees, OfElementContentAreValidated) {
    support::runOnSmallStack([] { validateChain("(e?)"); });
}

TEST(DeepTrees, OfNestedParticlesAreValidated) {
    support::runOnSmallStack([] { validateChain("((b | (e, b?))*)?"); });
}

TEST(DeepTrees, OfMixedContentAreValidated) {
    support::runOnSmallStack([] { validateChain("(#PCDATA | e)*"); });
}

TEST(DeepTrees, OfElementsAskedForTwiceAreValidated) {
    support::runOnSmallStack([] { validateChain("((e, b) | e)?"); });
}

// A root p of as many children as the other trees have levels.
void validateWide(const char* model) {
    Xml::Dtd dtd("doc");
    support::declare(dtd, {{"p", model}, {"a", "EMPTY"}, {"b", "EMPTY"}});
    support::declareMarks(dtd, {"p", "a", "b"});
    Xml::Element parent("p");
    for (int i = 0; i < kElements; ++i) parent.addChild(new Xml::Element(i % 2 == 0 ? "a" : "b"));
    EXPECT_TRUE(dtd.validate(&parent));
    EXPECT_EQ(support::bindingOf(parent), "bound");
}

TEST(WideTrees, AreValidatedInLinearTime) {
    for (const char* model :
         {"(a | b)*", "(a, b)*", "((a, b, b) | (a, b))+", "(#PCDATA | a | b)*"}) {
        SCOPED_TRACE(model);
        validateWide(model);
    }
}

TEST(WideModels, AreMatchedInLinearTime) {
    Xml::Dtd dtd("doc");
    dtd.addElementDecl("a", new Xml::EmptySpec(&dtd));
    auto* sequence = new Xml::SeqSpec(&dtd);
    auto* mixed = new Xml::MixedSpec(&dtd);
    Xml::Element list("list");
    Xml::Element text("text");
    for (int i = 0; i < kGroups; ++i) {
        sequence->add("a", Xml::RepOnce);
        mixed->addName("name" + std::to_string(i));
        list.addChild(new Xml::Element("a"));
        text.addChild(new Xml::Element("a"));
    }
    mixed->addName("a");
    dtd.addElementDecl("list", sequence, Xml::RepOnce);
    dtd.addElementDecl("text", mixed);
    EXPECT_TRUE(dtd.validate(&list));
    EXPECT_TRUE(dtd.validate(&text));
}

}  // namespace
