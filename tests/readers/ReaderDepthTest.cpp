#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "VexXml/Dtd.h"
#include "VexXml/Readers.h"
#include "readers/Reading.h"
#include "support/Dump.h"

namespace {

std::string repeated(const std::string& text, int times) {
    std::string all;
    all.reserve(text.size() * static_cast<std::size_t>(times));
    for (int i = 0; i < times; ++i) all += text;
    return all;
}

int depthOf(const Xml::Element* element) {
    int depth = 0;
    for (; element != nullptr; element = element->getElement(0)) ++depth;
    return depth;
}

std::string readElement(const std::string& input) {
    Xml::ElementReader reader(nullptr);
    const std::string outcome = reading::read(reader, input);
    return outcome + ", depth " + std::to_string(depthOf(reader.getRoot()));
}

constexpr int kLevels = 1000000;
constexpr int kGroups = 100000;

TEST(ReaderDepth, AMillionElementsInsideOneAnotherNeedNoStack) {
    support::runOnSmallStack([] {
        EXPECT_EQ(readElement(repeated("<e>", kLevels) + repeated("</e>", kLevels)),
                  "true at 7000000, depth 1000000");
    });
}

TEST(ReaderDepth, AMillionElementsWithTextAndCommentsNeedNoStack) {
    support::runOnSmallStack([] {
        const std::string input = repeated("<e>x<!--c-->", kLevels) + repeated("y</e>", kLevels);
        EXPECT_EQ(readElement(input), "true at 17000000, depth 1000000");
    });
}

TEST(ReaderDepth, AMillionElementsWithoutTheirEndsNeedNoStack) {
    support::runOnSmallStack([] {
        EXPECT_EQ(readElement(repeated("<e>", kLevels)),
                  "false at 3000000 (line = 1, column = 3000000) Unexpected end of stream "
                  "<Xml::ElementReader>, depth 1");
    });
}

TEST(ReaderDepth, AMessageComesUpThroughAMillionElements) {
    support::runOnSmallStack([] {
        EXPECT_EQ(readElement(repeated("<e>", kLevels) + "</f>"),
                  "false at 3000003 (line = 1, column = 3000003) \"e\" expected "
                  "<Xml::ElementReader>, depth 1");
    });
}

TEST(ReaderDepth, ADocumentOfAMillionLevelsIsReadAndValidated) {
    support::runOnSmallStack([] {
        Xml::DocumentReader reader;
        const std::string dtd = "<!DOCTYPE e [<!ELEMENT e (e?)>]>";
        EXPECT_EQ(reading::read(reader, dtd + repeated("<e>", kLevels) + repeated("</e>", kLevels)),
                  "true at 7000032");
        EXPECT_EQ(depthOf(reader.getDocument()->getRoot()), kLevels);
    });
}

std::string readModel(const std::string& model) {
    Xml::Dtd dtd("d");
    Xml::ElementDeclReader reader(&dtd);
    const std::string outcome = reading::read(reader, "<!ELEMENT a " + model + ">");
    return outcome + " " + support::written(dtd);
}

TEST(ReaderDepth, GroupsInsideOneAnotherNeedNoStack) {
    support::runOnSmallStack([] {
        EXPECT_EQ(readModel(repeated("(", kGroups) + "b" + repeated(")", kGroups)),
                  "true at 200014 <!DOCTYPE d [\n<!ELEMENT a (b)>\n]>\n");
    });
}

TEST(ReaderDepth, ChoicesInsideSequencesInsideOneAnotherNeedNoStack) {
    support::runOnSmallStack([] {
        const std::string model =
            repeated("(b, (c | ", kGroups) + "(d)" + repeated(")*)+", kGroups);
        const std::string written =
            repeated("(b, (c | ", kGroups) + "d" + repeated(")*)+", kGroups);
        EXPECT_EQ(readModel(model),
                  "true at 1300016 <!DOCTYPE d [\n<!ELEMENT a " + written + ">\n]>\n");
    });
}

TEST(ReaderDepth, GroupsWithoutTheirEndsNeedNoStack) {
    support::runOnSmallStack([] {
        EXPECT_EQ(readModel(repeated("(b, ", kGroups) + "1"),
                  "false at 400013 (line = 1, column = 400013) unexpected \"1\" "
                  "<Xml::ChildrenSpecReader> <!DOCTYPE d [\n]>\n");
    });
}

TEST(ReaderDepth, OpenersInsideOneAnotherInContentNeedNoStack) {
    support::runOnSmallStack([] {
        EXPECT_EQ(readElement("<a>" + repeated("<!", kGroups)),
                  "false at 3 (line = 1, column = 3) unexpected token \"<!\" "
                  "<Xml::ElementReader>, depth 1");
    });
}

}  // namespace
