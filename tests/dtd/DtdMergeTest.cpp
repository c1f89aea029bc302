#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "VexXml/Dtd.h"
#include "dtd/Counted.h"
#include "dtd/Models.h"
#include "dtd/Trees.h"
#include "support/Diagnostics.h"
#include "support/Dump.h"

namespace {

using support::written;

// "mine" and "theirs" declare some things both and others alone.
class DtdMerge : public testing::Test {
protected:
    DtdMerge() {
        for (Xml::Dtd* dtd : {&mMine, &mTheirs}) {
            const std::string own = dtd == &mMine ? "mine" : "theirs";
            for (const std::string& name : {std::string("both"), own}) {
                dtd->addElementDecl(name, support::build(dtd, "(" + own + " | x | #PCDATA)"));
                dtd->addAttDecl(name, "both", new Xml::AttStringType(Xml::AttValue, own));
                dtd->addAttDecl(name, own, new Xml::AttStringType(Xml::AttValue, own));
                dtd->setEntity(name, own);
            }
        }
    }

    Xml::Dtd mMine{"mine"};
    Xml::Dtd mTheirs{"theirs"};

private:
    support::Diagnostics mDiagnostics;
};

TEST_F(DtdMerge, WithoutOverwritingAddsWhatIsMissing) {
    mMine.merge(mTheirs, false);
    EXPECT_EQ(written(mMine),
              "<!DOCTYPE mine [\n"
              "<!ENTITY both \"mine\">\n"
              "<!ENTITY mine \"mine\">\n"
              "<!ENTITY theirs \"theirs\">\n"
              "<!ELEMENT both (mine | x | #PCDATA)>\n"
              "<!ATTLIST both\n\tboth CDATA \"mine\"\n\tmine CDATA \"mine\"\n"
              "\ttheirs CDATA \"theirs\"\n>\n"
              "<!ELEMENT mine (mine | x | #PCDATA)>\n"
              "<!ATTLIST mine\n\tboth CDATA \"mine\"\n\tmine CDATA \"mine\"\n>\n"
              "<!ELEMENT theirs (theirs | x)>\n"
              "<!ATTLIST theirs\n\tboth CDATA \"theirs\"\n\ttheirs CDATA \"theirs\"\n>\n"
              "]>\n");
}

TEST_F(DtdMerge, WithOverwritingTakesTheirDeclarations) {
    mMine.merge(mTheirs, true);
    EXPECT_EQ(written(mMine),
              "<!DOCTYPE mine [\n"
              "<!ENTITY both \"theirs\">\n"
              "<!ENTITY mine \"mine\">\n"
              "<!ENTITY theirs \"theirs\">\n"
              "<!ELEMENT both (theirs | x)>\n"
              "<!ATTLIST both\n\tboth CDATA \"theirs\"\n\tmine CDATA \"mine\"\n"
              "\ttheirs CDATA \"theirs\"\n>\n"
              "<!ELEMENT mine (mine | x | #PCDATA)>\n"
              "<!ATTLIST mine\n\tboth CDATA \"mine\"\n\tmine CDATA \"mine\"\n>\n"
              "<!ELEMENT theirs (theirs | x)>\n"
              "<!ATTLIST theirs\n\tboth CDATA \"theirs\"\n\ttheirs CDATA \"theirs\"\n>\n"
              "]>\n");
}

TEST_F(DtdMerge, LeavesTheOtherAloneAndReportsNothing) {
    support::Diagnostics diagnostics;
    const std::string before = written(mTheirs);
    mMine.merge(mTheirs, true);
    EXPECT_EQ(written(mTheirs), before);
    EXPECT_EQ(diagnostics.take(), std::vector<std::string>());
}

TEST_F(DtdMerge, BindsTheClonesToTheReceiver) {
    Xml::Dtd receiver("receiver");
    {
        Xml::Dtd other("other");
        other.addElementDecl("a", "b", Xml::RepOnce);
        receiver.merge(other, false);
    }
    receiver.addElementDecl("b");
    EXPECT_TRUE(receiver.validate(support::tree("a(b)").get()));
}

TEST_F(DtdMerge, DeletesWhatItReplaces) {
    int mine = 0;
    int theirs = 0;
    {
        Xml::Dtd receiver("receiver");
        Xml::Dtd other("other");
        for (Xml::Dtd* dtd : {&receiver, &other}) {
            int& living = dtd == &receiver ? mine : theirs;
            dtd->addElementDecl("a", new support::CountedModel(living));
            dtd->addAttDecl("a", "x", new support::CountedDefinition(living, "v"));
        }
        receiver.merge(other, false);
        EXPECT_EQ(mine, 2);
        EXPECT_EQ(theirs, 2);
        receiver.merge(other, true);
        EXPECT_EQ(mine, 0);
        EXPECT_EQ(theirs, 4);
    }
    EXPECT_EQ(theirs, 0);
}

TEST_F(DtdMerge, WithItselfIsSafe) {
    const std::string before = written(mMine);
    mMine.merge(mMine, false);
    EXPECT_EQ(written(mMine), before);
    mMine.merge(mMine, true);
    EXPECT_EQ(written(mMine),
              "<!DOCTYPE mine [\n"
              "<!ENTITY both \"mine\">\n"
              "<!ENTITY mine \"mine\">\n"
              "<!ELEMENT both (mine | x)>\n"
              "<!ATTLIST both\n\tboth CDATA \"mine\"\n\tmine CDATA \"mine\"\n>\n"
              "<!ELEMENT mine (mine | x)>\n"
              "<!ATTLIST mine\n\tboth CDATA \"mine\"\n\tmine CDATA \"mine\"\n>\n"
              "]>\n");
}

TEST_F(DtdMerge, TakesAttributeListsOfElementsThatAreNotDeclared) {
    Xml::Dtd other("other");
    other.addAttDecl("undeclared", "x", new Xml::AttStringType(Xml::AttValue, "v"));
    mMine.merge(other, false);
    EXPECT_EQ(std::string(mMine.getDefaultValue("undeclared", "x")), "v");
}

}  // namespace
