#include "VexXml/Readers.h"

namespace Xml {

ElementDeclReader::ElementDeclReader(Dtd* dtd) : mDtd(dtd) {}

// elementdecl ::= '<!ELEMENT' Name contentspec '>'
//
// The declaration is stored before its ">" is looked for. Deliberate: it stays when that is
// missing.
bool ElementDeclReader::parse(InStream& in) {
    std::string name;
    std::unique_ptr<ContentSpec> model;
    if (!checkToken(in, "<!ELEMENT") || !getName(in, name) || !readModel(in, model)) return false;
    if (mDtd->addElementDecl(name, model.get())) model.release();
    return checkToken(in, ">");
}

// contentspec ::= 'EMPTY' | 'ANY' | Mixed | children
bool ElementDeclReader::readModel(InStream& in, std::unique_ptr<ContentSpec>& model) {
    const int start = in.getPosition();
    std::string token;
    if (!getToken(in, token)) return false;
    if (token == "EMPTY") {
        model = std::make_unique<EmptySpec>(mDtd);
    } else if (token == "ANY") {
        model = std::make_unique<AnySpec>(mDtd);
    } else if (token == "(") {
        return readGroup(in, start, model);
    } else {
        Message("<ElementDeclReader::parse> don't know what to do " + token);
    }
    return model != nullptr;
}

// Mixed | children, from the "(" at `start`, behind which the stream stands
bool ElementDeclReader::readGroup(InStream& in, int start, std::unique_ptr<ContentSpec>& model) {
    std::string token;
    if (!getToken(in, token)) return false;
    in.setPosition(start);
    if (token == "#PCDATA") {
        MixedSpecReader reader(mDtd);
        if (parseWith(reader, in)) model.reset(reader.extractMixedSpec());
    } else {
        ChildrenSpecReader reader(mDtd);
        if (parseWith(reader, in)) model.reset(reader.extractChildrenSpec());
    }
    return model != nullptr;
}

}  // namespace Xml
