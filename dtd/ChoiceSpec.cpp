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

ChoiceSpec::ChoiceSpec(Dtd* dtd) : CpSpec(dtd) {}

ChoiceSpec::ChoiceSpec(const ChoiceSpec& other)
    : CpSpec(other), mChoices(copyOf(other.mChoices)), mCharDataAsChoice(other.mCharDataAsChoice) {}

ChoiceSpec::ChoiceSpec(ChoiceSpec&& other) noexcept
    : CpSpec(other),
      mChoices(std::move(other.mChoices)),
      mCharDataAsChoice(std::exchange(other.mCharDataAsChoice, false)) {}

ChoiceSpec& ChoiceSpec::operator=(const ChoiceSpec& other) { return *this = ChoiceSpec(other); }

ChoiceSpec& ChoiceSpec::operator=(ChoiceSpec&& other) noexcept {
    // The old choices die last: `other` may be below them.
    const ParticleList old = std::exchange(mChoices, std::exchange(other.mChoices, {}));
    mCharDataAsChoice = std::exchange(other.mCharDataAsChoice, false);
    CpSpec::operator=(other);
    return *this;
}

ChoiceSpec::~ChoiceSpec() { destroy(std::move(mChoices)); }

void ChoiceSpec::addChoice(const std::string& name, RepType rep) {
    auto particle = std::make_unique<NameSpec>(ModelAccess::dtdOf(*this), name);
    addChoice(particle.get(), rep);
    particle.release();
}

void ChoiceSpec::addChoice(CpSpec* cp, RepType rep) {
    makeRoom(mChoices);
    addChoice(new ChildrenSpec(ModelAccess::dtdOf(*this), cp, rep));
}

void ChoiceSpec::addChoice(ChildrenSpec* choice) {
    makeRoom(mChoices);
    mChoices.emplace_back(choice);
}

void ChoiceSpec::addCharDataAsChoice(bool charData) { mCharDataAsChoice = charData; }

bool ChoiceSpec::validate(std::queue<Object*>* pending) const {
    return Validator::takeMatch(*this, *pending);
}

void ChoiceSpec::toStream(OutStream& out, bool parenthesise) const {
    ModelWriter(out).write(*this, parenthesise);
}

CpSpec* ChoiceSpec::clone(Dtd* newDtd) const {
    auto copy = std::make_unique<ChoiceSpec>(newDtd);
    // Character data as a choice is lost on purpose: callers rely on clones without it.
    copy->mChoices = cloneOf(mChoices, newDtd);
    return copy.release();
}

}  // namespace Xml
