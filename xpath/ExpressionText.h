#pragma once

#include <cstddef>
#include <memory_resource>
#include <vector>

#include "VexSys/Uni16.h"
#include "xpath/Encoding.h"
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
    /// `memory` must outlive it.
    ExpressionText(VexSys::Uni16String source, std::pmr::memory_resource* memory);
    ExpressionText(const ExpressionText&) = delete;
    ExpressionText& operator=(const ExpressionText&) = delete;

    std::size_t size() const { return mText.size(); }
    Piece whole() const { return {0, size()}; }
    wchar_t operator[](std::size_t index) const { return mText[index]; }
    const wchar_t* at(std::size_t index) const { return mText.data() + index; }
    Uni16View view(Piece piece) const { return mText.substr(piece.begin, piece.end - piece.begin); }

    /// Just behind the literal or the bracketed predicate that begins here; `end` when it does not
    /// end before that.
    std::size_t skip(std::size_t begin, std::size_t end) const;

    /// Whether the bracket that opens here is closed before `end`.
    bool isClosed(std::size_t bracket, std::size_t end) const {
        return mPlaces[bracket].partner < end;
    }

    /// The piece as errors quote it: white space inside its predicates is left as it was.
    VexSys::Uni16String asWritten(Piece piece) const;

    /// The quote or bracket that is never closed, if there is one.
    const XPathError& error() const { return mError; }

private:
    void RemoveWhiteSpaces();
    std::size_t ExtractLiteral(std::size_t from);
    void extractBracket(std::size_t from);
    std::size_t forgetOpenBrackets();
    void append(std::size_t from, std::size_t count);

    struct Place {
        std::size_t origin;  ///< in the source
        /// Of an opening quote or bracket the place of the closing one. While that is not found, of
        /// a bracket that of the one open around it. `kNone` for all else.
        std::size_t partner;
    };

    VexSys::Uni16String mSource;
    Uni16View mText;                   ///< the source, as long as there is nothing to remove
    std::pmr::vector<wchar_t> mUnits;  ///< of the text, when it is not the source
    /// Of each unit of the text, and behind them the end of the source. None when there are neither
    /// quotes nor brackets nor white space.
    std::pmr::vector<Place> mPlaces;
    std::size_t mOpenBracket;  ///< the innermost, its place in the text; `kNone` for none
    XPathError mError;
};

/// A quotation mark or an apostrophe.
bool IsBeginLiteral(wchar_t unit);

}  // namespace Xml
