#include <gtest/gtest.h>

#include <string>

#include "tools/Workplace.h"

namespace {

using support::Outcome;
using support::Workplace;

std::string nested(int depth) {
    std::string text;
    for (int i = 0; i < depth; ++i) text += "<a>";
    for (int i = 0; i < depth; ++i) text += "</a>";
    return text;
}

bool isAccepted(const Workplace& place, const std::string& command) {
    return place.run("vexxml " + command + " >out").status == 0;
}

TEST(Limits, HoldForEveryCommand) {
    const Workplace place;
    place.write("fits.xml", nested(1000));
    place.write("deep.xml", nested(1001));
    for (const char* command :
         {"format", "validate", "query --count //a", "tree", "stat", "edit --rename a /a"}) {
        EXPECT_TRUE(isAccepted(place, std::string(command) + " fits.xml")) << command;
        EXPECT_FALSE(isAccepted(place, std::string(command) + " deep.xml")) << command;
        EXPECT_TRUE(isAccepted(place, std::string(command) + " --trusted deep.xml")) << command;
    }
}

TEST(Limits, AreNamedWithThePlaceBeyondThem) {
    const Workplace place;
    place.write("a.xml", "<a><b/></a>");
    EXPECT_EQ(place.run("vexxml validate --limit nodes=1 a.xml"),
              (Outcome{1, "",
                       "a.xml:1:6: error: limit exceeded: nodes = 1\n"
                       "<a><b/></a>\n"
                       "     ^\n"}));
}

TEST(Limits, MayBeSetOneByOne) {
    const Workplace place;
    place.write("a.xml", nested(1001));
    EXPECT_TRUE(isAccepted(place, "validate --limit elementDepth=1001 --limit nodes=1001 a.xml"));
    EXPECT_FALSE(isAccepted(place, "validate --limit elementDepth=1001 --limit nodes=1000 a.xml"));
    EXPECT_TRUE(isAccepted(place, "validate --limit elementDepth=none a.xml"));
    EXPECT_FALSE(isAccepted(place, "validate --trusted --limit nodes=1000 a.xml"));
}

TEST(Limits, MustBeNamedRightly) {
    const Workplace place;
    place.write("a.xml", "<a/>");
    const auto refusal = [](const std::string& text) {
        return Outcome{2, "",
                       "vexxml: --limit: " + text + "\nRun with --help for more information.\n"};
    };
    EXPECT_EQ(place.run("vexxml format --limit size=1 a.xml"), refusal("no such limit: size=1"));
    EXPECT_EQ(place.run("vexxml format --limit nodes a.xml"), refusal("no such limit: nodes"));
    for (const std::string setting :
         {"nodes=", "nodes=1x", "nodes=-1", "nodes=99999999999999999999"}) {
        EXPECT_EQ(place.run("vexxml format --limit " + setting + " a.xml"),
                  refusal("not a number: " + setting));
    }
}

TEST(Limits, KeepFilesToTheCurrentFolder) {
    const Workplace place;
    place.run("mkdir in");
    place.write("a.dtd", "<!ELEMENT a EMPTY>");
    place.write("in/a.dtd", "<!ELEMENT a EMPTY>");
    place.write("here.xml", "<!DOCTYPE a SYSTEM 'a.dtd'><a/>");
    place.write("below.xml", "<!DOCTYPE a SYSTEM 'in/a.dtd'><a/>");
    place.write("in/above.xml", "<!DOCTYPE a SYSTEM '../a.dtd'><a/>");
    EXPECT_TRUE(isAccepted(place, "validate here.xml below.xml"));
    EXPECT_EQ(
        place.run("cd in && vexxml validate above.xml"),
        (Outcome{1, "",
                 "above.xml:1:30: error: not allowed to open a file outside " + place.path("in") +
                     ": ../a.dtd\n" + "<!DOCTYPE a SYSTEM '../a.dtd'><a/>\n" +
                     "                             ^\n"}));
    EXPECT_EQ(place.run("cd in && vexxml validate --trusted above.xml"),
              (Outcome{0, "above.xml: valid\n", ""}));
}

// What gives the text never ends by itself.
TEST(Limits, EndTheReadingOfAnInputWithoutAnEnd) {
    EXPECT_EQ(Workplace().run("yes '<a>' | vexxml format --limit totalBytes=6 -"),
              (Outcome{1, "",
                       "-:2:3: error: limit exceeded: totalBytes = 6\n"
                       "<a>\n"
                       "  ^\n"}));
    EXPECT_EQ(
        Workplace().run("yes ' ' | vexxml validate --dtd - --limit totalBytes=100000 a.xml").status,
        1);
}

TEST(Limits, AcceptAnInputOfJustAsManyBytes) {
    const Workplace place;
    place.write("a.xml", "<a/>");
    EXPECT_TRUE(isAccepted(place, "format --limit totalBytes=4 a.xml"));
    EXPECT_FALSE(isAccepted(place, "format --limit totalBytes=3 a.xml"));
}

// Matching ((b?)*) in front of anything else has no end of its own.
TEST(Limits, EndEveryValidation) {
    const Workplace place;
    place.write("a.xml", "<!DOCTYPE a [<!ELEMENT a ((b?)*)>]><a><c/></a>");
    place.write("a.dtd", "<!ELEMENT a ((b?)*)>");
    const std::string limit = " --limit validationSteps=100000 ";
    EXPECT_EQ(place.run("vexxml validate" + limit + "a.xml").status, 1);
    EXPECT_EQ(place.run("vexxml validate --dtd a.dtd" + limit + "a.xml").status, 1);
    EXPECT_EQ(place.run("vexxml query" + limit + "--count //c a.xml"), (Outcome{0, "1\n", ""}));
}

}  // namespace
