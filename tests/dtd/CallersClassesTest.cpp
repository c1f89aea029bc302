#include <gtest/gtest.h>

#include <cstddef>
#include <memory>
#include <queue>
#include <string>
#include <vector>

#include "VexXml/Dtd.h"
#include "VexXml/Streams.h"
#include "dtd/Models.h"
#include "dtd/ReferenceValidator.h"
#include "dtd/Trees.h"

namespace {

using support::textOf;
using support::tree;

// Takes up to `count` nodes of any kind, and fails if there are less.
class AnyNodes : public Xml::CpSpec {
public:
    explicit AnyNodes(std::size_t count) : CpSpec(nullptr), mCount(count) {}
    bool validate(std::queue<Xml::Object*>* pending) const override {
        for (std::size_t taken = 0; taken < mCount; ++taken) {
            if (pending->empty()) return false;
            pending->pop();
        }
        return true;
    }
    void toStream(Xml::OutStream& out, bool parenthesise) const override {
        out << (parenthesise ? "{" : "[") << std::to_string(mCount) << (parenthesise ? "}" : "]");
    }
    CpSpec* clone(Xml::Dtd* /*newDtd*/) const override { return new AnyNodes(mCount + 10); }

private:
    std::size_t mCount;
};

class CallersClasses : public testing::Test {
protected:
    CallersClasses() { support::declare(mDtd, {{"a", "EMPTY"}, {"b", "EMPTY"}}); }

    bool accepts(const std::string& text) { return mDtd.validate(tree(text).get()); }

    Xml::Dtd mDtd{"doc"};
};

TEST_F(CallersClasses, OfParticlesMatchByTheirOwnRule) {
    auto* sequence = new Xml::SeqSpec(&mDtd);
    sequence->add("a", Xml::RepOnce);
    sequence->add(new AnyNodes(2), Xml::RepZeroOrMore);
    sequence->add("b", Xml::RepOnce);
    mDtd.addElementDecl("p", sequence, Xml::RepOnce);
    EXPECT_TRUE(accepts("p(a b)"));
    EXPECT_TRUE(accepts("p(a # # b)"));
    EXPECT_TRUE(accepts("p(a # b # # b)"));
    EXPECT_FALSE(accepts("p(a # b)"));
    auto* choice = new Xml::ChoiceSpec(&mDtd);
    choice->addChoice(new AnyNodes(3), Xml::RepOnce);
    choice->addChoice(new AnyNodes(2), Xml::RepOnce);
    choice->addChoice("a", Xml::RepOnce);
    mDtd.addElementDecl("q", choice, Xml::RepOneOrMore);
    for (const char* text : {"q(a)", "q(# #)", "q(# # #)", "q(# # # a)", "q(# # # # #)"}) {
        EXPECT_TRUE(accepts(text)) << text;
    }
    EXPECT_FALSE(accepts("q"));
    EXPECT_FALSE(accepts("q(# # # #)"));
}

TEST_F(CallersClasses, OfParticlesAreWrittenByTheirOwnRule) {
    Xml::SeqSpec sequence(&mDtd);
    sequence.add(new AnyNodes(1), Xml::RepOptional);
    EXPECT_EQ(textOf(sequence, true), "([1]?)");
    EXPECT_EQ(textOf(Xml::ChildrenSpec(&mDtd, new AnyNodes(2), Xml::RepOneOrMore)), "{2}+");
}

TEST_F(CallersClasses, OfParticlesAreCopiedByCloning) {
    Xml::SeqSpec sequence(&mDtd);
    sequence.add(new AnyNodes(1), Xml::RepOptional);
    EXPECT_EQ(textOf(Xml::SeqSpec(sequence), false), "[11]?");
    EXPECT_EQ(textOf(*std::unique_ptr<Xml::CpSpec>(sequence.clone(&mDtd)), false), "[11]?");
    const Xml::ChildrenSpec node(&mDtd, new AnyNodes(1), Xml::RepOptional);
    EXPECT_EQ(textOf(Xml::ChildrenSpec(node)), "{11}?");
}

// Notes the queues it is handed, and takes one node.
class OneNode : public Xml::CpSpec {
public:
    OneNode(std::vector<std::string>& seen, bool verdict)
        : CpSpec(nullptr), mSeen(seen), mVerdict(verdict) {}
    bool validate(std::queue<Xml::Object*>* pending) const override {
        std::string names;
        for (auto rest = *pending; !rest.empty(); rest.pop()) {
            names += rest.front()->toElement()->getName();
        }
        mSeen.push_back(names);
        pending->pop();
        return mVerdict;
    }
    void toStream(Xml::OutStream& /*out*/, bool /*parenthesise*/) const override {}
    CpSpec* clone(Xml::Dtd* /*newDtd*/) const override { return new OneNode(mSeen, mVerdict); }

private:
    std::vector<std::string>& mSeen;
    bool mVerdict;
};

TEST_F(CallersClasses, OfParticlesAreHandedWhatIsLeft) {
    std::vector<std::string> seen;
    auto* choice = new Xml::ChoiceSpec(&mDtd);
    choice->addChoice(new OneNode(seen, false), Xml::RepOnce);
    choice->addChoice("a", Xml::RepOnce);
    choice->addChoice(new OneNode(seen, true), Xml::RepOnce);
    mDtd.addElementDecl("p", choice, Xml::RepZeroOrMore);
    EXPECT_TRUE(accepts("p(a b c a)"));
    EXPECT_EQ(seen, std::vector<std::string>({"abca", "bca", "bca", "ca", "ca", "a"}));
}

TEST_F(CallersClasses, OfParticlesLeaveAQueueAsTheirFailureFoundIt) {
    std::vector<std::string> seen;
    Xml::SeqSpec sequence(&mDtd);
    sequence.add("a", Xml::RepOnce);
    sequence.add(new OneNode(seen, false), Xml::RepOnce);
    const auto parent = tree("p(a b c)");
    auto pending = support::queueOf(*parent);
    EXPECT_FALSE(sequence.validate(&pending));
    EXPECT_EQ(pending.size(), 1U);
}

// Takes nothing a number of times, and then one node.
class LateParticle : public Xml::CpSpec {
public:
    explicit LateParticle(int& tries) : CpSpec(nullptr), mTries(tries) {}
    bool validate(std::queue<Xml::Object*>* pending) const override {
        if (--mTries == 0) pending->pop();
        return true;
    }
    void toStream(Xml::OutStream& /*out*/, bool /*parenthesise*/) const override {}
    CpSpec* clone(Xml::Dtd* /*newDtd*/) const override { return new LateParticle(mTries); }

private:
    int& mTries;
};

TEST_F(CallersClasses, OfParticlesAreRepeatedWhileTheyTakeNothing) {
    for (const Xml::RepType repetition : {Xml::RepZeroOrMore, Xml::RepOneOrMore}) {
        int tries = 10000;
        Xml::ChildrenSpec model(&mDtd, new LateParticle(tries), repetition);
        const auto parent = tree("p(x)");
        auto pending = support::queueOf(*parent);
        EXPECT_TRUE(model.validate(&pending));
        EXPECT_EQ(tries, 0);
        EXPECT_TRUE(pending.empty());
    }
}

// A sequence behind character data.
class BracedSequence : public Xml::SeqSpec {
public:
    using SeqSpec::SeqSpec;
    bool validate(std::queue<Xml::Object*>* pending) const override {
        if (pending->empty() || !pending->front()->isCharData()) return false;
        pending->pop();
        return SeqSpec::validate(pending);
    }
    void toStream(Xml::OutStream& out, bool /*parenthesise*/) const override {
        out << "{";
        SeqSpec::toStream(out, false);
        out << "}";
    }
    CpSpec* clone(Xml::Dtd* newDtd) const override {
        auto copy = std::make_unique<BracedSequence>(newDtd);
        copy->add("cloned", Xml::RepOnce);
        return copy.release();
    }
};

TEST_F(CallersClasses, MayBuildOnTheClassesOfTheLibrary) {
    auto braced = std::make_unique<BracedSequence>(&mDtd);
    braced->add(support::build(&mDtd, "(a | b)+"));
    Xml::ChildrenSpec model(&mDtd, braced.release(), Xml::RepOnce);
    EXPECT_EQ(textOf(model), "{(a | b)+}");
    EXPECT_EQ(textOf(Xml::ChildrenSpec(model)), "{cloned}");
    mDtd.addElementDecl("p", new Xml::ChildrenSpec(model));
    EXPECT_FALSE(accepts("p(# a)"));
    const auto parent = tree("q(# a b)");
    auto children = support::childrenOf(*parent);
    EXPECT_TRUE(model.validate(&children));
    children.erase(children.begin());
    EXPECT_FALSE(model.validate(&children));
}

// A name that stands for every element.
class AnyName : public Xml::NameSpec {
public:
    explicit AnyName(Xml::Dtd* dtd) : NameSpec(dtd, "any") {}
    bool validate(std::queue<Xml::Object*>* pending) const override {
        if (pending->empty() || !pending->front()->isElement()) return false;
        pending->pop();
        return true;
    }
    void toStream(Xml::OutStream& out, bool /*parenthesise*/) const override { out << "ANY"; }
    CpSpec* clone(Xml::Dtd* newDtd) const override { return new AnyName(newDtd); }
};

// A choice that tries none of its alternatives.
class NoChoice : public Xml::ChoiceSpec {
public:
    using ChoiceSpec::ChoiceSpec;
    bool validate(std::queue<Xml::Object*>* pending) const override {
        return Xml::ChoiceSpec(nullptr).validate(pending);
    }
    void toStream(Xml::OutStream& out, bool /*parenthesise*/) const override { out << "NONE"; }
    CpSpec* clone(Xml::Dtd* newDtd) const override { return new NoChoice(newDtd); }
};

TEST_F(CallersClasses, MayReplaceTheRulesOfNamesAndChoices) {
    auto* list = new Xml::ChoiceSpec(&mDtd);
    auto* none = new NoChoice(&mDtd);
    none->addChoice("a", Xml::RepOnce);
    list->addChoice(none, Xml::RepOnce);
    list->addChoice(new AnyName(&mDtd), Xml::RepOnce);
    const Xml::ChildrenSpec model(&mDtd, list, Xml::RepOneOrMore);
    EXPECT_EQ(textOf(model), "(NONE | ANY)+");
    EXPECT_EQ(textOf(Xml::ChildrenSpec(model)), "(NONE | ANY)+");
    mDtd.addElementDecl("p", new Xml::ChildrenSpec(model));
    EXPECT_TRUE(accepts("p(unknown a)"));
    EXPECT_FALSE(accepts("p(unknown #)"));
    mDtd.addElementDecl("q", new NoChoice(*none), Xml::RepOnce);
    EXPECT_FALSE(accepts("q(a)"));
}

// Notes the DTD it is cloned for.
class NotedNode : public Xml::ChildrenSpec {
public:
    NotedNode(Xml::Dtd* dtd, Xml::Dtd*& noted)
        : ChildrenSpec(dtd, "a", Xml::RepOnce), mNoted(noted) {}
    ChildrenSpec* clone(Xml::Dtd* newDtd) const override {
        mNoted = newDtd;
        return ChildrenSpec::clone(newDtd);
    }

private:
    Xml::Dtd*& mNoted;
};

TEST_F(CallersClasses, AreClonedForTheDtdTheyBelongToWhenTheirListIsCopied) {
    Xml::Dtd other("other");
    Xml::Dtd* noted = nullptr;
    auto* node = new NotedNode(&other, noted);
    Xml::SeqSpec sequence(&mDtd);
    sequence.add(node);
    const Xml::SeqSpec copy(sequence);
    EXPECT_EQ(noted, &other);
    static_cast<Xml::ChildrenSpec&>(*node) = Xml::ChildrenSpec(&mDtd, "b", Xml::RepOnce);
    const Xml::SeqSpec copyOfAssigned(sequence);
    EXPECT_EQ(noted, &mDtd);
    const std::unique_ptr<Xml::CpSpec> clone(sequence.clone(&other));
    EXPECT_EQ(noted, &other);
}

// Adds nothing: works as the library's own class.
class PlainName : public Xml::NameSpec {
public:
    using NameSpec::NameSpec;
};
class PlainChoice : public Xml::ChoiceSpec {
public:
    using ChoiceSpec::ChoiceSpec;
};
class PlainMixed : public Xml::MixedSpec {
public:
    using MixedSpec::MixedSpec;
};

TEST_F(CallersClasses, WithoutRulesOfTheirOwnWorkAsTheLibrarysDo) {
    auto* choice = new PlainChoice(&mDtd);
    choice->addChoice(new PlainName(&mDtd, "a"), Xml::RepOnce);
    choice->addChoice(new PlainName(&mDtd, "b"), Xml::RepOneOrMore);
    choice->addCharDataAsChoice(true);
    auto model = std::make_unique<Xml::ChildrenSpec>(&mDtd, choice, Xml::RepZeroOrMore);
    EXPECT_EQ(textOf(*model), "(a | b+ | #PCDATA)*");
    EXPECT_EQ(textOf(*std::unique_ptr<Xml::ChildrenSpec>(model->clone(&mDtd))), "(a | b+)*");
    mDtd.addElementDecl("p", model.release());
    EXPECT_TRUE(accepts("p(a # b b a)"));
    EXPECT_FALSE(accepts("p(a c)"));
    auto* mixed = new PlainMixed(&mDtd);
    mixed->addName("p");
    mDtd.addElementDecl("m", mixed);
    EXPECT_TRUE(accepts("m(# p(a))"));
    EXPECT_FALSE(accepts("m(# p(c))"));
}

// Models of elements that ask for an even number of children, whatever their class.
template <class Model>
class Even : public Model {
public:
    using Model::Model;
    bool validate(std::vector<Xml::Object*>* children) const override {
        return children->size() % 2 == 0;
    }
    void toStream(Xml::OutStream& out) const override { out << "EVEN"; }
    Model* clone(Xml::Dtd* newDtd) const override {
        return new Even<Model>(newDtd, "cloned", Xml::RepOnce);
    }
};

TEST_F(CallersClasses, OfModelsAreAskedByTheDtd) {
    mDtd.addElementDecl("p", new Even<Xml::ChildrenSpec>(&mDtd, "x", Xml::RepOnce));
    mDtd.addElementDecl("q", "p", Xml::RepZeroOrMore);
    EXPECT_TRUE(accepts("p(a #)"));
    EXPECT_FALSE(accepts("p(x)"));
    EXPECT_TRUE(accepts("q(p(# #) p)"));
    EXPECT_FALSE(accepts("q(p(# #) p(#))"));
}

// Only what a list does to its items by virtual operations can be replaced: copying.
TEST_F(CallersClasses, OfModelsInAListAreMatchedAndWrittenAsTheLibrarys) {
    Xml::SeqSpec sequence(&mDtd);
    sequence.add(new Even<Xml::ChildrenSpec>(&mDtd, "a", Xml::RepZeroOrMore));
    EXPECT_EQ(textOf(sequence, true), "(a*)");
    EXPECT_EQ(textOf(Xml::SeqSpec(sequence), true), "(cloned)");
    EXPECT_EQ(textOf(*std::unique_ptr<Xml::CpSpec>(sequence.clone(&mDtd)), true), "(cloned)");
    const auto parent = tree("p(a a a)");
    auto pending = support::queueOf(*parent);
    EXPECT_TRUE(sequence.validate(&pending));
    EXPECT_TRUE(pending.empty());
}

TEST_F(CallersClasses, OfElementsAreValidatedAsElements) {
    class Named : public Xml::Element {
    public:
        using Element::Element;
    };
    mDtd.addElementDecl("p", "a", Xml::RepOnce);
    Named parent("p");
    parent.addChild(new Named("a"));
    EXPECT_TRUE(mDtd.validate(&parent));
}

TEST_F(CallersClasses, OfParticlesCostNoMoreForMoreChildren) {
    constexpr int kChildren = 200000;
    Xml::ChildrenSpec model(&mDtd, new AnyNodes(1), Xml::RepOneOrMore);
    Xml::CharData text;
    std::vector<Xml::Object*> children(kChildren, &text);
    EXPECT_TRUE(model.validate(&children));
}

}  // namespace
