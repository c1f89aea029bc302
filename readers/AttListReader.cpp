#include "VexXml/Readers.h"
#include "readers/Quotes.h"

namespace Xml {

AttListReader::AttListReader(Dtd* dtd) : mDtd(dtd) {}

// AttlistDecl ::= '<!ATTLIST' Name AttDef* '>'
//
// Something else where an attribute's name should be has no message. Deliberate: callers know the
// empty text.
bool AttListReader::parse(InStream& in) {
    std::string element;
    if (!checkToken(in, "<!ATTLIST") || !getName(in, element)) return false;
    for (;;) {
        std::string token;
        if (!getToken(in, token)) return false;
        if (token == ">") return true;
        if (!isName(token) || !isWithin(&ReadLimits::nameLength, token.size(), in) ||
            !readDefinition(in, element, token))
            return false;
    }
}

// AttDef ::= Name 'CDATA' ('#REQUIRED' | '#IMPLIED' | '#FIXED'? AttValue), behind the name
bool AttListReader::readDefinition(InStream& in, const std::string& element,
                                   const std::string& attribute) {
    std::string token;
    if (!checkToken(in, "CDATA") || !getToken(in, token)) return false;
    AttType type = AttValue;
    if (token == "#REQUIRED") type = AttRequired;
    if (token == "#IMPLIED") type = AttImplied;
    if (token == "#FIXED") {
        type = AttFixed;
        if (!getToken(in, token)) return false;
    }
    DataHolder value;
    if (type == AttValue || type == AttFixed) {
        if (token[0] != '\'' && token[0] != '"') {
            // Three blanks at the end: callers compare this.
            Message(std::string("<AttListReader::parse> string   "));
            message(in, in.getErrorMessage());
            return false;
        }
        value = unquoted(token);
        const auto size = static_cast<std::uint64_t>(value.getSize());
        if (!isWithin(&ReadLimits::valueLength, size, in)) return false;
    }
    auto definition = std::make_unique<AttStringType>(type, value);
    if (mDtd->addAttDecl(element, attribute, definition.get())) definition.release();
    return true;
}

}  // namespace Xml
