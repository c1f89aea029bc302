#include <algorithm>
#include <fstream>
#include <iostream>
#include <iterator>
#include <memory>
#include <sstream>
#include <string>

#include "Snippets.h"
#include "VexXml/VexXml.h"

namespace {

//! [own]
// Null when the text is refused; then `reason` tells why.
std::unique_ptr<Xml::Document> read(Xml::InStream& in, std::string& reason) {
    Xml::DocumentReader reader;
    if (reader.parse(in)) return std::unique_ptr<Xml::Document>(reader.extractDocument());
    reason = reader.getErrorMessage();
    return nullptr;
}
//! [own]

void sources() {
    //! [sources]
    std::string reason;
    Xml::StringInStream text("<menu/>");
    std::cout << read(text, reason)->toString() << '\n';

    std::ifstream file;
    Xml::FileInStream path("examples/recipes.xml", &file);
    std::cout << read(path, reason)->toString() << '\n';

    std::istringstream standard("<menu/>");
    Xml::FileInStream stream(&standard);
    std::cout << read(stream, reason)->toString() << '\n';
    //! [sources]
}

void pipe() {
    std::istringstream pipe("<menu/>");
    //! [pipe]
    const std::string all{std::istreambuf_iterator<char>(pipe), {}};
    Xml::StringInStream in(all);
    std::string reason;
    std::cout << read(in, reason)->toString() << '\n';
    //! [pipe]
}

void errors() {
    //! [errors]
    for (const char* text : {"<menu><dish>soup</dishes></menu>", "<menu", "soup", ""}) {
        Xml::StringInStream in(text);
        std::string reason;
        if (read(in, reason) == nullptr) std::cout << in.getPosition() << ": " << reason << '\n';
    }
    //! [errors]
}

//! [place]
// "LINE:COLUMN" of a position in a text, both counted from 1, as editors do.
std::string placeOf(const std::string& text, int position) {
    const std::string before = text.substr(0, static_cast<std::size_t>(position));
    const auto line = 1 + std::count(before.begin(), before.end(), '\n');
    const std::size_t column = before.size() - (before.rfind('\n') + 1) + 1;
    return std::to_string(line) + ':' + std::to_string(column);
}
//! [place]

void places() {
    //! [places]
    const std::string text = "<menu>\n  <dish>soup</dishes>\n</menu>\n";
    Xml::StringInStream in(text);
    std::string reason;
    if (read(in, reason) == nullptr) std::cout << placeOf(text, in.getPosition()) << '\n';
    //! [places]
}

void missing() {
    //! [missing]
    std::ifstream file;
    Xml::FileInStream in("no-such-menu.xml", &file);
    if (!file.is_open()) std::cout << "there is no menu\n";
    //! [missing]
}

//! [handler]
std::string reports;

void keep(const char* text, ...) { reports.append(text).append("\n"); }
//! [handler]

void standardError(const char* text, ...) { std::cerr << text << '\n'; }

void messages() {
    //! [messages]
    Xml::Message::InstallMessageHandler(keep);
    Xml::Element dish("dish");
    dish.setName("main dish");  // a name holds no space: reported, and nothing is changed
    std::cout << "still a " << dish.getName() << "; " << reports;
    //! [messages]
    Xml::Message::InstallMessageHandler(standardError);
}

void invalid() {
    //! [invalid]
    Xml::StringInStream in("<!DOCTYPE menu [<!ELEMENT menu (dish+)>]><menu><drink/></menu>");
    Xml::DocumentReader reader;
    if (!reader.parse(in)) {
        std::cout << reader.getErrorMessage() << '\n'
                  << "but it is there: " << reader.getDocument()->toString() << '\n';
    }
    //! [invalid]
}

void behind() {
    //! [behind]
    Xml::StringInStream in("<menu/> <menu/>");
    Xml::DocumentReader reader;
    if (reader.parse(in)) {
        in.eatWhite();
        if (!in.eof()) std::cout << "more begins at " << in.getPosition() << '\n';
    }
    //! [behind]
}

void fragment() {
    //! [fragment]
    Xml::StringInStream in("<dish price='8.5'/> and so on");
    Xml::ElementReader reader(nullptr);
    if (reader.parse(in)) {
        const std::unique_ptr<Xml::Element> dish(reader.extractRoot());
        std::cout << dish->toString() << '\n';
    }
    //! [fragment]
}

}  // namespace

int main() {
    runAll({{"sources", sources},
            {"pipe", pipe},
            {"errors", errors},
            {"places", places},
            {"missing", missing},
            {"messages", messages},
            {"invalid", invalid},
            {"behind", behind},
            {"fragment", fragment}});
}
