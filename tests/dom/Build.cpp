#include "dom/Build.h"

namespace support {

Xml::Element* element(const std::string& name, std::initializer_list<Xml::Object*> children) {
    auto* parent = new Xml::Element(name);
    for (Xml::Object* child : children) parent->addChild(child);
    return parent;
}

Xml::CharData* text(const std::string& plain) { return new Xml::CharData(Xml::DataHolder(plain)); }

}  // namespace support
