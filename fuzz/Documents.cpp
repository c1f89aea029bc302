#include "fuzz/Documents.h"

#include "VexXml/Streams.h"

namespace fuzz {

Xml::ReadLimits safeLimits() {
    Xml::ReadLimits limits;
    limits.validationSteps = 20000;
    limits.mayOpenFiles = false;
    return limits;
}

std::unique_ptr<Xml::Document> read(const std::string& document) {
    Xml::StringInStream in(document);
    Xml::DocumentReader reader;
    reader.setLimits(safeLimits());
    if (!reader.parse(in)) return nullptr;
    return std::unique_ptr<Xml::Document>(reader.extractDocument());
}

}  // namespace fuzz
