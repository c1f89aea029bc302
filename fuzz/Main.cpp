#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

#include "fuzz/Checks.h"

namespace {

constexpr const fuzz::Target& targetNamed(std::string_view name) {
    const fuzz::Target* target = fuzz::kTargets;
    while (target->name != name) ++target;
    return *target;
}

}  // namespace

// What libFuzzer calls with each input. That of the program is named by the build.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    constexpr const fuzz::Target& kTarget = targetNamed(VEXXML_FUZZ_TARGET);
    const std::string wrong = kTarget.check({reinterpret_cast<const char*>(data), size});
    if (wrong.empty()) return 0;
    std::fprintf(stderr, "%s: %s\n", kTarget.name, wrong.c_str());
    std::abort();
}
