#pragma once

#include <string>

namespace tools {

/// Whether an XPath expression is well-formed. Prints what is wrong with it, and where, when it is
/// not.
bool checkExpression(const std::string& expression);

}  // namespace tools
