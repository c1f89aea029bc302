#include "support/Bindings.h"

#include <vector>

namespace support {
namespace {

std::string bindingOf(Xml::CharData& text) {
    // `data()` does not touch, so the text can be lent out and put back.
    const Xml::DataHolder kept = text.data();
    text.data() = Xml::DataHolder("&dtd;");
    const std::string found = text.getData();
    text.data() = kept;
    return found == "&dtd;" ? "none" : found;
}

std::string bindingOf(const Xml::Element& element) {
    const std::string found = element.getAttributeValue("dtd");
    return found.empty() ? "none" : found;
}

}  // namespace

std::unique_ptr<Xml::Dtd> makeDtd(const std::string& name) {
    auto dtd = std::make_unique<Xml::Dtd>(name);
    dtd->setEntity("dtd", name);
    for (const char* element : {"a", "b", "c", "e"}) {
        dtd->addElementDecl(element, new Xml::AnySpec(dtd.get()));
        dtd->addAttDecl(element, "dtd", new Xml::AttStringType(Xml::AttValue, name));
    }
    return dtd;
}

std::string bindingOf(Xml::Object& node) {
    return node.isElement() ? bindingOf(*node.toElement()) : bindingOf(*node.toCharData());
}

std::string bindings(Xml::Object& top) {
    std::string out;
    std::vector<Xml::Object*> pending{&top};
    while (!pending.empty()) {
        Xml::Object* node = pending.back();
        pending.pop_back();
        if (!out.empty()) out += ' ';
        out += (node->isElement() ? node->toElement()->getName() : "#") + '=' + bindingOf(*node);
        if (!node->isElement()) continue;
        for (int i = node->toElement()->getChildCount() - 1; i >= 0; --i) {
            pending.push_back(node->toElement()->getChild(i));
        }
    }
    return out;
}

}  // namespace support
