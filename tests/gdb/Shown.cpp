#include <string>

#include "VexSys/Uni16.h"
#include "VexXml/VexXml.h"

// Where the debugger stops, to look at what its caller has.
extern "C" void look() {}

namespace {

class Derived : public Xml::Element {
public:
    Derived() : Xml::Element("derived") {}
};

void showTexts() {
    const Xml::DataHolder empty;
    const Xml::DataHolder few("salt & pepper");
    const Xml::DataHolder full("fifteen letters");
    const Xml::DataHolder many(std::string(60, 'x') + "and more");
    const Xml::DataHolder withNul(std::string("a\0b", 3));
    const VexSys::Uni16String wide = VexSys::UTF8ToUni16Char("10 \u20ac \U0001F35E");
    look();
}

void showNodes() {
    Xml::StringInStream in(
        "<!DOCTYPE menu [<!ELEMENT menu ANY>]>"
        "<menu><dish id='soup' price='4'>Soup &amp; bread</dish>of the day<dish/></menu>");
    Xml::DocumentReader reader;
    reader.parse(in);
    const Xml::Document& document = *reader.getDocument();
    const Xml::Element* root = document.getRoot();
    const Xml::Object* dish = root->getChild(0);
    const Xml::Element& soup = *dish->toElement();
    const Xml::Element* none = nullptr;
    const Xml::Attribute* price = soup.getAttribute("price");
    const Xml::CharData& text = *root->getChild(1)->toCharData();
    price->toString();  // the name has room of its own for what it gives
    const Derived derived;
    Xml::Element only("only");
    only.addChild(new Xml::CharData(Xml::DataHolder("child")));
    only.setAttribute("size", "gro\u00df,\ttall");
    const Xml::Document noDocument;
    std::string digits;
    while (digits.size() < 70) digits += "0123456789";
    const Xml::CharData longText{Xml::DataHolder(digits)};
    const Xml::Object* cut = &longText;
    const auto* astray = reinterpret_cast<const Xml::Object*>(&digits);
    look();
}

void showManyAttributes() {
    Xml::Element some("some");
    for (int i = 0; i < 10; ++i) some.setAttribute("a" + std::to_string(i), i);
    Xml::Element many("many");
    for (int i = 0; i < 1000; ++i) many.setAttribute("a" + std::to_string(i), i);
    look();
}

}  // namespace

int main() {
    showTexts();
    showNodes();
    showManyAttributes();
}
