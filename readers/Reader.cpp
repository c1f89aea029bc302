#include <string>

#include "VexXml/Readers.h"
#include "readers/ClassName.h"

namespace Xml {

Reader::Reader() = default;
Reader::Reader(const Reader&) = default;
Reader::Reader(Reader&&) noexcept = default;
Reader& Reader::operator=(const Reader&) = default;
Reader& Reader::operator=(Reader&&) noexcept = default;
Reader::~Reader() = default;

void Reader::message(InStream& in, const std::string& text) {
    mMessage = "(line = " + std::to_string(in.getLine()) +
               ", column = " + std::to_string(in.getColumn()) + ") " + text + " <" +
               className(typeid(*this)) + '>';
}

const std::string& Reader::getErrorMessage() const { return mMessage; }

void Reader::setMessage(const std::string& text) { mMessage = text; }

bool Reader::parseWith(Reader& reader, InStream& in) {
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
    if (in.getName(name)) return true;
    message(in, in.getErrorMessage());
    return false;
}

bool Reader::getString(InStream& in, std::string& quoted) {
    if (in.getString(quoted)) return true;
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
