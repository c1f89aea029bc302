#include <gtest/gtest.h>

#include <string>

#include "tools/Workplace.h"

namespace {

using support::Outcome;
using support::Workplace;

constexpr int kLevels = 100000;

std::string nested(const std::string& innermost) {
    std::string text;
    for (int i = 1; i < kLevels; ++i) text += "<a>";
    text += innermost;
    for (int i = 1; i < kLevels; ++i) text += "</a>";
    return text;
}

// So many levels would need far more stack than this if a level took any.
class Depth : public ::testing::Test {
protected:
    Outcome run(const std::string& command) const {
        place.write("a.xml", nested("<a/>"));
        place.write("b.xml", nested("<b/>"));
        return place.run("ulimit -s 256; vexxml " + command);
    }

    Workplace place;
};

TEST_F(Depth, NeedsNoStackForAnOutline) {
    EXPECT_EQ(run("tree --trusted b.xml | tail -n 1"),
              (Outcome{0, std::string(78, ' ') + "100000: b\n", ""}));
}

TEST_F(Depth, NeedsNoStackForCounting) {
    EXPECT_EQ(run("stat --trusted a.xml | grep levels"),
              (Outcome{0, "      100000  levels\n", ""}));
}

TEST_F(Depth, NeedsNoStackForEditing) {
    EXPECT_EQ(run("edit --trusted --rename c --delete /a/a a.xml"),
              (Outcome{0, "<?xml version = \"1.0\" ?>\n<a/>\n", ""}));
}

TEST_F(Depth, NeedsNoStackForComparing) {
    const Outcome outcome = run("diff --trusted a.xml b.xml | cut -d : -f 2");
    EXPECT_EQ(outcome, (Outcome{0, " deleted a\n inserted b\n", ""}));
}

}  // namespace
