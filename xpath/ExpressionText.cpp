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

// What neither goes away nor has a partner.
bool isOrdinary(wchar_t unit) {
    return !IsWhiteSpace(unit) && !IsBeginLiteral(unit) && unit != L'[' && unit != L']';
}

}  // namespace

bool IsBeginLiteral(wchar_t unit) { return unit == L'"' || unit == L'\''; }

ExpressionText::ExpressionText(VexSys::Uni16String source, std::pmr::memory_resource* memory)
    : mSource(std::move(source)),
      mText(mSource),
      mUnits(memory),
      mPlaces(memory),
      mOpenBracket(kNone) {
    if (std::all_of(mSource.begin(), mSource.end(), isOrdinary)) return;
    mUnits.reserve(mSource.size());
    mPlaces.reserve(mSource.size() + 1);
    RemoveWhiteSpaces();
    mPlaces.push_back({mSource.size(), kNone});
    mText = {mUnits.data(), mUnits.size()};
    const std::size_t bracket = forgetOpenBrackets();
    if (mError.code != XPath::NoError || bracket == kNone) return;
    mError = {XPath::MissingClosingBracket, mSource.substr(mPlaces[bracket].origin)};
}

// The white space in front of an operator that is written between blanks, and the blank behind it,
// belong to the operator. No such operator reaches beyond a bracket, so predicates need no scan of
// their own.
void ExpressionText::RemoveWhiteSpaces() {
    const std::size_t end = mSource.size();
    std::size_t at = 0;
    while (at < end) {
        const std::size_t begin = at;
        while (at < end && isOrdinary(mSource[at])) ++at;
        append(begin, at - begin);
        if (at == end) return;
        if (IsBeginLiteral(mSource[at])) {
            at = ExtractLiteral(at);
        } else if (!IsWhiteSpace(mSource[at])) {
            append(at, 1);
            extractBracket(at++);
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
    mPlaces[mUnits.size() - length].partner = mUnits.size() - 1;
    return close + 1;
}

// Needs: the unit has been appended.
void ExpressionText::extractBracket(std::size_t from) {
    const std::size_t here = mUnits.size() - 1;
    if (mSource[from] == L'[') {
        mPlaces[here].partner = mOpenBracket;
        mOpenBracket = here;
    } else if (mSource[from] == L']' && mOpenBracket != kNone) {
        mOpenBracket = std::exchange(mPlaces[mOpenBracket].partner, here);
    }
}

// Returns the place of the outermost, or `kNone`.
std::size_t ExpressionText::forgetOpenBrackets() {
    std::size_t outermost = kNone;
    while (mOpenBracket != kNone) {
        outermost = mOpenBracket;
        mOpenBracket = std::exchange(mPlaces[outermost].partner, kNone);
    }
    return outermost;
}

void ExpressionText::append(std::size_t from, std::size_t count) {
    mUnits.insert(mUnits.end(), mSource.data() + from, mSource.data() + from + count);
    for (std::size_t i = from; i < from + count; ++i) mPlaces.push_back({i, kNone});
}

std::size_t ExpressionText::skip(std::size_t begin, std::size_t end) const {
    return isClosed(begin, end) ? mPlaces[begin].partner + 1 : end;
}

VexSys::Uni16String ExpressionText::asWritten(Piece piece) const {
    VexSys::Uni16String written;
    for (std::size_t at = piece.begin; at < piece.end;) {
        const bool isBracket = mText[at] == L'[';
        const std::size_t next =
            isBracket || IsBeginLiteral(mText[at]) ? skip(at, piece.end) : at + 1;
        if (isBracket) {
            const std::size_t behind =
                isClosed(at, piece.end) ? mPlaces[next - 1].origin + 1 : mPlaces[next].origin;
            written.append(mSource, mPlaces[at].origin, behind - mPlaces[at].origin);
        } else {
            written.append(mText.substr(at, next - at));
        }
        at = next;
    }
    return written;
}

}  // namespace Xml
