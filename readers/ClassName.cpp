#include "readers/ClassName.h"

#if __has_include(<cxxabi.h>)
#include <cxxabi.h>

#include <cstdlib>
#include <memory>
#endif

namespace Xml {

#if __has_include(<cxxabi.h>)

std::string className(const std::type_info& type) {
    int failure = 0;
    const std::unique_ptr<char, void (*)(void*)> name(
        abi::__cxa_demangle(type.name(), nullptr, nullptr, &failure), &std::free);
    return failure == 0 ? name.get() : type.name();
}

#else

// Compilers without that interface put the kind of type in front of a readable name.
std::string className(const std::type_info& type) {
    const std::string name = type.name();
    const std::string kind = "class ";
    return name.compare(0, kind.size(), kind) == 0 ? name.substr(kind.size()) : name;
}

#endif

}  // namespace Xml
