#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "VexXml/Dtd.h"
#include "support/Diagnostics.h"

namespace {

using Reports = std::vector<std::string>;

class DtdEntities : public testing::Test {
protected:
    std::vector<std::string> reports() { return mDiagnostics.take(); }

    Xml::Dtd mDtd{"doc"};

private:
    support::Diagnostics mDiagnostics;
};

TEST_F(DtdEntities, AreFoundByNameAndByValue) {
    mDtd.setEntity("copy", "(c)");
    EXPECT_TRUE(mDtd.isEntityName("copy"));
    EXPECT_FALSE(mDtd.isEntityName("Copy"));
    EXPECT_TRUE(mDtd.isEntityValue("(c)"));
    EXPECT_FALSE(mDtd.isEntityValue("(C)"));
    EXPECT_EQ(std::string(mDtd.getEntityValue("copy")), "(c)");
    EXPECT_EQ(mDtd.getEntityName("(c)"), "copy");
    EXPECT_EQ(reports(), Reports());
}

TEST_F(DtdEntities, AreNoneAtFirst) {
    for (const char* name : {"lt", "gt", "amp", "quot", "apos"}) {
        EXPECT_FALSE(mDtd.isEntityName(name)) << name;
    }
}

TEST_F(DtdEntities, AreReplacedSilently) {
    mDtd.setEntity("e", "old");
    mDtd.setEntity("e", "new");
    EXPECT_EQ(std::string(mDtd.getEntityValue("e")), "new");
    EXPECT_FALSE(mDtd.isEntityValue("old"));
    EXPECT_EQ(reports(), Reports());
}

TEST_F(DtdEntities, OfTheSameValueAreNamedByTheFirstName) {
    for (const char* name : {"c", "b", "d"}) mDtd.setEntity(name, "v");
    mDtd.setEntity("a", "w");
    EXPECT_EQ(mDtd.getEntityName("v"), "b");
}

TEST_F(DtdEntities, AnUnknownNameIsReportedAndGivesItsReference) {
    EXPECT_EQ(std::string(mDtd.getEntityValue("nbsp")), "&nbsp;");
    EXPECT_EQ(reports(), Reports({"<Xml::Dtd::getEntityValue> unkown entity name: nbsp"}));
    EXPECT_FALSE(mDtd.isEntityName("nbsp"));
}

TEST_F(DtdEntities, AnUnknownValueIsReportedAndGivesItself) {
    EXPECT_EQ(mDtd.getEntityName("a & b"), "a & b");
    EXPECT_EQ(reports(), Reports({"<Xml::Dtd::getEntityValue> unkown entity value: a & b"}));
    EXPECT_FALSE(mDtd.isEntityValue("a & b"));
}

TEST_F(DtdEntities, AnswersCanBeAskedForAgain) {
    const std::string& name = mDtd.getEntityName("x");
    EXPECT_EQ(std::string(mDtd.getEntityValue(name)), "&x;");
    const Xml::DataHolder& value = mDtd.getEntityValue("y");
    EXPECT_EQ(mDtd.getEntityName(value), "&y;");
    mDtd.setEntity("e", mDtd.getEntityValue("y"));
    mDtd.setEntity("f", mDtd.getEntityValue("e"));
    EXPECT_EQ(std::string(mDtd.getEntityValue("f")), "&y;");
}

TEST_F(DtdEntities, ValuesHoldAnyByte) {
    const Xml::DataHolder value("a\0b", 3);
    mDtd.setEntity("e", value);
    EXPECT_TRUE(mDtd.getEntityValue("e") == value);
    EXPECT_FALSE(mDtd.isEntityValue("a"));
    EXPECT_EQ(mDtd.getEntityName(value), "e");
}

}  // namespace
