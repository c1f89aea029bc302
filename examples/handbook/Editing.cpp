#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include "Snippets.h"
#include "VexXml/VexXml.h"

namespace {

const char kMenu[] =
    "<menu day='Friday'>"
    "<course><dish price='8.5'>Soup</dish><dish price='4'>Bread &amp; butter</dish></course>"
    "<course><dish>Fish</dish></course>"
    "</menu>";

//! [print]
void print(Xml::Object& node) {
    Xml::FileOutStream out(&std::cout);
    node.toStream(out);
    std::cout << '\n';
}
//! [print]

void menu() {
    const auto document = read(kMenu);
    //! [menu]
    print(*document->getRoot());
    //! [menu]
}

void lookup() {
    const auto document = read(kMenu);
    //! [lookup]
    Xml::Element& menu = *document->getRoot();
    std::cout << menu.getElement("course", 1)->getElementCharData("dish").toCString() << '\n';
    std::cout << menu.findElement("dish", 1)->getCharData().toCString() << '\n';
    std::cout << menu.findElementByAttribute("price", "8.5")->toString() << '\n';
    std::cout << document->findAll("dish").size() << '\n';
    //! [lookup]
}

void nothing() {
    const auto document = read(kMenu);
    Xml::Element& menu = *document->getRoot();
    //! [nothing]
    std::cout << (menu.getElement("dish") == nullptr) << '\n';  // it is below a course
    std::cout << menu.getAttributeValue("month").isEmpty() << '\n';
    std::cout << menu.getElementCharData("dish").isEmpty() << '\n';
    //! [nothing]
}

void walk() {
    const auto document = read(kMenu);
    //! [walk]
    std::vector<const Xml::Object*> left = {document->getRoot()};
    while (!left.empty()) {
        const Xml::Object* node = left.back();
        left.pop_back();
        std::cout << node->toString() << '\n';
        if (!node->isElement()) continue;
        const Xml::Element* element = node->toElement();
        for (int i = element->getChildCount(); i-- > 0;) left.push_back(element->getChild(i));
    }
    //! [walk]
}

void values() {
    //! [values]
    Xml::Element dish("dish", "Fish & chips");
    dish.setAttribute("price", 9.5);
    dish.setAttribute("for", 2);
    std::cout << dish.getAttributeValue("price").toDouble() * dish.getAttributeValue("for").toInt()
              << '\n';
    const std::string name = dish.getCharData();  // plain: the reference is gone
    std::cout << name << '\n';
    print(dish);
    //! [values]
}

void text() {
    //! [text]
    Xml::Element step("step", "Knead ");
    step.addElement("em", "well");
    step.addChild(new Xml::CharData(Xml::DataHolder(", then wait.")));
    print(step);
    std::cout << step.getCharData().toCString() << '\n';  // the first text alone
    step.setCharData("Wait.");                            // replaces texts, and comes last
    print(step);
    //! [text]
}

void build() {
    //! [build]
    auto menu = std::make_unique<Xml::Element>("menu");
    menu->addElement("dish", "Soup");
    auto* drink = new Xml::Element("drink");
    menu->addChild(drink);  // now the menu's, which deletes it
    drink->addChild(new Xml::CharData(Xml::DataHolder("Tea")));
    menu->insertChild(drink, new Xml::Element("salad"));
    print(*menu);
    //! [build]
}

void extract() {
    const auto document = read(kMenu);
    //! [extract]
    Xml::Element& menu = *document->getRoot();
    Xml::Element* course = menu.getElement("course");
    const std::unique_ptr<Xml::Object> soup(course->extractChild(0));
    std::cout << (soup->getParent() == nullptr) << ' ' << soup->toString() << '\n';
    print(menu);
    //! [extract]
}

void move() {
    const auto document = read(kMenu);
    Xml::Element& menu = *document->getRoot();
    //! [move]
    Xml::Element* first = menu.getElement("course", 0);
    Xml::Element* second = menu.getElement("course", 1);
    second->addChild(first->extractChild(1));              // moved
    second->addChild(first->getElement("dish")->clone());  // copied
    print(menu);
    //! [move]
}

void copies() {
    const auto document = read(kMenu);
    //! [copies]
    Xml::Document draft = *document;  // a deep copy, DTD included
    draft.getRoot()->setAttribute("day", "Saturday");
    std::cout << document->getRoot()->toString() << '\n' << draft.getRoot()->toString() << '\n';
    //! [copies]
}

}  // namespace

int main() {
    runAll({{"menu", menu},
            {"lookup", lookup},
            {"nothing", nothing},
            {"walk", walk},
            {"values", values},
            {"text", text},
            {"build", build},
            {"extract", extract},
            {"move", move},
            {"copies", copies}});
}
