#pragma once

/// The texts of a product: a class in place of a namespace, and no translators to install.

#include <string>

#include "VexSys/Uni16.h"

namespace VexSys {

class Localization {
public:
    /// Puts the module in front of the key: texts that nobody else gives.
    static const Uni16String& GetString(const std::string& key, const std::string& module,
                                        const std::string& fallback);
};

}  // namespace VexSys
