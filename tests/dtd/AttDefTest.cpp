#include <gtest/gtest.h>

#include <climits>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "VexXml/Streams.h"
#include "dtd/Models.h"
#include "support/Diagnostics.h"

namespace {

using support::textOf;
using Reports = std::vector<std::string>;

TEST(AttDef, DefaultDeclarationsHaveFixedValues) {
    EXPECT_EQ(static_cast<int>(Xml::AttValue), 0);
    EXPECT_EQ(static_cast<int>(Xml::AttRequired), 1);
    EXPECT_EQ(static_cast<int>(Xml::AttImplied), 2);
    EXPECT_EQ(static_cast<int>(Xml::AttFixed), 3);
    EXPECT_EQ(sizeof(Xml::AttType), 4U);
}

struct Definition {
    Xml::AttType type;
    bool isRequired;
    bool hasDefault;
    const char* value;
    const char* text;
};

// The blank in front of a value, and none behind "#FIXED", are deliberate.
const Definition kDefinitions[] = {
    {Xml::AttValue, false, true, "", "CDATA \"\""},
    {Xml::AttValue, false, true, "v", "CDATA \"v\""},
    {Xml::AttValue, false, true, "a<b&\"c\">'", "CDATA \"a&lt;b&amp;&quot;c&quot;&gt;&apos;\""},
    {Xml::AttRequired, true, false, "", "CDATA #REQUIRED"},
    {Xml::AttImplied, false, false, "", "CDATA #IMPLIED"},
    {Xml::AttFixed, false, true, "", "CDATA #FIXED\"\""},
    {Xml::AttFixed, false, true, "v", "CDATA #FIXED\"v\""},
};

TEST(AttDef, AnswersAndWritesByItsDefaultDeclaration) {
    support::Diagnostics diagnostics;
    for (const Definition& row : kDefinitions) {
        SCOPED_TRACE(row.text);
        const Xml::AttStringType def(row.type, row.value);
        EXPECT_EQ(def.isRequired(), row.isRequired);
        EXPECT_EQ(def.hasDefault(), row.hasDefault);
        EXPECT_EQ(std::string(def.getDefault()), row.value);
        EXPECT_EQ(textOf(def), row.text);
    }
    EXPECT_EQ(diagnostics.take(), Reports());
}

TEST(AttDef, TakesAnUnknownDefaultDeclarationForImplied) {
    for (const int type : {INT_MIN, -1, 4, INT_MAX}) {
        const Xml::AttStringType def(static_cast<Xml::AttType>(type), "");
        EXPECT_EQ(textOf(def), "CDATA #IMPLIED") << type;
        EXPECT_FALSE(def.isRequired()) << type;
        EXPECT_FALSE(def.hasDefault()) << type;
    }
}

TEST(AttDef, ReportsAndDropsAValueThatCannotBeADefault) {
    support::Diagnostics diagnostics;
    for (const Xml::AttType type : {Xml::AttRequired, Xml::AttImplied}) {
        SCOPED_TRACE(type);
        const Xml::AttStringType def(type, "x");
        EXPECT_EQ(diagnostics.take(),
                  Reports({"<AttDef::AttDef> no default value for REQUIRED or IMPLIED"}));
        EXPECT_FALSE(def.hasDefault());
        EXPECT_EQ(std::string(def.getDefault()), "");
        EXPECT_EQ(def.isRequired(), type == Xml::AttRequired);
    }
}

TEST(AttDef, CharacterDataAllowsEveryValue) {
    const Xml::AttStringType def(Xml::AttFixed, "v");
    for (const char* value : {"", "v", "w", "<&\"\n"}) EXPECT_TRUE(def.validate(value)) << value;
}

TEST(AttDef, CopiesKeepTheDefault) {
    support::Diagnostics diagnostics;
    Xml::AttStringType def(Xml::AttFixed, "v");
    const std::unique_ptr<Xml::AttDef> clone(def.clone());
    EXPECT_EQ(textOf(*clone), "CDATA #FIXED\"v\"");
    const auto copy = std::make_unique<Xml::AttStringType>(def);
    EXPECT_EQ(textOf(*copy), "CDATA #FIXED\"v\"");
    Xml::AttStringType assigned(Xml::AttRequired, "");
    assigned = def;
    EXPECT_EQ(textOf(assigned), "CDATA #FIXED\"v\"");
    assigned = std::move(*copy);
    EXPECT_EQ(textOf(assigned), "CDATA #FIXED\"v\"");
    EXPECT_EQ(std::string(copy->getDefault()), "");
    EXPECT_EQ(diagnostics.take(), Reports());
}

TEST(AttDef, WritesTheTypeOfACallersClass) {
    class Identifier : public Xml::AttStringType {
    public:
        Identifier() : AttStringType(Xml::AttImplied, "") {}
        void typeToStream(Xml::OutStream& out) const override { out << "ID"; }
    };
    EXPECT_EQ(textOf(Identifier()), "ID #IMPLIED");
}

}  // namespace
