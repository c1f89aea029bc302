#include <string>

#include "VexXml/Dtd.h"
#include "VexXml/Streams.h"

namespace Xml {
namespace {

/// Of what is written while it lives, whatever ends that.
class Indentation {
public:
    explicit Indentation(OutStream& out) : mOut(out) { mOut.incTab(); }
    ~Indentation() { mOut.decTab(); }
    Indentation(const Indentation&) = delete;
    Indentation& operator=(const Indentation&) = delete;

private:
    OutStream& mOut;
};

}  // namespace

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
    {
        const Indentation oneLevel(out);
        for (const auto& [attribute, def] : list->second) {
            out << attribute << " ";
            def->toStream(out);
            out << "\n";
        }
    }
    out << ">\n";
}

}  // namespace Xml
