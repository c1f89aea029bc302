// settings FILE: reads a program's settings. What the file leaves out comes from the declarations
// below, which also say what a file may hold.

#include <fstream>
#include <iostream>
#include <memory>
#include <string>

#include "VexXml/VexXml.h"

namespace {

constexpr const char* kDeclarations = R"(
<!ELEMENT settings (server, log?)>
<!ELEMENT server EMPTY>
<!ATTLIST server host CDATA "localhost" port CDATA "8080" timeout CDATA "2.5">
<!ELEMENT log (#PCDATA)>
)";

struct Settings {
    std::string host;
    int port = 0;
    double timeout = 0;  ///< in seconds
    std::string log;     ///< a path; empty for none
};

std::unique_ptr<Xml::Dtd> readDeclarations() {
    Xml::StringInStream in(kDeclarations);
    Xml::DTDReader reader("settings");
    if (reader.parse(in)) return std::unique_ptr<Xml::Dtd>(reader.extractDtd());
    std::cerr << "settings: " << reader.getErrorMessage() << '\n';
    return nullptr;
}

// Null when the file cannot be read, which is told.
std::unique_ptr<Xml::Element> readFile(const std::string& path) {
    std::ifstream file;
    Xml::FileInStream in(path, &file);
    if (!file.is_open()) return nullptr;  // the stream has reported it
    Xml::ElementReader reader(nullptr);
    if (reader.parse(in)) return std::unique_ptr<Xml::Element>(reader.extractRoot());
    std::cerr << path << ": " << reader.getErrorMessage() << '\n';
    return nullptr;
}

bool load(const std::string& path, Settings& settings) {
    const std::unique_ptr<Xml::Dtd> dtd = readDeclarations();  // outlives what is bound to it
    const std::unique_ptr<Xml::Element> root = readFile(path);
    if (dtd == nullptr || root == nullptr) return false;
    if (root->getName() != "settings" || !dtd->validate(root.get())) {
        std::cerr << path << ": not what settings look like\n";
        return false;
    }
    const Xml::Element& server = *root->getElement("server");  // the declarations ask for it
    settings.host = server.getAttributeValue("host").toCString();
    settings.port = server.getAttributeValue("port").toInt();
    settings.timeout = server.getAttributeValue("timeout").toDouble();
    settings.log = root->getElementCharData("log").toCString();
    return true;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::cerr << "usage: settings FILE\n";
        return 2;
    }
    Settings settings;
    if (!load(argv[1], settings)) return 1;
    std::cout << "host " << settings.host << "\nport " << settings.port << "\ntimeout "
              << settings.timeout << "\nlog " << (settings.log.empty() ? "none" : settings.log)
              << '\n';
}
