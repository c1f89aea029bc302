#include "support/Diagnostics.h"

#include <utility>

#include "VexXml/Values.h"

namespace support {
namespace {

std::vector<std::string>& reports() {
    static std::vector<std::string> texts;
    return texts;
}

void collect(const char* text, ...) { reports().emplace_back(text); }
void ignore(const char*, ...) {}

}  // namespace

Diagnostics::Diagnostics() {
    reports().clear();
    Xml::Message::InstallMessageHandler(&collect);
}

Diagnostics::~Diagnostics() { Xml::Message::InstallMessageHandler(&ignore); }

std::vector<std::string> Diagnostics::take() { return std::exchange(reports(), {}); }

}  // namespace support
