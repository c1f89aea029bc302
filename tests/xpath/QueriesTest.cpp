#include <gtest/gtest.h>

#include <string>

#include "VexSys/Localization.h"
#include "VexXml/XPath.h"
#include "xpath/Queries.h"

namespace {

using Xml::XPath;
using xpath::QueryLine;

// Whether a query fails as it does on account of what it meets, not of how it is written.
bool isWellFormed(const std::string& answer) {
    return answer.rfind("error ", 0) != 0 || answer.rfind("error 2:", 0) == 0 ||
           answer == "error 26";
}

TEST(Queries, AreAnsweredAsExpected) {
    ASSERT_FALSE(xpath::queryLines().empty());
    for (const QueryLine& line : xpath::queryLines()) {
        SCOPED_TRACE(line.place + ": " + line.expression);
        XPath query = line.query();
        EXPECT_EQ(xpath::answerTo(query, line.expression), line.answer);
    }
}

TEST(Queries, AreRefusedUnseenWhereTheyAreMalformed) {
    for (const QueryLine& line : xpath::queryLines()) {
        SCOPED_TRACE(line.place + ": " + line.expression);
        XPath query = line.query();
        const bool isExpected = isWellFormed(line.answer);
        EXPECT_EQ(query.SyntaxOK(line.expression), isExpected);
        EXPECT_EQ(xpath::errorOf(query), isExpected ? "" : line.answer);
    }
}

// Whether a query is malformed never depends on what is in the document.
TEST(Queries, CutShortAreMalformedOnEveryDocumentOrOnNone) {
    Xml::Document empty;
    for (const QueryLine& line : xpath::queryLines()) {
        for (std::size_t length = 1; length <= line.expression.size(); ++length) {
            const std::string expression = line.expression.substr(0, length);
            SCOPED_TRACE(line.place + ": " + expression);
            XPath onDocument(line.document.get());
            XPath onEmptyOne(&empty);
            XPath unseen(line.document.get());
            onDocument.GetValues(expression);
            onEmptyOne.GetValues(expression);
            const std::string error = unseen.SyntaxOK(expression) ? "" : xpath::errorOf(unseen);
            for (const XPath& query : {onDocument, onEmptyOne}) {
                const std::string found = xpath::errorOf(query);
                EXPECT_EQ(isWellFormed(found) ? "" : found, error);
            }
        }
    }
}

}  // namespace
