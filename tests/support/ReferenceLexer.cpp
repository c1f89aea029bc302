#include "support/ReferenceLexer.h"

#include <algorithm>

namespace support {
namespace {

const std::string kEndOfStream = "Unexpected end of stream";
const std::string kQuoteExpected = "\"\"\" or \"'\" expected";
const std::string kDelimiters = "(),><=\"'[]*+?!|/\\";
const std::string kWhite = " \t\n\r";

bool isOneOf(const std::string& bytes, char c) { return bytes.find(c) != std::string::npos; }

}  // namespace

ReferenceLexer::ReferenceLexer(Xml::InStream& source) : mSource(source) {}

int ReferenceLexer::getPosition() const { return mSource.getPosition(); }

void ReferenceLexer::setPosition(int position) { mSource.setPosition(position); }

bool ReferenceLexer::eof() { return mSource.eof(); }

bool ReferenceLexer::get(char& c) { return read(c); }

void ReferenceLexer::putBackChar() {
    const int position = getPosition();
    if (position >= 1) setPosition(position - 1);
}

void ReferenceLexer::eatWhite() {
    mByte = 0;
    skipWhite();
}

bool ReferenceLexer::getToken(std::string& token) {
    begin();
    if (!this->token()) return false;
    token = mBuffer;
    return true;
}

bool ReferenceLexer::getName(std::string& name) {
    begin();
    if (!this->name()) return false;
    name = mBuffer;
    return true;
}

bool ReferenceLexer::getString(std::string& quoted) {
    begin();
    if (!string()) return false;
    quoted = mBuffer;
    return true;
}

bool ReferenceLexer::checkToken(const std::string& expected) {
    begin();
    return check(expected);
}

bool ReferenceLexer::skip(const std::string& until) {
    mByte = 0;
    for (std::size_t i = 0; i < until.size(); ++i) {
        if (!readIntoBuffer()) return false;
    }
    while (!bufferEndsWith(until)) {
        if (!readIntoBuffer()) return false;
    }
    return true;
}

bool ReferenceLexer::getCharData(Xml::DataHolder& text) {
    mByte = 0;
    while (read(mByte)) {
        if (mByte == '<') {
            putBackChar();
            return true;
        }
        text.push(mByte);
    }
    return false;
}

int ReferenceLexer::getLine() const {
    if (mLineStarts.empty()) return 1;
    for (std::size_t i = 0; i < mLineStarts.size(); ++i) {
        if (mLineStarts[i] == getPosition()) return static_cast<int>(i) + 1;
    }
    return static_cast<int>(mLineStarts.size());
}

int ReferenceLexer::getColumn() const {
    const int position = getPosition();
    std::size_t k = 0;
    while (k < mLineStarts.size() && mLineStarts[k] < position) ++k;
    return k == 0 ? position : position - mLineStarts[k - 1];
}

const std::string& ReferenceLexer::getErrorMessage() const { return mErrorMessage; }

void ReferenceLexer::begin() {
    mBuffer.clear();
    mByte = 0;
}

bool ReferenceLexer::read(char& c) {
    if (!mSource.getChar(c)) return fail(kEndOfStream);
    if ((c == '\r' || c == '\n') && mAfterCR) noteLineStart(getPosition());
    mAfterCR = c == '\r';
    return true;
}

bool ReferenceLexer::readIntoBuffer() {
    if (!read(mByte)) return false;
    mBuffer += mByte;
    return true;
}

void ReferenceLexer::noteLineStart(int position) {
    const auto known = std::find(mLineStarts.begin(), mLineStarts.end(), position);
    if (known == mLineStarts.end()) mLineStarts.push_back(position);
}

ReferenceLexer::Place ReferenceLexer::store() const { return {getPosition(), mBuffer.size()}; }

void ReferenceLexer::restore(const Place& place) {
    setPosition(place.first);
    mBuffer.resize(place.second);
}

bool ReferenceLexer::bufferEndsWith(const std::string& text) const {
    return mBuffer.size() >= text.size() &&
           mBuffer.compare(mBuffer.size() - text.size(), text.size(), text) == 0;
}

bool ReferenceLexer::fail(const std::string& error) {
    mErrorMessage = error;
    return false;
}

void ReferenceLexer::skipWhite() {
    do {
        if (!read(mByte)) return;
    } while (isOneOf(kWhite, mByte));
    putBackChar();
}

// NOLINTBEGIN(misc-no-recursion): the inputs are short, and this is what is to be compared with
bool ReferenceLexer::token() {
    skipWhite();
    if (!read(mByte)) return false;
    switch (mByte) {
        case '"':
        case '\'':
            putBackChar();
            return string();
        case '&':
            return reference();
        case '/':
            return slash();
        case '<':
            mBuffer += '<';
            return markup();
        default:
            return word();
    }
}

bool ReferenceLexer::reference() {
    mBuffer += '&';
    while (readIntoBuffer()) {
        if (mByte == ';') return true;
    }
    return false;
}

bool ReferenceLexer::slash() {
    mBuffer += '/';
    if (!read(mByte)) return true;
    if (mByte == '>') {
        mBuffer += '>';
    } else {
        putBackChar();
    }
    return true;
}

bool ReferenceLexer::word() {
    mBuffer += mByte;
    if (isOneOf(kDelimiters, mByte)) return true;
    while (read(mByte)) {
        if (isOneOf(kDelimiters, mByte) || isOneOf(kWhite, mByte)) {
            putBackChar();
            return true;
        }
        mBuffer += mByte;
    }
    return true;
}

// What stands behind "<".
bool ReferenceLexer::markup() {
    if (!read(mByte)) return true;
    switch (mByte) {
        case '/':
            mBuffer += '/';
            return true;
        case '?':
            mBuffer += '?';
            return instruction();
        case '!':
            mBuffer += '!';
            return declaration();
        default:
            putBackChar();
            return true;
    }
}

bool ReferenceLexer::instruction() {
    const Place start = store();
    if (name() && bufferEndsWith("xml")) return true;
    restore(start);
    return true;
}

bool ReferenceLexer::declaration() {
    const Place start = store();
    if (name()) return true;
    restore(start);
    if (check("[")) return section();
    restore(start);
    return comment();
}

bool ReferenceLexer::section() {
    const Place start = store();
    if (check("CDATA") && check("[")) return true;
    restore(start);
    return true;
}

bool ReferenceLexer::comment() {
    const Place start = store();
    for (int dashes = 0; dashes < 2; ++dashes) {
        if (!read(mByte)) return false;
        if (mByte != '-') {
            restore(start);
            return true;
        }
    }
    mBuffer += "--";
    return true;
}

bool ReferenceLexer::name() {
    const std::size_t start = mBuffer.size();
    token();
    const std::string gathered = mBuffer.substr(start);
    return Xml::isName(gathered) || fail("not a name: " + gathered);
}

bool ReferenceLexer::check(const std::string& expected) {
    if (!token()) return false;
    return bufferEndsWith(expected) || fail('"' + expected + "\" expected");
}
// NOLINTEND(misc-no-recursion)

bool ReferenceLexer::string() {
    skipWhite();
    if (!read(mByte)) return false;
    if (mByte != '"' && mByte != '\'') return fail(kQuoteExpected);
    const char quote = mByte;
    mBuffer += quote;
    while (readIntoBuffer()) {
        if (mByte == quote) return true;
    }
    return false;
}

}  // namespace support
