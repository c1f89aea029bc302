#include "VexXml/Dtd.h"

#include <memory>

#include "VexXml/Readers.h"
#include "VexXml/Streams.h"
#include "fuzz/Checks.h"
#include "fuzz/Dtds.h"
#include "support/Diagnostics.h"
#include "support/Dump.h"
#include "support/Readings.h"

namespace fuzz {
namespace {

std::string readingDifference(const std::string& text, bool internal) {
    support::Diagnostics diagnostics;
    return support::differenceBetweenStreams(text, [&](Xml::InStream& in) {
        Xml::DTDReader reader("d");
        reader.setInternal(internal);
        return support::readingOf(reader, in, diagnostics);
    });
}

std::string compared(const char* what, Xml::Dtd& dtd, const std::string& expected) {
    const std::string found = support::written(dtd);
    return found == expected ? "" : what + (" as\n" + found) + "instead of\n" + expected;
}

// Copying loses the text alternative of choices; a copy has none left to lose.
std::string copyDifference(const Xml::Dtd& dtd) {
    Xml::Dtd copy(dtd);
    const std::string expected = support::written(copy);
    const std::unique_ptr<Xml::Object> clone(copy.clone());
    std::string wrong = compared("cloned", *clone->toDtd(), expected);
    Xml::Dtd merged("d");
    merged.merge(copy, false);
    wrong += compared("merged", merged, expected);
    merged.merge(copy, true);
    wrong += compared("merged over itself", merged, expected);
    Xml::Dtd assigned("other");
    assigned = copy;
    return wrong + compared("assigned", assigned, expected);
}

}  // namespace

std::string checkDtd(std::string_view input) {
    const std::string text(input);
    std::string wrong = readingDifference(text, false) + readingDifference(text, true);
    const support::Diagnostics diagnostics;
    Xml::StringInStream in(text);
    Xml::DTDReader reader("d");
    reader.parse(in);
    return wrong + copyDifference(*reader.getDtd()) + rewritingDifference(*reader.getDtd());
}

}  // namespace fuzz
