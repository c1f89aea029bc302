#include <cstring>
#include <utility>

#include "VexXml/Dom.h"
#include "VexXml/Streams.h"
#include "values/References.h"

namespace Xml {

/// The text that was last asked for, in the two forms in which callers refer to it.
struct CharData::PlainText {
    DataHolder data;
    std::string text;
};

CharData::CharData() = default;

CharData::CharData(const DataHolder& text) : mData(text) { insertStdEntities(mData); }

CharData::CharData(const Entity& entity) : mData(entity.toString()) {}

CharData::CharData(const char* escapedText, std::size_t size) : mData(escapedText, size) {}

CharData::CharData(const CharData& other) : Object(other), mData(other.mData) {}

CharData::CharData(CharData&& other) noexcept : Object(other), mData(std::move(other.mData)) {
    other.touch();
}

CharData& CharData::operator=(const CharData& other) {
    mData = other.mData;
    Object::operator=(other);
    return *this;
}

CharData& CharData::operator=(CharData&& other) noexcept {
    if (this == &other) return *this;
    mData = std::move(other.mData);
    Object::operator=(other);
    other.touch();
    return *this;
}

CharData::~CharData() = default;

Object* CharData::clone() const { return new CharData(*this); }

const std::string& CharData::toString() const {
    const std::string text = getData();
    return plainText().text = text;
}

bool CharData::isCharData() const { return true; }

// A text without references is plain as it stands.
const DataHolder& CharData::getData() const {
    const auto size = static_cast<std::size_t>(mData.getSize());
    if (std::memchr(mData.toCString(), '&', size) == nullptr) return mData;
    DataHolder& plain = plainText().data;
    plain.clear();
    appendReplaced(plain, mData, dtd());
    return plain;
}

CharData::PlainText& CharData::plainText() const {
    if (!mPlainText) mPlainText = std::make_unique<PlainText>();
    return *mPlainText;
}

void CharData::getData(DataHolder* out) const { *out = getData(); }

void CharData::setData(const DataHolder& text) {
    DataHolder escaped = text;
    mData = insertStdEntities(escaped);
    touch();
}

void CharData::setData(const Entity& entity) {
    mData = entity.toString();
    touch();
}

DataHolder& CharData::data() { return mData; }

int CharData::getSize() const { return mData.getSize(); }

bool CharData::reserve(int size) {
    return size < 0 || mData.reserve(static_cast<std::uint64_t>(size));
}

bool CharData::setSize(int size) {
    return size >= 0 && mData.setSize(static_cast<std::uint64_t>(size));
}

char& CharData::operator[](int index) { return mData[static_cast<std::uint64_t>(index)]; }

const char& CharData::operator[](int index) const {
    return mData[static_cast<std::uint64_t>(index)];
}

void CharData::write(OutStream& out) const { out.writeDataHolder(mData); }

}  // namespace Xml
