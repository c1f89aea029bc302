#include <gtest/gtest.h>

#include <cstddef>
#include <memory>
#include <queue>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "VexXml/Dtd.h"
#include "dtd/Models.h"
#include "dtd/ReferenceValidator.h"
#include "dtd/Trees.h"

namespace {

const std::vector<std::string> kNames = {"a", "b", "c", "d"};
constexpr const char* kUndeclared = "x";

enum class Groups { Repeat, AreTakenOnce };

// DTDs of the elements `kNames`, and trees that mostly keep to them. Matching may go on for ever
// only where groups repeat.
class Play {
public:
    Play(unsigned seed, Groups groups) : mRandom(seed), mGroups(groups) {
        for (const std::string& name : kNames) {
            models[name] = model();
            if (oneIn(2)) withList.insert(name);
        }
    }

    std::size_t choose(std::size_t count) { return mRandom() % count; }
    bool oneIn(std::size_t count) { return choose(count) == 0; }
    const std::string& name() { return kNames[choose(kNames.size())]; }

    std::string tree() {
        mMisfits = oneIn(3) ? 1 : 0;
        return element(name(), 0);
    }

    support::Models models;
    std::set<std::string> withList;

private:
    std::string model() {
        switch (choose(8)) {
            case 0:
                return "ANY";
            case 1:
                return "EMPTY";
            case 2:
                return "(#PCDATA)";
            case 3:
                return oneIn(4) ? "(#PCDATA)*" : "(#PCDATA | " + name() + ")*";
            case 4:
                return "(#PCDATA | a | " + kNames[1 + choose(3)] + ")*";
            default:
                return group(0) + groupSuffix();
        }
    }

    std::string suffix() {
        static const char* const kSuffixes[] = {"", "", "?", "*", "+"};
        return kSuffixes[choose(5)];
    }

    std::string groupSuffix() { return mGroups == Groups::Repeat ? suffix() : oneIn(3) ? "?" : ""; }

    // NOLINTNEXTLINE(misc-no-recursion): three levels at most
    std::string group(int level) {
        const bool isChoice = oneIn(2);
        std::string members;
        for (std::size_t count = 1 + choose(4); count > 0; --count) {
            if (!members.empty() || isChoice) members += isChoice ? '|' : ',';
            members += level < 2 && oneIn(3) ? group(level + 1) + groupSuffix() : name() + suffix();
        }
        if (isChoice && oneIn(4)) members += "|#PCDATA";
        return '(' + members + ')';
    }

    // NOLINTNEXTLINE(misc-no-recursion): as deep as the trees, which are small
    std::string element(const std::string& name, int level) {
        const std::string& model = models[name];
        std::string children;
        if (model == "ANY" || model.rfind("(#PCDATA", 0) == 0) {
            for (std::size_t count = choose(4); count > 0; --count) {
                const std::size_t named = model.find(oneIn(2) ? "| " : "a");
                const bool isText = level > 4 || oneIn(2) || named == std::string::npos;
                children += isText ? "# " : element(model == "ANY" ? this->name() : "a", level + 1);
            }
        } else if (model != "EMPTY" && level < 5) {
            children = sample(support::particle(model), level + 1);
        }
        return name + '(' + misfit() + children + misfit() + ") ";
    }

    // NOLINTNEXTLINE(misc-no-recursion): as deep as the trees and models, which are small
    std::string sample(const support::Particle& particle, int level) {
        static const std::size_t kLeast[] = {1, 0, 0, 1};
        static const std::size_t kMore[] = {1, 2, 3, 3};
        const auto repetition = static_cast<std::size_t>(particle.repetition);
        std::string out;
        for (auto n = kLeast[repetition] + choose(kMore[repetition]); n > 0; --n) {
            out += sampleOnce(particle, level);
        }
        return out;
    }

    // NOLINTNEXTLINE(misc-no-recursion): as deep as the trees and models, which are small
    std::string sampleOnce(const support::Particle& particle, int level) {
        if (particle.kind == support::Particle::Kind::Name) return element(particle.name, level);
        if (particle.kind == support::Particle::Kind::Choice) {
            if (particle.charData && oneIn(2)) return "# ";
            return sample(particle.members[choose(particle.members.size())], level);
        }
        std::string out;
        for (const support::Particle& member : particle.members) out += sample(member, level);
        return out;
    }

    std::string misfit() {
        if (mMisfits == 0 || !oneIn(6)) return "";
        --mMisfits;
        return oneIn(3) ? std::string("# ") : (oneIn(6) ? kUndeclared : name()) + "() ";
    }

    std::mt19937 mRandom;
    Groups mGroups;
    int mMisfits = 0;
};

void declare(Xml::Dtd& dtd, const Play& play) {
    support::declare(dtd, play.models);
    support::declareMarks(dtd, {play.withList.begin(), play.withList.end()});
}

// What each node of a tree is bound to, while validation need not know of marks.
class Bindings {
public:
    Bindings(Xml::Element& top, Xml::Dtd& dtd) : mNodes(support::nodesOf(top)), mDtd(dtd) {
        support::declare(mOther, {});
        std::vector<std::string> names = kNames;
        names.emplace_back(kUndeclared);
        support::declareMarks(mOther, names, "other");
    }

    // Leaves the tree unbound or binds it, to the DTD or to another one, and then touches some of
    // it.
    void prepare(Play& play) {
        const std::size_t kind = play.choose(4);
        const Xml::Dtd* const dtds[] = {nullptr, &mDtd, &mOther, &mDtd};
        const char* const texts[] = {"-", "bound", "other", "bound"};
        mNodes.front()->setDtd(dtds[kind]);
        mExpected.assign(mNodes.size(), texts[kind]);
        for (std::size_t touches = play.choose(3); touches > 0; --touches) {
            touch(mNodes[play.choose(mNodes.size())]);
        }
    }

    std::string expected(const std::set<const Xml::Object*>& bound) const {
        std::string out;
        for (std::size_t i = 0; i < mNodes.size(); ++i) {
            out += ' ' + (hidesMark(*mNodes[i])        ? "*"
                          : bound.count(mNodes[i]) > 0 ? "bound"
                                                       : mExpected[i]);
        }
        return out;
    }

    // Marks the elements that have no list, which is too late for the validation that was.
    std::string found(const std::set<std::string>& withList) {
        for (const auto& names : {kNames, std::vector<std::string>{kUndeclared}}) {
            for (const std::string& name : names) {
                if (withList.count(name) == 0) support::declareMarks(mDtd, {name});
            }
        }
        std::string out;
        for (const Xml::Object* node : mNodes) {
            out += ' ' + (hidesMark(*node) ? "*" : support::bindingOf(*node));
        }
        return out;
    }

private:
    // An attribute shows instead of the default by which an element is marked.
    static bool hidesMark(const Xml::Object& node) {
        return node.isElement() && node.toElement()->getAttribute("dtd") != nullptr;
    }

    void touch(Xml::Object* touched) {
        touched->touch();
        for (Xml::Object* node = touched; node != nullptr; node = node->getParent()) {
            for (std::size_t i = 0; i < mNodes.size(); ++i) {
                if (mNodes[i] == node) mExpected[i] = "-";
            }
        }
    }

    std::vector<Xml::Object*> mNodes;
    std::vector<std::string> mExpected;
    Xml::Dtd& mDtd;
    Xml::Dtd mOther{"other"};
};

// Elements with a list may have the attribute "dtd", the others may have none.
void addAttributes(Play& play, Xml::Element& top) {
    if (!play.oneIn(8)) return;
    for (Xml::Object* node : support::nodesOf(top)) {
        if (!node->isElement() || !play.oneIn(4)) continue;
        const bool isDeclared = play.withList.count(node->toElement()->getName()) > 0;
        if (!isDeclared && !play.oneIn(6)) continue;
        node->toElement()->setAttribute(isDeclared && !play.oneIn(8) ? "dtd" : "other", "v");
    }
}

TEST(RandomValidation, AgreesWithTheReferenceInVerdictsAndBindings) {
    int valid = 0;
    int invalid = 0;
    for (unsigned seed = 0; seed < 2500; ++seed) {
        Play play(seed, Groups::Repeat);
        support::ReferenceValidator reference(play.models, play.withList);
        const std::string text = play.tree();
        // The reference takes long for large trees.
        if (text.size() > 250) continue;
        const auto top = support::tree(text);
        addAttributes(play, *top);
        Xml::Dtd dtd("doc");
        declare(dtd, play);
        SCOPED_TRACE(std::to_string(seed) + ": " + text);
        bool expected = false;
        try {
            expected = reference.validate(*top);
        } catch (const support::NeverEnds&) {
            continue;
        }
        Bindings bindings(*top, dtd);
        bindings.prepare(play);
        ASSERT_EQ(dtd.validate(top.get()), expected);
        ASSERT_EQ(bindings.found(play.withList), bindings.expected(reference.bound));
        ++(expected ? valid : invalid);
    }
    EXPECT_GT(valid, 600);
    EXPECT_GT(invalid, 300);
}

// What is noted of each call of something that belongs to a caller.
using Calls = std::vector<std::string>;

template <class Node>
class Noting : public Node {
public:
    template <class... Arguments>
    explicit Noting(Calls& calls, const Arguments&... arguments)
        : Node(arguments...), mCalls(calls) {}
    void setDtd(const Xml::Dtd* dtd) override {
        mCalls.push_back(this->toString() + (dtd != nullptr ? " bound" : " unbound"));
        Node::setDtd(dtd);
    }

private:
    Calls& mCalls;
};

class NotingModel : public Xml::AnySpec {
public:
    NotingModel(Xml::Dtd* dtd, Calls& calls, bool verdict)
        : AnySpec(dtd), mCalls(calls), mVerdict(verdict) {}
    bool validate(std::vector<Xml::Object*>* children) const override {
        mCalls.push_back(std::to_string(children->size()) + " children");
        return mVerdict;
    }

private:
    Calls& mCalls;
    bool mVerdict;
};

class NotingParticle : public Xml::NameSpec {
public:
    NotingParticle(Xml::Dtd* dtd, Calls& calls, const std::string& name)
        : NameSpec(dtd, name), mCalls(calls) {}
    bool validate(std::queue<Xml::Object*>* pending) const override {
        mCalls.push_back(std::to_string(pending->size()) + " pending");
        return NameSpec::validate(pending);
    }

private:
    Calls& mCalls;
};

// The calls of what callers derived, while a tree is validated whose root is of the class given.
template <class Root>
Calls callsBelow(unsigned seed) {
    Calls calls;
    Play play(seed, Groups::AreTakenOnce);
    Xml::Dtd dtd("doc");
    const std::string& theirs = play.name();
    const std::size_t kind = play.choose(4);
    if (kind == 1) {
        play.models.erase(theirs);
        dtd.addElementDecl(theirs, new NotingModel(&dtd, calls, !play.oneIn(3)));
    } else if (kind == 2) {
        play.models.erase(theirs);
        dtd.addElementDecl(theirs, new NotingParticle(&dtd, calls, play.name()),
                           play.oneIn(2) ? Xml::RepZeroOrMore : Xml::RepOptional);
    }
    declare(dtd, play);
    play.models.emplace(theirs, "ANY");
    const auto content = support::tree(play.tree());
    Root root(content->getName());
    while (content->getChildCount() > 0) root.addChild(content->extractChild(0));
    for (Xml::Object* node : support::nodesOf(root)) {
        if (kind == 1 || kind == 2 || !node->isElement() || !play.oneIn(6)) continue;
        auto& element = static_cast<Xml::Element&>(*node);
        if (play.oneIn(2)) element.addChild(new Noting<Xml::CharData>(calls));
        if (play.oneIn(2)) element.addChild(new Noting<Xml::Element>(calls, play.name()));
    }
    calls.clear();
    calls.push_back(dtd.validate(&root) ? "valid" : "invalid");
    return calls;
}

// An element of a class that a caller derived tells nothing in advance of what is below it.
class OwnRoot : public Xml::Element {
public:
    using Element::Element;
};

TEST(RandomValidation, CallsWhatCallersDerivedAsOftenBelowAnyRoot) {
    std::size_t called = 0;
    for (unsigned seed = 0; seed < 4000; ++seed) {
        const Calls calls = callsBelow<Xml::Element>(seed);
        ASSERT_EQ(calls, callsBelow<OwnRoot>(seed)) << seed;
        if (calls.size() > 1) ++called;
    }
    EXPECT_GT(called, 300U);
}

}  // namespace
