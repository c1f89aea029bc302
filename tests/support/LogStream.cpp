#include "support/LogStream.h"

namespace support {

void LogStream::putChar(char c) {
    mLog += c;
    ++mPosition;
}

void LogStream::setPosition(int position) {
    mLog += "[to " + std::to_string(position) + ']';
    mPosition = position;
}

std::string writeAt(int position, Xml::Object& node) {
    LogStream out(position);
    node.toStream(out);
    return out.log();
}

}  // namespace support
