#include <gtest/gtest.h>

#include <memory>
#include <sstream>
#include <string>

#include "VexXml/Dtd.h"
#include "VexXml/Streams.h"
#include "dtd/Models.h"
#include "support/Dump.h"

namespace {

using support::written;

TEST(DtdText, OfAnEmptyDtdHasNothingBetweenItsBrackets) {
    Xml::Dtd dtd("doc");
    EXPECT_EQ(written(dtd), "<!DOCTYPE doc [\n]>\n");
}

TEST(DtdText, HasEntitiesThenElementsInTheOrderOfTheirNames) {
    Xml::Dtd dtd("doc");
    dtd.addElementDecl("b");
    dtd.addElementDecl("a", new Xml::EmptySpec(&dtd));
    dtd.addElementDecl("B", new Xml::AnySpec(&dtd));
    dtd.setEntity("y", "a<b & \"c\"");
    dtd.setEntity("x", "");
    EXPECT_EQ(written(dtd),
              "<!DOCTYPE doc [\n"
              "<!ENTITY x \"\">\n"
              "<!ENTITY y \"a&lt;b &amp; &quot;c&quot;\">\n"
              "<!ELEMENT B ANY>\n"
              "<!ELEMENT a EMPTY>\n"
              "<!ELEMENT b (#PCDATA)>\n"
              "]>\n");
}

TEST(DtdText, HasEachAttributeListBehindItsElement) {
    Xml::Dtd dtd("doc");
    dtd.addElementDecl("a", new Xml::EmptySpec(&dtd));
    dtd.addElementDecl("b", new Xml::EmptySpec(&dtd));
    dtd.addAttDecl("a", "y", new Xml::AttStringType(Xml::AttFixed, "v"));
    dtd.addAttDecl("a", "x", Xml::AttRequired);
    EXPECT_EQ(written(dtd),
              "<!DOCTYPE doc [\n"
              "<!ELEMENT a EMPTY>\n"
              "<!ATTLIST a\n"
              "\tx CDATA #REQUIRED\n"
              "\ty CDATA #FIXED\"v\"\n"
              ">\n"
              "<!ELEMENT b EMPTY>\n"
              "]>\n");
}

TEST(DtdText, LosesTheAttributeListOfAnElementThatIsNotDeclared) {
    Xml::Dtd dtd("doc");
    dtd.addAttDecl("a", "x", Xml::AttRequired);
    EXPECT_EQ(written(dtd), "<!DOCTYPE doc [\n]>\n");
}

TEST(DtdText, LosesCharacterDataAsAChoiceInACopy) {
    Xml::Dtd dtd("doc");
    dtd.addElementDecl("a", support::build(&dtd, "(b | c | #PCDATA)*"));
    EXPECT_EQ(written(dtd), "<!DOCTYPE doc [\n<!ELEMENT a (b | c | #PCDATA)*>\n]>\n");
    Xml::Dtd copy(dtd);
    EXPECT_EQ(written(copy), "<!DOCTYPE doc [\n<!ELEMENT a (b | c)*>\n]>\n");
}

TEST(DtdText, IsIndentedFromTheLevelOfTheStream) {
    Xml::Dtd dtd("doc");
    dtd.setEntity("e", "one\ntwo");
    dtd.addElementDecl("a", new Xml::EmptySpec(&dtd));
    dtd.addAttDecl("a", "x", Xml::AttImplied);
    std::ostringstream text;
    Xml::FileOutStream out(&text);
    out.incTab();
    dtd.toStream(out);
    out << "end";
    EXPECT_EQ(text.str(),
              "\t<!DOCTYPE doc [\n"
              "\t<!ENTITY e \"one\n"
              "\ttwo\">\n"
              "\t<!ELEMENT a EMPTY>\n"
              "\t<!ATTLIST a\n"
              "\t\tx CDATA #IMPLIED\n"
              "\t>\n"
              "\t]>\n"
              "\tend");
}

}  // namespace
