#include <utility>

#include "VexXml/Dom.h"
#include "VexXml/Streams.h"

namespace Xml {

Attribute::Attribute() = default;

Attribute::Attribute(const std::string& name, const DataHolder& value)
    : mName(name), mValue(value) {
    if (!isName(name)) Message(std::string("<Attribute::Attribute> not a valid name"));
}

Attribute::Attribute(const Detail::NodeName& name, const char* value, std::size_t size)
    : mName(name), mValue(value, size) {}

Attribute::Attribute(const Attribute& other)
    : Object(other), mName(other.mName), mValue(other.mValue) {}

// NOLINTNEXTLINE(performance-noexcept-move-constructor): keeping a held name may allocate
Attribute::Attribute(Attribute&& other) : Object(other), mName(other.mName) {
    Detail::NodeName emptied = other.renamedTo(Detail::NodeName());
    mValue.swap(other.mValue);
    other.mName.swap(emptied);
    other.touch();
}

Attribute& Attribute::operator=(const Attribute& other) {
    if (this == &other) return *this;
    Detail::NodeName name = renamedTo(other.mName);
    mValue = other.mValue;
    mName.swap(name);
    Object::operator=(other);
    return *this;
}

// NOLINTNEXTLINE(performance-noexcept-move-constructor): keeping a held name may allocate
Attribute& Attribute::operator=(Attribute&& other) {
    if (this == &other) return *this;
    Detail::NodeName name = renamedTo(other.mName);
    Detail::NodeName emptied = other.renamedTo(Detail::NodeName());
    mValue = std::move(other.mValue);
    mName.swap(name);
    other.mName.swap(emptied);
    Object::operator=(other);
    other.touch();
    return *this;
}

Attribute::~Attribute() = default;

Object* Attribute::clone() const { return new Attribute(*this); }

const std::string& Attribute::toString() const { return mName.ownTexts().shown = text(); }

bool Attribute::isAttribute() const { return true; }

void Attribute::setValue(const DataHolder& value) { mValue = value; }

void Attribute::write(OutStream& out) const {
    if (isOk()) out << text();
}

// The name under which the element holds the attribute. It is another than its own when a caller
// assigned another attribute to it: the element goes on finding and ordering it by the name it had.
const std::string& Attribute::heldName() const {
    const Detail::NodeName::Texts* texts = mName.texts();
    return texts != nullptr && texts->hasHeldName ? texts->heldName : getName();
}

void Attribute::setHeldName(const std::string& name) {
    const bool isOther = name != getName();
    if (isOther) mName.ownTexts().heldName = name;
    if (mName.texts() != nullptr) mName.ownTexts().hasHeldName = isOther;
}

// The name that this would have if it were renamed.
Detail::NodeName Attribute::renamedTo(const Detail::NodeName& name) const {
    Attribute renamed(name, nullptr, 0);
    if (is(Listed)) renamed.setHeldName(heldName());
    return std::move(renamed.mName);
}

std::string Attribute::text() const { return getName() + '=' + toXmlString(mValue); }

}  // namespace Xml
