#pragma once

#include <string>
#include <typeinfo>

namespace Xml {

/// The qualified name of a class as it is written in code, such as "Xml::ElementReader".
std::string className(const std::type_info& type);

}  // namespace Xml
