#include "VexXml/Streams.h"

namespace Xml {

OutStream::OutStream() = default;
OutStream::OutStream(const OutStream&) = default;
OutStream& OutStream::operator=(const OutStream&) = default;
OutStream::~OutStream() = default;

bool OutStream::isValid() const { return true; }

OutStream& OutStream::operator<<(char c) {
    put(c);
    return *this;
}

OutStream& OutStream::operator<<(const std::string& text) {
    put(text);
    return *this;
}

OutStream& OutStream::writeDataHolder(const DataHolder& text) {
    const std::string bytes = text;
    for (const char c : bytes) putChar(c);
    return *this;
}

void OutStream::incTab() { ++mTabs; }

void OutStream::decTab() {
    if (mTabs > 0) --mTabs;
}

std::ostream* OutStream::standardStream() { return nullptr; }

void OutStream::put(char c) {
    if (c == '\n') {
        mAtLineStart = true;
    } else if (mAtLineStart) {
        mAtLineStart = false;
        for (int tab = 0; tab < mTabs; ++tab) putChar('\t');
    }
    putChar(c);
}

void OutStream::put(const std::string& text) {
    for (const char c : text) put(c);
}

}  // namespace Xml
