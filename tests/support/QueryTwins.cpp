#include "support/QueryTwins.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace support {
namespace {

std::string utf8(const VexSys::Uni16String& text) {
    return testing::PrintToString(VexSys::Uni16CharToUTF8(text));
}

/// What stands in a result, in front of its texts.
std::string kindOf(const Xml::XPath::ResultItem& item, const Sample& sample) {
    switch (item.kind) {
        case Xml::XPath::Node:
            return sample.nameOf(item.node);
        case Xml::XPath::String:
            return "string";
        case Xml::XPath::Number:
            return "number";
        case Xml::XPath::Boolean:
            return "boolean";
    }
    return "?";
}

/// The results, each as a whole and as words, with the error that asking for each left.
template <class Query>
std::string resultsOf(Query query, const Sample& sample) {
    std::string text;
    for (std::size_t index = 0; index < query.GetResults().size(); ++index) {
        const Xml::XPath::ResultItem item = query.GetResults()[index];
        text += "\n  " + kindOf(item, sample) + " tagged " + std::to_string(item.tag);
        for (const long word : {-1L, 0L, 1L}) {
            text += ' ' + utf8(query.GetValue(index, word));
            text += ' ' + std::to_string(query.GetErrorCode());
        }
    }
    query.GetValue(query.GetResults().size(), -1);
    return text + "\n  behind them " + std::to_string(query.GetErrorCode());
}

/// All that can be seen of a query behind one expression.
template <class Query>
std::string outcomeOf(const Query& query, unsigned long answer, const Sample& sample) {
    return "answer " + std::to_string(answer) + ", error " + std::to_string(query.GetErrorCode()) +
           ' ' + utf8(query.GetErrorDetail()) + resultsOf(query, sample);
}

template <class Query>
std::string outcomeOfSyntaxOK(Query query, const std::string& expression, const Sample& sample) {
    const bool answer = query.SyntaxOK(utf16(expression));
    return outcomeOf(query, answer ? 1 : 0, sample);
}

template <class Query>
std::string outcomeOfGetValues(Query& query, const std::string& expression, const Sample& sample) {
    const unsigned long answer = query.GetValues(utf16(expression));
    return outcomeOf(query, answer, sample);
}

/// Whether the error of `GetValues` tells that the expression cannot be read, and not only that
/// nothing can be found by it.
bool isMalformed(const Xml::XPath& query) {
    switch (query.GetErrorCode()) {
        case Xml::XPath::NoError:
        case Xml::XPath::NodeNotFound:
        case Xml::XPath::NoContextNodes:
        case Xml::XPath::ContextIsNotANode:
            return false;
        default:
            return true;
    }
}

/// Empty when both are the same.
std::string difference(const std::string& what, const std::string& found,
                       const std::string& expected) {
    if (found == expected) return "";
    return "\n" + what + " gives " + found + "\nand should give " + expected;
}

}  // namespace

VexSys::Uni16String utf16(const std::string& utf8) {
    return VexSys::UTF8ToUni16Char(utf8.data(), utf8.size());
}

QueryTwins::QueryTwins(const Sample& sample, Xml::Object& contextNode)
    : mSample(sample),
      mQuery(&contextNode),
      mReference(&contextNode),
      mIsInDocument(std::count(sample.nodes().begin(), sample.nodes().end(), &contextNode) > 0),
      mStory(sample.text() + "\nfrom " + sample.nameOf(&contextNode)) {}

std::string QueryTwins::differenceOn(const std::string& expression) {
    mStory += "\n" + testing::PrintToString(expression);
    const Xml::XPath before = mQuery;
    std::string found = difference("SyntaxOK", outcomeOfSyntaxOK(mQuery, expression, mSample),
                                   outcomeOfSyntaxOK(mReference, expression, mSample));
    const std::string ours = outcomeOfGetValues(mQuery, expression, mSample);
    found += difference("GetValues", ours, outcomeOfGetValues(mReference, expression, mSample));
    found += syntaxDifference(before, expression);
    return found.empty() ? "" : mStory + found;
}

// An expression is well-formed or not whatever there is to be found by it. Whether it is cannot be
// told where another error came first, nor where no query is run.
std::string QueryTwins::syntaxDifference(Xml::XPath before, const std::string& expression) const {
    const auto error = mQuery.GetErrorCode();
    if (!mIsInDocument || error == Xml::XPath::NoContextNodes ||
        error == Xml::XPath::ContextIsNotANode) {
        return "";
    }
    const auto toText = [](Xml::XPath::ErrorCode code, const VexSys::Uni16String& detail) {
        return std::to_string(code) + ' ' + utf8(detail);
    };
    const bool isGood = before.SyntaxOK(utf16(expression));
    const std::string found = toText(before.GetErrorCode(), before.GetErrorDetail());
    if (isGood == isMalformed(mQuery)) return "\nSyntaxOK and GetValues disagree";
    if (isGood) return "";
    return difference("SyntaxOK", found, toText(error, mQuery.GetErrorDetail()));
}

}  // namespace support
