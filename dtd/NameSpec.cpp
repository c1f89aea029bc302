#include <string>

#include "VexXml/Streams.h"
#include "dtd/ModelAccess.h"
#include "dtd/ModelWriter.h"
#include "dtd/Validator.h"

namespace Xml {

CpSpec::CpSpec(Dtd* dtd) : mDtd(ModelAccess::linkTo(dtd)) {}

CpSpec::~CpSpec() = default;
CpSpec::CpSpec(const CpSpec&) = default;
CpSpec& CpSpec::operator=(const CpSpec&) = default;

NameSpec::NameSpec(Dtd* dtd, const std::string& name) : CpSpec(dtd) {
    if (isName(name)) mName = name;
}

bool NameSpec::validate(std::queue<Object*>* pending) const {
    return Validator::takeMatch(*this, *pending);
}

void NameSpec::toStream(OutStream& out, bool parenthesise) const {
    ModelWriter(out).write(*this, parenthesise);
}

CpSpec* NameSpec::clone(Dtd* newDtd) const { return new NameSpec(newDtd, mName); }

}  // namespace Xml
