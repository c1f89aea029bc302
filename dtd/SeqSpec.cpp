#include <memory>
#include <string>
#include <utility>

#include "VexXml/Streams.h"
#include "dtd/ModelAccess.h"
#include "dtd/ModelWriter.h"
#include "dtd/ParticleList.h"
#include "dtd/Validator.h"
#include "values/Room.h"

namespace Xml {

SeqSpec::SeqSpec(Dtd* dtd) : CpSpec(dtd) {}

SeqSpec::SeqSpec(const SeqSpec& other) : CpSpec(other), mItems(copyOf(other.mItems)) {}

SeqSpec::SeqSpec(SeqSpec&& other) noexcept : CpSpec(other), mItems(std::move(other.mItems)) {}

SeqSpec& SeqSpec::operator=(const SeqSpec& other) { return *this = SeqSpec(other); }

SeqSpec& SeqSpec::operator=(SeqSpec&& other) noexcept {
    // The old items die last: `other` may be below them.
    const ParticleList old = std::exchange(mItems, std::exchange(other.mItems, {}));
    CpSpec::operator=(other);
    return *this;
}

SeqSpec::~SeqSpec() { destroy(std::move(mItems)); }

void SeqSpec::add(const std::string& name, RepType rep) {
    auto particle = std::make_unique<NameSpec>(ModelAccess::dtdOf(*this), name);
    add(particle.get(), rep);
    particle.release();
}

void SeqSpec::add(CpSpec* cp, RepType rep) {
    makeRoom(mItems);
    add(new ChildrenSpec(ModelAccess::dtdOf(*this), cp, rep));
}

void SeqSpec::add(ChildrenSpec* item) {
    makeRoom(mItems);
    mItems.emplace_back(item);
}

bool SeqSpec::validate(std::queue<Object*>* pending) const {
    return Validator::takeMatch(*this, *pending);
}

void SeqSpec::toStream(OutStream& out, bool parenthesise) const {
    ModelWriter(out).write(*this, parenthesise);
}

CpSpec* SeqSpec::clone(Dtd* newDtd) const {
    auto copy = std::make_unique<SeqSpec>(newDtd);
    copy->mItems = cloneOf(mItems, newDtd);
    return copy.release();
}

}  // namespace Xml
