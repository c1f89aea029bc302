#include <fstream>

#include "VexXml/Readers.h"
#include "readers/CopyOf.h"
#include "readers/Quotes.h"

namespace Xml {

DoctypeReader::DoctypeReader() = default;

DoctypeReader::DoctypeReader(const DoctypeReader& other)
    : Reader(other), mDtd(copyOf(other.mDtd)) {}

DoctypeReader::DoctypeReader(DoctypeReader&&) noexcept = default;

DoctypeReader& DoctypeReader::operator=(const DoctypeReader& other) {
    if (this != &other) *this = DoctypeReader(other);
    return *this;
}

DoctypeReader& DoctypeReader::operator=(DoctypeReader&&) noexcept = default;
DoctypeReader::~DoctypeReader() = default;

Dtd* DoctypeReader::extractDtd() { return mDtd.release(); }

// doctypedecl ::= '<!DOCTYPE' Name ('SYSTEM' SystemLiteral | '[' markupdecl* ']') '>'
bool DoctypeReader::parse(InStream& in) {
    mDtd.reset();
    std::string name;
    std::string token;
    if (!checkToken(in, "<!DOCTYPE") || !getName(in, name) || !getToken(in, token)) return false;
    DTDReader declarations(name);
    bool areRead = false;
    if (token == "SYSTEM") {
        std::string path;
        if (!getString(in, path)) return false;
        std::ifstream file;
        FileInStream external(unquoted(path), &file);
        areRead = parseWith(declarations, external);
    } else if (token == "[") {
        declarations.setInternal(true);
        areRead = parseWith(declarations, in);
    } else {
        message(in, "Unexpected token \"" + token + '"');
        return false;
    }
    if (!areRead || !checkToken(in, ">")) return false;
    mDtd.reset(declarations.extractDtd());
    return true;
}

}  // namespace Xml
