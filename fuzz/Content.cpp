#include "VexXml/Dtd.h"
#include "VexXml/Readers.h"
#include "fuzz/Checks.h"
#include "support/Diagnostics.h"
#include "support/Readings.h"

namespace fuzz {

std::string checkContent(std::string_view input) {
    support::Diagnostics diagnostics;
    Xml::Dtd dtd("a");
    dtd.setEntity("e", "<\"");
    return support::differenceBetweenStreams(std::string(input), [&](Xml::InStream& in) {
        Xml::ElementReader reader(&dtd);
        return support::readingOf(reader, in, diagnostics) + support::linesOf(in, input.size());
    });
}

}  // namespace fuzz
