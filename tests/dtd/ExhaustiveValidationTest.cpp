#include <gtest/gtest.h>

#include <cstddef>
#include <memory>
#include <queue>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "VexXml/Dtd.h"
#include "dtd/Models.h"
#include "dtd/ReferenceValidator.h"
#include "dtd/Trees.h"
#include "support/Dump.h"

namespace {

using support::Particle;

constexpr Xml::RepType kRepetitions[] = {Xml::RepOnce, Xml::RepOptional, Xml::RepZeroOrMore,
                                         Xml::RepOneOrMore};

std::vector<Particle> repeated(const std::vector<Particle>& particles) {
    std::vector<Particle> result;
    for (Particle particle : particles) {
        for (const Xml::RepType repetition : kRepetitions) {
            particle.repetition = repetition;
            result.push_back(particle);
        }
    }
    return result;
}

// A sequence and a choice of the members, and a choice that takes character data as well.
std::vector<Particle> lists(const std::vector<Particle>& members) {
    return {{Particle::Kind::Sequence, Xml::RepOnce, "", members},
            {Particle::Kind::Choice, Xml::RepOnce, "", members},
            {Particle::Kind::Choice, Xml::RepOnce, "", members, true}};
}

std::vector<Particle> listsOfPairs(const std::vector<Particle>& firsts,
                                   const std::vector<Particle>& seconds) {
    std::vector<Particle> result;
    for (const Particle& first : firsts) {
        for (const Particle& second : seconds) {
            for (Particle& list : lists({first, second})) result.push_back(std::move(list));
        }
    }
    return result;
}

Particle name(const char* name) { return {Particle::Kind::Name, Xml::RepOnce, name, {}}; }

std::string textOf(Xml::Dtd& dtd, const Particle& model) {
    return support::textOf(*std::unique_ptr<Xml::ChildrenSpec>(support::build(&dtd, model)));
}

// The children that a model is tried on: valid elements a and b, an invalid a, and character data.
// Each can be taken at each place of a sequence.
class ChildrenToTry {
public:
    static constexpr std::size_t kKinds = 4;
    static constexpr std::size_t kLongest = 4;

    ChildrenToTry() {
        for (std::size_t length = 0, count = 1; length <= kLongest; ++length, count *= kKinds) {
            for (std::size_t number = 0; number < count; ++number) addSequence(length, number);
        }
    }

    // All of at most that length.
    std::vector<std::vector<Xml::Object*>> sequences(std::size_t longest) const {
        std::vector<std::vector<Xml::Object*>> result;
        for (const auto& sequence : mSequences) {
            if (sequence.size() <= longest) result.push_back(sequence);
        }
        return result;
    }

private:
    // The digits of the number are the kinds of the children.
    void addSequence(std::size_t length, std::size_t number) {
        std::vector<Xml::Object*> sequence;
        for (std::size_t place = 0; place < length; ++place, number /= kKinds) {
            sequence.push_back(mNodes[place * kKinds + number % kKinds]);
        }
        mSequences.push_back(sequence);
    }

    std::unique_ptr<Xml::Element> mHolder =
        support::tree("holder(a b a(#) #  a b a(#) #  a b a(#) #  a b a(#) #)");
    std::vector<Xml::Object*> mNodes = support::childrenOf(*mHolder);
    std::vector<std::vector<Xml::Object*>> mSequences;
};

class ExhaustiveMatching : public testing::Test {
protected:
    ExhaustiveMatching() {
        support::declare(mDtd, kLeaves);
        support::declareMarks(mDtd, {"a", "b"});
    }

    void compare(const std::vector<Particle>& models, std::size_t longest) {
        const auto sequences = mChildren.sequences(longest);
        for (const Particle& model : models) {
            const std::unique_ptr<Xml::ChildrenSpec> spec(support::build(&mDtd, model));
            for (const auto& sequence : sequences) {
                compare(model, *spec, sequence);
                if (HasFailure()) {
                    FAIL() << textOf(mDtd, model) << " on" << shown(sequence);
                }
            }
        }
    }

    // The same with the sequences as what elements hold that are declared so.
    void compareInElements(const std::vector<Particle>& models, std::size_t longest) {
        std::vector<std::unique_ptr<Xml::Element>> parents;
        for (const auto& sequence : mChildren.sequences(longest)) {
            parents.push_back(support::tree("p(" + shown(sequence) + ')'));
        }
        for (const Particle& model : models) {
            Xml::Dtd dtd("doc");
            support::declare(dtd, kLeaves);
            support::declareMarks(dtd, {"a", "b"});
            dtd.addElementDecl("p", support::build(&dtd, model));
            for (const auto& parent : parents) {
                compareIn(dtd, model, *parent);
                if (HasFailure()) {
                    FAIL() << textOf(mDtd, model) << " on" << shown(support::childrenOf(*parent));
                }
            }
        }
    }

    int mCompared = 0;

private:
    inline static const support::Models kLeaves = {{"a", "EMPTY"}, {"b", "EMPTY"}};

    void compare(const Particle& model, const Xml::ChildrenSpec& spec,
                 const std::vector<Xml::Object*>& sequence) {
        mReference.bound.clear();
        std::queue<Xml::Object*> expectedRest({sequence.begin(), sequence.end()});
        std::queue<Xml::Object*> rest = expectedRest;
        bool expected = false;
        try {
            expected = mReference.match(model, expectedRest);
        } catch (const support::NeverEnds&) {
            return;
        }
        ++mCompared;
        for (Xml::Object* child : sequence) child->setDtd(nullptr);
        EXPECT_EQ(spec.validate(&rest), expected);
        EXPECT_EQ(rest, expectedRest);
        for (const Xml::Object* child : sequence) {
            EXPECT_EQ(support::bindingOf(*child) == "bound", mReference.bound.count(child) > 0);
        }
        std::vector<Xml::Object*> whole = sequence;
        EXPECT_EQ(spec.validate(&whole), expected && expectedRest.empty());
    }

    void compareIn(const Xml::Dtd& dtd, const Particle& model, Xml::Element& parent) {
        mReference.bound.clear();
        std::queue<Xml::Object*> rest = support::queueOf(parent);
        bool expected = false;
        try {
            expected = mReference.match(model, rest) && rest.empty();
        } catch (const support::NeverEnds&) {
            return;
        }
        ++mCompared;
        parent.setDtd(nullptr);
        EXPECT_EQ(dtd.validate(&parent), expected);
        for (const Xml::Object* child : support::childrenOf(parent)) {
            EXPECT_EQ(support::bindingOf(*child) == "bound", mReference.bound.count(child) > 0);
        }
    }

    static std::string shown(const std::vector<Xml::Object*>& sequence) {
        std::string out;
        for (Xml::Object* child : sequence) {
            out += ' ' + (child->isElement() ? child->toElement()->getName() : "#");
            if (child->isElement() && child->toElement()->getChildCount() > 0) out += "(#)";
        }
        return out;
    }

    Xml::Dtd mDtd{"doc"};
    support::ReferenceValidator mReference{kLeaves, {"a", "b"}};
    ChildrenToTry mChildren;
};

std::vector<Particle> listsOfUpToTwoNames() {
    const std::vector<Particle> names = repeated({name("a"), name("b")});
    std::vector<Particle> models = repeated(lists({}));
    for (const Particle& only : names) {
        models.push_back(only);
        for (const Particle& list : repeated(lists({only}))) models.push_back(list);
    }
    for (const Particle& list : repeated(listsOfPairs(names, names))) models.push_back(list);
    return models;
}

std::vector<Particle> listsOfANameAndAList() {
    Particle optional = name("a");
    optional.repetition = Xml::RepOptional;
    Particle starred = name("b");
    starred.repetition = Xml::RepZeroOrMore;
    const std::vector<Particle> names = {name("a"), name("b"), optional, starred};
    const std::vector<Particle> groups = repeated(listsOfPairs(names, names));
    std::vector<Particle> models = listsOfPairs(names, groups);
    for (Particle& list : listsOfPairs(groups, names)) models.push_back(std::move(list));
    for (std::size_t i = 0; i < models.size(); ++i) models[i].repetition = kRepetitions[i % 4];
    return models;
}

TEST_F(ExhaustiveMatching, ListsOfUpToTwoNames) {
    compare(listsOfUpToTwoNames(), ChildrenToTry::kLongest);
    EXPECT_GT(mCompared, 200000);
}

TEST_F(ExhaustiveMatching, ListsOfANameAndAList) {
    compare(listsOfANameAndAList(), 3);
    EXPECT_GT(mCompared, 200000);
}

TEST_F(ExhaustiveMatching, ListsOfUpToTwoNamesInElements) {
    compareInElements(listsOfUpToTwoNames(), ChildrenToTry::kLongest);
    EXPECT_GT(mCompared, 200000);
}

TEST_F(ExhaustiveMatching, ListsOfANameAndAListInElements) {
    compareInElements(listsOfANameAndAList(), 3);
    EXPECT_GT(mCompared, 200000);
}

// All trees of `size` nodes below a root a, as text.
// NOLINTNEXTLINE(misc-no-recursion): as deep as the trees, which are small
std::vector<std::string> forests(int size) {
    if (size == 0) return {""};
    std::vector<std::string> result;
    for (int below = 0; below < size; ++below) {
        for (const std::string& inner : forests(below)) {
            for (const std::string& behind : forests(size - 1 - below)) {
                for (const char* top : {"a", "b"}) {
                    result.emplace_back(top).append("(").append(inner).append(")").append(behind);
                }
                if (below == 0) result.push_back('#' + behind);
            }
        }
    }
    return result;
}

const support::Models kModels[] = {
    {{"a", "(a?, b*)"}, {"b", "(#PCDATA)"}},
    {{"a", "((a, b) | a)?"}, {"b", "EMPTY"}},
    {{"a", "((a, b) | (a, a) | b)*"}, {"b", "((b, a) | b | #PCDATA)?"}},
    {{"a", "(#PCDATA | a | b)*"}, {"b", "(a | b)?"}},
    {{"a", "(#PCDATA | b)*"}, {"b", "(#PCDATA | a)*"}},
    {{"a", "(a | b | #PCDATA)*"}, {"b", "ANY"}},
    {{"a", "((a+, b) | (a, b?) | #PCDATA)+"}, {"b", "(b, b)?"}},
    {{"a", "(b?, a?)"}},
};

// As `support::bindings` shows what the reference bound.
std::string expectedBindings(Xml::Element& top, const support::ReferenceValidator& reference,
                             const std::set<std::string>& withList) {
    std::string out;
    for (const Xml::Object* node : support::nodesOf(top)) {
        const std::string name = node->isElement() ? node->toElement()->getName() : "#";
        const bool shows = name == "#" || withList.count(name) > 0;
        if (!out.empty()) out += ' ';
        out.append(name).append(shows && reference.bound.count(node) > 0 ? "=bound" : "=-");
    }
    return out;
}

// There are five times as many of each size as of the one before.
constexpr int kLargestTree = 4;

TEST(ExhaustiveValidation, OfSmallTrees) {
    std::vector<std::string> trees;
    for (int size = 0; size <= kLargestTree; ++size) {
        for (const std::string& forest : forests(size)) trees.push_back("a(" + forest + ')');
    }
    int valid = 0;
    for (const support::Models& models : kModels) {
        for (const auto& withList :
             std::vector<std::set<std::string>>{{}, {"a"}, {"b"}, {"a", "b"}}) {
            Xml::Dtd dtd("doc");
            support::declare(dtd, models);
            support::declareMarks(dtd, {withList.begin(), withList.end()});
            support::ReferenceValidator reference(models, withList);
            for (const std::string& text : trees) {
                const auto tree = support::tree(text);
                reference.bound.clear();
                const bool expected = reference.validate(*tree);
                valid += expected ? 1 : 0;
                ASSERT_EQ(dtd.validate(tree.get()), expected) << text << support::written(dtd);
                ASSERT_EQ(support::bindings(*tree), expectedBindings(*tree, reference, withList))
                    << text << support::written(dtd);
            }
        }
    }
    EXPECT_GT(valid, 1000);
}

}  // namespace
