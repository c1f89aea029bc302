#pragma once

#include <memory>

#include "dtd/ModelAccess.h"

namespace Xml {

/// Copies that keep the links to the DTD, and everything else. Particles of a class that a caller
/// derived are cloned for the DTD that they belong to. Null gives null.
std::unique_ptr<CpSpec> copyOf(const CpSpec* particle);
ParticleList copyOf(const ParticleList& items);

/// Copies that belong to `newDtd`; choices lose their character-data alternative.
std::unique_ptr<CpSpec> cloneOf(const CpSpec* particle, Dtd* newDtd);
ParticleList cloneOf(const ParticleList& items, Dtd* newDtd);

/// Frees the items and all below them. Needs no memory.
void destroy(ParticleList items);

}  // namespace Xml
