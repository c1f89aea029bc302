#include <iostream>
#include <memory>
#include <string>

#include "Snippets.h"
#include "VexXml/VexXml.h"

namespace {

//! [dtd]
std::unique_ptr<Xml::Dtd> readDtd(const std::string& text) {
    Xml::StringInStream in(text);
    Xml::DTDReader reader("menu");
    if (reader.parse(in)) return std::unique_ptr<Xml::Dtd>(reader.extractDtd());
    std::cerr << reader.getErrorMessage() << '\n';
    return nullptr;
}

const char kMenuDtd[] =
    "<!ELEMENT menu (dish+, drink*)>"
    "<!ELEMENT dish (#PCDATA)> <!ATTLIST dish price CDATA #REQUIRED for CDATA '1'>"
    "<!ELEMENT drink EMPTY>"
    "<!ENTITY chef 'Ann'>";
//! [dtd]

std::unique_ptr<Xml::Element> readElement(const std::string& text) {
    Xml::StringInStream in(text);
    Xml::ElementReader reader(nullptr);
    if (!reader.parse(in)) std::cerr << reader.getErrorMessage() << '\n';
    return std::unique_ptr<Xml::Element>(reader.extractRoot());
}

void separate() {
    //! [separate]
    const std::unique_ptr<Xml::Dtd> dtd = readDtd(kMenuDtd);
    const std::unique_ptr<Xml::Element> menu =
        readElement("<menu><dish price='8.5'>Soup by &chef;</dish></menu>");
    const Xml::Element* dish = menu->getElement("dish");
    std::cout << '[' << dish->getAttributeValue("for").toInt() << ' '
              << dish->getCharData().toCString() << "]\n";
    std::cout << dtd->validate(menu.get()) << '\n';
    std::cout << '[' << dish->getAttributeValue("for").toInt() << ' '
              << dish->getCharData().toCString() << "]\n";
    //! [separate]
}

void document() {
    //! [document]
    Xml::Document menu(new Xml::Element("menu"), readDtd(kMenuDtd).release());
    std::cout << menu.validate() << '\n';  // a menu has at least one dish
    menu.getRoot()->addElement("dish", "Soup")->setAttribute("price", "8.5");
    std::cout << menu.validate() << '\n';
    //! [document]
}

void changes() {
    //! [changes]
    Xml::Document menu(readElement("<menu><dish price='4'>Tea</dish></menu>").release(),
                       readDtd(kMenuDtd).release());
    Xml::Element* dish = menu.getRoot()->getElement("dish");
    std::cout << menu.validate() << ' ' << dish->getAttributeValue("for").toInt() << '\n';
    dish->setAttribute("price", 5);
    std::cout << dish->getAttributeValue("for").toInt() << '\n';
    std::cout << menu.validate() << ' ' << dish->getAttributeValue("for").toInt() << '\n';
    //! [changes]
}

void build() {
    //! [build]
    Xml::Dtd dtd("menu");
    auto* model = new Xml::SeqSpec(&dtd);
    model->add("dish", Xml::RepOneOrMore);
    model->add("drink", Xml::RepZeroOrMore);
    dtd.addElementDecl("menu", model, Xml::RepOnce);
    dtd.addElementDecl("dish");
    dtd.addAttDecl("dish", "price", Xml::AttRequired);
    dtd.addAttDecl("dish", "for", new Xml::AttStringType(Xml::AttValue, 1));
    dtd.addElementDecl("drink", new Xml::EmptySpec(&dtd));
    dtd.setEntity("chef", "Ann");
    Xml::FileOutStream out(&std::cout);
    dtd.toStream(out);
    //! [build]
}

void merge() {
    //! [merge]
    const std::unique_ptr<Xml::Dtd> dtd = readDtd(kMenuDtd);
    dtd->merge(*readDtd("<!ENTITY chef 'Bob'><!ELEMENT price (#PCDATA)>"), false);
    std::cout << dtd->getEntityValue("chef").toCString() << '\n';
    dtd->merge(*readDtd("<!ENTITY chef 'Bob'>"), true);
    std::cout << dtd->getEntityValue("chef").toCString() << '\n';
    //! [merge]
}

void greedy() {
    //! [greedy]
    const auto dtd = readDtd("<!ELEMENT menu (dish+, dish)> <!ELEMENT dish EMPTY>");
    const auto menu = readElement("<menu><dish/><dish/></menu>");
    std::cout << dtd->validate(menu.get()) << '\n';
    //! [greedy]
}

}  // namespace

int main() {
    runAll({{"separate", separate},
            {"document", document},
            {"changes", changes},
            {"build", build},
            {"merge", merge},
            {"greedy", greedy}});
}
