#pragma once

#include <vector>

namespace Xml {

class Object;

using NodeList = std::vector<Object*>;

}  // namespace Xml
