#include <algorithm>
#include <iterator>
#include <string>

#include "VexXml/Readers.h"
#include "readers/ReadBudget.h"

namespace Xml {
namespace {

struct LimitName {
    std::uint64_t ReadLimits::*limit;
    const char* name;
};

constexpr LimitName kLimitNames[] = {
    {&ReadLimits::totalBytes, "totalBytes"},
    {&ReadLimits::elementDepth, "elementDepth"},
    {&ReadLimits::nodes, "nodes"},
    {&ReadLimits::attributesPerElement, "attributesPerElement"},
    {&ReadLimits::nameLength, "nameLength"},
    {&ReadLimits::valueLength, "valueLength"},
    {&ReadLimits::textLength, "textLength"},
    {&ReadLimits::entityGrowth, "entityGrowth"},
    {&ReadLimits::declarations, "declarations"},
    {&ReadLimits::declarationBytes, "declarationBytes"},
    {&ReadLimits::groupDepth, "groupDepth"},
    {&ReadLimits::validationSteps, "validationSteps"},
};

}  // namespace

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
    limits.entityGrowth = 64 * kMebi;
    limits.declarations = 10'000;
    limits.declarationBytes = 4 * kMebi;
    limits.groupDepth = 100;
    limits.validationSteps = 50'000'000;
    limits.mayOpenFiles = false;
    return limits;
}

std::uint64_t ReadLimits::*ReadLimits::named(const std::string& name) {
    const auto* found = std::find_if(std::begin(kLimitNames), std::end(kLimitNames),
                                     [&](const LimitName& each) { return each.name == name; });
    return found != std::end(kLimitNames) ? found->limit : nullptr;
}

const char* nameOf(std::uint64_t ReadLimits::*limit) {
    const LimitName* found = std::begin(kLimitNames);
    while (found->limit != limit) ++found;
    return found->name;
}

}  // namespace Xml
