#include <gtest/gtest.h>

#include <ostream>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "VexXml/Streams.h"
#include "support/FileLikeInStream.h"
#include "support/PlainInStream.h"
#include "support/ReferenceLexer.h"
#include "support/ShortTexts.h"

namespace {

using support::FileLikeInStream;
using support::forEachText;
using support::PlainInStream;
using support::ReferenceLexer;

enum class Kind {
    Get,
    PutBack,
    EatWhite,
    Token,
    Name,
    String,
    Check,
    Skip,
    CharData,
    Move,
    kCount
};

struct Operation {
    Kind kind;
    std::string text;  ///< Check and Skip only
    int position = 0;  ///< Move only
};

/// All that can be seen of a lexer behind an operation.
struct Outcome {
    bool answer;
    std::string text;
    std::string error;
    int position;
    int line;
    int column;
    bool eof;

    bool operator==(const Outcome& other) const {
        return answer == other.answer && text == other.text && error == other.error &&
               position == other.position && line == other.line && column == other.column &&
               eof == other.eof;
    }
};

std::ostream& operator<<(std::ostream& out, const Outcome& outcome) {
    return out << (outcome.answer ? "true \"" : "false \"") << outcome.text << "\" at "
               << outcome.position << ", line " << outcome.line << ", column " << outcome.column
               << (outcome.eof ? ", at the end, \"" : ", \"") << outcome.error << '"';
}

std::ostream& operator<<(std::ostream& out, const Operation& operation) {
    static const char* const kNames[] = {"get",         "putBackChar", "eatWhite",   "getToken",
                                         "getName",     "getString",   "checkToken", "skip",
                                         "getCharData", "setPosition"};
    return out << kNames[static_cast<int>(operation.kind)] << '(' << operation.text << ' '
               << operation.position << ')';
}

template <class Lexer>
bool perform(Lexer& lexer, const Operation& operation, std::string& text) {
    switch (operation.kind) {
        case Kind::Get:
            text = "?";
            return lexer.get(text[0]);
        case Kind::PutBack:
            lexer.putBackChar();
            return true;
        case Kind::EatWhite:
            lexer.eatWhite();
            return true;
        case Kind::Token:
            return lexer.getToken(text);
        case Kind::Name:
            return lexer.getName(text);
        case Kind::String:
            return lexer.getString(text);
        case Kind::Check:
            return lexer.checkToken(operation.text);
        case Kind::Skip:
            return lexer.skip(operation.text);
        case Kind::CharData: {
            Xml::DataHolder data;
            const bool answer = lexer.getCharData(data);
            text = static_cast<std::string>(data);
            return answer;
        }
        default:
            lexer.setPosition(operation.position);
            return true;
    }
}

template <class Lexer>
Outcome outcomeOf(Lexer& lexer, const Operation& operation) {
    Outcome outcome{};
    outcome.answer = perform(lexer, operation, outcome.text);
    outcome.error = lexer.getErrorMessage();
    outcome.position = lexer.getPosition();
    outcome.line = lexer.getLine();
    outcome.column = lexer.getColumn();
    outcome.eof = lexer.eof();
    return outcome;
}

/// Performs the operation on both; false when they differ, which is also reported.
bool agree(Xml::InStream& in, ReferenceLexer& reference, const Operation& operation,
           const std::string& text) {
    const Outcome found = outcomeOf(in, operation);
    const Outcome expected = outcomeOf(reference, operation);
    EXPECT_EQ(found, expected) << operation << " in " << testing::PrintToString(text);
    return found == expected;
}

/// Reads tokens to the end, then asks for line and column at every position.
bool tokensAgree(Xml::InStream& in, ReferenceLexer& reference, const std::string& text) {
    const Operation token{Kind::Token, {}};
    std::string ignored;
    while (!in.eof()) {
        const int before = in.getPosition();
        if (!agree(in, reference, token, text)) return false;
        if (in.getPosition() == before) break;
    }
    for (int position = 0; position <= static_cast<int>(text.size()); ++position) {
        if (!agree(in, reference, {Kind::Move, {}, position}, text)) return false;
    }
    return true;
}

/// First the given operation, then tokens.
template <class Stream>
bool agreeOn(const std::string& text, const Operation& first) {
    Stream in(text);
    Stream source(text);
    ReferenceLexer reference(source);
    return agree(in, reference, first, text) && tokensAgree(in, reference, text);
}

const std::vector<std::string> kPieces = {"<",  "!", "?",  "[",  "-", "/", ">",     "&",  ";",
                                          "\"", "'", "\r", "\n", " ", "a", "CDATA", "xml"};

const std::vector<Operation> kFirstOperations = {
    {Kind::Token, {}},    {Kind::Name, {}},    {Kind::String, {}}, {Kind::Check, "["},
    {Kind::Check, ">"},   {Kind::Skip, "-->"}, {Kind::Skip, "?"},  {Kind::CharData, {}},
    {Kind::EatWhite, {}}, {Kind::Get, {}},
};

TEST(InStreamAgreesWithTheReference, OnTheTokensOfEveryShortText) {
    forEachText(kPieces, 4, [](const std::string& text) {
        return agreeOn<Xml::StringInStream>(text, {Kind::Token, {}});
    });
}

TEST(InStreamAgreesWithTheReference, OnWhatFollowsEveryOpener) {
    for (const std::string opener : {"<!", "<?", "<![", "<![CDATA", "<!-", "<!<![", "\r<!"}) {
        forEachText(kPieces, 3, [&](const std::string& text) {
            return agreeOn<Xml::StringInStream>(opener + text, {Kind::Token, {}});
        });
    }
}

TEST(InStreamAgreesWithTheReference, OnEveryOperationAtTheStartOfEveryShortText) {
    for (const Operation& operation : kFirstOperations) {
        forEachText(kPieces, 3, [&](const std::string& text) {
            return agreeOn<PlainInStream>(text, operation);
        });
    }
}

TEST(InStreamAgreesWithTheReference, OnNestedOpeners) {
    forEachText({"<!", "<?", "<![", "[", "CDATA", "xml", "--", "\r"}, 5,
                [](const std::string& text) {
                    return agreeOn<Xml::StringInStream>(text, {Kind::Token, {}});
                });
}

// With a line end to follow each other, what is read twice records a line start that reading once
// would not.
TEST(InStreamAgreesWithTheReference, OnLinesReadMoreThanOnce) {
    forEachText({"<!", "\r", "\n", "a", "-", "["}, 6, [](const std::string& text) {
        return agreeOn<Xml::StringInStream>(text, {Kind::Token, {}});
    });
}

TEST(InStreamAgreesWithTheReference, WhereTheSourceEndsWithOneMoreSuccess) {
    for (const Operation& operation : kFirstOperations) {
        forEachText(kPieces, 3, [&](const std::string& text) {
            return agreeOn<FileLikeInStream>(text, operation);
        });
    }
}

TEST(InStreamAgreesWithTheReference, OverAStandardStream) {
    forEachText(kPieces, 3, [](const std::string& text) {
        std::istringstream source(text);
        Xml::FileInStream in(&source);
        FileLikeInStream like(text);
        ReferenceLexer reference(like);
        const Operation token{Kind::Token, {}};
        for (std::size_t time = 0; time <= text.size(); ++time) {
            if (!agree(in, reference, token, text)) return false;
        }
        return true;
    });
}

/// A choice of texts and operations, the same in every run.
class Generator {
public:
    std::string text() {
        std::string text;
        for (int pieces = below(25); pieces > 0; --pieces) text += piece();
        return text;
    }

    Operation operation(const std::string& text) {
        const auto kind = static_cast<Kind>(below(static_cast<int>(Kind::kCount)));
        Operation operation{kind, {}};
        if (kind == Kind::Check || kind == Kind::Skip) operation.text = piece();
        if (kind == Kind::Move) operation.position = below(static_cast<int>(text.size()) + 1);
        return operation;
    }

private:
    int below(int limit) { return static_cast<int>(mRandom() % static_cast<unsigned>(limit)); }

    std::string piece() {
        static const std::vector<std::string> kLong = {"<!--",      "-->", "<![CDATA[", "]]>",
                                                       "<!DOCTYPE", "?>",  "<?xml",     "\r\n",
                                                       "\r\r",      "</",  "",          "b"};
        const int choice = below(static_cast<int>(kPieces.size() + kLong.size()));
        const auto place = static_cast<std::size_t>(choice);
        return place < kPieces.size() ? kPieces[place] : kLong[place - kPieces.size()];
    }

    std::mt19937 mRandom{1};
};

template <class Stream>
bool agreeOnRandomOperations(Generator& generator) {
    const std::string text = generator.text();
    Stream in(text);
    Stream source(text);
    ReferenceLexer reference(source);
    for (int count = 0; count < 30; ++count) {
        if (!agree(in, reference, generator.operation(text), text)) return false;
    }
    return true;
}

TEST(InStreamAgreesWithTheReference, OnRandomOperations) {
    Generator generator;
    for (int time = 0; time < 20000; ++time) {
        if (!agreeOnRandomOperations<PlainInStream>(generator)) return;
    }
}

TEST(InStreamAgreesWithTheReference, OnRandomOperationsWhereTheSourceEndsWithOneMoreSuccess) {
    Generator generator;
    for (int time = 0; time < 20000; ++time) {
        if (!agreeOnRandomOperations<FileLikeInStream>(generator)) return;
    }
}

const char* const kConstructs[] = {
    "  <!-- x -->",
    "<![CDATA[a]]>",
    "<! [ CDATA\r\n[",
    "<!DOCTYPE a PUBLIC \"-//x\" 'y' [\r\n<!ELEMENT a (#PCDATA|b)*>\r\n]>",
    "<?xml version='1.0' encoding=\"UTF-8\"?>",
    "<?xml-stylesheet href='a'?>",
    "<a b = \"1\" c='&lt;'>\r\ntext &amp; 'more'\r\r<d/></a >",
    "<!ATTLIST a x CDATA #FIXED \"1\"\r\n y CDATA #REQUIRED>",
    "<!ENTITY e '<b>&#65;</b>'>",
    "<!<![xCDATA[CDATA[<!-<?abcxml",
};

TEST(InStreamAgreesWithTheReference, OnEveryPrefixOfEveryConstruct) {
    for (const std::string construct : kConstructs) {
        for (std::size_t size = 0; size <= construct.size(); ++size) {
            for (const Operation& operation : kFirstOperations) {
                agreeOn<Xml::StringInStream>(construct.substr(0, size), operation);
            }
        }
    }
}

TEST(InStreamAgreesWithTheReference, OnEveryByteAtEveryPlaceOfEveryConstruct) {
    for (const std::string construct : kConstructs) {
        for (std::size_t place = 0; place < construct.size(); ++place) {
            std::string text = construct;
            for (int value = 0; value < 256; ++value) {
                text[place] = static_cast<char>(value);
                if (!agreeOn<Xml::StringInStream>(text, {Kind::Token, {}})) return;
            }
        }
    }
}

}  // namespace
