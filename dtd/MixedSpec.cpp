#include <memory>
#include <string>
#include <utility>

#include "VexXml/Streams.h"
#include "dtd/Validator.h"
#include "values/Room.h"

namespace Xml {

MixedSpec::MixedSpec(Dtd* dtd) : ContentSpec(dtd) {}
MixedSpec::MixedSpec(const MixedSpec&) = default;
MixedSpec& MixedSpec::operator=(const MixedSpec&) = default;

MixedSpec::MixedSpec(MixedSpec&& other) noexcept
    : ContentSpec(other),
      mNames(std::exchange(other.mNames, {})),
      mKnownNames(std::exchange(other.mKnownNames, {})) {}

MixedSpec& MixedSpec::operator=(MixedSpec&& other) noexcept {
    ContentSpec::operator=(other);
    mNames = std::exchange(other.mNames, {});
    mKnownNames = std::exchange(other.mKnownNames, {});
    return *this;
}

void MixedSpec::addName(const std::string& name) {
    std::string added = name;
    makeRoom(mNames);
    if (!mKnownNames.insert(name).second) {
        // Names the constructor instead of this function: callers compare this.
        Message("<MixedSpec::MixedSpec> name already added " + name);
        return;
    }
    mNames.push_back(std::move(added));
}

bool MixedSpec::validate(std::vector<Object*>* children) const {
    return Validator(*children).matches(*this);
}

void MixedSpec::toStream(OutStream& out) const {
    out << "(#PCDATA";
    for (const std::string& name : mNames) out << " | " << name;
    out << (mNames.empty() ? ")" : ")*");
}

ContentSpec* MixedSpec::clone(Dtd* newDtd) const {
    auto copy = std::make_unique<MixedSpec>(newDtd);
    for (const std::string& name : mNames) copy->addName(name);
    return copy.release();
}

}  // namespace Xml
