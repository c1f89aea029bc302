#include <gtest/gtest.h>

#include <fstream>
#include <initializer_list>
#include <iterator>
#include <memory>
#include <random>
#include <sstream>
#include <string>

#include "VexSys/FileIO.h"
#include "VexXml/Readers.h"
#include "documents/Cases.h"
#include "support/FileLikeInStream.h"
#include "support/PlainInStream.h"
#include "support/Readings.h"
#include "support/TempFolder.h"

namespace {

using documents::Case;
using support::FileLikeInStream;
using support::PlainInStream;

/// The same document from all kinds of streams. What is read from each is one text.
class EveryStream : public documents::InCasesFolder {
protected:
    std::string readingOf(Xml::InStream& in) {
        Xml::DocumentReader reader;
        return support::readingOf(reader, in, diagnostics);
    }

    /// False when streams in memory disagree, which is also reported.
    bool agreeInMemory(const std::string& text) {
        const auto reading = [this](Xml::InStream& in) { return readingOf(in); };
        EXPECT_EQ(support::differenceBetweenStreams(text, reading), "")
            << testing::PrintToString(text);
        return !HasFailure();
    }

    /// The same for streams over a file.
    bool agreeOnDisk(const std::string& text) {
        const std::string path = folder.write("document.xml", text);
        PlainInStream plain(text);
        const std::string expected = readingOf(plain);
        Xml::FileSpecInStream named{VexSys::FileSpec(path)};
        EXPECT_EQ(readingOf(named), expected) << testing::PrintToString(text);

        VexSys::FileIO opened{VexSys::FileSpec(path)};
        EXPECT_TRUE(opened.Open(VexSys::kFileRead));
        Xml::FileSpecInStream given(opened);
        EXPECT_EQ(readingOf(given), expected) << testing::PrintToString(text);

        std::ifstream source;
        Xml::FileInStream file(path, &source);
        FileLikeInStream like(text);
        EXPECT_EQ(readingOf(file), readingOf(like)) << testing::PrintToString(text);
        return !HasFailure();
    }

    support::TempFolder folder;
};

struct End {
    const char* text;
    const char* fromString;
    const char* fromFile;
};

// A file gives its last byte twice, and has no position afterwards. Looking at a token may clear
// the end-of-file flag on the way, and then what is cut off is not taken for the end.
const End kEnds[] = {
    {"<a/><b", "true \"\" at 4, line 1, column 4, last \"\"\na()\n",
     "true \"\" at 4, line 1, column 4, last \"\"\na()\n"},
    {"<a/>", "true \"\" at 4, line 1, column 4, last \"Unexpected end of stream\"\na()\n",
     "true \"\" at -1, line 1, column -1, last \"\"\na()\n"},
    {"<a>x",
     "false \"(line = 1, column = 4) Unexpected end of stream <Xml::ElementReader>\" at 4, line 1, "
     "column 4, last \"Unexpected end of stream\"\n",
     "false \"(line = 1, column = -1) Unexpected end of stream <Xml::ElementReader>\" at -1, line "
     "1, "
     "column -1, last \"Unexpected end of stream\"\n"},
    {"<a/>'",
     "true \"(line = 1, column = 5) Unexpected end of stream <Xml::DocumentReader>\" at 5, line 1, "
     "column 5, last \"Unexpected end of stream\"\na()\n",
     "true \"\" at -1, line 1, column -1, last \"\"\na()\n"},
    {"<a/><!-",
     "true \"(line = 1, column = 7) Unexpected end of stream <Xml::DocumentReader>\" at 7, line 1, "
     "column 7, last \"Unexpected end of stream\"\na()\n",
     "false \"(line = 1, column = -1) Unexpected end of stream <Xml::DocumentReader>\" at -1, line "
     "1, column -1, last \"Unexpected end of stream\"\na()\n"},
};

TEST_F(EveryStream, DiffersFromAFileOnlyWhereTheEndIsMet) {
    for (const auto& [text, fromString, fromFile] : kEnds) {
        Xml::StringInStream string(text);
        EXPECT_EQ(readingOf(string), fromString);
        std::istringstream source(text);
        Xml::FileInStream file(&source);
        EXPECT_EQ(readingOf(file), fromFile);
    }
}

TEST_F(EveryStream, ReadsTheSameFromEveryDocument) {
    for (const Case& document : documents::cases()) {
        SCOPED_TRACE(document.name);
        agreeInMemory(document.text);
        agreeOnDisk(document.text);
    }
}

TEST_F(EveryStream, ReadsTheSameFromEveryDocumentCutOffAtEveryByte) {
    for (const Case& document : documents::cases()) {
        SCOPED_TRACE(document.name);
        for (std::size_t size = 0; size < document.text.size(); ++size) {
            const std::string text = document.text.substr(0, size);
            if (!agreeInMemory(text) || !agreeOnDisk(text)) return;
        }
    }
}

TEST_F(EveryStream, ReadsTheSameFromEveryDocumentWithAnyByteReplaced) {
    const std::string telling("<>&\"'\r!]x\0", 10);
    for (const Case& document : documents::cases()) {
        SCOPED_TRACE(document.name);
        for (std::size_t place = 0; place < document.text.size(); ++place) {
            std::string text = document.text;
            for (const char byte : telling) {
                text[place] = byte;
                if (!agreeInMemory(text)) return;
            }
        }
    }
}

// Pieces that are put together by chance: mostly they make no document, and are read up to there.
const char* const kPieces[] = {"<a>",        "</a>",
                               "<b c='1'>",  "<b\rc = \"&lt;\"/>",
                               "<d/>",       "</b>",
                               " ",          "\r",
                               "\n",         "\r\n",
                               "\t",         "x",
                               "text",       "'",
                               "\"",         "&",
                               ";",          "&lt;",
                               "/",          ">",
                               "<!-- c -->", "<![CDATA[x]]>",
                               "<?p?>",      "=",
                               "<",          "</",
                               "[",          "< a",
                               "</ a\r>"};

class ReadByChance : public EveryStream {
protected:
    std::string oneOf(std::initializer_list<const char*> texts) {
        return *(texts.begin() + random() % texts.size());
    }

    std::string pieces() {
        std::string text = "<a>";
        for (auto count = random() % 12; count > 0; --count)
            text += kPieces[random() % std::size(kPieces)];
        return text;
    }

    std::string space() {
        return oneOf({"", "", " ", "\r", "\n", "\r\n", "\r\r\n", "\n\r", "\t "});
    }

    // Content ::= (Text | Element | Comment | …)*
    std::string content(int depth) {  // NOLINT(misc-no-recursion): bounded by the depth
        std::string text;
        for (auto count = random() % 4; count > 0; --count) {
            text += space();
            text += random() % 2 == 0 || depth == 0 ? leaf() : element(depth - 1);
        }
        return text + space();
    }

    std::string leaf() {
        return oneOf({"text", "a\rb", "x\r\ny", "'q\r' ", "\"q\r\n\" r", "&lt;\r", "/\r", ">\r",
                      "=x", "<!--\r-->", "<![CDATA[\r\n]]>", "<?p\r?>", "&a\r;"});
    }

    std::string element(int depth) {  // NOLINT(misc-no-recursion): bounded by the depth
        const std::string name = oneOf({"a", "b", "long-name"});
        std::string tag = '<' + space() + name;
        for (auto count = random() % 3; count > 0; --count) {
            tag += oneOf({" ", "\r", "\r\n", "\n"}) + space() + oneOf({"c", "d"}) + space() + '=' +
                   space() + oneOf({"''", "'\r'", "\"\r\n\"", "'&amp;'"});
        }
        tag += space();
        if (random() % 4 == 0) return tag + "/>";
        return tag + '>' + content(depth) + "</" + space() + name + space() + '>';
    }

    void compare(const std::string& text) {
        const auto reading = [&](Xml::InStream& in) {
            return readingOf(in) + support::linesOf(in, text.size());
        };
        EXPECT_EQ(support::differenceBetweenStreams(text, reading), "")
            << testing::PrintToString(text);
    }

    void compareLong(const std::string& text) {
        const std::string path = folder.write("long.xml", text);
        std::ifstream source;
        Xml::FileInStream file(path, &source);
        FileLikeInStream like(text);
        EXPECT_EQ(readingOf(file), readingOf(like));
        EXPECT_EQ(file.getLine(), like.getLine());
    }

    std::mt19937 random{11};
};

TEST_F(ReadByChance, TheSameFromPiecesOfMarkup) {
    for (int i = 0; i < 10000 && !HasFailure(); ++i) compare(pieces());
}

TEST_F(ReadByChance, TheSameFromElementsWithAllLineEnds) {
    for (int i = 0; i < 10000 && !HasFailure(); ++i) compare(element(3));
}

// Longer than what is read ahead of a file at once, by far.
TEST_F(ReadByChance, TheSameFromLongDocuments) {
    std::string text = "<a>";
    while (text.size() < 1000000) text += element(4) + space();
    compareLong(text + "</a>");
    compareLong(text + "</b>");
    compareLong(text);
}

TEST_F(ReadByChance, TheSameFromLongPieces) {
    const std::string spaces(300000, '\r');
    const std::string words(300000, 'w');
    compareLong("<a>" + words + "<b/>" + words + "&lt;</a>");
    compareLong("<a>" + spaces + "<b c" + spaces + "=" + spaces + "'" + words + "'/></a>");
    compareLong("<a><" + words + "/><" + words + "></" + words + "></a>");
    compareLong("<a>'" + words + "<b/>'</a>");
    compareLong("<a>&" + words + "<b/>;</a>");
    compareLong("<a>'" + words + "<b/></a>");
    compareLong("<a><!--" + words + "--><![CDATA[" + words + "]]><?p " + words + "?></a>");
    compareLong("<a>" + words);
}

}  // namespace
