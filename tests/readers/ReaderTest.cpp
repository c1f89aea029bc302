#include <gtest/gtest.h>

#include <string>
#include <type_traits>
#include <utility>

#include "VexXml/Readers.h"
#include "readers/Reading.h"
#include "support/PlainInStream.h"

namespace house {

/// A reader such as a caller derives: it reads whatever `mOperation` tells it to.
class OperationReader : public Xml::Reader {
public:
    using Operation = bool (*)(OperationReader& reader, Xml::InStream& in);

    explicit OperationReader(Operation operation) : mOperation(operation) {}

    bool parse(Xml::InStream& in) override { return mOperation(*this, in); }

    using Xml::Reader::checkToken;
    using Xml::Reader::getCharData;
    using Xml::Reader::getName;
    using Xml::Reader::getString;
    using Xml::Reader::getToken;
    using Xml::Reader::message;
    using Xml::Reader::setMessage;
    using Xml::Reader::skip;

    std::string text;
    Xml::DataHolder data;

private:
    Operation mOperation;
};

/// Takes its messages for itself.
class PrivateReader : public Xml::Reader {
public:
    bool parse(Xml::InStream& in) override {
        std::string token;
        return getToken(in, token);
    }

    std::string reported;

protected:
    void message(Xml::InStream& in, const std::string& text) override {
        reported = text + " at " + std::to_string(in.getPosition());
    }
};

}  // namespace house

namespace {

using house::OperationReader;
using reading::read;

const OperationReader::Operation kCheck = [](OperationReader& reader, Xml::InStream& in) {
    return reader.checkToken(in, ">");
};
const OperationReader::Operation kName = [](OperationReader& reader, Xml::InStream& in) {
    return reader.getName(in, reader.text);
};
const OperationReader::Operation kString = [](OperationReader& reader, Xml::InStream& in) {
    return reader.getString(in, reader.text);
};
const OperationReader::Operation kToken = [](OperationReader& reader, Xml::InStream& in) {
    return reader.getToken(in, reader.text);
};
const OperationReader::Operation kCharData = [](OperationReader& reader, Xml::InStream& in) {
    return reader.getCharData(in, reader.data);
};
const OperationReader::Operation kSkip = [](OperationReader& reader, Xml::InStream& in) {
    return reader.skip(in, "-->");
};

struct Row {
    OperationReader::Operation operation;
    const char* input;
    const char* outcome;
    const char* text;
};

const Row kRows[] = {
    {kCheck, "/>", "true at 2", ""},
    {kCheck, " = ", "false at 2 (line = 1, column = 2) \">\" expected <house::OperationReader>",
     ""},
    {kName, "a1 ", "true at 2", "a1"},
    {kName, "1a ", "false at 2 (line = 1, column = 2) not a name: 1a <house::OperationReader>", ""},
    {kString, " 'a'", "true at 4", "'a'"},
    {kString, "ab",
     "false at 1 (line = 1, column = 1) \"\"\" or \"'\" expected <house::OperationReader>", ""},
    {kToken, "<!DOCTYPE ", "true at 9", "<!DOCTYPE"},
    {kToken, " ",
     "false at 1 (line = 1, column = 1) Unexpected end of stream <house::OperationReader>", ""},
    {kCharData, "a<", "true at 1", "a"},
    {kCharData, "a",
     "false at 1 (line = 1, column = 1) Unexpected end of stream <house::OperationReader>", "a"},
    {kSkip, "a-->b", "true at 4", ""},
    {kSkip, "a--",
     "false at 3 (line = 1, column = 3) Unexpected end of stream <house::OperationReader>", ""},
};

TEST(Reader, TurnsAFailureOfTheStreamIntoItsMessage) {
    for (const Row& row : kRows) {
        SCOPED_TRACE(row.input);
        OperationReader reader(row.operation);
        EXPECT_EQ(read(reader, row.input), row.outcome);
        EXPECT_EQ(reader.text + std::string(reader.data), row.text);
    }
}

TEST(Reader, HasNoMessageAtFirst) {
    const OperationReader reader(kToken);
    EXPECT_EQ(reader.getErrorMessage(), "");
}

TEST(Reader, KeepsItsMessageWhenALaterOperationSucceeds) {
    OperationReader reader([](OperationReader& self, Xml::InStream& in) {
        return !self.getName(in, self.text) && self.getToken(in, self.text);
    });
    EXPECT_EQ(read(reader, "1 2 "),
              "true at 3 (line = 1, column = 1) not a name: 1 <house::OperationReader>");
}

TEST(Reader, ReplacesItsMessageAtTheNextFailure) {
    OperationReader reader([](OperationReader& self, Xml::InStream& in) {
        return self.getName(in, self.text) || self.checkToken(in, ">");
    });
    EXPECT_EQ(read(reader, "1 2 "),
              "false at 3 (line = 1, column = 3) \">\" expected <house::OperationReader>");
}

TEST(Reader, TakesOverAMessageAsItIs) {
    OperationReader reader([](OperationReader& self, Xml::InStream& in) {
        self.message(in, "mine");
        self.setMessage("100 %s <theirs>");
        return false;
    });
    EXPECT_EQ(read(reader, ""), "false at 0 100 %s <theirs>");
}

TEST(Reader, TakesNoFormatFromTheText) {
    OperationReader reader([](OperationReader& self, Xml::InStream& in) {
        self.message(in, "%d %s %n");
        return false;
    });
    EXPECT_EQ(read(reader, ""),
              "false at 0 (line = 1, column = 0) %d %s %n <house::OperationReader>");
}

TEST(Reader, ReportsTextsOfAnyLength) {
    OperationReader reader(kName);
    const std::string token = "1" + std::string(100000, 'x');
    EXPECT_EQ(read(reader, token), "false at 100001 (line = 1, column = 100001) not a name: " +
                                       token + " <house::OperationReader>");
}

TEST(Reader, CountsLinesThatEndInCarriageReturnAndLineFeed) {
    OperationReader reader([](OperationReader& self, Xml::InStream& in) {
        return self.skip(in, "\r\n") && self.skip(in, "\r\n") && self.checkToken(in, ">");
    });
    EXPECT_EQ(read(reader, "a\r\nb\r\n  cd "),
              "false at 10 (line = 2, column = 4) \">\" expected <house::OperationReader>");
}

// A carriage return that ends a word is read again behind it, and so follows itself.
TEST(Reader, CountsALineTwiceWhereItsEndEndsAWord) {
    OperationReader reader([](OperationReader& self, Xml::InStream& in) {
        return self.getToken(in, self.text) && self.checkToken(in, ">");
    });
    EXPECT_EQ(read(reader, "a\r\nb "),
              "false at 4 (line = 2, column = 1) \">\" expected <house::OperationReader>");
}

TEST(Reader, CountsNoLinesThatEndInALineFeed) {
    OperationReader reader([](OperationReader& self, Xml::InStream& in) {
        return self.getToken(in, self.text) && self.checkToken(in, ">");
    });
    EXPECT_EQ(read(reader, "a\n\nb "),
              "false at 4 (line = 1, column = 4) \">\" expected <house::OperationReader>");
}

TEST(Reader, ReportsThroughTheMessageOfADerivedReader) {
    house::PrivateReader reader;
    EXPECT_EQ(read(reader, " "), "false at 1");
    EXPECT_EQ(reader.reported, "Unexpected end of stream at 1");
}

TEST(Reader, CarriesItsMessageWhenCopied) {
    OperationReader reader(kToken);
    EXPECT_FALSE(reading::read(reader, "").empty());
    const std::string message = reading::messageAt(0, reading::kEnd, "house::OperationReader");
    const OperationReader copy(reader);
    EXPECT_EQ(copy.getErrorMessage(), message);
    EXPECT_EQ(reader.getErrorMessage(), message);
    OperationReader assigned(kName);
    assigned = reader;
    EXPECT_EQ(assigned.getErrorMessage(), message);
}

TEST(Reader, HandsItsMessageOnWhenMoved) {
    OperationReader reader(kToken);
    EXPECT_EQ(reading::read(reader, "").substr(0, 5), "false");
    const OperationReader moved(std::move(reader));
    EXPECT_EQ(moved.getErrorMessage(),
              reading::messageAt(0, reading::kEnd, "house::OperationReader"));
    // NOLINTNEXTLINE(bugprone-use-after-move): this is what is tested
    EXPECT_EQ(reader.getErrorMessage(), "");
}

static_assert(std::is_abstract<Xml::Reader>::value, "");
static_assert(std::has_virtual_destructor<Xml::Reader>::value, "");

}  // namespace
