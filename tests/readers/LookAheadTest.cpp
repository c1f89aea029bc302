#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "VexXml/Readers.h"
#include "VexXml/Streams.h"
#include "support/FileLikeInStream.h"
#include "support/PlainInStream.h"
#include "support/Readings.h"
#include "support/ShortTexts.h"

// Readers look ahead behind "&", "<?" and "<!", and remember what they found there. Nothing of that
// may show: a loop over the operations of the stream, which remember nothing, tells what is right.

namespace {

using Parse = std::function<bool(Xml::InStream&)>;

// All that can be seen of a stream behind the parse.
template <class Stream>
std::string stateBehind(const std::string& text, const Parse& parse) {
    Stream in(text);
    const bool answer = parse(in);
    std::string state = (answer ? "true at " : "false at ") + std::to_string(in.getPosition());
    state += ", \"" + in.getErrorMessage() + "\", line " + std::to_string(in.getLine()) + ", ";
    return state + support::linesOf(in, text.size());
}

template <class Stream>
bool agree(const std::string& text, const Parse& parse, const Parse& expected) {
    SCOPED_TRACE(text);
    EXPECT_EQ(stateBehind<Stream>(text, parse), stateBehind<Stream>(text, expected));
    return !testing::Test::HasFailure();
}

void expectAgreement(const std::vector<std::string>& pieces, const std::string& before,
                     const std::string& after, const Parse& parse, const Parse& expected) {
    support::forEachText(pieces, 4, [&](const std::string& inner) {
        const std::string text = before + inner + after;
        return agree<Xml::StringInStream>(text, parse, expected) &&
               agree<support::PlainInStream>(text, parse, expected) &&
               agree<support::FileLikeInStream>(text, parse, expected);
    });
}

// (CharData | PI)* '</' Name '>'
bool passContent(Xml::InStream& in) {
    for (std::string token;;) {
        const int start = in.getPosition();
        if (!in.getToken(token)) return false;
        if (token == "</") return in.getToken(token) && token == "a" && in.checkToken(">");
        if (token.compare(0, 2, "<?") == 0) {
            if (!in.skip("?>")) return false;
            continue;
        }
        in.setPosition(start);
        Xml::DataHolder text;
        if (token.front() == '<' || !in.getCharData(text)) return false;
    }
}

bool passElement(Xml::InStream& in) {
    std::string token;
    return in.checkToken("<") && in.getName(token) && in.getToken(token) && passContent(in);
}

bool readElement(Xml::InStream& in) { return Xml::ElementReader(nullptr).parse(in); }

TEST(LookAhead, DoesNotShowInTheContentOfAnElement) {
    expectAgreement({"&", ";", "<?", "?>", "x", "\r", "\n"}, "<a>", "</a>", readElement,
                    passElement);
}

TEST(LookAhead, DoesNotShowInTextsAndInstructionsOneBehindAnother) {
    expectAgreement({"<?&?>", "&<?x?>", "<?\r&?>\r", ";", "<? &;?>", "<?&", "\r"}, "<a>", "</a>",
                    readElement, passElement);
}

bool passPublicDoctype(Xml::InStream& in) {
    bool inSubset = false;
    std::string token;
    do {
        if (!in.getToken(token)) return false;
        if (token == "[") inSubset = true;
        if (token == "]") inSubset = false;
        if (inSubset && token == "<!--" && !in.skip("-->")) return false;
    } while (inSubset || token != ">");
    return true;
}

// In front of it the prolog is looked for, and what it is.
bool passPublicDocument(Xml::InStream& in) {
    std::string token;
    in.eatWhite();
    for (const int tokens : {1, 1, 3}) {
        in.setPosition(0);
        for (int i = 0; i < tokens; ++i) {
            if (!in.getToken(token)) return false;
        }
    }
    return passPublicDoctype(in);
}

bool readDocument(Xml::InStream& in) { return Xml::DocumentReader().parse(in); }

// Without its ">", so that it goes on to the end.
TEST(LookAhead, DoesNotShowInAPublicDocumentTypeDeclaration) {
    expectAgreement({"<!", "<?", "[", "-", "x", "\r", "\n", "CDATA"}, "<!DOCTYPE a PUBLIC ", "",
                    readDocument, passPublicDocument);
}

TEST(LookAhead, DoesNotShowWhereOpenersAreNested) {
    expectAgreement({"<![", "<?", "<! \r\n", "&;", "]", "--"}, "<!DOCTYPE a PUBLIC <!<?<![", "",
                    readDocument, passPublicDocument);
}

bool passInstructions(Xml::InStream& in) {
    in.eatWhite();
    if (in.eof()) return true;
    for (std::string token;;) {
        const int start = in.getPosition();
        if (!in.getToken(token)) return in.eof();
        in.setPosition(start);
        if (token != "<?") return true;
        if (!in.checkToken("<?") || !in.skip("?>")) return false;
    }
}

TEST(LookAhead, DoesNotShowBehindTheRootElement) {
    const auto expected = [](Xml::InStream& in) {
        std::string token;
        for (int i = 0; i < 2; ++i) {
            if (!in.getToken(token)) return false;
            in.setPosition(0);
        }
        return in.checkToken("<") && in.getName(token) && in.getToken(token) &&
               passInstructions(in);
    };
    expectAgreement({"&", ";", "<?", "?>", "\r", "\n", "<?&?>"}, "<a/>", "", readDocument,
                    expected);
}

// There the stream cannot be set back, so the instruction itself is not found.
TEST(LookAhead, BeyondTheEndOfAFileIsReportedForTheInstruction) {
    support::FileLikeInStream in("<a/><?&>");
    Xml::DocumentReader reader;
    EXPECT_FALSE(reader.parse(in));
    EXPECT_EQ(reader.getErrorMessage(),
              "(line = 1, column = -1) Unexpected end of stream <Xml::PIReader>");
}

}  // namespace
