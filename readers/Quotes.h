#pragma once

#include <string>

namespace Xml {

/// A string token without the quotes around it.
inline std::string unquoted(const std::string& token) { return token.substr(1, token.size() - 2); }

}  // namespace Xml
