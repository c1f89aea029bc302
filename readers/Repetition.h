#pragma once

#include <string>

#include "VexXml/Dtd.h"

namespace Xml {

/// The repetition that a token stands for; `RepOnce` for a token that is none.
inline RepType repetitionOf(const std::string& token) {
    if (token == "?") return RepOptional;
    if (token == "*") return RepZeroOrMore;
    return token == "+" ? RepOneOrMore : RepOnce;
}

}  // namespace Xml
