#include "fuzz/Dtds.h"

#include <algorithm>
#include <memory>

#include "VexXml/Readers.h"
#include "VexXml/Streams.h"
#include "support/Dump.h"

namespace fuzz {
namespace {

// What reading the text and writing it gives; empty when it is refused.
std::string rewritten(const std::string& text) {
    Xml::StringInStream in(text);
    Xml::DoctypeReader reader;
    if (!reader.parse(in)) return "";
    const std::unique_ptr<Xml::Dtd> dtd(reader.extractDtd());
    return support::written(*dtd);
}

// Defaults are kept as they stand in the text, and escaped when they are written: each writing
// escapes the references once more. Like all else in a list they are indented, so that a line feed
// in a default gets more and more tabs behind it.
bool hasUnstableDefault(const std::string& text) {
    std::size_t place = 0;
    while ((place = text.find("<!ATTLIST", place)) != std::string::npos) {
        const std::size_t end = text.find("\n>\n", place);
        const std::string list = text.substr(place, end - place);
        if (list.find('&') != std::string::npos) return true;
        for (std::size_t start = 0; start < list.size();) {
            const std::size_t next = std::min(list.find('\n', start), list.size());
            if (std::count(list.begin() + static_cast<std::ptrdiff_t>(start),
                           list.begin() + static_cast<std::ptrdiff_t>(next), '"') == 1) {
                return true;
            }
            start = next + 1;
        }
        place = end;
    }
    return false;
}

}  // namespace

bool isStable(Xml::Dtd& dtd) {
    const std::string first = support::written(dtd);
    return rewritten(first) == first;
}

// Not even the first writing need read back: a choice of one name and "#PCDATA" is written as
// nothing, and a repeated group of one repeated item loses its parentheses inside a list.
std::string rewritingDifference(Xml::Dtd& dtd) {
    const std::string second = rewritten(support::written(dtd));
    if (second.empty() || hasUnstableDefault(second)) return "";
    const std::string third = rewritten(second);
    return third == second ? "" : "written as\n" + third + "and before as\n" + second;
}

}  // namespace fuzz
