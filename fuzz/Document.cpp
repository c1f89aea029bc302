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

std::string copyDifference(const Xml::Document& document) {
    const std::unique_ptr<Xml::Object> copy(document.clone());
    const std::string expected = support::dump(*document.getRoot());
    const std::string found = support::dump(*copy->toDocument()->getRoot());
    return found == expected ? "" : "copied as\n" + found + "\nfrom\n" + expected;
}

}  // namespace

std::string checkDocument(std::string_view input) {
    if (isLeftAlone(input)) return "";
    support::Diagnostics diagnostics;
    const std::string text(input);
    std::string wrong = support::differenceBetweenStreams(text, [&](Xml::InStream& in) {
        Xml::DocumentReader reader;
        return support::readingOf(reader, in, diagnostics);
    });
    Xml::StringInStream in(text);
    Xml::DocumentReader reader;
    reader.parse(in);
    if (reader.getDocument() != nullptr) wrong += copyDifference(*reader.getDocument());
    return wrong;
}

}  // namespace fuzz
