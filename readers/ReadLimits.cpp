#include "VexXml/Readers.h"

namespace Xml {

ReadLimits ReadLimits::untrusted() {
    constexpr std::uint64_t kMebi = 1 << 20;
    ReadLimits limits;
    limits.totalBytes = 256 * kMebi;
    limits.elementDepth = 1000;
    limits.nodes = 10'000'000;
    limits.attributesPerElement = 1000;
    limits.nameLength = 1000;
    limits.valueLength = 10 * kMebi;
    limits.textLength = 100 * kMebi;
    limits.declarations = 10'000;
    limits.declarationBytes = 4 * kMebi;
    limits.groupDepth = 100;
    limits.validationSteps = 50'000'000;
    limits.mayOpenFiles = false;
    return limits;
}

}  // namespace Xml
