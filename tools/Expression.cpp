#include "tools/Expression.h"

#include <cstddef>
#include <vector>

#include "VexSys/Uni16.h"
#include "VexXml/Dom.h"
#include "VexXml/XPath.h"
#include "tools/ErrorPrinter.h"

namespace tools {
namespace {

using VexSys::Uni16String;
using Xml::XPath;

constexpr std::size_t kNone = Uni16String::npos;

// Places that look like the piece that is wrong are tried one by one, each by another look at the
// whole expression.
constexpr int kMostTries = 100;

bool isWhite(wchar_t unit) {
    return unit == L' ' || unit == L'\t' || unit == L'\n' || unit == L'\r';
}

// An expression without its white space, some of which the library drops before it names a piece.
struct Bare {
    Uni16String text;
    std::vector<std::size_t> places;  ///< of each unit in the expression, and the end
};

Bare bareOf(const Uni16String& expression) {
    Bare bare;
    for (std::size_t i = 0; i < expression.size(); ++i) {
        if (isWhite(expression[i])) continue;
        bare.text += expression[i];
        bare.places.push_back(i);
    }
    bare.places.push_back(expression.size());
    return bare;
}

bool isWellFormed(const Uni16String& expression) {
    Xml::Document nothing;
    return XPath(&nothing).SyntaxOK(expression);
}

// Where in the expression the piece stands that, if it were a name, would leave all well formed; an
// empty piece where a name is missing. After several mistakes there is no such place: then the end,
// if the piece stands there, as does what is never closed, or else where it stands first.
std::size_t findPiece(const Uni16String& expression, const Uni16String& wanted) {
    const Bare bare = bareOf(expression);
    const Uni16String piece = bareOf(wanted).text;
    const std::size_t first = bare.text.find(piece);
    std::size_t at = first;
    for (int i = 0; i < kMostTries && at != kNone; ++i, at = bare.text.find(piece, at + 1)) {
        const std::size_t begin = bare.places[at];
        const std::size_t end = piece.empty() ? begin : bare.places[at + piece.size() - 1] + 1;
        Uni16String mended = expression;
        if (isWellFormed(mended.replace(begin, end - begin, L"x"))) return begin;
    }
    if (first == kNone) return kNone;
    const std::size_t last = bare.text.size() - piece.size();
    return bare.places[!piece.empty() && bare.text.rfind(piece) == last ? last : first];
}

// "." and ".." stand for "node()", which the library then names.
std::size_t findMistake(const Uni16String& expression, const Uni16String& detail) {
    const std::size_t place = findPiece(expression, detail);
    if (place != kNone) return place;
    const std::size_t step = findPiece(expression, L".");
    return step != kNone ? step : 0;
}

}  // namespace

bool checkExpression(const std::string& expression) {
    const Uni16String text = VexSys::UTF8ToUni16Char(expression.data(), expression.size());
    Xml::Document nothing;
    XPath query(&nothing);
    if (query.SyntaxOK(text)) return true;
    const Uni16String before = text.substr(0, findMistake(text, query.GetErrorDetail()));
    printError({"expression", VexSys::Uni16CharToUTF8(text)},
               VexSys::Uni16CharToUTF8(before).size(), query.GetErrorStringUTF8());
    return false;
}

}  // namespace tools
