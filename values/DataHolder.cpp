#include <algorithm>
#include <cstring>
#include <limits>
#include <stdexcept>
#include <string>
#include <utility>

#include "VexXml/Values.h"
#include "values/Bytes.h"
#include "values/Pool.h"

namespace Xml {
namespace {

constexpr std::size_t kGrain = 8;
constexpr std::size_t kLargestInGrains = 1024;  // what is not pooled has sizes of any kind

// Sizes are told as `int`.
constexpr std::size_t kLongest = std::numeric_limits<std::int32_t>::max();

std::size_t checkedSize(std::uint64_t size) {
    if (size > kLongest) throw std::length_error("DataHolder: the text would be too long");
    return static_cast<std::size_t>(size);
}

}  // namespace

DataHolder::DataHolder() = default;
DataHolder::DataHolder(const std::string& text) : DataHolder(text.data(), text.size()) {}
DataHolder::DataHolder(const char* text)
    : DataHolder(text, text != nullptr ? std::strlen(text) : 0) {}
DataHolder::DataHolder(int number) : DataHolder(toString(number)) {}
DataHolder::DataHolder(double number) : DataHolder(toString(number)) {}
DataHolder::DataHolder(const DataHolder& other) : DataHolder(other.toCString(), other.size()) {}
DataHolder::DataHolder(DataHolder&& other) noexcept : DataHolder() { swap(other); }

DataHolder::DataHolder(const char* bytes, std::uint64_t size) {
    const std::size_t length = checkedSize(size);
    if (length <= kSmallCapacity) {
        Bytes::copyFew(mSmall, bytes, length);
        mSmall[kSmallCapacity] = static_cast<char>(kSmallCapacity - length);
        return;
    }
    LongText text = allocate(length);
    std::memcpy(text.bytes, bytes, length);
    text.bytes[length] = '\0';
    text.size = static_cast<std::uint32_t>(length);
    setLongText(text);
}

DataHolder& DataHolder::operator=(const DataHolder& other) {
    if (this == &other) return *this;
    if (other.size() > capacity()) return *this = DataHolder(other);
    setLength(0);
    appendInside(other.toCString(), other.size());
    return *this;
}

DataHolder& DataHolder::operator=(DataHolder&& other) noexcept {
    DataHolder moved(std::move(other));
    swap(moved);
    return *this;
}

void DataHolder::append(const char* bytes, int count) {
    if (count > 0) appendBytes(bytes, static_cast<std::size_t>(count));
}

DataHolder& DataHolder::push(char byte) {
    appendBytes(&byte, 1);
    return *this;
}

// Deliberate: the size of an empty holder would wrap around, which callers know as this exception.
DataHolder& DataHolder::pop() {
    if (isEmpty()) throw std::length_error("DataHolder::pop: the text is empty");
    setLength(size() - 1);
    return *this;
}

void DataHolder::clear() { setLength(0); }

bool DataHolder::reserve(std::uint64_t size) {
    const bool givesBack = size <= kSmallCapacity && isLong();
    if (size < this->size() || (!givesBack && size <= capacity())) return true;
    DataHolder moved = withRoomFor(givesBack ? this->size() : checkedSize(size));
    moved.appendInside(toCString(), this->size());
    swap(moved);
    return true;
}

bool DataHolder::setSize(std::uint64_t size) {
    const std::size_t old = this->size();
    const std::size_t wanted = checkedSize(size);
    if (wanted > capacity()) reserve(grownSize(wanted));
    if (wanted > old) std::memset(bytes() + old, 0, wanted - old);
    setLength(wanted);
    return true;
}

void DataHolder::swap(DataHolder& other) noexcept { std::swap(mSmall, other.mSmall); }

int DataHolder::toInt() const { return Xml::toInt(*this); }

double DataHolder::toDouble() const { return Xml::toDouble(*this); }

bool DataHolder::operator==(const DataHolder& other) const {
    return size() == other.size() && std::memcmp(toCString(), other.toCString(), size()) == 0;
}

bool DataHolder::operator!=(const DataHolder& other) const { return !(*this == other); }

char& DataHolder::operator[](std::uint64_t index) { return bytes()[index]; }

const char& DataHolder::operator[](std::uint64_t index) const { return toCString()[index]; }

DataHolder::operator std::string() const { return {toCString(), size()}; }

DataHolder DataHolder::withRoomFor(std::size_t size) {
    DataHolder holder;
    if (size > kSmallCapacity) holder.setLongText(allocate(size));
    holder.setLength(0);
    return holder;
}

// A NUL has room behind the text.
DataHolder::LongText DataHolder::allocate(std::size_t capacity) {
    const std::size_t size = Pool::usableSize(capacity + 1);
    if (size <= kLargestInGrains) {
        char* bytes = static_cast<char*>(Pool::allocate(size));
        return {bytes, 0, static_cast<std::uint8_t>(size / kGrain), {}, kLong};
    }
    char* block = static_cast<char*>(Pool::allocate(sizeof capacity + capacity + 1));
    std::memcpy(block, &capacity, sizeof capacity);
    return {block + sizeof capacity, 0, 0, {}, kLong};
}

std::size_t DataHolder::capacityOf(const LongText& text) {
    if (text.grains > 0) return text.grains * kGrain - 1;
    std::size_t capacity = 0;
    std::memcpy(&capacity, text.bytes - sizeof capacity, sizeof capacity);
    return capacity;
}

void DataHolder::freeStorage() noexcept {
    const LongText text = longText();
    const std::size_t capacity = capacityOf(text);
    const std::size_t front = text.grains > 0 ? 0 : sizeof capacity;
    Pool::release(text.bytes - front, front + capacity + 1);
}

std::size_t DataHolder::capacity() const {
    return isLong() ? capacityOf(longText()) : kSmallCapacity;
}

// A text that grows at its end moves seldom.
std::size_t DataHolder::grownSize(std::size_t wanted) const {
    return std::max(checkedSize(wanted), std::min(2 * capacity(), kLongest));
}

void DataHolder::setLongText(const LongText& text) {
    static_assert(sizeof text == sizeof mSmall, "the tag must be the last byte");
    std::memcpy(mSmall, &text, sizeof text);
}

void DataHolder::setLength(std::size_t size) {
    bytes()[size] = '\0';
    if (isLong()) {
        const auto longSize = static_cast<std::uint32_t>(size);
        std::memcpy(mSmall + offsetof(LongText, size), &longSize, sizeof longSize);
    } else {
        mSmall[kSmallCapacity] = static_cast<char>(kSmallCapacity - size);
    }
}

// The bytes may lie inside the text, which must not be given up before they are copied.
void DataHolder::appendBytes(const char* bytes, std::size_t count) {
    if (count <= capacity() - size()) return appendInside(bytes, count);
    DataHolder grown = withRoomFor(grownSize(size() + count));
    grown.appendInside(toCString(), size());
    grown.appendInside(bytes, count);
    swap(grown);
}

// Needs: there is room.
void DataHolder::appendInside(const char* bytes, std::size_t count) {
    const std::size_t old = size();
    if (count > 0) std::memmove(this->bytes() + old, bytes, count);
    setLength(old + count);
}

}  // namespace Xml
