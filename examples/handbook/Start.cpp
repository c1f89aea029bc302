#include <iostream>

#include "VexXml/VexXml.h"

int main() {
    Xml::StringInStream in("<menu><dish price='8.5'>Soup</dish><dish>Bread</dish></menu>");
    Xml::DocumentReader reader;
    if (!reader.parse(in)) {
        std::cerr << reader.getErrorMessage() << '\n';
        return 1;
    }
    Xml::Element& menu = *reader.getDocument()->getRoot();
    menu.getElement("dish", 1)->setAttribute("price", 2);
    menu.addElement("dish", "Fish & chips");
    Xml::FileOutStream out(&std::cout);
    reader.getDocument()->toStream(out);
}
