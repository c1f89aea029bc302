#include "VexXml/Readers.h"
#include "readers/CopyOf.h"
#include "readers/LimitedRead.h"
#include "streams/TokenMemory.h"

namespace Xml {

DocumentReader::DocumentReader() = default;

DocumentReader::DocumentReader(const DocumentReader& other)
    : Reader(other), mDocument(copyOf(other.mDocument)), mDtd(copyOf(other.mDtd)) {}

DocumentReader::DocumentReader(DocumentReader&&) noexcept = default;

DocumentReader& DocumentReader::operator=(const DocumentReader& other) {
    if (this != &other) *this = DocumentReader(other);
    return *this;
}

DocumentReader& DocumentReader::operator=(DocumentReader&&) noexcept = default;
DocumentReader::~DocumentReader() = default;

Document* DocumentReader::getDocument() { return mDocument.get(); }

Document* DocumentReader::extractDocument() { return mDocument.release(); }

// document ::= prolog element Misc*
bool DocumentReader::parse(InStream& in) {
    LimitedRead read(*this, in);
    mDocument.reset();
    mDtd.reset();
    return read.end(parseProlog(in) && parseElement(in) && parseMisc(in));
}

// prolog ::= XMLDecl? Misc* (doctypedecl Misc*)?
bool DocumentReader::parseProlog(InStream& in) {
    TokenMemory tokens(in);
    std::string token;
    if (!peekToken(in, tokens, token)) return false;
    VersionInfoReader declaration;
    if (token == "<?xml" && !parseWith(declaration, in)) return false;
    if (!parseMisc(in) || !peekToken(in, tokens, token)) return false;
    return token != "<!DOCTYPE" || (parseDoctype(in) && parseMisc(in));
}

bool DocumentReader::parseDoctype(InStream& in) {
    const int start = in.getPosition();
    std::string token;
    for (int i = 0; i < 3; ++i) {
        if (!Reader::getToken(in, token)) return false;
    }
    if (token == "PUBLIC") return skipPublicDoctype(in);
    in.setPosition(start);
    DoctypeReader reader;
    if (!parseWith(reader, in)) return false;
    mDtd.reset(reader.extractDtd());
    return true;
}

// Up to the ">" that is not inside the internal subset. A public identifier never gives a DTD:
// deliberate, as such documents are to be read without one.
bool DocumentReader::skipPublicDoctype(InStream& in) {
    TokenMemory tokens(in);
    bool inSubset = false;
    std::string token;
    do {
        if (!getToken(in, tokens, token)) return false;
        if (token == "[") inSubset = true;
        if (token == "]") inSubset = false;
        if (inSubset && token == "<!--" && !skip(in, "-->")) return false;
    } while (inSubset || token != ">");
    return true;
}

bool DocumentReader::parseElement(InStream& in) {
    ElementReader reader(mDtd.get());
    if (!parseWith(reader, in)) return false;
    std::unique_ptr<Element> root(reader.extractRoot());
    mDocument = std::make_unique<Document>(root.get(), mDtd.get());
    root.release();
    mDtd.release();
    bool hasRunOut = false;
    if (mDocument->validate(hasRunOut)) return true;
    if (hasRunOut) return isWithin(&ReadLimits::validationSteps, ReadLimits::kNone, in);
    message(in, "Doc could not be validated");
    return false;
}

// Misc ::= Comment | PI | S, as many as there are
//
// The end of the stream behind a comment or an instruction leaves its text as the message, although
// that is a success. Deliberate: callers know it.
bool DocumentReader::parseMisc(InStream& in) {
    in.eatWhite();
    if (in.eof()) return true;
    TokenMemory tokens(in);
    for (;;) {
        std::string token;
        if (!peekToken(in, tokens, token)) return in.eof();
        if (token == "<!--") {
            CommentReader comment;
            if (!parseWith(comment, in)) return false;
        } else if (token == "<?") {
            if (!parseInstruction(in, tokens)) return false;
        } else {
            return true;
        }
    }
}

// What a `PIReader` does, and in its name, but for the memory.
bool DocumentReader::parseInstruction(InStream& in, TokenMemory& tokens) {
    PIReader instruction;
    if (!tokens.checkToken("<?")) {
        instruction.message(in, in.getErrorMessage());
    } else if (instruction.skip(in, "?>")) {
        return true;
    }
    setMessage(instruction.getErrorMessage());
    return false;
}

bool DocumentReader::getToken(InStream& in, TokenMemory& tokens, std::string& token) {
    if (tokens.getToken(token)) return true;
    message(in, in.getErrorMessage());
    return false;
}

// A token that cannot be read is not put back.
bool DocumentReader::peekToken(InStream& in, TokenMemory& tokens, std::string& token) {
    const int start = in.getPosition();
    if (!getToken(in, tokens, token)) return false;
    in.setPosition(start);
    return true;
}

}  // namespace Xml
