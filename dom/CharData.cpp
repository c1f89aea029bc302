#include <cstring>
#include <utility>

#include "VexXml/Dom.h"
#include "VexXml/Streams.h"
#include "values/References.h"

namespace Xml {

/// The text that was last asked for, in the two forms in which callers refer to it.
struct CharData::PlainText {
    DataHolder data;
    bool isCurrent = false;  ///< `data` is what would be made of the escaped text again
    std::string text;
};

CharData::CharData() = default;

CharData::CharData(const DataHolder& text) : mData(text) { insertStdEntities(mData); }

CharData::CharData(const Entity& entity) : mData(entity.toString()) {}

CharData::CharData(const char* escapedText, std::size_t size) : mData(escapedText, size) {}

CharData::CharData(const CharData& other) : Object(other), mData(other.mData) {}

CharData::CharData(CharData&& other) noexcept : Object(other), mData(std::move(other.mData)) {
    other.forgetPlainText();
    other.touch();
}

CharData& CharData::operator=(const CharData& other) {
    mData = other.mData;
    forgetPlainText();
    Object::operator=(other);
    return *this;
}

CharData& CharData::operator=(CharData&& other) noexcept {
    if (this == &other) return *this;
    mData = std::move(other.mData);
    forgetPlainText();
    other.forgetPlainText();
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

// A text without references is plain as it stands. One whose references are all to characters,
// which no DTD changes, is made once.
const DataHolder& CharData::getData() const {
    if (mPlainText && mPlainText->isCurrent) return mPlainText->data;
    const auto size = static_cast<std::size_t>(mData.getSize());
    if (std::memchr(mData.toCString(), '&', size) == nullptr) return mData;
    PlainText& plain = plainText();
    plain.data.clear();
    plain.isCurrent = appendReplaced(plain.data, mData, dtd()) && !is(Exposed);
    return plain.data;
}

void CharData::forgetPlainText() noexcept {
    if (mPlainText) mPlainText->isCurrent = false;
}

CharData::PlainText& CharData::plainText() const {
    if (!mPlainText) mPlainText = std::make_unique<PlainText>();
    return *mPlainText;
}

void CharData::getData(DataHolder* out) const { *out = getData(); }

void CharData::setData(const DataHolder& text) {
    DataHolder escaped = text;
    mData = insertStdEntities(escaped);
    forgetPlainText();
    touch();
}

void CharData::setData(const Entity& entity) {
    mData = entity.toString();
    forgetPlainText();
    touch();
}

// What the caller does with the text from now on cannot be seen.
DataHolder& CharData::data() {
    forgetPlainText();
    mark(Exposed, true);
    return mData;
}

int CharData::getSize() const { return mData.getSize(); }

bool CharData::reserve(int size) {
    return size < 0 || mData.reserve(static_cast<std::uint64_t>(size));
}

bool CharData::setSize(int size) {
    return size >= 0 && data().setSize(static_cast<std::uint64_t>(size));
}

char& CharData::operator[](int index) { return data()[static_cast<std::uint64_t>(index)]; }

const char& CharData::operator[](int index) const {
    return mData[static_cast<std::uint64_t>(index)];
}

void CharData::write(OutStream& out) const { out.writeDataHolder(mData); }

}  // namespace Xml
