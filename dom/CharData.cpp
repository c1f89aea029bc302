#include <algorithm>
#include <cstring>
#include <memory>
#include <new>
#include <string_view>
#include <utility>

#include "VexXml/Dom.h"
#include "VexXml/Streams.h"
#include "values/BorrowedText.h"
#include "values/Pool.h"
#include "values/References.h"

namespace Xml {

/// The text that was last asked for, in the two forms in which callers refer to it. Its bytes lie
/// behind it, so that all is one piece of memory.
class CharData::PlainText {
public:
    static PlainTextOwner make(std::string_view text, bool stays) {
        void* memory = Pool::allocate(bytesFor(text.size()));
        return PlainTextOwner(new (memory) PlainText(text, stays));
    }
    static void destroy(PlainText* plain) noexcept {
        const std::size_t bytes = bytesFor(static_cast<std::size_t>(plain->data().getSize()));
        plain->~PlainText();
        Pool::release(plain, bytes);
    }
    const DataHolder& data() const { return mData.text(); }

    std::unique_ptr<std::string> string;  ///< null until `toString` gives it
    bool isCurrent;                       ///< it is what would be made of the escaped text again

private:
    PlainText(std::string_view text, bool stays)
        : isCurrent(stays), mData(copyBehind(text), text.size()) {}

    static std::size_t bytesFor(std::size_t size) { return sizeof(PlainText) + size + 1; }
    char* copyBehind(std::string_view text) {
        char* bytes = reinterpret_cast<char*>(this + 1);
        *std::copy(text.begin(), text.end(), bytes) = '\0';
        return bytes;
    }

    BorrowedText mData;
};

void CharData::PlainTextDeleter::operator()(PlainText* plain) const noexcept {
    PlainText::destroy(plain);
}

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
    const DataHolder& text = getData();
    if (!mPlainText) mPlainText = PlainText::make({}, false);
    std::unique_ptr<std::string>& string = mPlainText->string;
    if (!string) string = std::make_unique<std::string>();
    return *string = text;
}

bool CharData::isCharData() const { return true; }

// A text without references is plain as it stands. One whose references are all to characters,
// which no DTD changes, is made once.
const DataHolder& CharData::getData() const {
    if (mPlainText && mPlainText->isCurrent) return mPlainText->data();
    const auto size = static_cast<std::size_t>(mData.getSize());
    if (std::memchr(mData.toCString(), '&', size) == nullptr) return mData;
    const ReplacedText replaced(mData, dtd());
    PlainTextOwner made =
        PlainText::make(replaced.view(), replaced.areCharacters() && !is(Exposed));
    if (mPlainText) made->string = std::move(mPlainText->string);
    mPlainText = std::move(made);
    return mPlainText->data();
}

void CharData::forgetPlainText() noexcept {
    if (mPlainText) mPlainText->isCurrent = false;
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
