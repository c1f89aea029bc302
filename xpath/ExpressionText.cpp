#include "xpath/ExpressionText.h"

#include <algorithm>
#include <utility>

#include "xpath/Operators.h"

namespace Xml {
namespace {

constexpr std::size_t kNone = static_cast<std::size_t>(-1);

bool IsWhiteSpace(wchar_t unit) {
    return unit == L' ' || unit == L'\t' || unit == L'\n' || unit == L'\r';
}

}  // namespace

bool IsBeginLiteral(wchar_t unit) { return unit == L'"' || unit == L'\''; }

ExpressionText::ExpressionText(VexSys::Uni16String source) : mSource(std::move(source)) {
    mText.reserve(mSource.size());
    mOrigins.reserve(mSource.size() + 1);
    mPartners.reserve(mSource.size());
    RemoveWhiteSpaces();
    mOrigins.push_back(mSource.size());
    if (mError.code != XPath::NoError || mOpenBrackets.empty()) return;
    mError = {XPath::MissingClosingBracket, mSource.substr(mOrigins[mOpenBrackets.front()])};
}

// The white space in front of an operator that is written between blanks, and the blank behind it,
// belong to the operator. No such operator reaches beyond a bracket, so predicates need no scan of
// their own.
void ExpressionText::RemoveWhiteSpaces() {
    const std::size_t end = mSource.size();
    std::size_t at = 0;
    while (at < end) {
        if (IsBeginLiteral(mSource[at])) {
            at = ExtractLiteral(at);
        } else if (!IsWhiteSpace(mSource[at])) {
            extractBracket(at);
            append(at++, 1);
        } else {
            const std::size_t length = findOperator(mSource.data() + at, end - at).length;
            append(at, length);
            at += std::max<std::size_t>(length, 1);
        }
    }
}

// A literal goes from a quote to the next one of its kind.
std::size_t ExpressionText::ExtractLiteral(std::size_t from) {
    const std::size_t close = mSource.find(mSource[from], from + 1);
    if (close == VexSys::Uni16String::npos) {
        mError = {XPath::MissingClosingQuote, mSource.substr(from)};
        append(from, mSource.size() - from);
        return mSource.size();
    }
    const std::size_t length = close - from + 1;
    append(from, length);
    mPartners[mText.size() - length] = mText.size() - 1;
    return close + 1;
}

// Needs: the unit is about to be appended.
void ExpressionText::extractBracket(std::size_t from) {
    if (mSource[from] == L'[') {
        mOpenBrackets.push_back(mText.size());
    } else if (mSource[from] == L']' && !mOpenBrackets.empty()) {
        mPartners[mOpenBrackets.back()] = mText.size();
        mOpenBrackets.pop_back();
    }
}

void ExpressionText::append(std::size_t from, std::size_t count) {
    mText.append(mSource, from, count);
    for (std::size_t i = from; i < from + count; ++i) mOrigins.push_back(i);
    mPartners.resize(mText.size(), kNone);
}

std::size_t ExpressionText::skip(std::size_t begin, std::size_t end) const {
    return isClosed(begin, end) ? mPartners[begin] + 1 : end;
}

VexSys::Uni16String ExpressionText::asWritten(Piece piece) const {
    VexSys::Uni16String written;
    for (std::size_t at = piece.begin; at < piece.end;) {
        const bool isBracket = mText[at] == L'[';
        const std::size_t next =
            isBracket || IsBeginLiteral(mText[at]) ? skip(at, piece.end) : at + 1;
        if (isBracket) {
            const std::size_t behind =
                isClosed(at, piece.end) ? mOrigins[next - 1] + 1 : mOrigins[next];
            written.append(mSource, mOrigins[at], behind - mOrigins[at]);
        } else {
            written.append(mText, at, next - at);
        }
        at = next;
    }
    return written;
}

}  // namespace Xml
