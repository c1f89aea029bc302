#include "VexXml/Dtd.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "VexXml/Streams.h"
#include "dtd/Counted.h"
#include "dtd/Models.h"
#include "dtd/Trees.h"
#include "support/Diagnostics.h"
#include "support/Dump.h"

namespace {

using support::written;
using Reports = std::vector<std::string>;

class Dtd : public testing::Test {
protected:
    std::vector<std::string> reports() { return mDiagnostics.take(); }

    Xml::Dtd mDtd{"doc"};

private:
    support::Diagnostics mDiagnostics;
};

TEST_F(Dtd, IsADtdAndNothingElse) {
    EXPECT_TRUE(mDtd.isDtd());
    EXPECT_FALSE(mDtd.isElement() || mDtd.isAttribute() || mDtd.isCharData() || mDtd.isDocument());
    EXPECT_EQ(mDtd.toDtd(), &mDtd);
}

TEST_F(Dtd, HasAFixedShortText) {
    EXPECT_EQ(mDtd.toString(), "<Document Type Description>");
    EXPECT_EQ(&mDtd.toString(), &Xml::Dtd("other").toString());
}

TEST_F(Dtd, KeepsItsNameAsItIs) {
    EXPECT_EQ(std::string(mDtd.getName()), "doc");
    EXPECT_EQ(std::string(Xml::Dtd("1 no name").getName()), "1 no name");
    EXPECT_EQ(reports(), Reports());
}

TEST_F(Dtd, DeclaresElementsInEveryForm) {
    EXPECT_TRUE(mDtd.addElementDecl("text"));
    EXPECT_TRUE(mDtd.addElementDecl("any", new Xml::AnySpec(&mDtd)));
    EXPECT_TRUE(mDtd.addElementDecl("group", support::buildCp(&mDtd, support::particle("(a, b)")),
                                    Xml::RepOneOrMore));
    EXPECT_TRUE(mDtd.addElementDecl("name", "child", Xml::RepOptional));
    EXPECT_EQ(written(mDtd),
              "<!DOCTYPE doc [\n"
              "<!ELEMENT any ANY>\n"
              "<!ELEMENT group (a, b)+>\n"
              "<!ELEMENT name (child)?>\n"
              "<!ELEMENT text (#PCDATA)>\n"
              "]>\n");
    EXPECT_EQ(reports(), Reports());
}

TEST_F(Dtd, ModelsItBuildsBelongToIt) {
    mDtd.addElementDecl("leaf");
    mDtd.addElementDecl("name", "leaf", Xml::RepOnce);
    mDtd.addElementDecl("group", new Xml::NameSpec(&mDtd, "leaf"), Xml::RepOnce);
    for (const char* text : {"leaf(#)", "name(leaf)", "group(leaf)"}) {
        EXPECT_TRUE(mDtd.validate(support::tree(text).get())) << text;
    }
}

TEST_F(Dtd, ReportsADuplicateElementAndKeepsTheFirst) {
    mDtd.addElementDecl("a", new Xml::EmptySpec(&mDtd));
    const auto refused = std::make_unique<Xml::AnySpec>(&mDtd);
    EXPECT_FALSE(mDtd.addElementDecl("a"));
    EXPECT_FALSE(mDtd.addElementDecl("a", refused.get()));
    EXPECT_FALSE(mDtd.addElementDecl("a", new Xml::NameSpec(&mDtd, "b"), Xml::RepOnce));
    EXPECT_FALSE(mDtd.addElementDecl("a", "b", Xml::RepOnce));
    EXPECT_EQ(reports(), Reports(4, "<Dtd::addElementDecl> already added a"));
    EXPECT_EQ(written(mDtd), "<!DOCTYPE doc [\n<!ELEMENT a EMPTY>\n]>\n");
}

TEST_F(Dtd, OwnsWhatItTakes) {
    int living = 0;
    {
        Xml::Dtd dtd("doc");
        dtd.addElementDecl("a", new support::CountedModel(living));
        dtd.addElementDecl("b", new support::CountedParticle(living), Xml::RepOnce);
        dtd.addAttDecl("a", "x", new support::CountedDefinition(living, "v"));
        EXPECT_EQ(living, 3);
    }
    EXPECT_EQ(living, 0);
}

TEST_F(Dtd, LeavesARefusedModelToTheCaller) {
    int living = 0;
    mDtd.addElementDecl("a");
    {
        const auto refused = std::make_unique<support::CountedModel>(living);
        mDtd.addElementDecl("a", refused.get());
        EXPECT_EQ(living, 1);
    }
    EXPECT_EQ(living, 0);
}

TEST_F(Dtd, DeletesARefusedParticle) {
    int living = 0;
    mDtd.addElementDecl("a");
    mDtd.addElementDecl("a", new support::CountedParticle(living), Xml::RepOnce);
    EXPECT_EQ(living, 0);
}

TEST_F(Dtd, ReportsADuplicateAttributeAndKeepsTheFirst) {
    EXPECT_TRUE(mDtd.addAttDecl("a", "x", Xml::AttRequired));
    EXPECT_FALSE(mDtd.addAttDecl("a", "x", Xml::AttRequired));
    const auto refused = std::make_unique<Xml::AttStringType>(Xml::AttValue, "v");
    EXPECT_FALSE(mDtd.addAttDecl("a", "x", refused.get()));
    EXPECT_EQ(reports(), Reports(2, "<Dtd::addAttlistDecl> alraedy added a x"));
    EXPECT_FALSE(mDtd.hasDefaultValue("a", "x"));
    EXPECT_TRUE(mDtd.addAttDecl("b", "x", Xml::AttImplied));
    EXPECT_TRUE(mDtd.addAttDecl("a", "X", Xml::AttImplied));
}

TEST_F(Dtd, LeavesARefusedDefinitionToTheCaller) {
    int living = 0;
    mDtd.addAttDecl("a", "x", Xml::AttImplied);
    {
        const auto refused = std::make_unique<support::CountedDefinition>(living, "v");
        mDtd.addAttDecl("a", "x", refused.get());
        EXPECT_EQ(living, 1);
    }
    EXPECT_EQ(living, 0);
}

TEST_F(Dtd, KnowsTheDefaultsOfAttributes) {
    mDtd.addAttDecl("a", "value", new Xml::AttStringType(Xml::AttValue, "v"));
    mDtd.addAttDecl("a", "fixed", new Xml::AttStringType(Xml::AttFixed, "f"));
    mDtd.addAttDecl("a", "empty", new Xml::AttStringType(Xml::AttFixed, ""));
    mDtd.addAttDecl("a", "required", Xml::AttRequired);
    mDtd.addAttDecl("a", "implied", Xml::AttImplied);
    struct Row {
        const char* element;
        const char* attribute;
        const char* value;
        bool hasDefault;
    };
    for (const Row& row : std::vector<Row>{{"a", "value", "v", true},
                                           {"a", "fixed", "f", true},
                                           {"a", "empty", "", true},
                                           {"a", "required", "", false},
                                           {"a", "implied", "", false},
                                           {"a", "unknown", "", false},
                                           {"b", "value", "", false}}) {
        SCOPED_TRACE(std::string(row.element) + ' ' + row.attribute);
        EXPECT_EQ(std::string(mDtd.getDefaultValue(row.element, row.attribute)), row.value);
        EXPECT_EQ(mDtd.hasDefaultValue(row.element, row.attribute), row.hasDefault);
    }
    EXPECT_EQ(reports(), Reports());
}

TEST_F(Dtd, AnAttributeDeclaredByItsTypeAloneHasNoValue) {
    mDtd.addAttDecl("a", "x", Xml::AttValue);
    EXPECT_TRUE(mDtd.hasDefaultValue("a", "x"));
    EXPECT_EQ(std::string(mDtd.getDefaultValue("a", "x")), "");
}

// A DTD shows that it was touched by writing itself once more where it would be passed over.
class TouchedDtd : public Dtd {
protected:
    // Writes twice to the same place, with `change` between.
    bool isWrittenAgainAfter(const std::function<void()>& change) {
        std::stringstream text;
        Xml::FileOutStream out(&text);
        out.setPosition(0);
        mDtd.toStream(out);
        change();
        text.str(std::string(text.str().size(), '-'));
        out.setPosition(0);
        Xml::Object::setRWOptimization(true);
        mDtd.toStream(out);
        Xml::Object::setRWOptimization(false);
        return text.str()[0] != '-';
    }
};

TEST_F(TouchedDtd, ByDeclarationsThatAreStored) {
    EXPECT_TRUE(isWrittenAgainAfter([this] { mDtd.addElementDecl("a"); }));
    EXPECT_TRUE(isWrittenAgainAfter([this] { mDtd.addAttDecl("a", "x", Xml::AttImplied); }));
}

TEST_F(TouchedDtd, NotByDeclarationsThatAreRefused) {
    mDtd.addElementDecl("a");
    mDtd.addAttDecl("a", "x", Xml::AttImplied);
    EXPECT_FALSE(isWrittenAgainAfter([this] { mDtd.addElementDecl("a"); }));
    EXPECT_FALSE(isWrittenAgainAfter([this] { mDtd.addAttDecl("a", "x", Xml::AttImplied); }));
}

TEST_F(TouchedDtd, NotByEntitiesOrMerging) {
    Xml::Dtd other("other");
    other.addElementDecl("b");
    EXPECT_FALSE(isWrittenAgainAfter([this] { mDtd.setEntity("e", "v"); }));
    EXPECT_FALSE(isWrittenAgainAfter([&] { mDtd.merge(other, true); }));
}

TEST_F(TouchedDtd, ByBeingMovedFrom) {
    EXPECT_TRUE(isWrittenAgainAfter([this] { const Xml::Dtd moved(std::move(mDtd)); }));
}

TEST_F(Dtd, RefusesDeclarationsWithoutAModel) {
    EXPECT_FALSE(mDtd.addElementDecl("a", static_cast<Xml::ContentSpec*>(nullptr)));
    EXPECT_FALSE(mDtd.addAttDecl("a", "x", static_cast<Xml::AttDef*>(nullptr)));
    EXPECT_EQ(written(mDtd), "<!DOCTYPE doc [\n]>\n");
    EXPECT_TRUE(mDtd.addElementDecl("a"));
}

TEST_F(Dtd, RefersToTheOneEmptyTextWhereThereIsNoDefault) {
    const Xml::Element element("e");
    EXPECT_EQ(&mDtd.getDefaultValue("e", "x"), &element.getAttributeValue("x"));
}

}  // namespace
