#include <gtest/gtest.h>

#include <memory>
#include <queue>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "dtd/Models.h"
#include "dtd/Trees.h"
#include "support/Diagnostics.h"

namespace {

using support::build;
using support::textOf;

template <class Class>
constexpr bool kHasValueSemantics =
    std::is_copy_constructible_v<Class>&& std::is_move_constructible_v<Class>&&
        std::is_copy_assignable_v<Class>&& std::is_move_assignable_v<Class>;

template <class Class>
constexpr bool kMovesWithoutThrowing =
    std::is_nothrow_move_constructible_v<Class>&& std::is_nothrow_move_assignable_v<Class>;

static_assert(kHasValueSemantics<Xml::AnySpec>);
static_assert(kHasValueSemantics<Xml::EmptySpec>);
static_assert(kHasValueSemantics<Xml::CharSpec>);
static_assert(kHasValueSemantics<Xml::MixedSpec>);
static_assert(kHasValueSemantics<Xml::NameSpec>);
static_assert(kHasValueSemantics<Xml::ChoiceSpec> && kMovesWithoutThrowing<Xml::ChoiceSpec>);
static_assert(kHasValueSemantics<Xml::SeqSpec> && kMovesWithoutThrowing<Xml::SeqSpec>);
static_assert(kHasValueSemantics<Xml::ChildrenSpec> && kMovesWithoutThrowing<Xml::ChildrenSpec>);
static_assert(kHasValueSemantics<Xml::AttStringType> && kMovesWithoutThrowing<Xml::AttStringType>);
static_assert(kHasValueSemantics<Xml::Dtd> && kMovesWithoutThrowing<Xml::Dtd>);
static_assert(!std::is_copy_constructible_v<Xml::ContentSpec> &&
              !std::is_copy_constructible_v<Xml::CpSpec> &&
              !std::is_copy_constructible_v<Xml::AttDef>);
static_assert(std::is_abstract_v<Xml::ContentSpec> && std::is_abstract_v<Xml::CpSpec> &&
              std::is_abstract_v<Xml::AttDef>);

// Two DTDs that declare an element a, with text in the first and with nothing in the other: a model
// that takes an a tells by it which of them it belongs to.
class ModelCopies : public testing::Test {
protected:
    ModelCopies() {
        mTextual.addElementDecl("a");
        mBare.addElementDecl("a", new Xml::EmptySpec(&mBare));
    }

    // The DTD by which the model accepts a child a.
    static std::string ownerOf(const Xml::ContentSpec& model) {
        if (takes(model, "p(a(#))")) return "textual";
        return takes(model, "p(a)") ? "bare" : "none";
    }
    static std::string ownerOf(const Xml::CpSpec& particle) {
        return ownerOf(Xml::ChildrenSpec(nullptr, new Lent(particle), Xml::RepOnce));
    }

    static bool takes(const Xml::ContentSpec& model, const std::string& parent) {
        const auto element = support::tree(parent);
        std::vector<Xml::Object*> children = support::childrenOf(*element);
        return model.validate(&children);
    }

    Xml::Dtd mTextual{"textual"};
    Xml::Dtd mBare{"bare"};

private:
    // Another particle, which stays its owner's.
    class Lent : public Xml::CpSpec {
    public:
        explicit Lent(const Xml::CpSpec& particle) : CpSpec(nullptr), mParticle(particle) {}
        bool validate(std::queue<Xml::Object*>* pending) const override {
            return mParticle.validate(pending);
        }
        void toStream(Xml::OutStream& out, bool parenthesise) const override {
            mParticle.toStream(out, parenthesise);
        }
        CpSpec* clone(Xml::Dtd* newDtd) const override { return mParticle.clone(newDtd); }

    private:
        const Xml::CpSpec& mParticle;
    };

    support::Diagnostics mDiagnostics;
};

const char* const kNested = "(a, (b | (c, d)? | (e | f | #PCDATA)* | #PCDATA)+, (g*)?, h)*";
const char* const kNestedText = "(a, (b | (c, d)? | (e | f | #PCDATA)* | #PCDATA)+, g*?, h)*";
const char* const kClonedText = "(a, (b | (c, d)? | (e | f)*)+, g*?, h)*";

TEST_F(ModelCopies, AModelCloneLosesCharacterDataAsAChoiceAtEveryLevel) {
    const std::unique_ptr<Xml::ChildrenSpec> model(build(&mTextual, kNested));
    const std::unique_ptr<Xml::ContentSpec> clone(model->clone(&mBare));
    EXPECT_EQ(textOf(*clone), kClonedText);
    EXPECT_EQ(textOf(*model), kNestedText);
}

TEST_F(ModelCopies, AParticleCloneLosesCharacterDataAsAChoiceAtEveryLevel) {
    const std::unique_ptr<Xml::CpSpec> choice(
        support::buildCp(&mTextual, support::particle("(a | (b | c | #PCDATA) | #PCDATA)")));
    EXPECT_EQ(textOf(*std::unique_ptr<Xml::CpSpec>(choice->clone(&mBare)), true), "(a | (b | c))");
    const std::unique_ptr<Xml::CpSpec> sequence(
        support::buildCp(&mTextual, support::particle("(a, (b | c | #PCDATA))")));
    EXPECT_EQ(textOf(*std::unique_ptr<Xml::CpSpec>(sequence->clone(&mBare)), true), "(a, (b | c))");
}

TEST_F(ModelCopies, ACopyIsDeepAndKeepsCharacterDataAsAChoice) {
    std::unique_ptr<Xml::ChildrenSpec> model(build(&mTextual, kNested));
    const Xml::ChildrenSpec copy(*model);
    Xml::ChildrenSpec assigned(&mBare, "x", Xml::RepOptional);
    assigned = *model;
    model.reset();
    EXPECT_EQ(textOf(copy), kNestedText);
    EXPECT_EQ(textOf(assigned), kNestedText);
}

TEST_F(ModelCopies, ACopiedListIsDeepAndKeepsCharacterDataAsAChoice) {
    auto choice = std::make_unique<Xml::ChoiceSpec>(&mTextual);
    choice->addChoice(build(&mTextual, "(a | b | #PCDATA)+"));
    choice->addChoice("c", Xml::RepOnce);
    choice->addCharDataAsChoice(true);
    auto sequence = std::make_unique<Xml::SeqSpec>(&mTextual);
    sequence->add(new Xml::ChoiceSpec(*choice), Xml::RepOnce);
    Xml::ChoiceSpec choiceCopy(&mBare);
    choiceCopy = *choice;
    Xml::SeqSpec sequenceCopy(&mBare);
    sequenceCopy = *sequence;
    choice.reset();
    sequence.reset();
    EXPECT_EQ(textOf(choiceCopy, false), "((a | b | #PCDATA)+ | c | #PCDATA)");
    EXPECT_EQ(textOf(sequenceCopy, false), "((a | b | #PCDATA)+ | c | #PCDATA)");
}

TEST_F(ModelCopies, AnEditedCopyLeavesTheOriginal) {
    Xml::MixedSpec mixed(&mTextual);
    mixed.addName("a");
    Xml::MixedSpec mixedCopy(mixed);
    mixedCopy.addName("b");
    EXPECT_EQ(textOf(mixed), "(#PCDATA | a)*");
    EXPECT_EQ(textOf(mixedCopy), "(#PCDATA | a | b)*");

    Xml::SeqSpec sequence(&mTextual);
    sequence.add("a", Xml::RepOnce);
    Xml::SeqSpec sequenceCopy(sequence);
    sequenceCopy.add("b", Xml::RepOnce);
    EXPECT_EQ(textOf(sequence, true), "(a)");
    EXPECT_EQ(textOf(sequenceCopy, true), "(a, b)");
}

TEST_F(ModelCopies, ACloneOfMixedContentKnowsItsNames) {
    Xml::MixedSpec model(&mTextual);
    for (const char* name : {"b", "a"}) model.addName(name);
    const std::unique_ptr<Xml::ContentSpec> clone(model.clone(&mBare));
    EXPECT_EQ(textOf(*clone), "(#PCDATA | b | a)*");
    static_cast<Xml::MixedSpec&>(*clone).addName("a");
    EXPECT_EQ(textOf(*clone), "(#PCDATA | b | a)*");
}

TEST_F(ModelCopies, FixedModelsCloneToTheirKind) {
    const auto cloneText = [this](const Xml::ContentSpec& model) {
        return textOf(*std::unique_ptr<Xml::ContentSpec>(model.clone(&mBare)));
    };
    EXPECT_EQ(cloneText(Xml::AnySpec(&mTextual)), "ANY");
    EXPECT_EQ(cloneText(Xml::EmptySpec(&mTextual)), "EMPTY");
    EXPECT_EQ(cloneText(Xml::CharSpec(&mTextual)), "(#PCDATA)");
    EXPECT_EQ(cloneText(Xml::MixedSpec(&mTextual)), "(#PCDATA)");
}

TEST_F(ModelCopies, ACopyBelongsToTheSameDtdAndACloneToTheOther) {
    for (const char* text : {"(a)", "(a*)", "(x*, (y | a))"}) {
        SCOPED_TRACE(text);
        const std::unique_ptr<Xml::ChildrenSpec> model(build(&mTextual, text));
        EXPECT_EQ(ownerOf(*model), "textual");
        EXPECT_EQ(ownerOf(Xml::ChildrenSpec(*model)), "textual");
        Xml::ChildrenSpec assigned(&mBare, "a", Xml::RepOnce);
        EXPECT_EQ(ownerOf(assigned), "bare");
        assigned = *model;
        EXPECT_EQ(ownerOf(assigned), "textual");
        EXPECT_EQ(ownerOf(*std::unique_ptr<Xml::ChildrenSpec>(model->clone(&mBare))), "bare");
        EXPECT_EQ(ownerOf(*std::unique_ptr<Xml::ChildrenSpec>(model->clone(nullptr))), "none");
    }
}

TEST_F(ModelCopies, MixedContentBelongsToTheDtdItIsClonedFor) {
    Xml::MixedSpec model(&mTextual);
    model.addName("a");
    EXPECT_EQ(ownerOf(model), "textual");
    EXPECT_EQ(ownerOf(Xml::MixedSpec(model)), "textual");
    EXPECT_EQ(ownerOf(*std::unique_ptr<Xml::ContentSpec>(model.clone(&mBare))), "bare");
}

TEST_F(ModelCopies, WhatIsAddedToACopiedListBelongsToTheListsDtd) {
    const Xml::SeqSpec sequence(&mTextual);
    Xml::SeqSpec copy(&mBare);
    copy = sequence;
    copy.add("a", Xml::RepOnce);
    EXPECT_EQ(ownerOf(copy), "textual");
    std::unique_ptr<Xml::CpSpec> clone(sequence.clone(&mBare));
    static_cast<Xml::SeqSpec&>(*clone).add("a", Xml::RepOnce);
    EXPECT_EQ(ownerOf(*clone), "bare");

    Xml::ChoiceSpec choice(&mBare);
    choice = Xml::ChoiceSpec(&mTextual);
    choice.addChoice("a", Xml::RepOnce);
    EXPECT_EQ(ownerOf(choice), "textual");
}

TEST_F(ModelCopies, AMovedFromListIsEmpty) {
    const auto choice = std::make_unique<Xml::ChoiceSpec>(&mTextual);
    for (const char* name : {"a", "b"}) choice->addChoice(name, Xml::RepOnce);
    choice->addCharDataAsChoice(true);
    const Xml::ChoiceSpec movedChoice(std::move(*choice));
    EXPECT_EQ(textOf(movedChoice, true), "(a | b | #PCDATA)");
    for (const char* name : {"c", "d"}) choice->addChoice(name, Xml::RepOnce);
    EXPECT_EQ(textOf(*choice, true), "(c | d)");

    const auto sequence = std::make_unique<Xml::SeqSpec>(&mTextual);
    sequence->add("a", Xml::RepOnce);
    Xml::SeqSpec movedSequence(&mBare);
    movedSequence = std::move(*sequence);
    EXPECT_EQ(textOf(movedSequence, true), "(a)");
    EXPECT_EQ(ownerOf(movedSequence), "textual");
    sequence->add("c", Xml::RepOnce);
    EXPECT_EQ(textOf(*sequence, true), "(c)");
}

TEST_F(ModelCopies, AMovedFromModelMatchesAndWritesNothing) {
    const auto model = std::make_unique<Xml::ChildrenSpec>(&mTextual, "a", Xml::RepZeroOrMore);
    const auto moved = std::make_unique<Xml::ChildrenSpec>(std::move(*model));
    EXPECT_EQ(textOf(*moved), "(a)*");
    EXPECT_EQ(textOf(*model), "");
    EXPECT_FALSE(takes(*model, "p(a)"));
    EXPECT_FALSE(takes(*model, "p"));
    EXPECT_EQ(textOf(Xml::ChildrenSpec(*model)), "");
    EXPECT_EQ(textOf(*std::unique_ptr<Xml::ChildrenSpec>(model->clone(&mBare))), "");
    *model = std::move(*moved);
    EXPECT_EQ(textOf(*model), "(a)*");
    EXPECT_EQ(textOf(*moved), "");
    EXPECT_FALSE(takes(*moved, "p"));
}

TEST_F(ModelCopies, MixedContentAndNamesMove) {
    const auto mixed = std::make_unique<Xml::MixedSpec>(&mTextual);
    mixed->addName("a");
    const Xml::MixedSpec movedMixed(std::move(*mixed));
    EXPECT_EQ(textOf(movedMixed), "(#PCDATA | a)*");
    mixed->addName("a");
    EXPECT_EQ(textOf(*mixed), "(#PCDATA | a)*");

    const auto name = std::make_unique<Xml::NameSpec>(&mTextual, "a");
    Xml::NameSpec movedName(&mBare, "b");
    movedName = std::move(*name);
    EXPECT_EQ(textOf(movedName, true), "(a)");
    EXPECT_EQ(textOf(*name, true), "");
}

TEST_F(ModelCopies, AssigningAnObjectToItselfChangesNothing) {
    const auto assign = [](auto& target, const auto& source) { target = source; };
    const auto move = [](auto& target, auto& source) { target = std::move(source); };
    const std::unique_ptr<Xml::ChildrenSpec> model(build(&mTextual, kNested));
    assign(*model, *model);
    move(*model, *model);
    EXPECT_EQ(textOf(*model), kNestedText);
    Xml::ChoiceSpec choice(&mTextual);
    for (const char* name : {"a", "b"}) choice.addChoice(name, Xml::RepOnce);
    choice.addCharDataAsChoice(true);
    assign(choice, choice);
    move(choice, choice);
    EXPECT_EQ(textOf(choice, true), "(a | b | #PCDATA)");
    Xml::SeqSpec sequence(&mTextual);
    sequence.add("a", Xml::RepOnce);
    assign(sequence, sequence);
    move(sequence, sequence);
    EXPECT_EQ(textOf(sequence, true), "(a)");
    Xml::MixedSpec mixed(&mTextual);
    mixed.addName("a");
    assign(mixed, mixed);
    EXPECT_EQ(textOf(mixed), "(#PCDATA | a)*");
}

TEST_F(ModelCopies, AModelCanBeAssignedFromAPartOfItself) {
    auto* inner = new Xml::SeqSpec(&mTextual);
    inner->add("a", Xml::RepOnce);
    Xml::SeqSpec outer(&mTextual);
    outer.add("b", Xml::RepOnce);
    outer.add(inner, Xml::RepOptional);
    outer = *inner;
    EXPECT_EQ(textOf(outer, true), "(a)");

    auto* innerChoice = new Xml::ChoiceSpec(&mTextual);
    for (const char* name : {"a", "b"}) innerChoice->addChoice(name, Xml::RepOnce);
    Xml::ChoiceSpec outerChoice(&mTextual);
    outerChoice.addChoice(innerChoice, Xml::RepOnce);
    outerChoice = std::move(*innerChoice);
    EXPECT_EQ(textOf(outerChoice, true), "(a | b)");

    auto* innerNode = build(&mTextual, "(a)+");
    auto* list = new Xml::SeqSpec(&mTextual);
    list->add(innerNode);
    Xml::ChildrenSpec node(&mTextual, list, Xml::RepOnce);
    node = std::move(*innerNode);
    EXPECT_EQ(textOf(node), "(a)+");
}

TEST(MixedSpec, StaysAsItIsWhenMovedOntoItself) {
    support::Diagnostics diagnostics;
    Xml::MixedSpec model(nullptr);
    model.addName("a");
    Xml::MixedSpec& same = model;
    model = std::move(same);
    EXPECT_EQ(textOf(model), "(#PCDATA | a)*");
}

TEST(MixedSpec, IsEmptyWhenMovedFrom) {
    support::Diagnostics diagnostics;
    Xml::MixedSpec model(nullptr);
    model.addName("a");
    const Xml::MixedSpec taken(std::move(model));
    EXPECT_EQ(textOf(taken), "(#PCDATA | a)*");
    model.addName("a");  // NOLINT(bugprone-use-after-move): that is what is tested
    EXPECT_EQ(textOf(model), "(#PCDATA | a)*");
    EXPECT_EQ(diagnostics.take(), std::vector<std::string>());
}

}  // namespace
