#include "dtd/ModelAccess.h"

namespace Xml {

CpSpec::CpSpec(Dtd* dtd) : mDtd(ModelAccess::linkTo(dtd)) {}

CpSpec::~CpSpec() = default;
CpSpec::CpSpec(const CpSpec&) = default;
CpSpec& CpSpec::operator=(const CpSpec&) = default;

}  // namespace Xml
