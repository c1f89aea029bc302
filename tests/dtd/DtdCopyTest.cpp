#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>

#include "VexXml/Dtd.h"
#include "dtd/Counted.h"
#include "dtd/Models.h"
#include "dtd/Trees.h"
#include "support/Diagnostics.h"
#include "support/Dump.h"

namespace {

using support::tree;
using support::written;

// A parent p of one child c or text, with something of everything else.
std::unique_ptr<Xml::Dtd> sample() {
    auto dtd = std::make_unique<Xml::Dtd>("sample");
    dtd->addElementDecl("p", support::build(dtd.get(), "(c | d | #PCDATA)"));
    dtd->addElementDecl("c", new Xml::EmptySpec(dtd.get()));
    dtd->addAttDecl("c", "x", new Xml::AttStringType(Xml::AttValue, "v"));
    dtd->setEntity("e", "w");
    return dtd;
}

const char* const kSampleText =
    "<!DOCTYPE sample [\n"
    "<!ENTITY e \"w\">\n"
    "<!ELEMENT c EMPTY>\n"
    "<!ATTLIST c\n\tx CDATA \"v\"\n>\n"
    "<!ELEMENT p (c | d | #PCDATA)>\n"
    "]>\n";
const char* const kEmptyText = "<!DOCTYPE  [\n]>\n";

bool accepts(const Xml::Dtd& dtd, const std::string& text) {
    return dtd.validate(tree(text).get());
}

class DtdCopies : public testing::Test {
private:
    support::Diagnostics mDiagnostics;
};

TEST_F(DtdCopies, ACopyHasClonesOfItsOwn) {
    std::unique_ptr<Xml::Dtd> dtd = sample();
    Xml::Dtd copy(*dtd);
    const std::unique_ptr<Xml::Object> clone(dtd->clone());
    dtd.reset();
    const std::string cloned =
        "<!DOCTYPE sample [\n"
        "<!ENTITY e \"w\">\n"
        "<!ELEMENT c EMPTY>\n"
        "<!ATTLIST c\n\tx CDATA \"v\"\n>\n"
        "<!ELEMENT p (c | d)>\n"
        "]>\n";
    EXPECT_EQ(written(copy), cloned);
    EXPECT_EQ(written(*clone), cloned);
    EXPECT_TRUE(accepts(copy, "p(c)"));
    EXPECT_TRUE(accepts(*clone->toDtd(), "p(c)"));
}

TEST_F(DtdCopies, AChangedCopyLeavesTheOriginal) {
    const std::unique_ptr<Xml::Dtd> dtd = sample();
    Xml::Dtd copy(*dtd);
    copy.addElementDecl("d");
    copy.setEntity("e", "changed");
    EXPECT_EQ(written(*dtd), kSampleText);
    EXPECT_FALSE(accepts(*dtd, "p(d)"));
    EXPECT_TRUE(accepts(copy, "p(d)"));
}

TEST_F(DtdCopies, AnAssignedDtdSharesTheModelsAsTheyAre) {
    const std::unique_ptr<Xml::Dtd> dtd = sample();
    Xml::Dtd assigned("other");
    assigned.addElementDecl("gone");
    assigned = *dtd;
    EXPECT_EQ(written(assigned), kSampleText);
    EXPECT_EQ(written(*dtd), kSampleText);
    EXPECT_TRUE(accepts(assigned, "p(c)"));
}

TEST_F(DtdCopies, SharedModelsAskTheSourceForChildElements) {
    const std::unique_ptr<Xml::Dtd> dtd = sample();
    Xml::Dtd assigned("other");
    assigned = *dtd;
    assigned.addElementDecl("d");
    EXPECT_FALSE(accepts(assigned, "p(d)"));
    dtd->addElementDecl("d");
    EXPECT_TRUE(accepts(assigned, "p(d)"));
}

TEST_F(DtdCopies, SharedModelsMatchNoElementOnceTheSourceIsGone) {
    std::unique_ptr<Xml::Dtd> dtd = sample();
    dtd->addElementDecl("m", [&] {
        auto mixed = std::make_unique<Xml::MixedSpec>(dtd.get());
        mixed->addName("c");
        return mixed.release();
    }());
    Xml::Dtd assigned("other");
    assigned = *dtd;
    EXPECT_TRUE(accepts(assigned, "m(# c)"));
    dtd.reset();
    EXPECT_FALSE(accepts(assigned, "p(c)"));
    EXPECT_FALSE(accepts(assigned, "m(# c)"));
    EXPECT_TRUE(accepts(assigned, "p(#)"));
    EXPECT_TRUE(accepts(assigned, "m(#)"));
    EXPECT_TRUE(accepts(assigned, "c"));
}

TEST_F(DtdCopies, SharedModelsDieWithTheLastThatHoldsThem) {
    int living = 0;
    {
        Xml::Dtd assigned("other");
        {
            Xml::Dtd dtd("source");
            dtd.addElementDecl("a", new support::CountedModel(living));
            dtd.addAttDecl("a", "x", new support::CountedDefinition(living, "v"));
            assigned = dtd;
            EXPECT_EQ(living, 2);
        }
        EXPECT_EQ(living, 2);
        EXPECT_EQ(std::string(assigned.getDefaultValue("a", "x")), "v");
    }
    EXPECT_EQ(living, 0);
}

TEST_F(DtdCopies, ASharedModelThatTheSourceReplacedDoesNotOutliveItsLink) {
    auto dtd = sample();
    Xml::Dtd assigned("other");
    assigned = *dtd;
    const Xml::Dtd replacing(*dtd);
    dtd->merge(replacing, true);
    EXPECT_TRUE(accepts(assigned, "p(c)"));
    dtd.reset();
    EXPECT_FALSE(accepts(assigned, "p(c)"));
}

TEST_F(DtdCopies, AssigningADtdToItselfChangesNothing) {
    const std::unique_ptr<Xml::Dtd> dtd = sample();
    const auto assign = [](Xml::Dtd& target, const Xml::Dtd& source) { target = source; };
    const auto move = [](Xml::Dtd& target, Xml::Dtd& source) { target = std::move(source); };
    assign(*dtd, *dtd);
    move(*dtd, *dtd);
    EXPECT_EQ(written(*dtd), kSampleText);
    EXPECT_TRUE(accepts(*dtd, "p(c)"));
}

TEST_F(DtdCopies, AMoveTakesTheModelsAlongAsTheyAre) {
    std::unique_ptr<Xml::Dtd> dtd = sample();
    Xml::Dtd moved(std::move(*dtd));
    EXPECT_EQ(written(*dtd), kEmptyText);
    dtd.reset();
    EXPECT_EQ(written(moved), kSampleText);
    EXPECT_TRUE(accepts(moved, "p(c)"));
    moved.addElementDecl("d");
    EXPECT_TRUE(accepts(moved, "p(d)"));
}

TEST_F(DtdCopies, AMoveAssignmentTakesTheModelsAlongAsTheyAre) {
    std::unique_ptr<Xml::Dtd> dtd = sample();
    Xml::Dtd assigned("other");
    assigned.addElementDecl("gone");
    assigned = std::move(*dtd);
    EXPECT_EQ(written(*dtd), kEmptyText);
    dtd.reset();
    EXPECT_EQ(written(assigned), kSampleText);
    assigned.addElementDecl("d");
    EXPECT_TRUE(accepts(assigned, "p(d)"));
    EXPECT_FALSE(accepts(assigned, "gone"));
}

TEST_F(DtdCopies, MovesCanBeChained) {
    Xml::Dtd first = std::move(*sample());
    Xml::Dtd second = std::move(*sample());
    std::swap(first, second);
    for (int i = 0; i < 3; ++i) first = std::move(*sample());
    Xml::Dtd last(std::move(first));
    for (Xml::Dtd* dtd : {&second, &last}) {
        EXPECT_EQ(written(*dtd), kSampleText);
        EXPECT_TRUE(accepts(*dtd, "p(c)"));
    }
}

TEST_F(DtdCopies, AMovedFromDtdCanBeFilledAgain) {
    const std::unique_ptr<Xml::Dtd> dtd = sample();
    const Xml::Dtd moved(std::move(*dtd));
    dtd->addElementDecl("a", "b", Xml::RepOnce);
    dtd->addElementDecl("b");
    EXPECT_TRUE(accepts(*dtd, "a(b)"));
    EXPECT_FALSE(accepts(moved, "a(b)"));
    EXPECT_FALSE(accepts(*dtd, "p(c)"));
}

TEST_F(DtdCopies, ModelsOfTheAssignedToDtdStayBoundToIt) {
    auto dtd = std::make_unique<Xml::Dtd>("first");
    dtd->addElementDecl("p", "a", Xml::RepOnce);
    Xml::Dtd sharing("sharing");
    sharing = *dtd;
    EXPECT_FALSE(accepts(sharing, "p(a)"));
    Xml::Dtd other("second");
    other.addElementDecl("a");
    *dtd = std::move(other);
    EXPECT_TRUE(accepts(sharing, "p(a)"));
    auto moved = std::make_unique<Xml::Dtd>(std::move(*dtd));
    dtd.reset();
    EXPECT_TRUE(accepts(sharing, "p(a)"));
    moved.reset();
    EXPECT_FALSE(accepts(sharing, "p(a)"));
}

TEST_F(DtdCopies, AModelOutlivesItsDtd) {
    auto dtd = std::make_unique<Xml::Dtd>("doc");
    dtd->addElementDecl("a");
    const std::unique_ptr<Xml::ChildrenSpec> model(support::build(dtd.get(), "(a | (a, a)*)"));
    dtd.reset();
    const auto parent = tree("p(a)");
    auto children = support::childrenOf(*parent);
    EXPECT_FALSE(model->validate(&children));
    EXPECT_EQ(support::textOf(Xml::ChildrenSpec(*model)), "(a | (a, a)*)");
}

TEST_F(DtdCopies, CopyAssignmentTakesTheParentToo) {
    Xml::Element parent("parent");
    Xml::Dtd dtd("doc");
    dtd.setParent(&parent);
    EXPECT_EQ(Xml::Dtd(dtd).getParent(), nullptr);
    Xml::Dtd assigned("other");
    assigned = dtd;
    EXPECT_EQ(assigned.getParent(), &parent);
}

}  // namespace
