#include "tools/Diagnostics.h"

#include "VexXml/Values.h"
#include "tools/ErrorPrinter.h"

namespace tools {

Diagnostics::Diagnostics() {
    reports().clear();
    Xml::Message::InstallMessageHandler(&collect);
    Xml::Message::disableOutput(true);  // true switches it on
}

Diagnostics::~Diagnostics() { Xml::Message::disableOutput(false); }

std::string Diagnostics::takeLast() {
    if (reports().empty()) return {};
    std::string text = reports().back();
    reports().pop_back();
    return text;
}

void Diagnostics::printAsWarnings(const std::string& name) {
    for (const std::string& text : reports()) printWarning(name, text);
    reports().clear();
}

// The handler is a plain function, so the texts cannot be a member.
std::vector<std::string>& Diagnostics::reports() {
    static std::vector<std::string> texts;
    return texts;
}

void Diagnostics::collect(const char* text, ...) { reports().emplace_back(text); }

}  // namespace tools
