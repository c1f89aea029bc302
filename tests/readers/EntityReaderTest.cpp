#include <gtest/gtest.h>

#include <string>

#include "VexXml/Dtd.h"
#include "VexXml/Readers.h"
#include "readers/Reading.h"
#include "support/Diagnostics.h"

namespace {

using reading::Failure;
using reading::kEnd;
using reading::kQuote;
using reading::read;

struct Entity {
    const char* input;
    const char* name;
    const char* value;
};

const Entity kEntities[] = {
    {"<!ENTITY e 'v'>", "e", "v"},
    {"<!ENTITY e \"it's\">", "e", "it's"},
    {" <!ENTITY\r\ne.1\r\n''\r\n>", "e.1", ""},
    {"<!ENTITY e'v'>", "e", "v"},
    {"<!ENTITY e '<b>x</b>'>", "e", "<b>x</b>"},
    {"<!ENTITY e '&lt;&gt;&amp;&quot;&apos;'>", "e", "<>&\"'"},
    {"<!ENTITY e '&#65;&#x42;'>", "e", "AB"},
    {"<!ENTITY e '&amp;lt;'>", "e", "&lt;"},
    {"<!ENTITY e '&other;'>", "e", "&other;"},
    {"<!ENTITY e 'a&b'>", "e", "a&b;"},
    {"<!ENTITY lt 'less'>", "lt", "less"},
    // Deliberate: only the end of the last token is checked.
    {"<!ENTITY e 'v'/>", "e", "v"},
};

TEST(EntityReader, StoresTheValueUnderTheName) {
    for (const auto& [input, name, value] : kEntities) {
        SCOPED_TRACE(input);
        Xml::Dtd dtd("d");
        Xml::EntityReader reader(&dtd);
        const std::string text = input;
        EXPECT_EQ(read(reader, text + "rest"), "true at " + std::to_string(text.size()));
        EXPECT_TRUE(dtd.isEntityName(name));
        EXPECT_EQ(std::string(dtd.getEntityValue(name)), value);
    }
}

// Only what every document knows is replaced: the value is kept for documents to expand.
TEST(EntityReader, LeavesReferencesToDeclaredEntities) {
    support::Diagnostics diagnostics;
    Xml::Dtd dtd("d");
    dtd.setEntity("f", "w");
    Xml::EntityReader reader(&dtd);
    EXPECT_EQ(read(reader, "<!ENTITY e '&f;'>"), "true at 17");
    EXPECT_EQ(std::string(dtd.getEntityValue("e")), "&f;");
    EXPECT_TRUE(diagnostics.take().empty());
}

TEST(EntityReader, KeepsTheLastOfTwoDeclarations) {
    support::Diagnostics diagnostics;
    Xml::Dtd dtd("d");
    for (const char* input : {"<!ENTITY e '1'>", "<!ENTITY e '2'>"}) {
        Xml::EntityReader reader(&dtd);
        EXPECT_EQ(read(reader, input), "true at 15");
    }
    EXPECT_EQ(std::string(dtd.getEntityValue("e")), "2");
    EXPECT_TRUE(diagnostics.take().empty());
}

const Failure kFailures[] = {
    {"", 0, kEnd},
    {"<!ELEMENT e", 9, "\"<!ENTITY\" expected"},
    {"<!ENTITY", 8, "not a name: "},
    {"<!ENTITY % e 'v'>", 10, "not a name: %"},
    {"<!ENTITY 1 'v'>", 10, "not a name: 1"},
    {"<!ENTITY e", 10, kEnd},
    {"<!ENTITY e SYSTEM 'v'>", 12, kQuote},
    {"<!ENTITY e PUBLIC 'v' 'w'>", 12, kQuote},
    {"<!ENTITY e v>", 12, kQuote},
    {"<!ENTITY e>", 11, kQuote},
    {"<!ENTITY e 'v", 13, kEnd},
    {"<!ENTITY e 'v'", 14, kEnd},
    {"<!ENTITY e 'v' NDATA n>", 20, "\">\" expected"},
};

TEST(EntityReader, ReportsWhereItFailedAndStoresNothing) {
    Xml::Dtd dtd("d");
    reading::expectFailures(kFailures, "Xml::EntityReader",
                            [&] { return Xml::EntityReader(&dtd); });
    EXPECT_FALSE(dtd.isEntityName("e"));
}

}  // namespace
