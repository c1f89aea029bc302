#include "VexXml/Readers.h"
#include "readers/Quotes.h"

namespace Xml {

EntityReader::EntityReader(Dtd* dtd) : mDtd(dtd) {}

// EntityDecl ::= '<!ENTITY' Name EntityValue '>'
bool EntityReader::parse(InStream& in) {
    std::string name;
    std::string quoted;
    if (!checkToken(in, "<!ENTITY") || !getName(in, name) || !getString(in, quoted) ||
        !checkToken(in, ">")) {
        return false;
    }
    DataHolder value(unquoted(quoted));
    mDtd->setEntity(name, replaceEntities(value, nullptr));
    return true;
}

}  // namespace Xml
