#include <string>
#include <utility>

#include "VexXml/Streams.h"
#include "dtd/ModelWriter.h"
#include "dtd/ParticleList.h"
#include "dtd/Validator.h"

namespace Xml {
namespace {

RepType known(RepType rep) { return rep >= RepOnce && rep <= RepOneOrMore ? rep : RepOnce; }

}  // namespace

ChildrenSpec::ChildrenSpec(Dtd* dtd, const std::string& name, RepType rep)
    : ContentSpec(dtd), mRep(known(rep)), mCp(std::make_unique<NameSpec>(dtd, name)) {}

ChildrenSpec::ChildrenSpec(Dtd* dtd, CpSpec* cp, RepType rep)
    : ContentSpec(dtd), mRep(known(rep)), mCp(cp) {}

ChildrenSpec::ChildrenSpec(const ChildrenSpec& other)
    : ContentSpec(other), mRep(other.mRep), mCp(copyOf(other.mCp.get())) {}

ChildrenSpec::ChildrenSpec(ChildrenSpec&& other) noexcept
    : ContentSpec(other), mRep(std::exchange(other.mRep, RepOnce)), mCp(std::move(other.mCp)) {}

ChildrenSpec& ChildrenSpec::operator=(const ChildrenSpec& other) {
    return *this = ChildrenSpec(other);
}

ChildrenSpec& ChildrenSpec::operator=(ChildrenSpec&& other) noexcept {
    // The old particle dies last: `other` may be below it.
    const std::unique_ptr<CpSpec> old = std::exchange(mCp, std::exchange(other.mCp, nullptr));
    mRep = std::exchange(other.mRep, RepOnce);
    ContentSpec::operator=(other);
    return *this;
}

ChildrenSpec::~ChildrenSpec() = default;

bool ChildrenSpec::validate(std::vector<Object*>* children) const {
    return Validator(*children).matches(*this);
}

bool ChildrenSpec::validate(std::queue<Object*>* pending) const {
    return Validator::takeMatch(*this, *pending);
}

void ChildrenSpec::toStream(OutStream& out) const { toStream(out, true); }

void ChildrenSpec::toStream(OutStream& out, bool parenthesise) const {
    ModelWriter(out).write(*this, parenthesise);
}

ChildrenSpec* ChildrenSpec::clone(Dtd* newDtd) const {
    auto copy = std::make_unique<ChildrenSpec>(newDtd, nullptr, mRep);
    copy->mCp = cloneOf(mCp.get(), newDtd);
    return copy.release();
}

}  // namespace Xml
