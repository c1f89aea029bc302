#pragma once

#include <memory>
#include <string>

#include "VexXml/Dom.h"
#include "VexXml/Readers.h"

namespace tools {

/// Elements and texts that stand by themselves, in an element that holds them; or why not.
struct Fragment {
    std::unique_ptr<Xml::Element> holder;  ///< null after a failure
    std::string failure;
};

/// Reads elements and texts. `dtd`, which may be null, is asked for entities in attribute values.
///
/// Fails also where they would not be the same once they have been written and read again.
Fragment readFragment(const std::string& xml, Xml::Dtd* dtd, const Xml::ReadLimits& limits);

/// Whether a text comes back as it is when it was written and read again. One of white space alone,
/// say, does not.
bool readsBackAsText(const std::string& text);
bool readsBackAsValue(const std::string& name, const std::string& value);

}  // namespace tools
