#pragma once

#include <cstddef>

#include "VexXml/XPath.h"

namespace Xml {

struct OperatorMatch {
    XPath::ExpressionOperators op = XPath::NoOperator;
    std::size_t length = 0;  ///< of the operator's text, its blanks included; 0 for none
};

/// The operator that the text begins with.
OperatorMatch findOperator(const wchar_t* text, std::size_t size);

}  // namespace Xml
