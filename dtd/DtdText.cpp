#include <string>

#include "VexXml/Dtd.h"
#include "VexXml/Streams.h"

namespace Xml {

void Dtd::write(OutStream& out) const {
    const std::string documentType = mName;
    out << "<!DOCTYPE " << documentType << " [\n";
    for (const auto& [name, value] : mEntities) {
        out << "<!ENTITY " << name << " " << toXmlString(value) << ">\n";
    }
    for (const auto& [name, model] : mElementDecls) {
        out << "<!ELEMENT " << name << " ";
        model->toStream(out);
        out << ">\n";
        writeAttList(out, name);
    }
    out << "]>\n";
}

void Dtd::writeAttList(OutStream& out, const std::string& element) const {
    const auto list = mAttListDecls.find(element);
    if (list == mAttListDecls.end() || list->second.empty()) return;
    out << "<!ATTLIST " << element << "\n";
    out.incTab();
    for (const auto& [attribute, def] : list->second) {
        out << attribute << " ";
        def->toStream(out);
        out << "\n";
    }
    out.decTab();
    out << ">\n";
}

}  // namespace Xml
