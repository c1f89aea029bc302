#pragma once

#include <cstddef>
#include <vector>

#include "VexSys/Uni16.h"
#include "xpath/Error.h"

namespace Xml {

/// A part of an expression, from `begin` to just before `end`, which never cuts a literal in two.
struct Piece {
    std::size_t begin;
    std::size_t end;

    bool isEmpty() const { return begin == end; }
};

/// An expression made ready to be taken apart: without the white space that means nothing, neither
/// in itself nor inside its predicates, and with brackets and quotes matched, so that whoever reads
/// it can step over a literal or a predicate at once.
class ExpressionText {
public:
    explicit ExpressionText(VexSys::Uni16String source);

    std::size_t size() const { return mText.size(); }
    Piece whole() const { return {0, size()}; }
    wchar_t operator[](std::size_t index) const { return mText[index]; }
    const wchar_t* at(std::size_t index) const { return mText.data() + index; }

    /// Just behind the literal or the bracketed predicate that begins here; `end` when it does not
    /// end before that.
    std::size_t skip(std::size_t begin, std::size_t end) const;

    /// Whether the bracket that opens here is closed before `end`.
    bool isClosed(std::size_t bracket, std::size_t end) const { return mPartners[bracket] < end; }

    /// The piece as errors quote it: white space inside its predicates is left as it was.
    VexSys::Uni16String asWritten(Piece piece) const;

    /// The quote or bracket that is never closed, if there is one.
    const XPathError& error() const { return mError; }

private:
    void RemoveWhiteSpaces();
    std::size_t ExtractLiteral(std::size_t from);
    void extractBracket(std::size_t from);
    void append(std::size_t from, std::size_t count);

    VexSys::Uni16String mSource;
    VexSys::Uni16String mText;
    /// For each unit of the text its place in the source, and behind them the source's size.
    std::vector<std::size_t> mOrigins;
    /// For each opening quote and bracket the place of the closing one; `kNone` for all else.
    std::vector<std::size_t> mPartners;
    std::vector<std::size_t> mOpenBrackets;  ///< places in the text
    XPathError mError;
};

/// A quotation mark or an apostrophe.
bool IsBeginLiteral(wchar_t unit);

}  // namespace Xml
