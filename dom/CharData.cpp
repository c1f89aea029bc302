#include <algorithm>
#include <array>
#include <cstring>
#include <memory>
#include <mutex>
#include <new>
#include <string_view>
#include <utility>

#include "VexXml/Dom.h"
#include "VexXml/Streams.h"
#include "values/BorrowedText.h"
#include "values/Pool.h"
#include "values/References.h"

namespace Xml {

namespace {

constexpr std::uintptr_t kIsCurrent = 1;

// Held while a plain text is made or replaced: one for all nodes would keep threads waiting that
// read different documents.
std::mutex& lockOf(const CharData& node) {
    static std::array<std::mutex, 64> locks;
    return locks[reinterpret_cast<std::uintptr_t>(&node) / sizeof node % locks.size()];
}

}  // namespace

/// The text that was last asked for, in the two forms in which callers refer to it. Its bytes lie
/// behind it, so that all is one piece of memory.
class CharData::PlainText {
public:
    static PlainText* make(std::string_view text) {
        void* memory = Pool::allocate(bytesFor(text.size()));
        return new (memory) PlainText(text);
    }
    /// Null for none.
    static PlainText* at(std::uintptr_t tagged) {
        // NOLINTNEXTLINE(performance-no-int-to-ptr): the flag has no room elsewhere
        return reinterpret_cast<PlainText*>(tagged & ~kIsCurrent);
    }
    std::uintptr_t tagged(bool isCurrent) const {
        return reinterpret_cast<std::uintptr_t>(this) | (isCurrent ? kIsCurrent : 0);
    }
    static void destroy(PlainText* plain) noexcept {
        if (plain == nullptr) return;
        const std::size_t bytes = bytesFor(plain->view().size());
        plain->~PlainText();
        Pool::release(plain, bytes);
    }
    const DataHolder& data() const { return mData.text(); }
    std::string_view view() const {
        return {data().toCString(), static_cast<std::size_t>(data().getSize())};
    }

    std::unique_ptr<std::string> string;  ///< null until `toString` gives it

private:
    explicit PlainText(std::string_view text) : mData(copyBehind(text), text.size()) {}

    static std::size_t bytesFor(std::size_t size) { return sizeof(PlainText) + size + 1; }
    char* copyBehind(std::string_view text) {
        char* bytes = reinterpret_cast<char*>(this + 1);
        *std::copy(text.begin(), text.end(), bytes) = '\0';
        return bytes;
    }

    BorrowedText mData;
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

CharData::~CharData() {
    PlainText::destroy(PlainText::at(mPlainText.load(std::memory_order_relaxed)));
}

Object* CharData::clone() const { return new CharData(*this); }

const std::string& CharData::toString() const {
    const DataHolder& text = getData();
    PlainText* kept = PlainText::at(mPlainText.load(std::memory_order_acquire));
    if (kept == nullptr) {
        kept = PlainText::make({});
        mPlainText.store(kept->tagged(false), std::memory_order_release);
    }
    if (!kept->string) kept->string = std::make_unique<std::string>();
    return *kept->string = text;
}

bool CharData::isCharData() const { return true; }

// A text without references is plain as it stands.
const DataHolder& CharData::getData() const {
    const std::uintptr_t kept = mPlainText.load(std::memory_order_acquire);
    if ((kept & kIsCurrent) != 0) return PlainText::at(kept)->data();
    return hasReference() ? keep(ReplacedText(mData, dtd())) : mData;
}

bool CharData::hasReference() const {
    const auto size = static_cast<std::size_t>(mData.getSize());
    return std::memchr(mData.toCString(), '&', size) != nullptr;
}

// A text whose references are all to characters, which no DTD changes, is made once.
bool CharData::stays(const ReplacedText& plain) const {
    return plain.areCharacters() && !is(Exposed);
}

// Other threads may make the same text meanwhile, and read what the first of them made.
const DataHolder& CharData::keep(const ReplacedText& plain) const {
    const std::lock_guard<std::mutex> guard(lockOf(*this));
    PlainText* const before = PlainText::at(mPlainText.load(std::memory_order_relaxed));
    const bool isSame = before != nullptr && before->view() == plain.view();
    PlainText* const kept = isSame ? before : PlainText::make(plain.view());
    if (before != nullptr && !isSame) {
        kept->string = std::move(before->string);
        PlainText::destroy(before);
    }
    mPlainText.store(kept->tagged(stays(plain)), std::memory_order_release);
    return kept->data();
}

void CharData::forgetPlainText() noexcept {
    mPlainText.store(mPlainText.load(std::memory_order_relaxed) & ~kIsCurrent,
                     std::memory_order_relaxed);
}

void CharData::getData(DataHolder* out) const {
    const bool isMade = (mPlainText.load(std::memory_order_acquire) & kIsCurrent) != 0;
    if (isMade || !hasReference()) {
        *out = getData();
        return;
    }
    const ReplacedText plain(mData, dtd());
    if (stays(plain)) keep(plain);
    *out = DataHolder(plain.view().data(), plain.view().size());
}

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
