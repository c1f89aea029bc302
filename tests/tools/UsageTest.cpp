#include <gtest/gtest.h>

#include <string>

#include "tools/Workplace.h"

namespace {

using support::Outcome;
using support::Workplace;

const char* const kDocumentStatuses = "Exit status: 0 success, 1 a document that is not";

// What may stand behind the program's name, and what is said about the exit status.
const std::pair<std::string, const char*> kCommands[] = {
    {"", kDocumentStatuses},
    {"format ", kDocumentStatuses},
    {"validate ", kDocumentStatuses},
    {"dtd ", kDocumentStatuses},
    {"query ", "Exit status: 0 something was selected in any file, 1 nothing was"},
    {"tree ", kDocumentStatuses},
    {"stat ", kDocumentStatuses},
    {"diff ", "Exit status: 0 the documents are the same, 1 they differ, 2 wrong usage"},
    {"edit ", "Exit status: 0 success, 1 nothing was selected, 2 a malformed expression"},
};

TEST(Usage, VersionIsToldEverywhere) {
    const Workplace place;
    for (const auto& [command, statuses] : kCommands) {
        EXPECT_EQ(place.run("vexxml " + command + "--version"),
                  (Outcome{0, "vexxml " VEXXML_VERSION "\n", ""}));
    }
}

TEST(Usage, HelpIsGivenEverywhereAndTellsTheExitStatuses) {
    const Workplace place;
    for (const auto& [command, statuses] : kCommands) {
        const Outcome help = place.run("vexxml " + command + "--help");
        EXPECT_EQ(help.status, 0) << help;
        EXPECT_EQ(help.err, "");
        EXPECT_NE(help.out.find("Usage: vexxml"), std::string::npos) << help;
        EXPECT_NE(help.out.find(statuses), std::string::npos) << help;
    }
}

TEST(Usage, HelpOfFormatTellsWhatIsLost) {
    const Outcome help = Workplace().run("vexxml format --help");
    EXPECT_NE(help.out.find("comments, processing\ninstructions, document type declarations with "
                            "PUBLIC, the encoding declaration,\n"),
              std::string::npos)
        << help;
}

// The arguments, and what is said about them.
const std::pair<const char*, const char*> kWrong[] = {
    {"", "A subcommand is required"},
    {"a.xml", "A subcommand is required"},
    {"frmat a.xml", "A subcommand is required"},
    {"--unknown", "A subcommand is required"},
    {"format", "FILE is required"},
    {"format a.xml b.xml", "The following argument was not expected: b.xml"},
    {"format --unknown a.xml", "The following argument was not expected: --unknown"},
    {"format -o", "--output: 1 required OUT missing"},
    {"format -o b.xml --in-place a.xml", "--output excludes --in-place"},
    {"format --in-place -", "--in-place: needs a file, not the standard input"},
    {"validate", "FILE is required"},
    {"validate --dtd", "--dtd: 1 required DTD missing"},
    {"dtd", "FILE is required"},
    {"dtd a.xml b.xml", "The following argument was not expected: b.xml"},
    {"query", "EXPRESSION is required"},
    {"query //a", "FILE is required"},
    {"query -a a.xml", "FILE is required"},
    {"query --node --value //a a.xml", "--node excludes --value"},
    {"tree", "FILE is required"},
    {"tree --depth 0 a.xml", "--depth: Value 0 not in range 1 to 1000000000"},
    {"tree --color red a.xml", "--color: red not in {auto,always,never}"},
    {"stat", "FILE is required"},
    {"stat --top 1 --all a.xml", "--top excludes --all"},
    {"stat --top -1 a.xml", "--top: Value -1 not in range 0 to 1000000000"},
};

TEST(Usage, WrongArgumentsAreNamedAndEndWithStatusTwo) {
    const Workplace place;
    place.write("a.xml", "<a/>");
    for (const auto& [arguments, text] : kWrong) {
        SCOPED_TRACE(arguments);
        EXPECT_EQ(place.run(std::string("vexxml ") + arguments),
                  (Outcome{2, "",
                           "vexxml: " + std::string(text) +
                               "\nRun with --help for more information.\n"}));
    }
}

// What to run, and the name of what cannot be read with the reason.
const std::pair<const char*, const char*> kUnreadable[] = {
    {"vexxml format missing.xml",
     "missing.xml: error: cannot be read: No such file or directory\n"},
    {"vexxml dtd missing.xml", "missing.xml: error: cannot be read: No such file or directory\n"},
    {"vexxml validate missing.xml",
     "missing.xml: error: cannot be read: No such file or directory\n"},
    {"vexxml query //a missing.xml",
     "missing.xml: error: cannot be read: No such file or directory\n"},
    {"vexxml validate --dtd missing.dtd a.xml",
     "missing.dtd: error: cannot be read: No such file or directory\n"},
    {"vexxml format folder", "folder: error: cannot be read: Is a directory\n"},
    {"vexxml format a.xml/b", "a.xml/b: error: cannot be read: Not a directory\n"},
    {"vexxml format large.xml", "large.xml: error: cannot be read: 2 GiB or more is too long\n"},
    {"vexxml format - <&-", "-: error: cannot be read: Bad file descriptor\n"},
};

TEST(Usage, InputThatCannotBeReadIsNamedAndEndsWithStatusTwo) {
    const Workplace place;
    place.write("a.xml", "<a/>");
    ASSERT_EQ(place.run("mkdir folder && truncate --size 2147483648 large.xml"),
              (Outcome{0, "", ""}));
    for (const auto& [command, text] : kUnreadable) {
        SCOPED_TRACE(command);
        EXPECT_EQ(place.run(command), (Outcome{2, "", text}));
    }
}

TEST(Usage, FilesWithoutPermissionAreNamed) {
    const Workplace place;
    place.write("secret.xml", "<a/>");
    EXPECT_EQ(
        place.run("chmod 0 secret.xml; " + support::bareOfPrivileges("vexxml format secret.xml")),
        (Outcome{2, "", "secret.xml: error: cannot be read: Permission denied\n"}));
}

const char* const kWriters[] = {"format a.xml",
                                "validate a.xml",
                                "dtd a.xml",
                                "query / a.xml",
                                "query --count //b a.xml",
                                "tree a.xml",
                                "stat a.xml",
                                "edit --rename b /a a.xml",
                                "--help",
                                "--version",
                                "format --help"};

TEST(Usage, FullStandardOutputEndsWithStatusTwo) {
    const Workplace place;
    place.write("a.xml", "<!DOCTYPE a [<!ELEMENT a EMPTY>]><a/>");
    for (const std::string arguments : kWriters) {
        SCOPED_TRACE(arguments);
        EXPECT_EQ(place.run("vexxml " + arguments + " >/dev/full"),
                  (Outcome{2, "",
                           "standard output: error: cannot be written: No space left on "
                           "device\n"}));
    }
}

TEST(Usage, ClosedStandardOutputMattersOnlyWhenWrittenTo) {
    const Workplace place;
    place.write("a.xml", "<a/>");
    EXPECT_EQ(place.run("vexxml validate a.xml >&-"),
              (Outcome{2, "", "standard output: error: cannot be written: Bad file descriptor\n"}));
    EXPECT_EQ(place.run("vexxml validate --quiet a.xml >&-"), (Outcome{0, "", ""}));
    EXPECT_EQ(place.run("vexxml query //b a.xml >&-"), (Outcome{1, "", ""}));
}

}  // namespace
