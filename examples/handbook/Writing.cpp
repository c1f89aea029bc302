#include <cstdio>
#include <fstream>
#include <iostream>
#include <iterator>
#include <memory>
#include <sstream>
#include <string>

#include "Snippets.h"
#include "VexXml/VexXml.h"

namespace {

//! [text]
std::string textOf(Xml::Object& node) {
    std::ostringstream text;
    Xml::FileOutStream out(&text);
    node.toStream(out);
    return text.str();
}
//! [text]

void look() {
    //! [look]
    const auto menu = read(
        "<menu day='Friday' at=\"12\"><course><dish>Fish &amp; chips</dish>"
        "<dish></dish></course><note>Ask <em>Ann</em>!</note></menu>");
    std::cout << textOf(*menu);
    //! [look]
}

void notation() {
    //! [notation]
    Xml::Element menu("menu");
    const bool before = Xml::Element::setShortNotationForEmptyTags(false);
    std::cout << textOf(menu) << '\n';
    Xml::Element::setShortNotationForEmptyTags(before);
    std::cout << textOf(menu) << '\n';
    //! [notation]
}

//! [save]
bool save(Xml::Document& document, const std::string& path) {
    std::ofstream file;
    {
        Xml::FileOutStream out(path, &file);
        document.toStream(out);
    }  // closes the file, and so writes what is left
    return file.good();
}
//! [save]

void files() {
    //! [files]
    const auto menu = read("<menu><dish>Soup</dish></menu>");
    std::cout << save(*menu, "menu.xml") << '\n';
    std::cout << save(*menu, "no-such-folder/menu.xml") << '\n';
    //! [files]
    std::remove("menu.xml");
}

//! [log]
// Takes down what is done to it: the bytes, and where it is moved to.
class LogStream : public Xml::OutStream {
public:
    void putChar(char c) override {
        mLog += c;
        ++mPosition;
    }
    int getPosition() const override { return mPosition; }
    void setPosition(int position) override {
        mPosition = position;
        mLog += "[to " + std::to_string(position) + ']';
    }
    const std::string& log() const { return mLog; }

private:
    int mPosition = 0;
    std::string mLog;
};
//! [log]

void rewriting() {
    //! [rewriting]
    const bool before = Xml::Object::setRWOptimization(true);
    const auto menu = read("<menu><dish>Soup</dish><dish>Fish</dish><dish>Tea</dish></menu>");
    LogStream first;
    menu->toStream(first);
    menu->getRoot()->getElement("dish", 1)->setCharData("Eggs");
    LogStream second;
    menu->toStream(second);
    std::cout << first.log() << "---\n" << second.log();
    Xml::Object::setRWOptimization(before);
    //! [rewriting]
}

}  // namespace

int main() {
    runAll({{"look", look}, {"notation", notation}, {"files", files}, {"rewriting", rewriting}});
}
