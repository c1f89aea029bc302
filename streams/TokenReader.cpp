#include "streams/TokenReader.h"

#include "values/ByteClass.h"

namespace Xml {

TokenReader::TokenReader(InStream& in, TokenMemory* memory) : mIn(in), mMemory(memory) {}

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
            if (outcome.state == Outcome::State::AwaitsToken) continue;
            const Opener opener = mOpen.back();
            mOpen.pop_back();
            if (mMemory != nullptr && !mOpen.empty()) remember(opener, outcome);
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
    if (mMemory == nullptr) return readReferenceText();
    mReferenceAt = mIn.getPosition();
    mIsRecalled = recallsReference(mReferenceAt);
    if (mIsRecalled) return recallReference();
    const Outcome outcome = readReferenceText();
    const bool isEnded = outcome.state == Outcome::State::Complete;
    mMemory->keepReference({mReferenceAt, mIn.getPosition(), isEnded, mIn.mAfterCR, {}});
    return outcome;
}

TokenReader::Outcome TokenReader::readReferenceText() {
    char c = '&';
    do {
        if (!mIn.get(c)) return failedAtEnd();
        mIn.mParseBuffer += c;
    } while (c != ';');
    return {Outcome::State::Complete, {}};
}

// Not where all of it is asked for; and one without an end is met but once unless it is put back.
bool TokenReader::recallsReference(int begin) const {
    const TokenMemory::Reference& known = mMemory->mReference;
    if (!mMemory->knowsReference(begin)) return false;
    if (mOpen.empty()) return known.isEnded;
    return mOpen.back().awaits != Opener::Awaits::Target || !known.text.empty();
}

TokenReader::Outcome TokenReader::recallReference() {
    const TokenMemory::Reference& known = mMemory->mReference;
    mIn.setPosition(known.end);
    mIn.mAfterCR = known.isAfterCR;
    return known.isEnded ? Outcome{Outcome::State::Complete, {}} : failedAtEnd();
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
    if (mMemory != nullptr && mOpen.empty()) {
        if (const auto* known = mMemory->openerAt(mIn.getPosition())) return recall(*known);
    }
    const auto awaits = c == '?' ? Opener::Awaits::Target : Opener::Awaits::DeclarationName;
    mOpen.push_back({awaits, mIn.StorePosition(), {}, {}});
    return {Outcome::State::AwaitsToken, {}};
}

TokenReader::Outcome TokenReader::recall(const TokenMemory::Opener& known) {
    mIn.setPosition(known.end);
    mIn.mAfterCR = known.isAfterCR;
    mIn.mParseBuffer = known.text;
    if (!known.hasError) return {Outcome::State::Complete, {}};
    mIn.mErrorMessage = known.error;
    return {Outcome::State::Complete, {LeftBehind::Text::AsItIs}};
}

// Most leave little: the opener itself, or that and "[".
void TokenReader::remember(const Opener& opener, const Outcome& outcome) {
    constexpr std::size_t kOpenerSize = 2;
    constexpr std::size_t kLongest = 32;
    if (!mRemembers) mMemory->mOpeners.clear();
    mRemembers = true;
    const int end = mIn.getPosition();
    const auto begin = static_cast<std::size_t>(opener.behindOpener.second) - kOpenerSize;
    if (outcome.state != Outcome::State::Complete || end < 0) return;
    if (mIn.mParseBuffer.size() - begin > kLongest || outcome.left.size > kLongest) return;
    const bool hasError = outcome.left.text != LeftBehind::Text::None;
    if (outcome.left.text == LeftBehind::Text::AsItIs &&
        (mIn.mErrorMessage.empty() || mIn.mErrorMessage.size() > kLongest)) {
        return;
    }
    mMemory->mOpeners.push_back({opener.behindOpener.first, end, mIn.mParseBuffer.substr(begin),
                                 hasError, errorText(outcome.left), mIn.mAfterCR});
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
    leaveNotAName(target);
    return {Outcome::State::Complete, {LeftBehind::Text::AsItIs}};
}

// A long reference that is not a name is kept for the openers in it.
void TokenReader::leaveNotAName(const std::string& target) {
    constexpr std::size_t kLong = 32;
    const bool isReference = mMemory != nullptr && !target.empty() && target.front() == '&';
    if (isReference && mIsRecalled) return mMemory->leaveNotAName(mReferenceAt);
    if (isReference && target.size() > kLong) mMemory->mReference.text = target.substr(1);
    mIn.mErrorMessage = "not a name: " + target;
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
    const bool isSet = left.text != LeftBehind::Text::None && left.text != LeftBehind::Text::AsItIs;
    if (isSet) mIn.mErrorMessage = errorText(left);
}

std::string TokenReader::errorText(const LeftBehind& left) const {
    switch (left.text) {
        case LeftBehind::Text::None:
            break;
        case LeftBehind::Text::AsItIs:
            return mIn.mErrorMessage;
        case LeftBehind::Text::EndOfStream:
            return "Unexpected end of stream";
        case LeftBehind::Text::NotAName:
            return "not a name: " + mIn.mParseBuffer.substr(left.begin, left.size);
        case LeftBehind::Text::BracketExpected:
            return "\"[\" expected";
        case LeftBehind::Text::CDataExpected:
            return "\"CDATA\" expected";
    }
    return {};
}

}  // namespace Xml
