#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>

#include "VexXml/Dtd.h"
#include "VexXml/Readers.h"
#include "readers/Reading.h"
#include "support/Diagnostics.h"

namespace house {

class ModelReader : public Xml::ChildrenSpecReader {
public:
    using Xml::ChildrenSpecReader::ChildrenSpecReader;
};

}  // namespace house

namespace {

using reading::Failure;
using reading::kEnd;
using reading::read;

/// The model as it is written, or what `read` tells when it was refused.
std::string modelOf(const std::string& input) {
    Xml::Dtd dtd("d");
    Xml::ChildrenSpecReader reader(&dtd);
    std::string outcome = read(reader, input + ">");
    if (outcome != "true at " + std::to_string(input.size())) return outcome;
    const std::unique_ptr<Xml::ChildrenSpec> model(reader.extractChildrenSpec());
    return reading::written(*model);
}

const std::pair<const char*, const char*> kModels[] = {
    {"(a)", "(a)"},
    {"(a?)", "(a?)"},
    {"(a*)", "(a*)"},
    {"(a+)", "(a+)"},
    {"(a)?", "(a)?"},
    {"(a)*", "(a)*"},
    {"(a)+", "(a)+"},
    {"(a?)+", "(a?)+"},
    {"(a,b)", "(a, b)"},
    {"(a,b,c)*", "(a, b, c)*"},
    {"(a|b)", "(a | b)"},
    {"(a|b|c)+", "(a | b | c)+"},
    {"(a?|b*|c+)", "(a? | b* | c+)"},
    {" ( a\r\n? , b * ) *", "(a?, b*)*"},
    {"(a, b?, (c | d)+)*", "(a, b?, (c | d)+)*"},
    {"((a))", "(a)"},
    {"((a)*)", "(a*)"},
    {"((a,b))", "((a, b))"},
    {"((a|b))?", "((a | b))?"},
    {"((a|b),c)", "((a | b), c)"},
    {"((a,b)|c)", "((a, b) | c)"},
    {"((a)+,b)", "(a+, b)"},
    {"(a,(b))", "(a, b)"},
    {"(a|(b,c)*)", "(a | (b, c)*)"},
    {"(a|b|#PCDATA)", "(a | b | #PCDATA)"},
    {"(a|#PCDATA|b)*", "(a | b | #PCDATA)*"},
    {"(a|b|#PCDATA|#PCDATA)", "(a | b | #PCDATA)"},
    {"(x,(a|b|#PCDATA))", "(x, (a | b | #PCDATA))"},
    {"(a,a)", "(a, a)"},
    {"(EMPTY,ANY)", "(EMPTY, ANY)"},
};

TEST(ChildrenSpecReader, ReadsModels) {
    for (const auto& [input, model] : kModels) EXPECT_EQ(modelOf(input), model) << input;
}

// One name beside "#PCDATA" cannot be written, but it is read.
TEST(ChildrenSpecReader, ReadsAChoiceOfOneNameAndCharacterData) {
    support::Diagnostics diagnostics;
    EXPECT_EQ(modelOf("(a|#PCDATA)"), "");
    EXPECT_EQ(diagnostics.take(),
              std::vector<std::string>{"<ChoiceSpec::toStream> need at least 2 items"});
}

/// Whether the model takes one piece of character data, or one element that is declared.
bool takes(const Xml::ChildrenSpec& model, Xml::Object& child) {
    std::vector<Xml::Object*> children{&child};
    return model.validate(&children);
}

TEST(ChildrenSpecReader, MakesCharacterDataAnAlternative) {
    Xml::Dtd dtd("d");
    dtd.addElementDecl("a");
    Xml::ChildrenSpecReader reader(&dtd);
    EXPECT_EQ(read(reader, "(a|#PCDATA)>"), "true at 11");
    const std::unique_ptr<Xml::ChildrenSpec> model(reader.extractChildrenSpec());
    Xml::CharData text(Xml::DataHolder("t"));
    Xml::Element element("a");
    Xml::Element other("b");
    EXPECT_TRUE(takes(*model, text));
    EXPECT_TRUE(takes(*model, element));
    EXPECT_FALSE(takes(*model, other));
}

TEST(ChildrenSpecReader, BindsItsModelToItsDtd) {
    Xml::Dtd dtd("d");
    Xml::ChildrenSpecReader reader(&dtd);
    EXPECT_EQ(read(reader, "(a,(b|c))>"), "true at 9");
    ASSERT_TRUE(dtd.addElementDecl("r", reader.extractChildrenSpec()));
    Xml::Element root("r");
    root.addElement("a", "");
    root.addElement("c", "");
    EXPECT_FALSE(dtd.validate(&root));
    dtd.addElementDecl("a");
    dtd.addElementDecl("c");
    EXPECT_TRUE(dtd.validate(&root));
}

const Failure kFailures[] = {
    {"", 0, kEnd},
    {"a", 1, "\"(\" expected"},
    {"<(", 1, "\"(\" expected"},
    {"(", 1, kEnd},
    {"()", 2, "unexpected \")\""},
    {"(,a)", 2, "unexpected \",\""},
    {"(|a)", 2, "unexpected \"|\""},
    {"(1)", 2, "unexpected \"1\""},
    {"(*)", 2, "unexpected \"*\""},
    {"('a')", 4, "unexpected \"'a'\""},
    {"(%a;)", 4, "unexpected \"%a;\""},
    {"(<a>)", 2, "unexpected \"<\""},
    {"(#PCDATA)", 8, "unexpected \"#PCDATA\""},
    {"(#PCDATA|a)", 8, "unexpected \"#PCDATA\""},
    {"(a", 2, kEnd},
    {"(a*", 3, kEnd},
    {"(a>", 3, "unexpected \">\""},
    {"(a b)", 4, "unexpected \"b\""},
    {"(a**)", 4, "unexpected \"*\""},
    {"(a(b))", 3, "unexpected \"(\""},
    {"(a,", 3, kEnd},
    {"(a,)", 4, "unexpected \")\""},
    {"(a,,b)", 4, "unexpected \",\""},
    {"(a,#PCDATA)", 10, "unexpected \"#PCDATA\""},
    {"(a,b|c)", 5, "unexpected \"|\""},
    {"(a|", 3, kEnd},
    {"(a|)", 4, "unexpected \")\""},
    {"(a|b,c)", 5, "unexpected \",\""},
    {"(a | b, c)", 7, "unexpected \",\""},
    {"(a|#PCDATA*)", 11, "unexpected \"*\""},
    {"(a|#PCDATA,b)", 11, "unexpected \",\""},
    {"(a|b", 4, kEnd},
    {"((a,b),c|d)", 9, "unexpected \"|\""},
    // the failures of an inner group
    {"((", 2, kEnd},
    {"(()", 3, "unexpected \")\""},
    {"((a)", 4, kEnd},
    {"((a", 3, kEnd},
    {"((1))", 3, "unexpected \"1\""},
    {"(a|(b,c|d))", 8, "unexpected \"|\""},
    {"(a|(#PCDATA))", 11, "unexpected \"#PCDATA\""},
};

TEST(ChildrenSpecReader, ReportsWhereItFailed) {
    Xml::Dtd dtd("d");
    reading::expectFailures(kFailures, "Xml::ChildrenSpecReader",
                            [&] { return Xml::ChildrenSpecReader(&dtd); });
}

TEST(ChildrenSpecReader, HasNoModelBeforeOrAfterAFailure) {
    Xml::Dtd dtd("d");
    Xml::ChildrenSpecReader reader(&dtd);
    EXPECT_EQ(reader.extractChildrenSpec(), nullptr);
    EXPECT_EQ(read(reader, "(a,b"),
              "false at 4 (line = 1, column = 4) Unexpected end of stream "
              "<Xml::ChildrenSpecReader>");
    EXPECT_EQ(reader.extractChildrenSpec(), nullptr);
}

TEST(ChildrenSpecReader, GivesItsModelAwayOnce) {
    Xml::Dtd dtd("d");
    Xml::ChildrenSpecReader reader(&dtd);
    EXPECT_EQ(read(reader, "(a)>"), "true at 3");
    const std::unique_ptr<Xml::ChildrenSpec> model(reader.extractChildrenSpec());
    EXPECT_NE(model, nullptr);
    EXPECT_EQ(reader.extractChildrenSpec(), nullptr);
}

TEST(ChildrenSpecReader, ReportsTheEndWhereARepetitionMayStandButSucceeds) {
    Xml::Dtd dtd("d");
    Xml::ChildrenSpecReader reader(&dtd);
    EXPECT_EQ(read(reader, "(a) "),
              "true at 4 (line = 1, column = 4) Unexpected end of stream "
              "<Xml::ChildrenSpecReader>");
}

TEST(ChildrenSpecReader, LeavesTheStreamRightBehindTheGroupWithoutARepetition) {
    Xml::Dtd dtd("d");
    for (const auto& [input, outcome] :
         {std::pair{"(a) \r\n>", "true at 3"}, std::pair{"(a) + >", "true at 5"}}) {
        Xml::ChildrenSpecReader reader(&dtd);
        EXPECT_EQ(read(reader, input), outcome);
    }
}

TEST(ChildrenSpecReader, ReadsInnerGroupsWithPlainReaders) {
    Xml::Dtd dtd("d");
    house::ModelReader outer(&dtd);
    EXPECT_EQ(read(outer, "(1)"),
              "false at 2 (line = 1, column = 2) unexpected \"1\" <house::ModelReader>");
    house::ModelReader inner(&dtd);
    EXPECT_EQ(read(inner, "((1))"),
              "false at 3 (line = 1, column = 3) unexpected \"1\" <Xml::ChildrenSpecReader>");
}

}  // namespace
