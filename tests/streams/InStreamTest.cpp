#include <gtest/gtest.h>

#include <string>
#include <type_traits>
#include <utility>

#include "VexXml/Streams.h"
#include "support/PlainInStream.h"

namespace {

using support::PlainInStream;

const std::string kEnd = "Unexpected end of stream";
const std::string kQuoteExpected = "\"\"\" or \"'\" expected";

/// What an operation answered, where it left the stream, and the error text.
std::string outcome(bool answer, Xml::InStream& in) {
    return std::string(answer ? "true" : "false") + " at " + std::to_string(in.getPosition()) +
           " " + in.getErrorMessage();
}

/// The bytes not yet read.
std::string restOf(Xml::InStream& in) {
    std::string rest;
    char c = 0;
    while (in.getChar(c)) rest += c;
    return rest;
}

TEST(InStream, GetReadsByteAfterByte) {
    PlainInStream in("ab");
    char c = 0;
    EXPECT_TRUE(in.get(c));
    EXPECT_EQ(c, 'a');
    EXPECT_TRUE(in.get(c));
    EXPECT_EQ(c, 'b');
    EXPECT_EQ(in.getErrorMessage(), "");
    EXPECT_EQ(outcome(in.get(c), in), "false at 2 " + kEnd);
}

TEST(InStream, PutBackCharMovesBackByOneByte) {
    PlainInStream in("ab");
    in.setPosition(2);
    in.putBackChar();
    EXPECT_EQ(in.getPosition(), 1);
    in.putBackChar();
    EXPECT_EQ(in.getPosition(), 0);
}

TEST(InStream, PutBackCharDoesNothingAtTheStart) {
    PlainInStream in("ab");
    in.putBackChar();
    EXPECT_EQ(in.getPosition(), 0);
}

TEST(InStream, EatWhiteStopsAtTheFirstOtherByte) {
    PlainInStream in(" \t\r\n\fa");
    in.eatWhite();
    EXPECT_EQ(outcome(true, in), "true at 4 ");
    in.eatWhite();
    EXPECT_EQ(in.getPosition(), 4);
}

TEST(InStream, EatWhiteLeavesAnErrorTextAtTheEnd) {
    PlainInStream in("  ");
    in.eatWhite();
    EXPECT_EQ(outcome(true, in), "true at 2 " + kEnd);
}

TEST(InStream, GetTokenKeepsItsArgumentWhenItFails) {
    PlainInStream in("'a");
    std::string token = "kept";
    EXPECT_EQ(outcome(in.getToken(token), in), "false at 2 " + kEnd);
    EXPECT_EQ(token, "kept");
}

TEST(InStream, GetNameReadsANameBehindWhiteSpace) {
    PlainInStream in(" \r\n_a:b-1.c>");
    std::string name;
    EXPECT_EQ(outcome(in.getName(name), in), "true at 11 ");
    EXPECT_EQ(name, "_a:b-1.c");
}

struct NoName {
    const char* input;
    int position;
    const char* error;
};

const NoName kNoNames[] = {
    {"1abc d", 4, "not a name: 1abc"},
    {"-a>", 2, "not a name: -a"},
    {" >a", 2, "not a name: >"},
    {"a#b ", 3, "not a name: a#b"},
    {"\xC3\xA4 ", 2, "not a name: \xC3\xA4"},
    {"&amp;a", 5, "not a name: &amp;"},
    {"'a' ", 3, "not a name: 'a'"},
    {"<a>", 1, "not a name: <"},
    {"<!a>", 3, "not a name: <!a"},
    {"<?xml ", 5, "not a name: <?xml"},
    {"<?a ", 2, "not a name: <?"},
    {"<!-- a", 4, "not a name: <!--"},
    {"/>", 2, "not a name: />"},
};

TEST(InStream, GetNameConsumesWhatIsNoNameAndKeepsItsArgument) {
    for (const NoName& row : kNoNames) {
        SCOPED_TRACE(row.input);
        PlainInStream in(row.input);
        std::string name = "kept";
        EXPECT_EQ(outcome(in.getName(name), in),
                  "false at " + std::to_string(row.position) + " " + row.error);
        EXPECT_EQ(name, "kept");
    }
}

// Only the bytes gathered count, so the end of the stream is not what is reported.
const NoName kCutOffNames[] = {
    {"", 0, "not a name: "},     {"  ", 2, "not a name: "},   {"&am", 3, "not a name: &am"},
    {"'a", 2, "not a name: 'a"}, {"<!", 2, "not a name: <!"}, {"<!-", 3, "not a name: <!"},
};

TEST(InStream, GetNameTellsWhatItGatheredBeforeTheEnd) {
    for (const NoName& row : kCutOffNames) {
        SCOPED_TRACE(row.input);
        PlainInStream in(row.input);
        std::string name;
        EXPECT_EQ(outcome(in.getName(name), in),
                  "false at " + std::to_string(row.position) + " " + row.error);
    }
}

TEST(InStream, GetNameReportsLongTokensWhole) {
    const std::string token = "1" + std::string(100000, 'x');
    PlainInStream in(token);
    std::string name;
    EXPECT_FALSE(in.getName(name));
    EXPECT_EQ(in.getErrorMessage(), "not a name: " + token);
}

TEST(InStream, GetStringGivesTheQuotesAndTheRawContent) {
    PlainInStream in(" \r\n\"a 'b' &lt; <c>\r\n\"rest");
    std::string quoted;
    EXPECT_EQ(outcome(in.getString(quoted), in), "true at 21 ");
    EXPECT_EQ(quoted, "\"a 'b' &lt; <c>\r\n\"");
}

TEST(InStream, GetStringTakesEitherQuote) {
    PlainInStream in("'a\"'\"\"");
    std::string quoted;
    EXPECT_TRUE(in.getString(quoted));
    EXPECT_EQ(quoted, "'a\"'");
    EXPECT_TRUE(in.getString(quoted));
    EXPECT_EQ(quoted, "\"\"");
}

TEST(InStream, GetStringConsumesTheByteThatIsNoQuote) {
    PlainInStream in("  abc");
    std::string quoted = "kept";
    EXPECT_EQ(outcome(in.getString(quoted), in), "false at 3 " + kQuoteExpected);
    EXPECT_EQ(quoted, "kept");
}

TEST(InStream, GetStringFailsAtTheEnd) {
    for (const std::string input : {"", "  ", "'", "'a", "\"a'"}) {
        PlainInStream in(input);
        std::string quoted = "kept";
        EXPECT_EQ(outcome(in.getString(quoted), in),
                  "false at " + std::to_string(input.size()) + " " + kEnd);
        EXPECT_EQ(quoted, "kept");
    }
}

struct Check {
    const char* input;
    const char* expected;
    const char* outcome;
};

const Check kChecks[] = {
    {" =1", "=", "true at 2 "},
    {"CDATA ", "CDATA", "true at 5 "},
    {"<!-- ", "<!--", "true at 4 \"[\" expected"},
    {"'\"' ", "'\"'", "true at 3 "},
    {"<a", "</", "false at 1 \"</\" expected"},
    {"name>", "=", "false at 4 \"=\" expected"},
    {"Cdata ", "CDATA", "false at 5 \"CDATA\" expected"},
    {"a b", "a b", "false at 1 \"a b\" expected"},
    {"", "=", "false at 0 Unexpected end of stream"},
    {"'a", "'a'", "false at 2 Unexpected end of stream"},
};

TEST(InStream, CheckTokenConsumesTheTokenWhateverItIs) {
    for (const auto& [input, expected, result] : kChecks) {
        SCOPED_TRACE(input);
        PlainInStream in(input);
        EXPECT_EQ(outcome(in.checkToken(expected), in), result);
    }
}

// Deliberate: readers accept "/>" where a ">" is due.
const Check kEndChecks[] = {
    {"/>", ">", "true at 2 "},
    {"</a", "/", "true at 2 "},
    {"xCDATA ", "CDATA", "true at 6 "},
    {"<?xml ", "xml", "true at 5 "},
    {"'a' ", "'", "true at 3 "},
    {"&a; ", ";", "true at 3 "},
    {">", "/>", "false at 1 \"/>\" expected"},
    {"CDATAx ", "CDATA", "false at 6 \"CDATA\" expected"},
};

TEST(InStream, CheckTokenComparesOnlyTheEndOfTheToken) {
    for (const auto& [input, expected, result] : kEndChecks) {
        SCOPED_TRACE(input);
        PlainInStream in(input);
        EXPECT_EQ(outcome(in.checkToken(expected), in), result);
    }
}

TEST(InStream, CheckTokenForNothingTakesAnyToken) {
    PlainInStream in(" abc ");
    EXPECT_EQ(outcome(in.checkToken(""), in), "true at 4 ");
    EXPECT_EQ(outcome(in.checkToken(""), in), "false at 5 " + kEnd);
}

TEST(InStream, CheckTokenDoesNotSeeEarlierTokens) {
    PlainInStream in("a b");
    EXPECT_TRUE(in.checkToken("a"));
    EXPECT_EQ(outcome(in.checkToken("ab"), in), "false at 3 \"ab\" expected");
}

TEST(InStream, SkipStopsBehindTheFirstOccurrence) {
    PlainInStream in(" a -- b -->c-->");
    EXPECT_EQ(outcome(in.skip("-->"), in), "true at 11 ");
    EXPECT_EQ(restOf(in), "c-->");
}

TEST(InStream, SkipFindsWhatBeginsInsideAFailedMatch) {
    PlainInStream in("--->a");
    EXPECT_EQ(outcome(in.skip("-->"), in), "true at 4 ");
}

TEST(InStream, SkipReadsAsManyBytesAsItLooksForBeforeItCompares) {
    PlainInStream in("-->");
    EXPECT_TRUE(in.skip("--"));
    EXPECT_EQ(outcome(in.skip("-->"), in), "false at 3 " + kEnd);
}

TEST(InStream, SkipForNothingReadsNothing) {
    PlainInStream in("abc");
    EXPECT_EQ(outcome(in.skip(""), in), "true at 0 ");
}

TEST(InStream, SkipFailsAtTheEnd) {
    for (const std::string input : {"", "-", "--", "- ->", " -- "}) {
        PlainInStream in(input);
        EXPECT_EQ(outcome(in.skip("-->"), in),
                  "false at " + std::to_string(input.size()) + " " + kEnd);
    }
}

TEST(InStream, SkippedTextIsNoPartOfTheNextToken) {
    PlainInStream in("a-->b c");
    EXPECT_TRUE(in.skip("-->"));
    std::string token;
    EXPECT_TRUE(in.getToken(token));
    EXPECT_EQ(token, "b");
}

TEST(InStream, GetCharDataReadsUpToALessThanSign) {
    PlainInStream in("ab&amp;c\r\n\r<d");
    Xml::DataHolder text;
    EXPECT_EQ(outcome(in.getCharData(text), in), "true at 11 ");
    EXPECT_EQ(std::string(text), "ab&amp;c\r\n\r");
    EXPECT_EQ(restOf(in), "<d");
}

TEST(InStream, GetCharDataAppends) {
    PlainInStream in("b<");
    Xml::DataHolder text("a");
    EXPECT_TRUE(in.getCharData(text));
    EXPECT_TRUE(in.getCharData(text));
    EXPECT_EQ(std::string(text), "ab");
}

TEST(InStream, GetCharDataKeepsWhatItReadBeforeTheEnd) {
    PlainInStream in("b>\"c");
    Xml::DataHolder text("a");
    EXPECT_EQ(outcome(in.getCharData(text), in), "false at 4 " + kEnd);
    EXPECT_EQ(std::string(text), "ab>\"c");
}

TEST(InStream, KeepsAnErrorTextUntilTheNextFailure) {
    PlainInStream in("1a b 'c' d <e");
    std::string text;
    EXPECT_FALSE(in.getName(text));
    EXPECT_TRUE(in.getName(text));
    EXPECT_TRUE(in.getString(text));
    EXPECT_TRUE(in.checkToken("d"));
    Xml::DataHolder data;
    EXPECT_TRUE(in.getCharData(data));
    EXPECT_EQ(in.getErrorMessage(), "not a name: 1a");
    EXPECT_FALSE(in.checkToken(">"));
    EXPECT_EQ(in.getErrorMessage(), "\">\" expected");
}

TEST(InStream, HasNoErrorTextAtFirst) {
    const PlainInStream in("");
    EXPECT_EQ(in.getErrorMessage(), "");
}

/// A stream whose last byte was a carriage return, with one line start and one error text.
PlainInStream usedStream() {
    PlainInStream in("\r\r\na1 ");
    char c = 0;
    std::string name;
    in.get(c);
    in.get(c);
    in.setPosition(4);
    in.getName(name);
    in.setPosition(1);
    in.get(c);
    return in;
}

/// What shows the state of `usedStream()`: its error text, and its line starts behind the next
/// byte, a line feed that counts only behind the carriage return.
std::string stateOf(PlainInStream in) {
    const std::string error = in.getErrorMessage();
    char c = 0;
    in.get(c);
    const std::string line = std::to_string(in.getLine());
    in.setPosition(5);
    return error + ", line " + line + ", column " + std::to_string(in.getColumn());
}

const char* const kUsedState = "not a name: 1, line 2, column 2";

TEST(InStream, CopiesCarryTheWholeState) {
    const PlainInStream in = usedStream();
    EXPECT_EQ(stateOf(PlainInStream(in)), kUsedState);
    PlainInStream assigned("x");
    assigned = in;
    EXPECT_EQ(stateOf(assigned), kUsedState);
}

TEST(InStream, MovesCarryTheWholeState) {
    PlainInStream in = usedStream();
    PlainInStream moved(std::move(in));
    EXPECT_EQ(stateOf(moved), kUsedState);
    PlainInStream assigned("x");
    assigned = std::move(moved);
    EXPECT_EQ(stateOf(assigned), kUsedState);
}

TEST(InStream, CopiesGoTheirOwnWays) {
    PlainInStream in("ab");
    PlainInStream copy(in);
    char c = 0;
    EXPECT_TRUE(copy.get(c));
    EXPECT_FALSE(copy.checkToken("c"));
    EXPECT_EQ(outcome(true, in), "true at 0 ");
}

TEST(InStream, SurvivesAssignmentFromItself) {
    PlainInStream in = usedStream();
    const PlainInStream& same = in;
    in = same;
    EXPECT_EQ(stateOf(in), kUsedState);
}

TEST(InStream, LeavesNoStateBehindWhenMovedFrom) {
    Xml::StringInStream in("\r\r1 ");
    std::string name;
    EXPECT_FALSE(in.getName(name));
    const Xml::StringInStream taken(std::move(in));
    EXPECT_EQ(taken.getErrorMessage(), "not a name: 1");
    // NOLINTNEXTLINE(bugprone-use-after-move): this is what is tested
    EXPECT_EQ(in.getErrorMessage(), "");
    EXPECT_EQ(in.getLine(), 1);
    EXPECT_TRUE(in.eof());
}

static_assert(std::is_abstract_v<Xml::InStream>);
static_assert(std::has_virtual_destructor_v<Xml::InStream>);

TEST(InStream, ChecksATokenForTheErrorTextItself) {
    const std::string name(300, 'b');
    PlainInStream in("1x <?1" + name + " rest");
    std::string ignored;
    in.getName(ignored);
    EXPECT_FALSE(in.checkToken(in.getErrorMessage()));
    EXPECT_EQ(in.getErrorMessage(), "\"not a name: 1x\" expected");
}

}  // namespace
