#pragma once

#include <string_view>

namespace Xml {

/// The reference that stands for a special character, such as "&lt;". Needs: one of & < > " '.
std::string_view stdReference(char character);

}  // namespace Xml
