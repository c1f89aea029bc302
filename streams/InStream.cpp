#include <utility>

#include "VexXml/Streams.h"
#include "streams/ReadStretch.h"
#include "streams/TokenReader.h"

namespace Xml {
namespace {

const char* const kEndOfStream = "Unexpected end of stream";
const char* const kQuoteExpected = "\"\"\" or \"'\" expected";

bool isQuote(char c) { return c == '"' || c == '\''; }

}  // namespace

InStream::InStream() = default;
InStream::InStream(const InStream&) = default;
InStream& InStream::operator=(const InStream&) = default;
InStream::~InStream() = default;

InStream::InStream(InStream&& other) noexcept { *this = std::move(other); }

InStream& InStream::operator=(InStream&& other) noexcept {
    if (this == &other) return *this;
    mErrorMessage = std::exchange(other.mErrorMessage, {});
    mLineStarts = std::exchange(other.mLineStarts, {});
    mNotedLines = std::exchange(other.mNotedLines, {});
    mAfterCR = std::exchange(other.mAfterCR, false);
    mParseBuffer = std::exchange(other.mParseBuffer, {});
    return *this;
}

// Only a line end behind a carriage return starts a counted line. Deliberate: it makes lines and
// columns of CR LF text come out as callers compare them.
bool InStream::get(char& c) {
    if (!(mEnd < 0 ? getChar(c) : getCharInFrontOfEnd(c))) {
        mErrorMessage = kEndOfStream;
        return false;
    }
    const bool endsLine = c == '\r' || c == '\n';
    if (endsLine && mAfterCR) noteLineStart(getPosition());
    mAfterCR = c == '\r';
    return true;
}

// A stream that ends there by itself is left to do so in its own way. Only a byte tells, as some
// know that they are at their end when they have tried to go on.
bool InStream::getCharInFrontOfEnd(char& c) {
    const bool isInFront = getPosition() < mEnd;
    const char former = c;
    if (!getChar(c)) return false;
    if (isInFront || getPosition() <= mEnd) return true;
    c = former;
    setPosition(mEnd);
    mHasMetEnd = true;
    return false;
}

void InStream::putBackChar() {
    if (stepBack()) return;
    const int position = getPosition();
    if (position >= 1) setPosition(position - 1);
}

void InStream::eatWhite() {
    char c = 0;
    do {
        if (!get(c)) return;
    } while (isWhite(c));
    putBackChar();
}

bool InStream::getToken(std::string& token) {
    mParseBuffer.clear();
    if (!getTokenInParseBuffer()) return false;
    token = mParseBuffer;
    return true;
}

bool InStream::getName(std::string& name) {
    mParseBuffer.clear();
    if (!getNameInParseBuffer()) return false;
    name = mParseBuffer;
    return true;
}

bool InStream::getString(std::string& quoted) {
    mParseBuffer.clear();
    if (!getStringInParseBuffer()) return false;
    quoted = mParseBuffer;
    return true;
}

bool InStream::checkToken(const std::string& expected) {
    // NOLINTNEXTLINE(performance-unnecessary-copy-initialization): may be the error text itself
    const std::string wanted = expected;
    mParseBuffer.clear();
    return checkTokenInParseBuffer(wanted.data(), static_cast<int>(wanted.size()));
}

// As many bytes as `until` has are read before the first comparison, so what stands in the buffer
// already never counts.
bool InStream::skip(const std::string& until) {
    char c = 0;
    for (std::size_t i = 0; i < until.size(); ++i) {
        if (!get(c)) return false;
        mParseBuffer += c;
    }
    while (!CheckParseBufferEnd(until.data(), static_cast<int>(until.size()))) {
        if (!get(c)) return false;
        mParseBuffer += c;
    }
    return true;
}

bool InStream::getCharData(DataHolder& text) {
    std::string gathered;
    char c = 0;
    bool more = get(c);
    for (; more && c != '<'; more = get(c)) gathered += c;
    text.append(gathered.data(), static_cast<int>(gathered.size()));
    if (more) putBackChar();
    return more;
}

int InStream::getLine() const { return lineStarts().lineOf(getPosition()); }

int InStream::getColumn() const { return lineStarts().columnOf(getPosition()); }

void InStream::noteLineStart(int position) {
    if (mNotedLines.empty()) {
        mLineStarts.add(position);
    } else {
        mNotedLines.emplace_back(position, -1);
    }
}

// Needs: the text is in memory.
void InStream::noteLineStarts(int begin, int end) { mNotedLines.emplace_back(begin, end); }

const InStream::LineStarts& InStream::lineStarts() const {
    ReadStretch looked;
    for (const auto& [begin, end] : mNotedLines) {
        if (end < 0) {
            mLineStarts.add(begin);
        } else {
            const int from = looked.extend(begin, end);
            const char* const piece = textInMemory()->toCString() + from;
            mLineStarts.addFrom(piece, static_cast<std::size_t>(end - from), from);
        }
    }
    mNotedLines.clear();
    return mLineStarts;
}

const std::string& InStream::getErrorMessage() const { return mErrorMessage; }

const DataHolder* InStream::textInMemory() const { return nullptr; }

bool InStream::readAhead(std::size_t, std::size_t, std::string&) { return false; }

bool InStream::stepBack() { return false; }

bool InStream::getTokenInParseBuffer() { return TokenReader(*this).read(); }

bool InStream::getTokenltInParseBuffer() { return TokenReader(*this).readMarkup(); }

bool InStream::getNameInParseBuffer() {
    const std::size_t start = mParseBuffer.size();
    getTokenInParseBuffer();
    const std::string name = mParseBuffer.substr(start);
    if (isName(name)) return true;
    mErrorMessage = "not a name: " + name;
    return false;
}

bool InStream::getStringInParseBuffer() {
    eatWhite();
    char quote = 0;
    if (!get(quote)) return false;
    if (!isQuote(quote)) {
        mErrorMessage = kQuoteExpected;
        return false;
    }
    mParseBuffer += quote;
    char c = quote;
    do {
        if (!get(c)) return false;
        mParseBuffer += c;
    } while (c != quote);
    return true;
}

bool InStream::checkTokenInParseBuffer(const char* expected, int size) {
    return getTokenInParseBuffer() && expectAtEnd(expected, size);
}

bool InStream::expectAtEnd(const char* expected, int size) {
    if (CheckParseBufferEnd(expected, size)) return true;
    mErrorMessage = '"' + std::string(expected, static_cast<std::size_t>(size)) + "\" expected";
    return false;
}

// Only the end is compared, so that a longer token passes too. Deliberate: a start tag may be
// checked for ">" where it ends in "/>".
bool InStream::CheckParseBufferEnd(const char* expected, int size) const {
    if (size < 1) return true;
    const auto count = static_cast<std::size_t>(size);
    return mParseBuffer.size() >= count &&
           mParseBuffer.compare(mParseBuffer.size() - count, count, expected, count) == 0;
}

std::pair<int, int> InStream::StorePosition() const {
    return {getPosition(), static_cast<int>(mParseBuffer.size())};
}

void InStream::RestorePosition(const std::pair<int, int>& stored) {
    setPosition(stored.first);
    mParseBuffer.resize(static_cast<std::size_t>(stored.second));
}

}  // namespace Xml
