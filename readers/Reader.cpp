#include <string>
#include <utility>

#include "VexXml/Readers.h"
#include "readers/ClassName.h"
#include "readers/ReadBudget.h"

namespace Xml {

// mBudget is of the read that goes on, which ends with the reader that began it: neither copies nor
// moves touch it.

Reader::Reader() = default;
Reader::Reader(const Reader& other) : mMessage(other.mMessage), mLimits(other.mLimits) {}
Reader::Reader(Reader&& other) noexcept
    : mMessage(std::move(other.mMessage)), mLimits(std::move(other.mLimits)) {}
// cppcheck-suppress operatorEqVarError ; mBudget stays
Reader& Reader::operator=(const Reader& other) {
    if (this == &other) return *this;
    mMessage = other.mMessage;
    mLimits = other.mLimits;
    return *this;
}
// cppcheck-suppress operatorEqVarError ; mBudget stays
Reader& Reader::operator=(Reader&& other) noexcept {
    if (this == &other) return *this;
    mMessage = std::move(other.mMessage);
    mLimits = std::move(other.mLimits);
    return *this;
}
Reader::~Reader() = default;

void Reader::message(InStream& in, const std::string& text) {
    mMessage = "(line = " + std::to_string(in.getLine()) +
               ", column = " + std::to_string(in.getColumn()) + ") " + text + " <" +
               className(typeid(*this)) + '>';
}

const std::string& Reader::getErrorMessage() const { return mMessage; }

void Reader::setMessage(const std::string& text) { mMessage = text; }

void Reader::setLimits(const ReadLimits& limits) {
    mLimits = std::make_shared<const ReadLimits>(limits);
}

const ReadLimits* Reader::limits() const {
    return mBudget != nullptr ? &mBudget->limits() : nullptr;
}

bool Reader::isWithin(std::uint64_t ReadLimits::*limit, std::uint64_t amount, InStream& in) {
    if (mBudget == nullptr || mBudget->isWithin(limit, amount)) return true;
    message(in, std::string("limit exceeded: ") + nameOf(limit) + " = " +
                    std::to_string(mBudget->limits().*limit));
    return false;
}

bool Reader::takesFrom(std::uint64_t ReadLimits::*limit, std::uint64_t amount, InStream& in) {
    if (mBudget != nullptr) mBudget->take(limit, amount);
    return isWithin(limit, mBudget != nullptr ? mBudget->taken(limit) : 0, in);
}

bool Reader::parseWith(Reader& reader, InStream& in) {
    const ReadBudget::Share share(mBudget, reader.mBudget);
    if (reader.parse(in)) return true;
    setMessage(reader.getErrorMessage());
    return false;
}

bool Reader::checkToken(InStream& in, const std::string& expected) {
    if (in.checkToken(expected)) return true;
    message(in, in.getErrorMessage());
    return false;
}

bool Reader::getName(InStream& in, std::string& name) {
    if (in.getName(name)) return isWithin(&ReadLimits::nameLength, name.size(), in);
    message(in, in.getErrorMessage());
    return false;
}

bool Reader::getString(InStream& in, std::string& quoted) {
    if (in.getString(quoted)) return isWithin(&ReadLimits::valueLength, quoted.size() - 2, in);
    message(in, in.getErrorMessage());
    return false;
}

bool Reader::getToken(InStream& in, std::string& token) {
    if (in.getToken(token)) return true;
    message(in, in.getErrorMessage());
    return false;
}

bool Reader::getCharData(InStream& in, DataHolder& text) {
    if (in.getCharData(text)) return true;
    message(in, in.getErrorMessage());
    return false;
}

bool Reader::skip(InStream& in, const std::string& until) {
    if (in.skip(until)) return true;
    message(in, in.getErrorMessage());
    return false;
}

}  // namespace Xml
