#include <gtest/gtest.h>

#include <memory>
#include <queue>
#include <string>
#include <utility>
#include <vector>

#include "VexXml/Dtd.h"
#include "dtd/Models.h"
#include "dtd/ReferenceValidator.h"
#include "dtd/Trees.h"
#include "support/Diagnostics.h"

namespace {

using support::tree;

// Each test ends by checking that nothing was reported: validation only answers.
class Validation : public testing::Test {
protected:
    void TearDown() override { EXPECT_EQ(mDiagnostics.take(), std::vector<std::string>()); }

    void declare(const support::Models& models) { support::declare(mDtd, models); }
    bool accepts(const std::string& text) { return mDtd.validate(tree(text).get()); }
    std::vector<std::string> takeReports() { return mDiagnostics.take(); }

    Xml::Dtd mDtd{"doc"};

private:
    support::Diagnostics mDiagnostics;
};

struct Content {
    const char* model;
    const char* children;
    bool fits;
};

// The model of p, what p holds, and whether that fits. The elements a, b and c may be anything.
const Content kContents[] = {
    {"ANY", "", true},
    {"ANY", "# a #", true},
    {"ANY", "unknown(bad) #", true},
    {"EMPTY", "", true},
    {"EMPTY", "#", false},
    {"EMPTY", "a", false},
    {"(#PCDATA)", "", true},
    {"(#PCDATA)", "#", true},
    {"(#PCDATA)", "# #", true},
    {"(#PCDATA)", "a", false},
    {"(#PCDATA)", "# a", false},
    {"(#PCDATA)*", "# #", true},
    {"(#PCDATA)*", "# a", false},
    {"(#PCDATA | a)*", "", true},
    {"(#PCDATA | a)*", "# a a # a", true},
    {"(#PCDATA | a)*", "# b", false},
    {"(#PCDATA | a)*", "a b", false},
    {"(#PCDATA | a | b)*", "b # a", true},
    {"(#PCDATA | A)*", "a", false},
    {"(#PCDATA | unknown)*", "unknown", false},
    {"(a)", "a", true},
    {"(a)", "", false},
    {"(a)", "a a", false},
    {"(a)", "b", false},
    {"(A)", "a", false},
    {"(a)", "#", false},
    {"(a)", "# a", false},
    {"(a)", "a #", false},
    {"(unknown)", "unknown", false},
    {"(a)?", "", true},
    {"(a)?", "a", true},
    {"(a)?", "a a", false},
    {"(a)*", "", true},
    {"(a)*", "a a a", true},
    {"(a)*", "a b a", false},
    {"(a)+", "", false},
    {"(a)+", "a a a", true},
    {"(a)+", "a a b", false},
    {"(a, b)", "a b", true},
    {"(a, b)", "b a", false},
    {"(a, b)", "a", false},
    {"(a, b)", "a # b", false},
    {"(a, b)", "a b c", false},
    {"(a?, b*, c+)", "c", true},
    {"(a?, b*, c+)", "a b b c c", true},
    {"(a?, b*, c+)", "a a c", false},
    {"(a, b)+", "a b a b", true},
    {"(a, b)+", "a b a", false},
    {"(a, b)*", "a b a", false},
    {"(a | b)", "b", true},
    {"(a | b)", "c", false},
    {"(a | b)", "", false},
    {"(a | b)*", "b a a b", true},
    {"(a | (b, c))*", "a b c a", true},
    {"(a | b | #PCDATA)", "#", true},
    {"(a | b | #PCDATA)", "", true},
    {"(a | b | #PCDATA)", "# #", false},
    {"(a | b | #PCDATA)", "c", false},
    {"(a | b | #PCDATA)*", "# a # # b", true},
    // Matching is greedy and never goes back.
    {"(a+, a)", "a a", false},
    {"(a*, a)", "a", false},
    {"(a?, a)", "a", false},
    {"(a | (a, b))", "a b", false},
    {"((a, b) | a)", "a b", true},
    {"((a, b) | a)", "a", true},
    {"((a?) | b)", "b", false},
    // An empty list matches nothing, and succeeds as a sequence.
    {"()", "", true},
    {"()", "a", false},
    {"(a, ())", "a", true},
    {"(|)", "", false},
    {"(|)?", "", true},
    {"(|a)", "a", true},
    {"(|#PCDATA)", "#", true},
};

TEST_F(Validation, ComparesContentWithItsModel) {
    for (const Content& row : kContents) {
        SCOPED_TRACE(std::string(row.model) + " on " + row.children);
        Xml::Dtd dtd("doc");
        support::declare(dtd, {{"p", row.model}, {"a", "ANY"}, {"b", "ANY"}, {"c", "ANY"}});
        const auto parent = tree(std::string("p(") + row.children + ')');
        EXPECT_EQ(dtd.validate(parent.get()), row.fits);
    }
}

TEST_F(Validation, RefusesAnElementThatIsNotDeclaredAndAllAroundIt) {
    declare({{"a", "(b)"}, {"b", "(c)"}});
    EXPECT_FALSE(accepts("c"));
    EXPECT_FALSE(accepts("b(c)"));
    EXPECT_FALSE(accepts("a(b(c))"));
    mDtd.addElementDecl("c");
    EXPECT_TRUE(accepts("a(b(c))"));
}

TEST_F(Validation, GoesDownToTheLastElement) {
    declare({{"a", "(#PCDATA | b)*"}, {"b", "(c?)"}, {"c", "EMPTY"}});
    EXPECT_TRUE(accepts("a(# b(c) b #)"));
    EXPECT_FALSE(accepts("a(# b(c) b(c(#)) #)"));
}

TEST_F(Validation, DoesNotLookIntoAnyContent) {
    declare({{"a", "ANY"}, {"b", "EMPTY"}});
    EXPECT_TRUE(accepts("a(b(#) unknown)"));
}

TEST_F(Validation, RefusesANameThatIsNone) {
    mDtd.addElementDecl("");
    mDtd.addElementDecl("p", "1", Xml::RepOnce);
    Xml::Element parent("p");
    parent.addChild(new Xml::Element("1"));
    EXPECT_EQ(takeReports(), std::vector<std::string>({"<Element::setName> not a valid name 1"}));
    EXPECT_FALSE(mDtd.validate(&parent));
}

TEST_F(Validation, RefusesNodesThatAreNeitherElementsNorCharacterData) {
    declare({{"c", "(#PCDATA)"}, {"m", "(#PCDATA | c)*"}, {"s", "(c?)"}, {"d", "(|#PCDATA)*"}});
    for (const char* name : {"c", "m", "s", "d"}) {
        Xml::Element parent(name);
        parent.addChild(new Xml::Attribute("x", "v"));
        EXPECT_FALSE(mDtd.validate(&parent)) << name;
    }
}

class AttributeValidation : public Validation {
protected:
    AttributeValidation() { declare({{"a", "EMPTY"}, {"listed", "EMPTY"}, {"p", "(listed)"}}); }

    bool accepts(const std::string& name, const std::vector<std::string>& attributes) {
        Xml::Element element(name);
        for (const std::string& attribute : attributes) element.setAttribute(attribute, "v");
        return mDtd.validate(&element);
    }
};

TEST_F(AttributeValidation, AllowsNoneWithoutAList) {
    EXPECT_TRUE(accepts("a", {}));
    EXPECT_FALSE(accepts("a", {"x"}));
}

TEST_F(AttributeValidation, AllowsThoseOfTheList) {
    mDtd.addAttDecl("listed", "x", Xml::AttImplied);
    mDtd.addAttDecl("listed", "y", new Xml::AttStringType(Xml::AttValue, "d"));
    EXPECT_TRUE(accepts("listed", {}));
    EXPECT_TRUE(accepts("listed", {"x"}));
    EXPECT_TRUE(accepts("listed", {"x", "y"}));
    EXPECT_FALSE(accepts("listed", {"x", "y", "z"}));
    EXPECT_FALSE(accepts("listed", {"X"}));
    EXPECT_FALSE(accepts("a", {"x"}));
}

TEST_F(AttributeValidation, AsksForThoseThatAreRequired) {
    mDtd.addAttDecl("listed", "i", Xml::AttImplied);
    mDtd.addAttDecl("listed", "r", Xml::AttRequired);
    mDtd.addAttDecl("listed", "s", Xml::AttRequired);
    EXPECT_TRUE(accepts("listed", {"r", "s"}));
    EXPECT_TRUE(accepts("listed", {"i", "r", "s"}));
    EXPECT_FALSE(accepts("listed", {}));
    EXPECT_FALSE(accepts("listed", {"r"}));
    EXPECT_FALSE(accepts("listed", {"i", "s"}));
}

TEST_F(AttributeValidation, DoesNotLookAtValues) {
    mDtd.addAttDecl("listed", "f", new Xml::AttStringType(Xml::AttFixed, "other"));
    EXPECT_TRUE(accepts("listed", {"f"}));
}

TEST_F(AttributeValidation, TakesListsOfAnyLength) {
    std::vector<std::string> names;
    for (int i = 0; i < 40; ++i) {
        names.push_back("n" + std::to_string(i));
        mDtd.addAttDecl("listed", names.back(), i % 2 == 0 ? Xml::AttRequired : Xml::AttImplied);
        EXPECT_TRUE(accepts("listed", names)) << i;
        std::vector<std::string> others = names;
        others.emplace_back("other");
        EXPECT_FALSE(accepts("listed", others)) << i;
        others.assign(names.begin() + 1, names.end());
        EXPECT_FALSE(accepts("listed", others)) << i;
    }
}

// An attribute that was assigned to goes on being found by the name it had.
TEST_F(AttributeValidation, AsksForTheNamesThatAttributesAreHeldUnder) {
    mDtd.addAttDecl("listed", "i", Xml::AttImplied);
    mDtd.addAttDecl("listed", "r", Xml::AttRequired);
    Xml::Element element("listed");
    element.setAttribute("r", "v");
    Xml::Attribute& attribute = *element.getAttribute("r");
    attribute.toString();
    EXPECT_TRUE(mDtd.validate(&element));
    attribute = Xml::Attribute("i", "v");
    EXPECT_TRUE(mDtd.validate(&element));
    attribute = Xml::Attribute("other", "v");
    EXPECT_FALSE(mDtd.validate(&element));
    Xml::Element without("listed");
    without.setAttribute("i", "v");
    *without.getAttribute("i") = Xml::Attribute("r", "v");
    EXPECT_FALSE(mDtd.validate(&without));
}

TEST_F(AttributeValidation, CountsForTheElementsAround) {
    mDtd.addAttDecl("listed", "r", Xml::AttRequired);
    const auto parent = tree("p(listed)");
    EXPECT_FALSE(mDtd.validate(parent.get()));
    parent->getElement("listed")->setAttribute("r", "v");
    EXPECT_TRUE(mDtd.validate(parent.get()));
}

// What is bound shows by marks, see `declareMarks`.
class Binding : public Validation {
protected:
    std::string boundIn(const std::string& text) {
        const auto top = tree(text);
        mVerdict = mDtd.validate(top.get());
        return support::bindings(*top);
    }

    bool mVerdict = false;
};

TEST_F(Binding, TakesElementsThatKeepToTheirDeclarations) {
    declare({{"p", "(a, b)"}, {"a", "EMPTY"}, {"b", "(#PCDATA)"}});
    support::declareMarks(mDtd, {"p", "a", "b"});
    EXPECT_EQ(boundIn("p(a b(#))"), "p=bound a=bound b=bound #=bound");
}

TEST_F(Binding, StaysWhereAnElementAroundFails) {
    declare({{"p", "(a, b)"}, {"a", "EMPTY"}, {"b", "(#PCDATA)"}});
    support::declareMarks(mDtd, {"p", "a", "b"});
    EXPECT_EQ(boundIn("p(a b(# a))"), "p=- a=bound b=- #=bound a=-");
    EXPECT_FALSE(mVerdict);
    EXPECT_EQ(boundIn("p(a b(#) a)"), "p=- a=bound b=bound #=bound a=-");
    EXPECT_FALSE(mVerdict);
}

TEST_F(Binding, StaysWhereAnAlternativeFails) {
    declare({{"p", "((a, b, a) | (a, c))"}, {"a", "EMPTY"}, {"b", "EMPTY"}, {"c", "EMPTY"}});
    support::declareMarks(mDtd, {"a", "b", "c"});
    EXPECT_EQ(boundIn("p(a b c)"), "p=- a=bound b=bound c=-");
    EXPECT_FALSE(mVerdict);
}

TEST_F(Binding, TakesCharacterDataInOrderUpToTheFirstMisfit) {
    declare({{"t", "(#PCDATA)"}, {"m", "(#PCDATA | t)*"}});
    support::declareMarks(mDtd, {"t", "m"});
    EXPECT_EQ(boundIn("t(# # x #)"), "t=- #=bound #=bound x=- #=-");
    EXPECT_EQ(boundIn("m(# t(#) x #)"), "m=- #=bound t=bound #=bound x=- #=-");
}

TEST_F(Binding, IsNotDoneForElementsWithoutAnAttributeList) {
    declare({{"p", "(a)"}, {"a", "EMPTY"}});
    const auto top = tree("p(a)");
    EXPECT_TRUE(mDtd.validate(top.get()));
    // Declared only now, so that the elements had no list when they were validated.
    support::declareMarks(mDtd, {"p", "a"});
    EXPECT_EQ(support::bindings(*top), "p=- a=-");
    EXPECT_TRUE(mDtd.validate(top.get()));
    EXPECT_EQ(support::bindings(*top), "p=bound a=bound");
}

TEST_F(Binding, IsDoneByMixedContentWithoutAnAttributeListToo) {
    declare({{"m", "(#PCDATA | a)*"}, {"a", "(b)"}, {"b", "EMPTY"}});
    const auto top = tree("m(a(b))");
    EXPECT_TRUE(mDtd.validate(top.get()));
    support::declareMarks(mDtd, {"m", "a", "b"});
    EXPECT_EQ(support::bindings(*top), "m=- a=bound b=bound");
}

TEST_F(Binding, IsNotDoneByAnyContentItself) {
    declare({{"p", "(y)"}, {"y", "ANY"}, {"a", "EMPTY"}});
    support::declareMarks(mDtd, {"a"});
    EXPECT_EQ(boundIn("p(y(a #))"), "p=- y=- a=- #=-");
    EXPECT_TRUE(mVerdict);
    // Binding the element itself goes down to all it holds.
    support::declareMarks(mDtd, {"y"});
    EXPECT_EQ(boundIn("p(y(a #))"), "p=- y=bound a=bound #=bound");
}

TEST_F(Binding, IsNotDoneForCharacterDataTakenByAChoice) {
    declare({{"p", "(a | b | #PCDATA)*"}, {"a", "EMPTY"}, {"b", "EMPTY"}});
    support::declareMarks(mDtd, {"a"});
    EXPECT_EQ(boundIn("p(a # b)"), "p=- a=bound #=- b=-");
    EXPECT_TRUE(mVerdict);
}

TEST_F(Binding, IsReplacedByAnotherDtd) {
    Xml::Dtd other("other");
    support::declare(other, {{"a", "(#PCDATA)"}});
    support::declareMarks(other, {"a"}, "other");
    declare({{"a", "(#PCDATA)"}});
    support::declareMarks(mDtd, {"a"});
    const auto top = tree("a(#)");
    EXPECT_TRUE(mDtd.validate(top.get()));
    EXPECT_TRUE(other.validate(top.get()));
    EXPECT_EQ(support::bindings(*top), "a=other #=other");
}

// Models of other DTDs than the one that declares them.
TEST_F(Binding, IsDoneByTheDtdOfTheModel) {
    Xml::Dtd other("other");
    support::declare(other, {{"a", "(#PCDATA)"}});
    support::declareMarks(other, {"a"}, "other");
    declare({{"a", "EMPTY"}});
    mDtd.addElementDecl("s", support::build(&other, "(a)"));
    auto* mixed = new Xml::MixedSpec(&other);
    mixed->addName("a");
    mDtd.addElementDecl("m", mixed);
    mDtd.addElementDecl("t", new Xml::CharSpec(&other));
    EXPECT_EQ(boundIn("s(a(#))"), "s=- a=other #=other");
    EXPECT_EQ(boundIn("m(# a(#))"), "m=- #=other a=other #=other");
    EXPECT_EQ(boundIn("t(#)"), "t=- #=other");
}

TEST_F(Validation, WithoutADtdMatchesNoElement) {
    mDtd.addElementDecl("a");
    mDtd.addElementDecl("s", support::build(nullptr, "(a | #PCDATA)*"));
    auto* mixed = new Xml::MixedSpec(nullptr);
    mixed->addName("a");
    mDtd.addElementDecl("m", mixed);
    EXPECT_TRUE(accepts("s(#)"));
    EXPECT_FALSE(accepts("s(a)"));
    EXPECT_TRUE(accepts("m(#)"));
    EXPECT_FALSE(accepts("m(a)"));
}

// What each form of validation leaves in the queue.
struct Rest {
    const char* model;
    const char* children;
    bool matches;
    int left;
};

const Rest kRests[] = {
    {"(a)", "a b", true, 1},
    {"(a)", "b", false, 1},
    {"(a)", "", false, 0},
    {"(a)*", "a a b a", true, 2},
    {"(a)?", "b", true, 1},
    {"(a)+", "b", false, 1},
    {"(a, b)", "a b c", true, 1},
    // What an item took before another one failed is gone.
    {"(a, b)", "a c", false, 1},
    {"(a, a, b)", "a a a c", false, 2},
    {"(a, (a, b))", "a a c", false, 1},
    // A repetition puts back what its last try took.
    {"(a, b)?", "a c", true, 2},
    {"(a, b)*", "a b a c", true, 2},
    {"(a, b)+", "a b a c", true, 2},
    {"(a, b)+", "a c", false, 2},
    // A choice puts back what each alternative took.
    {"((a, b) | (a, c))", "a c", true, 0},
    {"((a, b) | (a, c))", "a a", false, 2},
    {"(a | b | #PCDATA)", "# a", true, 1},
    {"(a | b | #PCDATA)", "c", false, 1},
    {"(a | b | #PCDATA)", "", true, 0},
};

TEST_F(Validation, TakesFromAQueueWhatItMatched) {
    declare({{"a", "EMPTY"}, {"b", "EMPTY"}, {"c", "EMPTY"}});
    for (const Rest& row : kRests) {
        SCOPED_TRACE(std::string(row.model) + " on " + row.children);
        const std::unique_ptr<Xml::ChildrenSpec> model(support::build(&mDtd, row.model));
        const auto parent = tree(std::string("p(") + row.children + ')');
        std::queue<Xml::Object*> pending = support::queueOf(*parent);
        EXPECT_EQ(model->validate(&pending), row.matches);
        EXPECT_EQ(static_cast<int>(pending.size()), row.left);
        if (!pending.empty()) {
            EXPECT_EQ(pending.front(), parent->getChild(parent->getChildCount() - row.left));
        }
    }
}

TEST_F(Validation, TakesFromAQueueForParticlesToo) {
    declare({{"a", "EMPTY"}, {"b", "EMPTY"}});
    const auto parent = tree("p(a b #)");
    const auto leftBy = [&](const Xml::CpSpec& particle) {
        std::queue<Xml::Object*> pending = support::queueOf(*parent);
        const bool matched = particle.validate(&pending);
        return std::make_pair(matched, pending.size());
    };
    const auto built = [&](const char* text) {
        return std::unique_ptr<Xml::CpSpec>(support::buildCp(&mDtd, support::particle(text)));
    };
    EXPECT_EQ(leftBy(Xml::NameSpec(&mDtd, "a")), std::make_pair(true, 2UL));
    EXPECT_EQ(leftBy(Xml::NameSpec(&mDtd, "b")), std::make_pair(false, 3UL));
    EXPECT_EQ(leftBy(*built("(a, b)")), std::make_pair(true, 1UL));
    EXPECT_EQ(leftBy(*built("(a, a)")), std::make_pair(false, 2UL));
    EXPECT_EQ(leftBy(*built("(b | a)")), std::make_pair(true, 2UL));
    EXPECT_EQ(leftBy(*built("((a, a) | b)")), std::make_pair(false, 3UL));
}

TEST_F(Validation, OfAVectorLeavesItAlone) {
    declare({{"a", "EMPTY"}});
    const auto parent = tree("p(a a)");
    auto children = support::childrenOf(*parent);
    const auto before = children;
    const std::unique_ptr<Xml::ChildrenSpec> model(support::build(&mDtd, "(a)*"));
    EXPECT_TRUE(model->validate(&children));
    EXPECT_EQ(children, before);
}

}  // namespace
