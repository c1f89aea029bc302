#include <gtest/gtest.h>

#include <string>
#include <utility>

#include "VexXml/Streams.h"
#include "support/PlainInStream.h"

namespace {

const char* const kEnd = "Unexpected end of stream";
const char* const kBracket = "\"[\" expected";
const char* const kNone = "";

/// One `getToken`: `token` at `position` with `error` left behind, whether it succeeded or not.
std::string firstToken(Xml::InStream& in) {
    std::string token = "(kept)";
    const bool found = in.getToken(token);
    const std::string shown = found ? "token " + token : "none, " + token;
    return shown + " at " + std::to_string(in.getPosition()) + " " + in.getErrorMessage();
}

/// All tokens with a bar between them.
std::string tokensOf(const std::string& input) {
    Xml::StringInStream in(input);
    std::string all;
    std::string token;
    while (in.getToken(token)) all += all.empty() ? token : "|" + token;
    return all;
}

struct FirstToken {
    const char* input;
    const char* token;  ///< null when there is none
    int position;       ///< behind the token, or where its reading failed
    const char* error;  ///< the text that is left behind, successful or not
};

template <std::size_t N>
void expectFirstTokens(const FirstToken (&rows)[N]) {
    for (const FirstToken& row : rows) {
        SCOPED_TRACE(row.input);
        const std::string found =
            row.token != nullptr ? std::string("token ") + row.token : "none, (kept)";
        const std::string expected =
            found + " at " + std::to_string(row.position) + " " + row.error;
        Xml::StringInStream text(row.input);
        EXPECT_EQ(firstToken(text), expected);
        support::PlainInStream plain(row.input);
        EXPECT_EQ(firstToken(plain), expected);
    }
}

const FirstToken kWords[] = {
    {"abc d", "abc", 3, kNone},
    {"abc", "abc", 3, kEnd},
    {" \t\r\n abc ", "abc", 8, kNone},
    {"a\tb", "a", 1, kNone},
    {"a\rb", "a", 1, kNone},
    {"a\nb", "a", 1, kNone},
    {"a\fb ", "a\fb", 3, kNone},
    {"a-b.c_d:e=", "a-b.c_d:e", 9, kNone},
    {"#PCDATA)", "#PCDATA", 7, kNone},
    {"a&b; ", "a&b;", 4, kNone},
    {"%pe;>", "%pe;", 4, kNone},
    {";a ", ";a", 2, kNone},
    {"{@}~^`$ ", "{@}~^`$", 7, kNone},
    {"\xC3\xA4\xFF ", "\xC3\xA4\xFF", 3, kNone},
    {"", nullptr, 0, kEnd},
    {" \r\n\t", nullptr, 4, kEnd},
};

TEST(InStreamTokens, WordsEndAtADelimiterOrWhiteSpace) { expectFirstTokens(kWords); }

const FirstToken kReferences[] = {
    {"&amp;rest", "&amp;", 5, kNone}, {"&a b;", "&a b;", 5, kNone},
    {"&;", "&;", 2, kNone},           {"&<\"'>/&;;", "&<\"'>/&;", 8, kNone},
    {" &#65;", "&#65;", 6, kNone},    {"&amp", nullptr, 4, kEnd},
    {"&", nullptr, 1, kEnd},
};

TEST(InStreamTokens, ReferencesReachToTheNextSemicolonWhateverLiesBetween) {
    expectFirstTokens(kReferences);
}

const FirstToken kStrings[] = {
    {"\"a\" b", "\"a\"", 3, kNone},
    {"'a' b", "'a'", 3, kNone},
    {"\"\"", "\"\"", 2, kNone},
    {"  'it is \"so\"'", "'it is \"so\"'", 14, kNone},
    {"\"it's\"", "\"it's\"", 6, kNone},
    {"'&lt;<a>\r\n'", "'&lt;<a>\r\n'", 11, kNone},
    {"\"a", nullptr, 2, kEnd},
    {"'a\"", nullptr, 3, kEnd},
    {"'", nullptr, 1, kEnd},
};

TEST(InStreamTokens, QuotedStringsComeRawWithTheirQuotes) { expectFirstTokens(kStrings); }

const FirstToken kSlashes[] = {
    {"/>", "/>", 2, kNone},  {"/", "/", 1, kEnd},       {"/a", "/", 1, kNone},
    {"//>", "/", 1, kNone},  {"/ >", "/", 1, kNone},    {" />>", "/>", 3, kNone},
    {"/\"a", "/", 1, kNone}, {"/\r\n>", "/", 1, kNone},
};

TEST(InStreamTokens, ASlashTakesOnlyAGreaterThanSignRightBehindIt) { expectFirstTokens(kSlashes); }

const FirstToken kTags[] = {
    {"<", "<", 1, kEnd},       {"<a", "<", 1, kNone},    {"< /a>", "<", 1, kNone},
    {"<<", "<", 1, kNone},     {"</a>", "</", 2, kNone}, {"</", "</", 2, kNone},
    {"<\"a", "<", 1, kNone},   {"<&a;", "<", 1, kNone},  {" </>", "</", 3, kNone},
    {"<\r\n!", "<", 1, kNone},
};

TEST(InStreamTokens, TagsBeginWithALessThanSignAloneOrWithASlash) { expectFirstTokens(kTags); }

const FirstToken kInstructions[] = {
    {"<?xml version", "<?xml", 5, kNone},
    {"<?xml", "<?xml", 5, kEnd},
    {"<?xml?>", "<?xml", 5, kNone},
    {"<?abcxml?>", "<?abcxml", 8, kNone},
    {"<? \r\n xml ?>", "<?xml", 9, kNone},
    {"<?xml-stylesheet ", "<?", 2, kNone},
    {"<?xmlx ", "<?", 2, kNone},
    {"<?XML ", "<?", 2, kNone},
    {"<?php ", "<?", 2, kNone},
    {"<?php", "<?", 2, kEnd},
    {"<?", "<?", 2, "not a name: "},
    {"<? ", "<?", 2, "not a name: "},
    {"<?>", "<?", 2, "not a name: >"},
    {"<?\?>", "<?", 2, "not a name: ?"},
    {"<?1xml?>", "<?", 2, "not a name: 1xml"},
    {"<?\"xml\"?>", "<?", 2, "not a name: \"xml\""},
    {"<?&xml;?>", "<?", 2, "not a name: &xml;"},
    {"<?'xml", "<?", 2, "not a name: 'xml"},
    {"<?<?xml ", "<?", 2, "not a name: <?xml"},
};

TEST(InStreamTokens, InstructionsComeWithTheirNameOnlyIfItEndsInXml) {
    expectFirstTokens(kInstructions);
}

const FirstToken kDeclarations[] = {
    {"<!DOCTYPE a>", "<!DOCTYPE", 9, kNone},
    {"<!ELEMENT a", "<!ELEMENT", 9, kNone},
    {"<!ATTLIST a", "<!ATTLIST", 9, kNone},
    {"<!ENTITY a", "<!ENTITY", 8, kNone},
    {"<!x", "<!x", 3, kEnd},
    {"<!x(", "<!x", 3, kNone},
    {"<! \t x ", "<!x", 6, kNone},
    {"<!>", "<!", 2, kBracket},
    {"<!1 ", "<!", 2, kBracket},
    {"<!&a;", "<!", 2, kBracket},
    {"<!\"a\"", "<!", 2, kBracket},
    {"<!\"a", "<!", 2, kEnd},
    {"<! ", "<!", 2, kEnd},
    {"<!", nullptr, 2, kEnd},
};

TEST(InStreamTokens, DeclarationsComeWithTheirName) { expectFirstTokens(kDeclarations); }

const FirstToken kComments[] = {
    {"<!-- x -->", "<!--", 4, kBracket}, {"  <!-- x -->", "<!--", 6, kBracket},
    {"<!--", "<!--", 4, kBracket},       {"<!--x", "<!--", 4, kBracket},
    {"<!---->", "<!--", 4, kBracket},    {"<!-->", "<!--", 4, kBracket},
    {"<!-x", "<!", 2, kBracket},         {"<!- -", "<!", 2, kBracket},
    {"<! --", "<!", 2, kBracket},        {"<!-", nullptr, 3, kEnd},
};

TEST(InStreamTokens, CommentsNeedBothDashesRightBehindTheExclamationMark) {
    expectFirstTokens(kComments);
}

const FirstToken kSections[] = {
    {"<![CDATA[a]]>", "<![CDATA[", 9, "not a name: ["},
    {"<![CDATA[", "<![CDATA[", 9, "not a name: ["},
    {"<! [", "<![", 4, kEnd},
    {"<!\r\n[a", "<![", 5, "\"CDATA\" expected"},
    {"<![ CDATA [a", "<![CDATA[", 11, "not a name: ["},
    {"<! [ CDATA\r\n[", "<![CDATA[", 13, "not a name: ["},
    {"<![", "<![", 3, kEnd},
    {"<![CDATA", "<![", 3, kEnd},
    {"<![CDATA a[", "<![", 3, kBracket},
    {"<![CDATAx[", "<![", 3, "\"CDATA\" expected"},
    {"<![cdata[", "<![", 3, "\"CDATA\" expected"},
    {"<![IGNORE[", "<![", 3, "\"CDATA\" expected"},
    {"<![[", "<![", 3, "\"CDATA\" expected"},
};

TEST(InStreamTokens, SectionsMayHoldWhiteSpaceInTheirOpening) { expectFirstTokens(kSections); }

// Deliberate: a check inside "<!" looks at the end of what was gathered, not at the whole token.
const FirstToken kLongerMatches[] = {
    {"<![xCDATA[", "<![xCDATA[", 10, "not a name: ["},
    {"<![#CDATA [", "<![#CDATA[", 11, "not a name: ["},
    {"<![<!CDATA[", "<![<!CDATA[", 11, "not a name: ["},
    {"<!<![", "<!<![", 5, kEnd},
    {"<!<![a", "<!<![", 5, "\"CDATA\" expected"},
    {"<!<![CDATA[x ", "<!<![CDATA[", 11, "\"CDATA\" expected"},
    {"<!<![CDATA[CDATA[x ", "<!<![CDATA[CDATA[", 17, "not a name: ["},
    {"<![CDATA<![", "<![CDATA<![", 11, kEnd},
};

TEST(InStreamTokens, ChecksInsideASectionOpeningMatchTheEndOfALongerToken) {
    expectFirstTokens(kLongerMatches);
}

const FirstToken kNestedOpeners[] = {
    {"<!<a", "<!", 2, kBracket},
    {"<!</a", "<!", 2, kBracket},
    {"<!<!DOCTYPE a", "<!", 2, kBracket},
    {"<!<!-- a", "<!", 2, kBracket},
    {"<!<!", "<!", 2, kEnd},
    {"<!<!<!", "<!", 2, kBracket},
    {"<?<!DOCTYPE ", "<?", 2, "not a name: <!DOCTYPE"},
    {"<?<?", "<?", 2, "not a name: <?"},
    {"<?</", "<?", 2, "not a name: </"},
    {"<?<!--", "<?", 2, "not a name: <!--"},
    {"<![<![", "<![", 3, "\"CDATA\" expected"},
};

TEST(InStreamTokens, AnOpenerBehindAnOpenerIsNoName) { expectFirstTokens(kNestedOpeners); }

const std::string kDelimiters = "(),><=\"'[]*+?!|/\\";

TEST(InStreamTokens, SeventeenBytesDelimitWords) {
    ASSERT_EQ(kDelimiters.size(), 17U);
    for (const char delimiter : kDelimiters) {
        EXPECT_EQ(tokensOf(std::string("a") + delimiter).substr(0, 2),
                  delimiter == '"' || delimiter == '\'' ? "a" : "a|")
            << delimiter;
    }
}

TEST(InStreamTokens, DelimitersThatBeginNothingLongerStandAlone) {
    for (const char delimiter : kDelimiters) {
        if (std::string("\"'</").find(delimiter) != std::string::npos) continue;
        const std::string tokens{delimiter, '|', delimiter, '|', 'a'};
        EXPECT_EQ(tokensOf({delimiter, delimiter, 'a'}), tokens);
    }
}

TEST(InStreamTokens, NoOtherByteEndsAWord) {
    const std::string endings = kDelimiters + " \t\r\n";
    for (int value = 0; value < 256; ++value) {
        std::string word = "a?b";
        word[1] = static_cast<char>(value);
        Xml::StringInStream in(word);
        std::string token;
        EXPECT_TRUE(in.getToken(token));
        const bool ends = endings.find(static_cast<char>(value)) != std::string::npos;
        EXPECT_EQ(token, ends ? "a" : word) << "byte " << value;
    }
}

TEST(InStreamTokens, MayHoldNulBytes) {
    Xml::StringInStream in(std::string("a\0b 'c\0d'", 9));
    std::string token;
    EXPECT_TRUE(in.getToken(token));
    EXPECT_EQ(token, std::string("a\0b", 3));
    EXPECT_TRUE(in.getToken(token));
    EXPECT_EQ(token, std::string("'c\0d'", 5));
}

// Each input, and all its tokens with a bar between them.
const std::pair<const char*, const char*> kSequences[] = {
    {"a/>", "a|/>"},
    {"a=\"1\"", "a|=|\"1\""},
    {"<!-- x -->", "<!--|x|--|>"},
    {"<!-x>", "<!|-x|>"},
    {"<?xml-stylesheet href=''?>", "<?|xml-stylesheet|href|=|''|?|>"},
    {"<?xml version='1.0'?>", "<?xml|version|=|'1.0'|?|>"},
    {"<a x = '1' ><b/></a >", "<|a|x|=|'1'|>|<|b|/>|</|a|>"},
    {"<!DOCTYPE a [\r\n<!ELEMENT a (b?,(c|d)+)*>\r\n]>",
     "<!DOCTYPE|a|[|<!ELEMENT|a|(|b|?|,|(|c|||d|)|+|)|*|>|]|>"},
    {"<!ATTLIST a x CDATA #FIXED\"1\">", "<!ATTLIST|a|x|CDATA|#FIXED|\"1\"|>"},
    {"<![CDATA[a]]>", "<![CDATA[|a|]|]|>"},
    {"a&b;c &d;e;f", "a&b;c|&d;|e;f"},
    {"\\ ! = \\a", "\\|!|=|\\|a"},
};

TEST(InStreamTokens, FollowOneAnother) {
    for (const auto& [input, tokens] : kSequences) EXPECT_EQ(tokensOf(input), tokens);
}

TEST(InStreamTokens, StartFromNothingEachTime) {
    Xml::StringInStream in("ab cd");
    std::string token;
    EXPECT_TRUE(in.skip("a"));
    EXPECT_TRUE(in.getToken(token));
    EXPECT_EQ(token, "b");
    EXPECT_TRUE(in.getToken(token));
    EXPECT_EQ(token, "cd");
}

}  // namespace
