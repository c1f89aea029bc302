#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tools/Workplace.h"

namespace {

using support::Outcome;
using support::Workplace;
using Names = std::vector<std::string>;

const std::string kHead = "<?xml version = \"1.0\" ?>\n";
const std::string kFormatted = kHead + "<a>\n\t<b/>\n</a>\n";

TEST(InPlace, ReplacesTheFileAndLeavesNothingElse) {
    const Workplace place;
    place.write("a.xml", "<a><b/></a>");
    EXPECT_EQ(place.run("vexxml format --in-place a.xml"), (Outcome{0, "", ""}));
    EXPECT_EQ(place.read("a.xml"), kFormatted);
    EXPECT_EQ(place.list(), Names{"a.xml"});
}

TEST(InPlace, KeepsThePermissions) {
    const Workplace place;
    for (const std::string mode : {"600", "644", "755", "4711", "400"}) {
        place.write("a.xml", "<a><b/></a>");
        EXPECT_EQ(place.run("chmod " + mode +
                            " a.xml; vexxml format --in-place a.xml; "
                            "stat --format %a a.xml; chmod 600 a.xml"),
                  (Outcome{0, mode + "\n", ""}));
    }
}

TEST(InPlace, WritesToWhereASymbolicLinkLeads) {
    const Workplace place;
    place.run("mkdir deep deep/er");
    place.write("deep/a.xml", "<a><b/></a>");
    place.run("ln -s deep/er/link link; ln -s ../a.xml deep/er/link");
    EXPECT_EQ(place.run("vexxml format --in-place link; readlink link deep/er/link"),
              (Outcome{0, "deep/er/link\n../a.xml\n", ""}));
    EXPECT_EQ(place.read("deep/a.xml"), kFormatted);
    EXPECT_EQ(place.list(), (Names{"deep", "link"}));
}

TEST(InPlace, KeepsAFileThatIsNotWellFormed) {
    const Workplace place;
    place.write("a.xml", "<a><b></a>");
    EXPECT_EQ(place.run("vexxml format --in-place a.xml 2>/dev/null"), (Outcome{1, "", ""}));
    EXPECT_EQ(place.read("a.xml"), "<a><b></a>");
    EXPECT_EQ(place.list(), Names{"a.xml"});
}

TEST(InPlace, KeepsAFileWithTextBehindTheRootElement) {
    const Workplace place;
    for (const std::string document :
         {"<a/> <b/>", "<a/> text", "<a/>'", "<a/> &amp", "<a/><!--x"}) {
        place.write("a.xml", document);
        EXPECT_EQ(place.run("vexxml format --in-place a.xml 2>/dev/null"), (Outcome{1, "", ""}));
        EXPECT_EQ(place.read("a.xml"), document);
    }
}

// The limit is in blocks of 512 bytes: the write stops halfway.
TEST(InPlace, KeepsTheFileWhenItCannotBeWrittenToTheEnd) {
    const Workplace place;
    const std::string document = "<a>" + std::string(2000, 'x') + "</a>";
    place.write("a.xml", document);
    EXPECT_EQ(place.run("ulimit -f 2; vexxml format --in-place a.xml"),
              (Outcome{2, "", "a.xml: error: cannot be written: File too large\n"}));
    EXPECT_EQ(place.read("a.xml"), document);
    EXPECT_EQ(place.list(), Names{"a.xml"});
}

TEST(InPlace, KeepsTheFileAtWhateverByteWritingFails) {
    const Workplace place;
    place.write("a.xml", "<a />");
    const std::size_t size = (kHead + "<a/>\n").size();
    const std::string failure = "a.xml: error: cannot be written: File too large 2\n";
    // The limit holds for every file that is written, so what is printed goes into a pipe.
    const Outcome outcome =
        place.run("for size in $(seq 0 " + std::to_string(size - 1) +
                  "); do { prlimit --fsize=$size vexxml format --in-place a.xml 2>&1; echo $?; } | "
                  "paste -sd ' '; [ \"$(cat a.xml)\" = '<a />' ] && [ \"$(ls -A)\" = a.xml ] || "
                  "echo changed; done");
    std::string failures;
    for (std::size_t i = 0; i < size; ++i) failures += failure;
    EXPECT_EQ(outcome, (Outcome{0, failures, ""}));
    EXPECT_EQ(
        place.run("prlimit --fsize=" + std::to_string(size) + " vexxml format --in-place a.xml"),
        (Outcome{0, "", ""}));
    EXPECT_EQ(place.read("a.xml"), kHead + "<a/>\n");
}

TEST(InPlace, KeepsTheFileWhenItsFolderCannotBeWrittenTo) {
    const Workplace place;
    place.run("mkdir folder");
    place.write("folder/a.xml", "<a><b/></a>");
    EXPECT_EQ(
        place.run("chmod 555 folder; " +
                  support::bareOfPrivileges("vexxml format --in-place folder/a.xml") +
                  "; status=$?; chmod 755 folder; ls -A folder; exit $status"),
        (Outcome{2, "a.xml\n", "folder/a.xml: error: cannot be written: Permission denied\n"}));
    EXPECT_EQ(place.read("folder/a.xml"), "<a><b/></a>");
}

TEST(InPlace, TakesAFormattedFileToBeFormatted) {
    const Workplace place;
    place.write("a.xml", kFormatted);
    EXPECT_EQ(place.run("vexxml format --in-place a.xml"), (Outcome{0, "", ""}));
    EXPECT_EQ(place.read("a.xml"), kFormatted);
}

}  // namespace
