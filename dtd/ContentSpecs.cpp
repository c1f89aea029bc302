
#include "VexXml/Streams.h"
#include "dtd/ModelAccess.h"

namespace Xml {

ContentSpec::ContentSpec(Dtd* dtd) : mDtd(ModelAccess::linkTo(dtd)) {}

ContentSpec::~ContentSpec() = default;
ContentSpec::ContentSpec(const ContentSpec&) = default;
ContentSpec& ContentSpec::operator=(const ContentSpec&) = default;

AnySpec::AnySpec(Dtd* dtd) : ContentSpec(dtd) {}

bool AnySpec::validate(std::vector<Object*>* /*children*/) const { return true; }

void AnySpec::toStream(OutStream& out) const { out << "ANY"; }

ContentSpec* AnySpec::clone(Dtd* newDtd) const { return new AnySpec(newDtd); }

EmptySpec::EmptySpec(Dtd* dtd) : ContentSpec(dtd) {}

bool EmptySpec::validate(std::vector<Object*>* children) const { return children->empty(); }

void EmptySpec::toStream(OutStream& out) const { out << "EMPTY"; }

ContentSpec* EmptySpec::clone(Dtd* newDtd) const { return new EmptySpec(newDtd); }

CharSpec::CharSpec(Dtd* dtd) : ContentSpec(dtd) {}

bool CharSpec::validate(std::vector<Object*>* children) const {
    for (Object* child : *children) {
        if (child->isElement() || !child->isCharData()) return false;
        child->setDtd(ModelAccess::dtdOf(*this));
    }
    return true;
}

void CharSpec::toStream(OutStream& out) const { out << "(#PCDATA)"; }

ContentSpec* CharSpec::clone(Dtd* newDtd) const { return new CharSpec(newDtd); }

}  // namespace Xml
