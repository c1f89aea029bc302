#include <string>
#include <utility>

#include "VexXml/Streams.h"
#include "dtd/ModelWriter.h"
#include "dtd/Validator.h"

namespace Xml {

NameSpec::NameSpec(Dtd* dtd, const std::string& name) : CpSpec(dtd) {
    if (isName(name)) mName = name;
}

NameSpec::NameSpec(const NameSpec&) = default;
NameSpec& NameSpec::operator=(const NameSpec&) = default;

NameSpec::NameSpec(NameSpec&& other) noexcept
    : CpSpec(other), mName(std::exchange(other.mName, {})) {}

NameSpec& NameSpec::operator=(NameSpec&& other) noexcept {
    CpSpec::operator=(other);
    mName = std::exchange(other.mName, {});
    return *this;
}

bool NameSpec::validate(std::queue<Object*>* pending) const {
    return Validator::takeMatch(*this, *pending);
}

void NameSpec::toStream(OutStream& out, bool parenthesise) const {
    ModelWriter(out).write(*this, parenthesise);
}

CpSpec* NameSpec::clone(Dtd* newDtd) const { return new NameSpec(newDtd, mName); }

}  // namespace Xml
