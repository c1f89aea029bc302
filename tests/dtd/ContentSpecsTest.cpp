#include <gtest/gtest.h>

#include <climits>
#include <cstddef>
#include <memory>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "VexXml/Streams.h"
#include "dtd/Models.h"
#include "support/Diagnostics.h"

namespace {

using support::build;
using support::textOf;

class ContentSpecs : public testing::Test {
protected:
    std::vector<std::string> reports() { return mDiagnostics.take(); }
    std::string textOfModel(const std::string& text) {
        return textOf(*std::unique_ptr<Xml::ChildrenSpec>(build(&mDtd, text)));
    }

    Xml::Dtd mDtd{"d"};

private:
    support::Diagnostics mDiagnostics;
};

using Reports = std::vector<std::string>;

TEST_F(ContentSpecs, FixedModelsAreKeywords) {
    EXPECT_EQ(textOf(Xml::AnySpec(&mDtd)), "ANY");
    EXPECT_EQ(textOf(Xml::EmptySpec(&mDtd)), "EMPTY");
    EXPECT_EQ(textOf(Xml::CharSpec(&mDtd)), "(#PCDATA)");
}

TEST_F(ContentSpecs, RepetitionsHaveFixedValues) {
    EXPECT_EQ(static_cast<int>(Xml::RepOnce), 0);
    EXPECT_EQ(static_cast<int>(Xml::RepOptional), 1);
    EXPECT_EQ(static_cast<int>(Xml::RepZeroOrMore), 2);
    EXPECT_EQ(static_cast<int>(Xml::RepOneOrMore), 3);
    EXPECT_EQ(sizeof(Xml::RepType), 4U);
}

TEST_F(ContentSpecs, AnUnknownRepetitionIsNone) {
    mDtd.addElementDecl("a", new Xml::AnySpec(&mDtd));
    for (const int rep : {INT_MIN, -1, 4, INT_MAX}) {
        SCOPED_TRACE(rep);
        const auto unknown = static_cast<Xml::RepType>(rep);
        auto* list = new Xml::SeqSpec(&mDtd);
        list->add("a", unknown);
        list->add(new Xml::NameSpec(&mDtd, "a"), unknown);
        const Xml::ChildrenSpec model(&mDtd, list, unknown);
        EXPECT_EQ(textOf(model), "(a, a)");
        for (const std::size_t count : {1U, 2U, 3U}) {
            Xml::Element parent("parent");
            std::vector<Xml::Object*> children(count);
            for (Xml::Object*& child : children) child = parent.addElement("a", "");
            EXPECT_EQ(model.validate(&children), count == 2) << count;
        }
    }
}

TEST_F(ContentSpecs, MixedContentWithoutNamesIsTextOnly) {
    EXPECT_EQ(textOf(Xml::MixedSpec(&mDtd)), "(#PCDATA)");
}

TEST_F(ContentSpecs, MixedContentListsItsNamesInTheOrderAdded) {
    Xml::MixedSpec model(&mDtd);
    model.addName("b");
    model.addName("a");
    EXPECT_EQ(textOf(model), "(#PCDATA | b | a)*");
    EXPECT_EQ(reports(), Reports());
}

TEST_F(ContentSpecs, MixedContentReportsEachDuplicateAndKeepsTheFirst) {
    Xml::MixedSpec model(&mDtd);
    for (const char* name : {"a", "b", "a", "A", "b", "a"}) model.addName(name);
    EXPECT_EQ(textOf(model), "(#PCDATA | a | b | A)*");
    EXPECT_EQ(reports(), Reports({"<MixedSpec::MixedSpec> name already added a",
                                  "<MixedSpec::MixedSpec> name already added b",
                                  "<MixedSpec::MixedSpec> name already added a"}));
}

// Each model, and its text as an element declaration shows it.
const std::pair<const char*, const char*> kModelTexts[] = {
    {"(a)", "(a)"},
    {"(a)?", "(a)?"},
    {"(a)*", "(a)*"},
    {"(a)+", "(a)+"},
    {"(a*)", "(a*)"},
    {"(a*)+", "(a*)+"},
    {"(a, b)", "(a, b)"},
    {"(a, b?, c*, d+)", "(a, b?, c*, d+)"},
    {"(a | b)", "(a | b)"},
    {"(a | b)*", "(a | b)*"},
    {"(a? | b* | c+)?", "(a? | b* | c+)?"},
    {"(a | b | #PCDATA)", "(a | b | #PCDATA)"},
    {"(a | b | #PCDATA)*", "(a | b | #PCDATA)*"},
    {"(x, (a | b)+)", "(x, (a | b)+)"},
    {"(a, (b, c)?, (d | e)+)*", "(a, (b, c)?, (d | e)+)*"},
    {"((a, b) | (c | d)*)", "((a, b) | (c | d)*)"},
    // A group of one item inside a list loses its parentheses: deliberate.
    {"(x, (a*)?)", "(x, a*?)"},
};

TEST_F(ContentSpecs, ModelsAreWrittenAsTheyAreDeclared) {
    for (const auto& [model, text] : kModelTexts) {
        SCOPED_TRACE(model);
        EXPECT_EQ(textOfModel(model), text);
    }
    EXPECT_EQ(reports(), Reports());
}

TEST_F(ContentSpecs, ParticlesOfOneNameHaveParenthesesOnRequest) {
    const Xml::NameSpec name(&mDtd, "a");
    EXPECT_EQ(textOf(name, false), "a");
    EXPECT_EQ(textOf(name, true), "(a)");
}

TEST_F(ContentSpecs, SequencesHaveParenthesesWhereNeededOrOnRequest) {
    Xml::SeqSpec sequence(&mDtd);
    sequence.add("a", Xml::RepZeroOrMore);
    EXPECT_EQ(textOf(sequence, false), "a*");
    EXPECT_EQ(textOf(sequence, true), "(a*)");
    sequence.add("b", Xml::RepOnce);
    EXPECT_EQ(textOf(sequence, false), "(a*, b)");
    EXPECT_EQ(textOf(sequence, true), "(a*, b)");
}

TEST_F(ContentSpecs, ChoicesAlwaysHaveParentheses) {
    Xml::ChoiceSpec choice(&mDtd);
    choice.addChoice("a", Xml::RepOnce);
    choice.addChoice("b", Xml::RepOneOrMore);
    EXPECT_EQ(textOf(choice, false), "(a | b+)");
    EXPECT_EQ(textOf(choice, true), "(a | b+)");
}

TEST_F(ContentSpecs, ASequenceWithoutItemsIsReportedAndNotWritten) {
    const Xml::SeqSpec sequence(&mDtd);
    EXPECT_EQ(textOf(sequence, true), "");
    EXPECT_EQ(textOf(sequence, false), "");
    EXPECT_EQ(reports(), Reports(2, "<SeqSpec::toStream> need at least 1 element"));
}

TEST_F(ContentSpecs, AChoiceOfLessThanTwoIsReportedAndNotWritten) {
    Xml::ChoiceSpec choice(&mDtd);
    EXPECT_EQ(textOf(choice, true), "");
    choice.addChoice("a", Xml::RepOnce);
    choice.addCharDataAsChoice(true);
    EXPECT_EQ(textOf(choice, true), "");
    EXPECT_EQ(reports(), Reports(2, "<ChoiceSpec::toStream> need at least 2 items"));
}

TEST_F(ContentSpecs, WhatCannotBeWrittenLeavesTheRestOfItsList) {
    EXPECT_EQ(textOfModel("(a, ()*, (|b)?, c)+"), "(a, *, ?, c)+");
    EXPECT_EQ(reports(), Reports({"<SeqSpec::toStream> need at least 1 element",
                                  "<ChoiceSpec::toStream> need at least 2 items"}));
}

TEST_F(ContentSpecs, CharacterDataAsAChoiceCanBeTakenBack) {
    Xml::ChoiceSpec choice(&mDtd);
    choice.addChoice("a", Xml::RepOnce);
    choice.addChoice("b", Xml::RepOnce);
    choice.addCharDataAsChoice(true);
    choice.addCharDataAsChoice(false);
    EXPECT_EQ(textOf(choice, true), "(a | b)");
}

TEST_F(ContentSpecs, EveryWayToAddAnItemTakesTheSameItem) {
    Xml::SeqSpec sequence(&mDtd);
    sequence.add("a", Xml::RepOptional);
    sequence.add(new Xml::NameSpec(&mDtd, "a"), Xml::RepOptional);
    sequence.add(new Xml::ChildrenSpec(&mDtd, "a", Xml::RepOptional));
    EXPECT_EQ(textOf(sequence, true), "(a?, a?, a?)");

    Xml::ChoiceSpec choice(&mDtd);
    choice.addChoice("a", Xml::RepOptional);
    choice.addChoice(new Xml::NameSpec(&mDtd, "a"), Xml::RepOptional);
    choice.addChoice(new Xml::ChildrenSpec(&mDtd, "a", Xml::RepOptional));
    EXPECT_EQ(textOf(choice, true), "(a? | a? | a?)");
}

TEST_F(ContentSpecs, ANameThatIsNoneIsDroppedWithoutAReport) {
    for (const char* name : {"1a", "", "a b", "-", "a<"}) {
        SCOPED_TRACE(name);
        const Xml::NameSpec particle(&mDtd, name);
        EXPECT_EQ(textOf(particle, false), "");
        EXPECT_EQ(textOf(particle, true), "");
        EXPECT_EQ(textOf(Xml::ChildrenSpec(&mDtd, name, Xml::RepOneOrMore)), "+");
    }
    EXPECT_EQ(reports(), Reports());
}

TEST_F(ContentSpecs, TheParenthesesOfAWholeModelAreOnRequest) {
    const Xml::ChildrenSpec name(&mDtd, "a", Xml::RepOneOrMore);
    EXPECT_EQ(textOf(name), "(a)+");
    std::ostringstream text;
    Xml::FileOutStream out(&text);
    name.toStream(out, false);
    EXPECT_EQ(text.str(), "a+");
}

}  // namespace
