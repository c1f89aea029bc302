#include "fuzz/Documents.h"

#include "VexXml/Readers.h"
#include "VexXml/Streams.h"

namespace fuzz {
namespace {

constexpr std::string_view kBlanks = " \t\r\n";

// Whether a repetition stands behind the ")" of a group, which may have blanks in between.
bool isRepeated(std::string_view behindGroup) {
    const std::size_t next = behindGroup.find_first_not_of(kBlanks);
    return next != std::string_view::npos && (behindGroup[next] == '*' || behindGroup[next] == '+');
}

// Whether a "?" or "*" stands in front of the end of a repeated group, within one declaration.
bool mayRepeatForEver(std::string_view text) {
    bool mayMatchNothing = false;
    for (std::size_t place = 0; place < text.size(); ++place) {
        const char c = text[place];
        if (c == '?' || c == '*') mayMatchNothing = true;
        if (c == '>') mayMatchNothing = false;
        if (c == ')' && mayMatchNothing && isRepeated(text.substr(place + 1))) return true;
    }
    return false;
}

}  // namespace

bool isLeftAlone(std::string_view document) {
    const auto holds = [document](std::string_view word) {
        return document.find(word) != std::string_view::npos;
    };
    return holds("SYSTEM") || (holds("ELEMENT") && mayRepeatForEver(document));
}

std::unique_ptr<Xml::Document> read(const std::string& document) {
    if (isLeftAlone(document)) return nullptr;
    Xml::StringInStream in(document);
    Xml::DocumentReader reader;
    if (!reader.parse(in)) return nullptr;
    return std::unique_ptr<Xml::Document>(reader.extractDocument());
}

}  // namespace fuzz
