#include <iostream>
#include <memory>
#include <string>

#include "VexXml/VexXml.h"

// Reads what a stranger has sent. Null when it is refused, and `reason` tells why.
std::unique_ptr<Xml::Document> read(const std::string& text, std::string& reason) {
    Xml::ReadLimits limits = Xml::ReadLimits::untrusted();
    limits.totalBytes = 1000000;
    limits.elementDepth = 50;
    limits.validationSteps = 1000000;
    Xml::StringInStream in(text);
    Xml::DocumentReader reader;
    reader.setLimits(limits);
    if (reader.parse(in)) return std::unique_ptr<Xml::Document>(reader.extractDocument());
    reason = reader.getErrorMessage();
    return nullptr;
}

int main() {
    Xml::Message::disableOutput(false);  // a stranger's mistakes need not fill the log
    std::string deep;
    for (int level = 0; level < 100; ++level) deep += "<a>";
    const std::string endless = "<!DOCTYPE a [<!ELEMENT a ((b?)*)>]><a><c/></a>";
    const std::string curious = "<!DOCTYPE a SYSTEM '/etc/passwd'><a/>";
    for (const std::string& text : {deep, endless, curious, std::string("<a>hello</a>")}) {
        std::string reason;
        const auto document = read(text, reason);
        std::cout << (document != nullptr ? document->getRoot()->getName() : reason) << '\n';
    }
}
