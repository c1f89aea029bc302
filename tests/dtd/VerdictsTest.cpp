#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "VexXml/Dtd.h"
#include "dtd/Models.h"
#include "dtd/ReferenceValidator.h"
#include "dtd/Trees.h"

namespace {

// Allows everything, and counts how often it is asked.
class AskedModel : public Xml::AnySpec {
public:
    AskedModel(int& asked, bool verdict) : AnySpec(nullptr), mAsked(asked), mVerdict(verdict) {}
    bool validate(std::vector<Xml::Object*>* /*children*/) const override {
        ++mAsked;
        return mVerdict;
    }

private:
    int& mAsked;
    bool mVerdict;
};

// How often the model of c is asked in each of two runs, for a child c of an element with `model`.
std::vector<int> timesAsked(const std::string& model, const std::string& text, bool verdict) {
    int asked = 0;
    Xml::Dtd dtd("doc");
    support::declare(dtd, {{"p", model}, {"b", "EMPTY"}});
    dtd.addElementDecl("c", new AskedModel(asked, verdict));
    const auto parent = support::tree(text);
    dtd.validate(parent.get());
    const int first = asked;
    dtd.validate(parent.get());
    return {first, asked - first};
}

TEST(Verdicts, AreReachedOnceInARunAndAgainInTheNext) {
    const char* const kAskingOften = "((c, b, b) | (c, b) | (c)+ | c)?";
    EXPECT_EQ(timesAsked(kAskingOften, "p(c)", true), std::vector<int>({1, 1}));
    EXPECT_EQ(timesAsked(kAskingOften, "p(c)", false), std::vector<int>({1, 1}));
    EXPECT_EQ(timesAsked(kAskingOften, "p(c b)", true), std::vector<int>({1, 1}));
}

TEST(Verdicts, AreReachedForEachChild) {
    EXPECT_EQ(timesAsked("((c, b)* , (c, c)?)", "p(c b c b c c)", true), std::vector<int>({4, 4}));
}

TEST(Verdicts, OnOneDtdAreNotThoseOnAnother) {
    Xml::Dtd textual("textual");
    support::declare(textual, {{"a", "(#PCDATA)"}});
    support::declareMarks(textual, {"a"}, "textual");
    Xml::Dtd dtd("doc");
    support::declare(dtd, {{"a", "EMPTY"}});
    auto* choice = new Xml::ChoiceSpec(&dtd);
    choice->addChoice(support::build(&dtd, "(a)"));
    choice->addChoice(support::build(&textual, "(a, a)"));
    choice->addChoice(support::build(&dtd, "(a)"));
    choice->addChoice(support::build(&textual, "(a)"));
    dtd.addElementDecl("p", choice, Xml::RepOnce);
    const auto parent = support::tree("p(a(#))");
    EXPECT_TRUE(dtd.validate(parent.get()));
    EXPECT_EQ(support::bindings(*parent), "p=- a=textual #=textual");
}

// Each level asks twice for the next one, which would take two to the power of the depth.
TEST(Verdicts, KeepNestedChoicesCheap) {
    constexpr int kDepth = 100000;
    for (const char* model : {"((e, b) | e)?", "((e, b) | (e, c) | e | b)*", "(((e, b)?, e)?)"}) {
        SCOPED_TRACE(model);
        Xml::Dtd dtd("doc");
        support::declare(dtd, {{"e", model}, {"b", "EMPTY"}});
        std::string text;
        for (int level = 0; level < kDepth; ++level) text += "e(";
        const auto top = support::tree(text + "e");
        EXPECT_TRUE(dtd.validate(top.get()));
        const auto broken = support::tree(text + "x");
        EXPECT_FALSE(dtd.validate(broken.get()));
    }
}

}  // namespace
