#include <gtest/gtest.h>

#include <string>
#include <utility>

#include "VexXml/Readers.h"
#include "readers/Reading.h"

namespace {

using reading::Failure;
using reading::kEnd;
using reading::read;

const std::pair<const char*, const char*> kComments[] = {
    {"<!-- a -->b", "true at 10"},       {" \r\n<!----> ", "true at 10"},
    {"<!-- - -- ->--><a", "true at 15"}, {"<!--->-->", "true at 9"},
    {"<!--'\"&<!-->", "true at 12"},
};

TEST(CommentReader, ReadsUpToTheFirstEnd) {
    for (const auto& [input, outcome] : kComments) {
        SCOPED_TRACE(input);
        Xml::CommentReader reader;
        EXPECT_EQ(read(reader, input), outcome);
    }
}

const Failure kNoComments[] = {
    {"", 0, kEnd},
    {"a", 1, "\"<!--\" expected"},
    {"<a", 1, "\"<!--\" expected"},
    {"<!-a", 2, "\"<!--\" expected"},
    {"<!-", 3, kEnd},
    {"<!--", 4, kEnd},
    {"<!-->", 5, kEnd},
    {"<!--->", 6, kEnd},
    {"<!-- a --", 9, kEnd},
    {"<!-- a -- >", 11, kEnd},
};

TEST(CommentReader, ReportsWhatTheStreamMissed) {
    reading::expectFailures(kNoComments, "Xml::CommentReader", [] { return Xml::CommentReader(); });
}

const std::pair<const char*, const char*> kInstructions[] = {
    {"<?a b?>c", "true at 7"},     {" <?php echo '?>' ?>", "true at 15"},
    {"<?\?>", "true at 4"},        {"<?xml-stylesheet?>", "true at 18"},
    {"<? a ? > ?>", "true at 11"},
};

TEST(PIReader, ReadsUpToTheFirstEnd) {
    for (const auto& [input, outcome] : kInstructions) {
        SCOPED_TRACE(input);
        Xml::PIReader reader;
        EXPECT_EQ(read(reader, input), outcome);
    }
}

const Failure kNoInstructions[] = {
    {"", 0, kEnd},
    {"a", 1, "\"<?\" expected"},
    {"<?xml version?>", 5, "\"<?\" expected"},
    {"<!a", 3, "\"<?\" expected"},
    {"<?", 2, kEnd},
    {"<?>", 3, kEnd},
    {"<?a ?", 5, kEnd},
};

TEST(PIReader, ReportsWhatTheStreamMissed) {
    reading::expectFailures(kNoInstructions, "Xml::PIReader", [] { return Xml::PIReader(); });
}

}  // namespace
