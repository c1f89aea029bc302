#include "readers/ElementScanner.h"

#include <algorithm>
#include <string>

#include "values/ByteClass.h"
#include "values/Bytes.h"

namespace Xml {

void ElementScanner::read() {
    while (!mTree.isComplete() && readNext()) {
    }
}

// Behind the last byte of the window stands a NUL, which is neither white space nor part of a name,
// so no scan runs out of it. False when nothing was read and nothing has changed.
bool ElementScanner::readNext() {
    const std::size_t first = skipWhite(mWindow.position());
    if (mWindow[first] != '<') return readCharData(first);
    switch (mWindow[first + 1]) {
        case '/':
            return readEndTag(first + 1);
        case '!':
            return readComment(first) || readCDataSection(first);
        case '?':
            return readInstruction(first);
        default:
            return readStartTag(first);
    }
}

// The stream looks at the first token of the text, and then reads the text from its beginning, the
// white space in front of it included.
bool ElementScanner::readCharData(std::size_t first) {
    const std::size_t begin = mWindow.position();
    const std::size_t end = mWindow.find('<', first);
    const std::size_t tokenEnd = lookAhead(first);
    if (end == mWindow.size() || tokenEnd == mWindow.size()) return false;
    if (mBudget != nullptr && (mayGrow(begin, end) || !mayAddText(end - begin))) return false;
    if (tokenEnd > end || mWindow[tokenEnd] == '\r') mWindow.passOver(begin, tokenEnd + 1);
    mWindow.passOver(begin, end + 1);
    mTree.addCharData(mWindow.at(begin), end - begin);
    mWindow.moveTo(end);
    return true;
}

// The last byte that is looked at to see where the token ends: in front of a delimiter or white
// space, unless it is a reference or a string. The size where the text breaks off in it, which is a
// mistake.
std::size_t ElementScanner::lookAhead(std::size_t first) {
    const char c = mWindow[first];
    if (c == '"' || c == '\'') return mWindow.findAhead(c, first + 1);
    if (c == '&') return mWindow.findAhead(';', first + 1);
    if (c == '/') return first + 1;
    return ByteClass::isDelimiter(c) ? first : skipToken(first);
}

// The stream reads token by token, and looks at the byte behind each. Tokens in a row leave the
// same traces as all of them at once, unless that byte is a carriage return.
void ElementScanner::endToken(std::size_t end) {
    if (mWindow[end] != '\r') return;
    mWindow.passOver(mTokens, end + 1);
    mTokens = end;
}

// ETag ::= '</' Name '>'
bool ElementScanner::readEndTag(std::size_t slash) {
    const std::string& name = mTree.innermost().getName();
    const std::size_t begin = skipWhite(slash + 1);
    const std::size_t end = begin + name.size();
    if (end >= mWindow.size() || !Bytes::areEqual(mWindow.at(begin), name.data(), name.size())) {
        return false;
    }
    const std::size_t close = skipWhite(end);
    if (name.empty() || mWindow[close] != '>') return false;
    mTokens = mWindow.position();
    endToken(end);
    mWindow.passOver(mTokens, close + 1);
    mWindow.moveTo(close + 1);
    mTree.endElement();
    return true;
}

// STag ::= '<' Name Attribute* '>'      EmptyElemTag ::= '<' Name Attribute* '/>'
//
//
// The stream looks at the "<" and the byte behind it, and then reads the tag.
bool ElementScanner::readStartTag(std::size_t open) {
    const std::size_t begin = skipWhite(open + 1);
    const std::size_t end = skipName(begin);
    if (end == begin) return false;
    mTokens = mWindow.position();
    if (mWindow[open + 1] == '\r') mWindow.passOver(mTokens, open + 2);
    endToken(open + 1);
    endToken(end);
    std::size_t at = end;
    if (!readAttributes(at)) return false;
    if (mBudget != nullptr && !mayAddElement(end - begin)) return false;
    const bool isEmpty = mWindow[at] == '/';
    const std::size_t tagEnd = at + (isEmpty ? 2 : 1);
    mWindow.passOver(mTokens, tagEnd);
    if (isEmpty) {
        mTree.addElement(mWindow.at(begin), end - begin, mAttributes);
    } else {
        mTree.beginElement(mWindow.at(begin), end - begin, mAttributes);
    }
    mWindow.moveTo(tagEnd);
    return true;
}

// Attribute ::= Name '=' AttValue, as many as there are. Then `at` is at the ">" or "/>".
bool ElementScanner::readAttributes(std::size_t& at) {
    mAttributes.clear();
    for (;;) {
        const std::size_t next = skipWhite(at);
        const bool isEmpty = mWindow[next] == '/' && mWindow[next + 1] == '>';
        if (mWindow[next] == '>' || isEmpty) {
            at = next;
            return true;
        }
        if (!readAttribute(next, at)) return false;
    }
}

bool ElementScanner::readAttribute(std::size_t name, std::size_t& at) {
    const std::size_t nameEnd = skipName(name);
    const std::size_t equals = skipWhite(nameEnd);
    if (nameEnd == name || mWindow[equals] != '=') return false;
    const std::size_t open = skipWhite(equals + 1);
    const char quote = mWindow[open];
    if (quote != '"' && quote != '\'') return false;
    bool hasReference = false;
    const std::size_t close = findQuote(quote, open + 1, hasReference);
    if (close == mWindow.size()) return false;
    endToken(nameEnd);
    mAttributes.push_back(
        {mWindow.at(name), nameEnd - name, mWindow.at(open + 1), close - open - 1, hasReference});
    at = close + 1;
    return true;
}

// Whether a node may be added by what is left of the budget, which is then taken.
bool ElementScanner::mayAddText(std::size_t size) {
    if (!mBudget->isWithin(&ReadLimits::textLength, size) ||
        !mBudget->canTake(&ReadLimits::nodes, 1)) {
        return false;
    }
    mBudget->take(&ReadLimits::nodes, 1);
    return true;
}

bool ElementScanner::mayAddElement(std::size_t nameSize) {
    const std::size_t nodes = 1 + mAttributes.size();
    if (!mBudget->isWithin(&ReadLimits::nameLength, nameSize) ||
        !mBudget->isWithin(&ReadLimits::attributesPerElement, mAttributes.size()) ||
        !mBudget->isWithin(&ReadLimits::elementDepth, mTree.depth() + 1) ||
        !mBudget->canTake(&ReadLimits::nodes, nodes) ||
        !std::all_of(mAttributes.begin(), mAttributes.end(),
                     [this](const auto& attribute) { return mayAddAttribute(attribute); })) {
        return false;
    }
    mBudget->take(&ReadLimits::nodes, nodes);
    return true;
}

// What entities come to may be longer than their references, and is left to be found out with care.
bool ElementScanner::mayGrow(std::size_t begin, std::size_t end) const {
    return mTree.hasDtd() && mWindow.text(begin, end).find('&') != std::string_view::npos;
}

bool ElementScanner::mayAddAttribute(const TreeBuilder::AttributeText& attribute) const {
    return !(attribute.hasReference && mTree.hasDtd()) &&
           mBudget->isWithin(&ReadLimits::nameLength, attribute.nameSize) &&
           mBudget->isWithin(&ReadLimits::valueLength, attribute.valueSize);
}

// Most values are so short that a search takes longer to begin than a loop to end.
std::size_t ElementScanner::findQuote(char quote, std::size_t begin, bool& hasReference) {
    constexpr std::size_t kShort = 16;
    const std::size_t nearEnd = std::min(begin + kShort, mWindow.size());
    std::size_t at = begin;
    for (; at < nearEnd && mWindow[at] != quote; ++at) {
        hasReference = hasReference || mWindow[at] == '&';
    }
    if (at < nearEnd) return at;
    const std::size_t end = mWindow.find(quote, at);
    const auto rest = mWindow.text(at, end);
    hasReference = hasReference || rest.find('&') != std::string_view::npos;
    return end;
}

// Comment ::= '<!--' (Char* - (Char* '-->' Char*)) '-->'
//
// The stream looks for a bracket behind "<!" before it looks at the dashes. Then it reads the
// comment from its beginning, so that "<!-->" is a whole one.
bool ElementScanner::readComment(std::size_t open) {
    if (!stands("<!--", open)) return false;
    const std::size_t end = mWindow.find("-->", open + 2);
    if (end == mWindow.size()) return false;
    mWindow.passOver(mWindow.position(), end + 3);
    mWindow.leaveErrorText("\"[\" expected");
    mWindow.moveTo(end + 3);
    return true;
}

// CDSect ::= '<![CDATA[' (Char* - (Char* ']]>' Char*)) ']]>'
bool ElementScanner::readCDataSection(std::size_t open) {
    constexpr std::string_view kOpener = "<![CDATA[";
    if (!stands(kOpener, open)) return false;
    const std::size_t begin = open + kOpener.size();
    const std::size_t end = mWindow.find("]]>", begin);
    if (end == mWindow.size()) return false;
    if (mBudget != nullptr && !mayAddText(end - begin)) return false;
    mWindow.passOver(mWindow.position(), end + 3);
    mWindow.leaveErrorText("not a name: [");
    mTree.addPlainText(mWindow.at(begin), end - begin);
    mWindow.moveTo(end + 3);
    return true;
}

// PI ::= '<?' Name (Char* - (Char* '?>' Char*)) '?>'
//
// The stream looks at the target, and reads it once more unless it ends in "xml".
bool ElementScanner::readInstruction(std::size_t open) {
    const std::size_t target = open + 2;
    const std::size_t targetEnd = skipName(target);
    if (targetEnd == target) return false;
    const bool isXml = targetEnd - target >= 3 && stands("xml", targetEnd - 3);
    const std::size_t begin = isXml ? targetEnd : target;
    const std::size_t end = mWindow.find("?>", begin);
    if (end == mWindow.size()) return false;
    mWindow.passOver(mWindow.position(), target + 1);
    mWindow.passOver(target, targetEnd + 1);
    mWindow.passOver(begin, end + 2);
    mWindow.moveTo(end + 2);
    return true;
}

bool ElementScanner::stands(std::string_view text, std::size_t at) const {
    return mWindow.text(at, mWindow.size()).substr(0, text.size()) == text;
}

// The size where it goes on to the end.
std::size_t ElementScanner::skipToken(std::size_t at) const {
    while (at < mWindow.size() && !ByteClass::endsToken(mWindow[at])) ++at;
    return at;
}

std::size_t ElementScanner::skipWhite(std::size_t at) const {
    while (ByteClass::isWhite(mWindow[at])) ++at;
    return at;
}

// Where the name ends, when a delimiter or white space ends it too; otherwise `at`.
std::size_t ElementScanner::skipName(std::size_t at) const {
    std::size_t end = at;
    if (!ByteClass::isNameStart(mWindow[end])) return at;
    while (ByteClass::isNameChar(mWindow[end])) ++end;
    return ByteClass::endsToken(mWindow[end]) ? end : at;
}

}  // namespace Xml
