#include <algorithm>
#include <cstdint>
#include <utility>

#include "VexXml/Readers.h"
#include "readers/CopyOf.h"
#include "readers/LimitedRead.h"

namespace Xml {

DTDReader::DTDReader(const std::string& name) : mDtd(std::make_unique<Dtd>(name)) {}

DTDReader::DTDReader(const DTDReader& other)
    : Reader(other), mDtd(copyOf(other.mDtd)), mInternal(other.mInternal) {}

DTDReader::DTDReader(DTDReader&&) noexcept = default;

DTDReader& DTDReader::operator=(const DTDReader& other) {
    if (this != &other) *this = DTDReader(other);
    return *this;
}

DTDReader& DTDReader::operator=(DTDReader&&) noexcept = default;
DTDReader::~DTDReader() = default;

void DTDReader::setInternal(bool internal) { mInternal = internal; }

Dtd* DTDReader::getDtd() { return mDtd.get(); }

Dtd* DTDReader::extractDtd() { return mDtd.release(); }

bool DTDReader::parse(InStream& in) {
    LimitedRead read(*this, in);
    if (!mDtd) mDtd = std::make_unique<Dtd>("");
    if (limits() != nullptr) mDtd->setStepLimit(limits()->validationSteps);
    return read.end(readDeclarations(in));
}

// The keyword of a declaration is looked at here and read by the reader for that declaration.
bool DTDReader::readDeclarations(InStream& in) {
    for (;;) {
        const int start = in.getPosition();
        std::string token;
        if (!getToken(in, token)) return false;
        if (mInternal && token == "]") return true;
        if (!takesFrom(&ReadLimits::declarations, 1, in)) return false;
        if (!readDeclaration(in, token, start)) return false;
        const std::int64_t size = std::max(std::int64_t{in.getPosition()} - start, std::int64_t{0});
        if (!takesFrom(&ReadLimits::declarationBytes, static_cast<std::uint64_t>(size), in))
            return false;
        in.eatWhite();
        if (!in.eof()) continue;
        if (mInternal) message(in, "Unexpected end of stream");
        return !mInternal;
    }
}

// markupdecl ::= elementdecl | AttlistDecl | EntityDecl | Comment
bool DTDReader::readDeclaration(InStream& in, const std::string& keyword, int start) {
    CommentReader comment;
    ElementDeclReader element(mDtd.get());
    AttListReader attList(mDtd.get());
    EntityReader entity(mDtd.get());
    const std::pair<const char*, Reader*> readers[] = {{"<!--", &comment},
                                                       {"<!ELEMENT", &element},
                                                       {"<!ATTLIST", &attList},
                                                       {"<!ENTITY", &entity}};
    for (const auto& [opener, reader] : readers) {
        if (keyword != opener) continue;
        in.setPosition(start);
        return parseWith(*reader, in);
    }
    // Lower case, unlike in a document type declaration: callers compare both.
    message(in, "unexpected token \"" + keyword + '"');
    return false;
}

}  // namespace Xml
