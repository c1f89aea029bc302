#include <string>

#include "VexXml/Dtd.h"
#include "VexXml/Streams.h"

namespace Xml {
namespace {

AttType known(AttType type) { return type >= AttValue && type <= AttFixed ? type : AttImplied; }

}  // namespace

AttDef::AttDef(AttType type, const DataHolder& defaultValue)
    : mType(known(type)), mDefaultValue(defaultValue) {
    if (hasDefault() || mDefaultValue.isEmpty()) return;
    Message(std::string("<AttDef::AttDef> no default value for REQUIRED or IMPLIED"));
    mDefaultValue.clear();
}

AttDef::~AttDef() = default;
AttDef::AttDef(const AttDef&) = default;
AttDef::AttDef(AttDef&&) noexcept = default;
AttDef& AttDef::operator=(const AttDef&) = default;
AttDef& AttDef::operator=(AttDef&&) noexcept = default;

bool AttDef::isRequired() const { return mType == AttRequired; }

bool AttDef::hasDefault() const { return mType == AttValue || mType == AttFixed; }

const DataHolder& AttDef::getDefault() const { return mDefaultValue; }

void AttDef::toStream(OutStream& out) const {
    typeToStream(out);
    out << ' ';
    if (mType == AttRequired) out << "#REQUIRED";
    if (mType == AttImplied) out << "#IMPLIED";
    if (mType == AttFixed) out << "#FIXED";
    // No blank between "#FIXED" and the value: callers compare this.
    if (hasDefault()) out << toXmlString(mDefaultValue);
}

AttStringType::AttStringType(AttType type, const DataHolder& defaultValue)
    : AttDef(type, defaultValue) {}

void AttStringType::typeToStream(OutStream& out) const { out << "CDATA"; }

bool AttStringType::validate(const DataHolder& /*value*/) const { return true; }

AttDef* AttStringType::clone() const { return new AttStringType(*this); }

}  // namespace Xml
