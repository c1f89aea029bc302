#include <string>
#include <utility>

#include "VexXml/Values.h"

namespace Xml {

DataHolder::DataHolder() = default;
DataHolder::DataHolder(const std::string& text) : mText(text) {}
DataHolder::DataHolder(const char* text) : mText(text != nullptr ? text : "") {}
DataHolder::DataHolder(int number) : mText(toString(number)) {}
DataHolder::DataHolder(double number) : mText(toString(number)) {}
DataHolder::DataHolder(const char* bytes, std::uint64_t size) : mText(bytes, size) {}
DataHolder::DataHolder(const DataHolder& other) = default;
DataHolder& DataHolder::operator=(const DataHolder& other) = default;
DataHolder::~DataHolder() = default;

// A plain move of the string would leave text of any kind behind, not necessarily none.
DataHolder::DataHolder(DataHolder&& other) noexcept : mText(std::exchange(other.mText, {})) {}

DataHolder& DataHolder::operator=(DataHolder&& other) noexcept {
    mText = std::exchange(other.mText, {});
    return *this;
}

void DataHolder::append(const char* bytes, int count) {
    if (count > 0) mText.append(bytes, static_cast<std::size_t>(count));
}

DataHolder& DataHolder::push(char byte) {
    mText.push_back(byte);
    return *this;
}

// Not `pop_back`: on an empty holder the size wraps around, which `resize` answers with an
// exception where `pop_back` would be undefined.
DataHolder& DataHolder::pop() {
    mText.resize(mText.size() - 1);
    return *this;
}

void DataHolder::clear() { mText.clear(); }

int DataHolder::getSize() const { return static_cast<int>(mText.size()); }

bool DataHolder::isEmpty() const { return mText.empty(); }

bool DataHolder::reserve(std::uint64_t size) {
    constexpr std::uint64_t kSmallText = 16;
    if (size < mText.size()) return true;
    if (size < kSmallText) {
        mText.shrink_to_fit();
    } else {
        mText.reserve(size);
    }
    return true;
}

bool DataHolder::setSize(std::uint64_t size) {
    mText.resize(size);
    return mText.size() == size;
}

void DataHolder::swap(DataHolder& other) noexcept { mText.swap(other.mText); }

const char* DataHolder::toCString() const { return mText.c_str(); }

int DataHolder::toInt() const { return Xml::toInt(mText); }

double DataHolder::toDouble() const { return Xml::toDouble(mText); }

bool DataHolder::operator==(const DataHolder& other) const { return mText == other.mText; }

bool DataHolder::operator!=(const DataHolder& other) const { return mText != other.mText; }

char& DataHolder::operator[](std::uint64_t index) { return mText[index]; }

const char& DataHolder::operator[](std::uint64_t index) const { return mText[index]; }

DataHolder::operator std::string() const { return mText; }

}  // namespace Xml
