#include <utility>

#include "VexXml/Dom.h"
#include "VexXml/Streams.h"

namespace Xml {

/// What few attributes need: the text that `toString` gave, and the name under which an element
/// holds the attribute where that is not its own. It is so when a caller assigned another attribute
/// to it: the element goes on finding and ordering it by the name it had.
struct Attribute::Extra {
    std::string text;
    std::string heldName;
    bool hasHeldName = false;
};

Attribute::Attribute() = default;

Attribute::Attribute(const std::string& name, const DataHolder& value)
    : mName(name), mValue(value) {
    if (!isName(name)) Message(std::string("<Attribute::Attribute> not a valid name"));
}

Attribute::Attribute(const Attribute& other)
    : Object(other), mName(other.mName), mValue(other.mValue) {}

// NOLINTNEXTLINE(performance-noexcept-move-constructor): keeping a held name may allocate
Attribute::Attribute(Attribute&& other) : Object(other), mName(other.mName) {
    mValue.swap(other.mValue);
    other.rename({});
    other.touch();
}

Attribute& Attribute::operator=(const Attribute& other) {
    if (this == &other) return *this;
    rename(other.mName);
    mValue = other.mValue;
    Object::operator=(other);
    return *this;
}

// NOLINTNEXTLINE(performance-noexcept-move-constructor): keeping a held name may allocate
Attribute& Attribute::operator=(Attribute&& other) {
    if (this == &other) return *this;
    *this = std::as_const(other);
    other.rename({});
    other.mValue.clear();
    other.touch();
    return *this;
}

Attribute::~Attribute() = default;

Object* Attribute::clone() const { return new Attribute(*this); }

const std::string& Attribute::toString() const { return extra().text = text(); }

bool Attribute::isAttribute() const { return true; }

const std::string& Attribute::getName() const { return mName; }

const DataHolder& Attribute::getValue() const { return mValue; }

void Attribute::setValue(const DataHolder& value) { mValue = value; }

bool Attribute::isOk() const { return !mName.empty(); }

void Attribute::write(OutStream& out) const {
    if (isOk()) out << text();
}

Attribute::Extra& Attribute::extra() const {
    if (!mExtra) mExtra = std::make_unique<Extra>();
    return *mExtra;
}

const std::string& Attribute::heldName() const {
    return mExtra && mExtra->hasHeldName ? mExtra->heldName : mName;
}

void Attribute::setHeldName(const std::string& name) {
    if (name != mName) extra().heldName = name;
    if (mExtra) mExtra->hasHeldName = name != mName;
}

void Attribute::rename(const std::string& name) {
    const std::string held = heldName();
    mName = name;
    if (mIsListed) setHeldName(held);
}

std::string Attribute::text() const { return mName + '=' + toXmlString(mValue); }

}  // namespace Xml
