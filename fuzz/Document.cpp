#include <memory>

#include "VexXml/Readers.h"
#include "VexXml/Streams.h"
#include "fuzz/Checks.h"
#include "fuzz/Documents.h"
#include "support/Diagnostics.h"
#include "support/Dump.h"
#include "support/Readings.h"

namespace fuzz {
namespace {

// So tight that most documents meet some of them.
Xml::ReadLimits tightLimits(std::size_t size) {
    Xml::ReadLimits limits = safeLimits();
    limits.totalBytes = size - size / 8;
    limits.elementDepth = 4;
    limits.nodes = 30;
    limits.attributesPerElement = 3;
    limits.nameLength = 8;
    limits.valueLength = 12;
    limits.textLength = 24;
    limits.entityGrowth = 10;
    limits.declarations = 6;
    limits.declarationBytes = 200;
    limits.groupDepth = 3;
    limits.validationSteps = 100;
    return limits;
}

std::string copyDifference(const Xml::Document& document) {
    const std::unique_ptr<Xml::Object> copy(document.clone());
    const std::string expected = support::dump(*document.getRoot());
    const std::string found = support::dump(*copy->toDocument()->getRoot());
    return found == expected ? "" : "copied as\n" + found + "\nfrom\n" + expected;
}

}  // namespace

std::string checkDocument(std::string_view input) {
    support::Diagnostics diagnostics;
    const std::string text(input);
    std::string wrong;
    for (const Xml::ReadLimits& limits : {safeLimits(), tightLimits(text.size())}) {
        wrong += support::differenceBetweenStreams(text, [&](Xml::InStream& in) {
            Xml::DocumentReader reader;
            reader.setLimits(limits);
            return support::readingOf(reader, in, diagnostics);
        });
    }
    if (const auto document = read(text)) wrong += copyDifference(*document);
    return wrong;
}

}  // namespace fuzz
