#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include "Snippets.h"
#include "VexXml/VexXml.h"

namespace {

std::unique_ptr<Xml::Element> shelf() {
    auto books = std::make_unique<Xml::Element>("shelf");
    for (int i = 1; i <= 3; ++i) {
        auto* book = new Xml::Element("book");
        books->addChild(book);
        book->setAttribute("pages", 100 * i);
    }
    return books;
}

void children() {
    const auto owner = shelf();
    const Xml::Element& shelf = *owner;
    //! [children]
    int pages = 0;
    for (int i = 0; i < shelf.getChildCount(); ++i) {
        const Xml::Object* child = shelf.getChild(i);
        if (!child->isElement()) continue;
        pages += child->toElement()->getAttributeValue("pages").toInt();
    }
    std::cout << pages << '\n';
    //! [children]
}

void all() {
    const auto owner = shelf();
    const Xml::Element& shelf = *owner;
    //! [all]
    std::vector<const Xml::Element*> books;
    shelf.findAllElements("book", books);
    for (const Xml::Element* book : books) std::cout << book->toString() << '\n';
    //! [all]
}

void build() {
    //! [build]
    auto shelf = std::make_unique<Xml::Element>("shelf");
    for (int i = 0; i < 3; ++i) {
        auto book = std::make_unique<Xml::Element>("book");
        book->setAttribute("pages", i);
        book->setAttribute("title", "?");
        shelf->addChild(book.release());  // touches the shelf only once
    }
    std::cout << shelf->getChildCount() << '\n';
    //! [build]
}

}  // namespace

int main() { runAll({{"children", children}, {"all", all}, {"build", build}}); }
