#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>

#include "VexXml/Dtd.h"
#include "VexXml/Readers.h"
#include "readers/Reading.h"
#include "support/Diagnostics.h"
#include "support/Dump.h"

namespace {

using Reports = std::vector<std::string>;
using reading::Failure;
using reading::kEnd;
using reading::read;

/// The DTD that holds just these declarations, as it is written.
std::string dtdOf(const std::string& declarations) {
    return "<!DOCTYPE d [\n" + declarations + "]>\n";
}

const std::pair<const char*, const char*> kModels[] = {
    {"EMPTY", "EMPTY"},
    {"ANY", "ANY"},
    {"(#PCDATA)", "(#PCDATA)"},
    {"(#PCDATA)*", "(#PCDATA)"},
    {" ( #PCDATA\r\n)", "(#PCDATA)"},
    {"(#PCDATA|b)", "(#PCDATA | b)*"},
    {"(#PCDATA | b | c)*", "(#PCDATA | b | c)*"},
    {"(b)", "(b)"},
    {"(b)+", "(b)+"},
    {"(b, c?, (d | e)+)*", "(b, c?, (d | e)+)*"},
    {"(b|c|#PCDATA)*", "(b | c | #PCDATA)*"},
    {"\r\n\t(\r\nb\r\n,\r\nc\r\n)\r\n+\r\n", "(b, c)+"},
};

TEST(ElementDeclReader, StoresTheModelUnderTheName) {
    for (const auto& [model, written] : kModels) {
        SCOPED_TRACE(model);
        Xml::Dtd dtd("d");
        Xml::ElementDeclReader reader(&dtd);
        const std::string input = std::string("<!ELEMENT a ") + model + ">";
        EXPECT_EQ(read(reader, input + "rest"), "true at " + std::to_string(input.size()));
        EXPECT_EQ(support::written(dtd), dtdOf(std::string("<!ELEMENT a ") + written + ">\n"));
    }
}

const Failure kFailures[] = {
    {"", 0, kEnd},
    {"<!ENTITY a", 8, "\"<!ELEMENT\" expected"},
    {"ELEMENT a", 7, "\"<!ELEMENT\" expected"},
    {"<!ELEMENT", 9, "not a name: "},
    {"<!ELEMENT 1", 11, "not a name: 1"},
    {"<!ELEMENT (b)", 11, "not a name: ("},
    {"<!ELEMENT a", 11, kEnd},
    {"<!ELEMENT a (", 13, kEnd},
    {"<!ELEMENT a EMPTY", 17, kEnd},
    {"<!ELEMENT a EMPTY b>", 19, "\">\" expected"},
    {"<!ELEMENT a (b)", 15, kEnd},
    {"<!ELEMENT a (b) c>", 17, "\">\" expected"},
    {"<!ELEMENT a (#PCDATA)", 21, kEnd},
    {"<!ELEMENT a (#PCDATA) *", 23, kEnd},
};

TEST(ElementDeclReader, ReportsWhereItFailed) {
    Xml::Dtd dtd("d");
    support::Diagnostics diagnostics;
    reading::expectFailures(kFailures, "Xml::ElementDeclReader",
                            [&] { return Xml::ElementDeclReader(&dtd); });
}

const Failure kMixedFailures[] = {
    {"<!ELEMENT a (#PCDATA", 20, kEnd},
    {"<!ELEMENT a (#PCDATA)+>", 22, "unexpected repetition type"},
    {"<!ELEMENT a (#PCDATA | b)?>", 26, "unexpected repetition type"},
    {"<!ELEMENT a (#PCDATA, b)>", 21, "\"|\" expected"},
    {"<!ELEMENT a (#PCDATA | 1)>", 24, "not a name: 1"},
};

TEST(ElementDeclReader, PassesOnTheMessageOfTheMixedModel) {
    Xml::Dtd dtd("d");
    reading::expectFailures(kMixedFailures, "Xml::MixedSpecReader",
                            [&] { return Xml::ElementDeclReader(&dtd); });
    EXPECT_EQ(support::written(dtd), dtdOf(""));
}

const Failure kChildrenFailures[] = {
    {"<!ELEMENT a (b", 14, kEnd},
    {"<!ELEMENT a ()>", 14, "unexpected \")\""},
    {"<!ELEMENT a (b | c, d)>", 19, "unexpected \",\""},
    {"<!ELEMENT a (b, #PCDATA)>", 23, "unexpected \"#PCDATA\""},
    {"<!ELEMENT a ((#PCDATA))>", 21, "unexpected \"#PCDATA\""},
    // Only "#PCDATA" itself makes a model mixed.
    {"<!ELEMENT a (x#PCDATA)>", 21, "unexpected \"x#PCDATA\""},
    {"<!ELEMENT a (b, (1))>", 18, "unexpected \"1\""},
};

TEST(ElementDeclReader, PassesOnTheMessageOfTheModel) {
    Xml::Dtd dtd("d");
    reading::expectFailures(kChildrenFailures, "Xml::ChildrenSpecReader",
                            [&] { return Xml::ElementDeclReader(&dtd); });
    EXPECT_EQ(support::written(dtd), dtdOf(""));
}

const std::pair<const char*, const char*> kUnknown[] = {
    {"b", "false at 13"},       {"empty", "false at 17"}, {"'ANY'", "false at 17"},
    {"#PCDATA", "false at 19"}, {">", "false at 13"},     {"%b;", "false at 15"},
};

TEST(ElementDeclReader, RaisesAMessageAboutAnotherKindOfModel) {
    support::Diagnostics diagnostics;
    for (const auto& [model, outcome] : kUnknown) {
        Xml::Dtd dtd("d");
        Xml::ElementDeclReader reader(&dtd);
        EXPECT_EQ(read(reader, std::string("<!ELEMENT a ") + model + ">"), outcome);
        EXPECT_EQ(
            diagnostics.take(),
            Reports{std::string("<ElementDeclReader::parse> don't know what to do ") + model});
        EXPECT_EQ(support::written(dtd), dtdOf(""));
    }
}

TEST(ElementDeclReader, StoresTheDeclarationBeforeItsEndIsChecked) {
    Xml::Dtd dtd("d");
    Xml::ElementDeclReader reader(&dtd);
    EXPECT_EQ(read(reader, "<!ELEMENT a EMPTY b").substr(0, 11), "false at 19");
    EXPECT_EQ(support::written(dtd), dtdOf("<!ELEMENT a EMPTY>\n"));
}

// Deliberate: only the end of the last token is checked.
TEST(ElementDeclReader, EndsAtAnEmptyElementEndToo) {
    Xml::Dtd dtd("d");
    Xml::ElementDeclReader reader(&dtd);
    EXPECT_EQ(read(reader, "<!ELEMENT a EMPTY/>"), "true at 19");
}

TEST(ElementDeclReader, KeepsTheFirstOfTwoDeclarations) {
    support::Diagnostics diagnostics;
    Xml::Dtd dtd("d");
    for (const char* model : {"EMPTY", "ANY", "(#PCDATA | b)*", "(b, (c | d))"}) {
        Xml::ElementDeclReader reader(&dtd);
        const std::string input = std::string("<!ELEMENT a ") + model + ">";
        EXPECT_EQ(read(reader, input), "true at " + std::to_string(input.size()));
    }
    EXPECT_EQ(support::written(dtd), dtdOf("<!ELEMENT a EMPTY>\n"));
    EXPECT_EQ(diagnostics.take(), Reports(3, "<Dtd::addElementDecl> already added a"));
}

TEST(ElementDeclReader, ReportsAnElementNamedTwiceInAMixedModelAndReadsOn) {
    support::Diagnostics diagnostics;
    Xml::Dtd dtd("d");
    Xml::ElementDeclReader reader(&dtd);
    EXPECT_EQ(read(reader, "<!ELEMENT a (#PCDATA | b | c | b)*>"), "true at 35");
    EXPECT_EQ(support::written(dtd), dtdOf("<!ELEMENT a (#PCDATA | b | c)*>\n"));
    EXPECT_EQ(diagnostics.take(), Reports{"<MixedSpec::MixedSpec> name already added b"});
}

/// The mixed model as it is written, or what `read` tells when it was refused.
std::string mixedModelOf(const std::string& input) {
    Xml::Dtd dtd("d");
    Xml::MixedSpecReader reader(&dtd);
    const std::string outcome = read(reader, input);
    const std::unique_ptr<Xml::MixedSpec> model(reader.extractMixedSpec());
    EXPECT_EQ(reader.extractMixedSpec(), nullptr);
    return outcome + (model != nullptr ? " " + reading::written(*model) : "");
}

const std::pair<const char*, const char*> kMixedModels[] = {
    {"(#PCDATA)>", "true at 9 (#PCDATA)"},
    {"(#PCDATA) * >", "true at 11 (#PCDATA)"},
    {"(#PCDATA) >", "true at 9 (#PCDATA)"},
    {"( #PCDATA|a | b ) >", "true at 17 (#PCDATA | a | b)*"},
    // Deliberate: only the end of a token is checked.
    {"(x#PCDATA)>", "true at 10 (#PCDATA)"},
    // The look for a repetition meets the end and reports it.
    {"(#PCDATA)",
     "true at 9 (line = 1, column = 9) Unexpected end of stream <Xml::MixedSpecReader> (#PCDATA)"},
};

TEST(MixedSpecReader, ReadsAModelAndItsRepetition) {
    for (const auto& [input, outcome] : kMixedModels) {
        EXPECT_EQ(mixedModelOf(input), outcome) << input;
    }
}

const Failure kNoMixedModels[] = {
    {"", 0, kEnd},
    {"#PCDATA", 7, "\"(\" expected"},
    {"(", 1, kEnd},
    {"(a)", 2, "\"#PCDATA\" expected"},
    {"()", 2, "\"#PCDATA\" expected"},
    {"(#PCDATA", 8, kEnd},
    {"(#PCDATA a)", 10, "\"|\" expected"},
    {"(#PCDATA,a)", 9, "\"|\" expected"},
    {"(#PCDATA*)", 9, "\"|\" expected"},
    {"(#PCDATA|", 9, "not a name: "},
    {"(#PCDATA|)", 10, "not a name: )"},
    {"(#PCDATA|1)", 10, "not a name: 1"},
    {"(#PCDATA|#PCDATA)", 16, "not a name: #PCDATA"},
    {"(#PCDATA|(a))", 10, "not a name: ("},
    {"(#PCDATA|a*)", 11, "\"|\" expected"},
    {"(#PCDATA|a", 10, kEnd},
    {"(#PCDATA)+", 10, "unexpected repetition type"},
    {"(#PCDATA)?", 10, "unexpected repetition type"},
    {"(#PCDATA | a)+", 14, "unexpected repetition type"},
};

TEST(MixedSpecReader, ReportsWhereItFailed) {
    Xml::Dtd dtd("d");
    reading::expectFailures(kNoMixedModels, "Xml::MixedSpecReader",
                            [&] { return Xml::MixedSpecReader(&dtd); });
}

TEST(MixedSpecReader, HasNoModelAfterAFailure) {
    for (const Failure& failure : kNoMixedModels) {
        EXPECT_EQ(mixedModelOf(failure.input), reading::outcomeOf(failure, "Xml::MixedSpecReader"));
    }
}

}  // namespace
