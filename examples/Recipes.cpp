#include <fstream>
#include <iostream>

#include "VexXml/VexXml.h"

int main() {
    std::ifstream file;
    Xml::FileInStream in("examples/recipes.xml", &file);
    Xml::DocumentReader reader;
    if (!reader.parse(in)) {
        std::cerr << reader.getErrorMessage() << '\n';
        return 1;
    }
    Xml::Document& recipes = *reader.getDocument();
    for (const Xml::Element* recipe : recipes.findAll("recipe")) {
        std::cout << recipe->getElementCharData("title").toCString() << ", for "
                  << recipe->getAttributeValue("serves").toInt() << '\n';
    }
    Xml::Element* eggs = recipes.getRoot()->findElementByAttribute("name", "egg");
    eggs->setAttribute("amount", 4);
    Xml::FileOutStream out(&std::cout);
    eggs->toStream(out);
    std::cout << (recipes.validate() ? " is valid\n" : " is not valid\n");
}
