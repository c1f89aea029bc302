#pragma once

#include <memory>
#include <string>

#include "VexXml/Dom.h"
#include "VexXml/Dtd.h"
#include "VexXml/Readers.h"
#include "tools/Source.h"
#include "tools/Status.h"

namespace tools {

/// What came of reading a document. Whatever was wrong is printed already.
struct DocumentReading {
    Status status = Success;
    Source source;
    /// Also there when only its validation failed, or something behind its root element.
    std::unique_ptr<Xml::Document> document;
};

/// Whether a document must keep to the DTD that it declares itself.
enum class OwnDtd { Obeyed, Ignored };

DocumentReading readDocument(const std::string& name, const Xml::ReadLimits& limits,
                             OwnDtd ownDtd = OwnDtd::Obeyed);

struct DtdReading {
    Status status = Success;
    std::unique_ptr<Xml::Dtd> dtd;  ///< null after a failure
};

/// Reads a file of declarations, such as an external subset.
DtdReading readDtd(const std::string& name, const Xml::ReadLimits& limits);

/// The text of "(line = L, column = C) TEXT <CLASS>": the place is shown as editors count, and the
/// class is no concern of whoever wrote the document.
std::string bareText(const std::string& message);

/// The text of a node, as `toStream` writes it.
std::string textOf(Xml::Object& node);

}  // namespace tools
