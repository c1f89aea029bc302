#include <iostream>
#include <memory>
#include <string>

#include "Snippets.h"
#include "VexXml/VexXml.h"

namespace {

//! [menu]
const char kMenu[] =
    "<menu>"
    "<course><dish price='8.5'>Soup</dish><dish price='4'>Bread</dish></course>"
    "<course><dish price='19'>Fish</dish></course>"
    "</menu>";
//! [menu]

void values() {
    //! [values]
    const auto menu = read(kMenu);
    Xml::XPath query(menu.get());
    const unsigned long count = query.GetValues("//dish[@price < 10]");
    for (unsigned long i = 0; i < count; ++i) std::cout << query.GetValueUTF8(i) << '\n';
    std::cout << query.GetValueUTF8("/menu/course/dish[last()]/@price") << '\n';
    //! [values]
}

void nodes() {
    const auto menu = read(kMenu);
    Xml::XPath query(menu.get());
    //! [nodes]
    query.GetValues("/menu/course/dish");
    for (const Xml::XPath::ResultItem& item : query.GetResults()) {
        Xml::Element* dish = item.node->toElement();
        dish->setAttribute("price", dish->getAttributeValue("price").toDouble() * 2);
        std::cout << dish->toString() << '\n';
    }
    //! [nodes]
}

void chain() {
    const auto menu = read(kMenu);
    //! [chain]
    Xml::XPath query(menu->getRoot());
    std::cout << query.GetValues("course/dish") << '\n';   // from the root element
    std::cout << query.GetValues("@price") << '\n';        // from each dish
    std::cout << query.GetValues("/menu/course") << '\n';  // from the document
    //! [chain]
}

void computed() {
    const auto menu = read(kMenu);
    //! [computed]
    Xml::XPath query(menu.get());
    std::cout << query.GetValueUTF8("/menu/course/dish/@price * 2") << '\n';
    std::cout << query.GetValueUTF8("//@price > 18") << '\n';
    //! [computed]
}

void errors() {
    const auto menu = read(kMenu);
    //! [errors]
    Xml::XPath query(menu.get());
    for (const char* expression : {"//dish[@price", "//drink/@price", "//text()", "//dish/.."}) {
        if (query.GetValues(expression) > 0) continue;
        std::cout << query.GetErrorCode() << ' ' << query.GetErrorStringUTF8() << '\n';
    }
    //! [errors]
}

void positions() {
    const auto menu = read(kMenu);
    //! [positions]
    Xml::XPath query(menu.get());
    std::cout << query.GetValues("/menu/course/dish[1]") << '\n';
    std::cout << query.GetValueUTF8("//dish[@price > 5][2]") << '\n';
    //! [positions]
}

}  // namespace

int main() {
    runAll({{"values", values},
            {"nodes", nodes},
            {"chain", chain},
            {"computed", computed},
            {"errors", errors},
            {"positions", positions}});
}
