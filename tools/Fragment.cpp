#include "tools/Fragment.h"

#include <utility>

#include "VexXml/Streams.h"
#include "tools/Diagnostics.h"
#include "tools/Reading.h"
#include "tools/Shown.h"

namespace tools {
namespace {

using ElementOwner = std::unique_ptr<Xml::Element>;

// What the element would be read as from its text, null if that cannot be read.
ElementOwner readAgain(const std::string& text) {
    Xml::StringInStream in(text);
    Xml::ElementReader reader(nullptr);
    return ElementOwner(reader.parse(in) ? reader.extractRoot() : nullptr);
}

// Two levels below the top, as what is indented may change.
std::string writeBelow(ElementOwner element) {
    Xml::Element top("a");
    auto* between = new Xml::Element("a");
    top.addChild(between);
    between->addChild(element.release());
    return textOf(top);
}

Xml::Element* firstOf(Xml::Element* element) {
    return element != nullptr ? element->getElement(0) : nullptr;
}

Xml::Element* firstBelow(Xml::Element* top) { return firstOf(firstOf(top)); }

bool isText(const Xml::Object* node, const std::string& text) {
    return node != nullptr && node->isCharData() && plainText(*node->toCharData()) == text;
}

// Once it was read again, writing it has to give the same: all that was lost is missing there.
bool staysTheSame(const Xml::Element& element) {
    const std::string text = writeBelow(std::make_unique<Xml::Element>(element));
    const ElementOwner again = readAgain(text);
    return again != nullptr && textOf(*again) == text;
}

}  // namespace

Fragment readFragment(const std::string& xml, Xml::Dtd* dtd, const Xml::ReadLimits& limits) {
    const std::string text = "<a>" + xml + "</a>";
    Xml::StringInStream in(text);
    Xml::ElementReader reader(dtd);
    reader.setLimits(limits);
    Diagnostics diagnostics;
    const bool isRead = reader.parse(in);
    if (!isRead || in.getPosition() != static_cast<int>(text.size())) {
        const std::string reason = bareText(reader.getErrorMessage());
        return {nullptr, reason.empty() ? "not well-formed" : reason};
    }
    ElementOwner holder(reader.extractRoot());
    if (holder->getChildCount() == 0) return {nullptr, "nothing to add"};
    if (!staysTheSame(*holder)) return {nullptr, "would not be read again as it is"};
    return {std::move(holder), ""};
}

bool readsBackAsText(const std::string& text) {
    auto mixed = std::make_unique<Xml::Element>("a");
    mixed->addElement("b", text);
    mixed->addChild(new Xml::CharData(text));
    mixed->addChild(new Xml::Element("b"));
    const ElementOwner again = readAgain(writeBelow(std::move(mixed)));
    const Xml::Element* read = firstBelow(again.get());
    return read != nullptr && read->getChildCount() == 3 && read->getElement(0) != nullptr &&
           isText(read->getElement(0)->getChild(0), text) && isText(read->getChild(1), text);
}

bool readsBackAsValue(const std::string& name, const std::string& value) {
    auto element = std::make_unique<Xml::Element>("a");
    element->setAttribute(name, value);
    const ElementOwner again = readAgain(writeBelow(std::move(element)));
    const Xml::Element* read = firstBelow(again.get());
    const Xml::Attribute* attribute = read != nullptr ? read->getAttribute(name) : nullptr;
    return attribute != nullptr && bytesOf(attribute->getValue()) == value;
}

}  // namespace tools
