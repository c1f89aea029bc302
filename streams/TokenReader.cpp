#include "streams/TokenReader.h"

#include "values/ByteClass.h"

namespace Xml {

TokenReader::TokenReader(InStream& in) : mIn(in) {}

bool TokenReader::read() { return finish(startToken()); }

bool TokenReader::readMarkup() { return finish(startMarkup()); }

// Invariant: every opener in `mOpen` waits for the token that `outcome` is about, or for one that
// waits itself.
bool TokenReader::finish(Outcome outcome) {
    for (;;) {
        if (outcome.state == Outcome::State::AwaitsToken) {
            outcome = startToken();
        } else if (!mOpen.empty()) {
            outcome = resume(outcome);
            if (outcome.state != Outcome::State::AwaitsToken) mOpen.pop_back();
        } else {
            setErrorText(outcome.left);
            return outcome.state == Outcome::State::Complete;
        }
    }
}

// Token, as far as it can be told without looking ahead behind "<?" and "<!"
TokenReader::Outcome TokenReader::startToken() {
    mIn.eatWhite();
    char c = 0;
    if (!mIn.get(c)) return failedAtEnd();
    if (c == '"' || c == '\'') {
        mIn.putBackChar();
        return readString();
    }
    mIn.mParseBuffer += c;
    switch (c) {
        case '&':
            return readReference();
        case '/':
            return readSlash();
        case '<':
            return startMarkup();
        default:
            return readRest(c);
    }
}

TokenReader::Outcome TokenReader::readString() {
    if (!mIn.getStringInParseBuffer()) {
        return {Outcome::State::Failed, {LeftBehind::Text::AsItIs}};
    }
    return {Outcome::State::Complete, {}};
}

TokenReader::Outcome TokenReader::readReference() {
    char c = '&';
    do {
        if (!mIn.get(c)) return failedAtEnd();
        mIn.mParseBuffer += c;
    } while (c != ';');
    return {Outcome::State::Complete, {}};
}

TokenReader::Outcome TokenReader::readSlash() {
    char c = '/';
    if (!mIn.get(c)) return {Outcome::State::Complete, {LeftBehind::Text::EndOfStream}};
    if (c == '>') {
        mIn.mParseBuffer += c;
    } else {
        mIn.putBackChar();
    }
    return {Outcome::State::Complete, {}};
}

TokenReader::Outcome TokenReader::readRest(char first) {
    if (ByteClass::isDelimiter(first)) return {Outcome::State::Complete, {}};
    for (char c = first; mIn.get(c); mIn.mParseBuffer += c) {
        if (ByteClass::endsToken(c)) {
            mIn.putBackChar();
            return {Outcome::State::Complete, {}};
        }
    }
    return {Outcome::State::Complete, {LeftBehind::Text::EndOfStream}};
}

// "</" | "<?" … | "<!" … | "<"
TokenReader::Outcome TokenReader::startMarkup() {
    char c = 0;
    if (!mIn.get(c)) return {Outcome::State::Complete, {LeftBehind::Text::EndOfStream}};
    if (c != '/' && c != '?' && c != '!') {
        mIn.putBackChar();
        return {Outcome::State::Complete, {}};
    }
    mIn.mParseBuffer += c;
    if (c == '/') return {Outcome::State::Complete, {}};
    const auto awaits = c == '?' ? Opener::Awaits::Target : Opener::Awaits::DeclarationName;
    mOpen.push_back({awaits, mIn.StorePosition(), {}, {}});
    return {Outcome::State::AwaitsToken, {}};
}

TokenReader::Outcome TokenReader::resume(const Outcome& token) {
    Opener& opener = mOpen.back();
    switch (opener.awaits) {
        case Opener::Awaits::Target:
            return resumeTarget(opener, token);
        case Opener::Awaits::DeclarationName:
            return resumeDeclaration(opener, token);
        case Opener::Awaits::Bracket:
            return resumeBracket(opener, token);
        case Opener::Awaits::CData:
            return resumeCData(opener, token);
        case Opener::Awaits::SecondBracket:
            break;
    }
    return resumeSecondBracket(opener, token);
}

// "<?" and a name that ends in "xml", or "<?" alone
TokenReader::Outcome TokenReader::resumeTarget(Opener& opener, const Outcome& token) {
    const auto start = static_cast<std::size_t>(opener.behindOpener.second);
    const std::string target = mIn.mParseBuffer.substr(start);
    const bool named = isName(target);
    if (named && endsWith("xml")) return {Outcome::State::Complete, token.left};
    mIn.RestorePosition(opener.behindOpener);
    if (named) return {Outcome::State::Complete, token.left};
    mIn.mErrorMessage = "not a name: " + target;
    return {Outcome::State::Complete, {LeftBehind::Text::AsItIs}};
}

// "<!" and a name, or else "<!" and a token that is looked at once more
TokenReader::Outcome TokenReader::resumeDeclaration(Opener& opener, const Outcome& token) {
    const auto start = static_cast<std::size_t>(opener.behindOpener.second);
    const std::size_t size = mIn.mParseBuffer.size() - start;
    if (isName(mIn.mParseBuffer.data() + start, static_cast<int>(size))) {
        return {Outcome::State::Complete, token.left};
    }
    opener.left = {LeftBehind::Text::NotAName, start, size};
    const int end = mIn.getPosition();
    if (rewindsTo(opener.behindOpener.first)) {
        noteLineStartAt(opener.behindOpener.first);
        if (endsWith("[")) mIn.setPosition(end);
        return resumeBracket(opener, token);
    }
    // A stream that cannot go back, as a file stream at its end, reads on from where it is.
    mIn.RestorePosition(opener.behindOpener);
    opener.awaits = Opener::Awaits::Bracket;
    return {Outcome::State::AwaitsToken, {}};
}

// "<!" and a token that ends with "[", or else "<!--" or "<!"
TokenReader::Outcome TokenReader::resumeBracket(Opener& opener, const Outcome& token) {
    if (token.left.text != LeftBehind::Text::None) opener.left = token.left;
    const bool complete = token.state == Outcome::State::Complete;
    if (!complete || !endsWith("[")) {
        if (complete) opener.left = {LeftBehind::Text::BracketExpected};
        return readDashes(opener);
    }
    opener.behindBracket = mIn.StorePosition();
    if (mRefusedAt >= 0 && opener.behindBracket.first == mRefusedAt) {
        noteLineStartAt(mRefusedAt);
        return refuseCData(opener, mRefusal);
    }
    opener.awaits = Opener::Awaits::CData;
    return {Outcome::State::AwaitsToken, {}};
}

TokenReader::Outcome TokenReader::resumeCData(Opener& opener, const Outcome& token) {
    if (token.state != Outcome::State::Complete) return refuseCData(opener, token.left);
    if (!endsWith("CDATA")) return refuseCData(opener, {LeftBehind::Text::CDataExpected});
    if (token.left.text != LeftBehind::Text::None) opener.left = token.left;
    opener.awaits = Opener::Awaits::SecondBracket;
    return {Outcome::State::AwaitsToken, {}};
}

TokenReader::Outcome TokenReader::resumeSecondBracket(Opener& opener, const Outcome& token) {
    if (token.state != Outcome::State::Complete) return refuseCData(opener, token.left);
    if (!endsWith("[")) return refuseCData(opener, {LeftBehind::Text::BracketExpected});
    if (token.left.text != LeftBehind::Text::None) opener.left = token.left;
    return {Outcome::State::Complete, opener.left};
}

// The token ends with its first "[". Openers around it come to the same place next, so what was
// found there is kept for them.
TokenReader::Outcome TokenReader::refuseCData(Opener& opener, LeftBehind left) {
    mIn.RestorePosition(opener.behindBracket);
    mRefusedAt = opener.behindBracket.first;
    mRefusal = left;
    return {Outcome::State::Complete, left};
}

TokenReader::Outcome TokenReader::readDashes(Opener& opener) {
    char c = 0;
    mIn.RestorePosition(opener.behindOpener);
    for (int dashes = 0; dashes < 2; ++dashes) {
        if (!mIn.get(c)) return failedAtEnd();
        if (c != '-') {
            mIn.RestorePosition(opener.behindOpener);
            return {Outcome::State::Complete, opener.left};
        }
    }
    mIn.mParseBuffer += "--";
    return {Outcome::State::Complete, opener.left};
}

bool TokenReader::rewindsTo(int position) {
    mIn.setPosition(position);
    return position >= 0 && mIn.getPosition() == position;
}

// Stands for reading a token again: of all its bytes, only the first may follow another byte than
// it did the first time.
void TokenReader::noteLineStartAt(int position) {
    if (!mIn.mAfterCR) return;
    mIn.setPosition(position);
    char c = 0;
    if (mIn.getChar(c) && (c == '\r' || c == '\n')) mIn.noteLineStart(mIn.getPosition());
}

TokenReader::Outcome TokenReader::failedAtEnd() const {
    return {Outcome::State::Failed, {LeftBehind::Text::EndOfStream}};
}

bool TokenReader::endsWith(std::string_view text) const {
    return mIn.CheckParseBufferEnd(text.data(), static_cast<int>(text.size()));
}

void TokenReader::setErrorText(const LeftBehind& left) {
    switch (left.text) {
        case LeftBehind::Text::None:
        case LeftBehind::Text::AsItIs:
            break;
        case LeftBehind::Text::EndOfStream:
            mIn.mErrorMessage = "Unexpected end of stream";
            break;
        case LeftBehind::Text::NotAName:
            mIn.mErrorMessage = "not a name: " + mIn.mParseBuffer.substr(left.begin, left.size);
            break;
        case LeftBehind::Text::BracketExpected:
            mIn.mErrorMessage = "\"[\" expected";
            break;
        case LeftBehind::Text::CDataExpected:
            mIn.mErrorMessage = "\"CDATA\" expected";
            break;
    }
}

}  // namespace Xml
