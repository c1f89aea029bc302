#include <cstdarg>
#include <cstdio>
#include <iostream>
#include <string>

#include "VexXml/Values.h"

namespace Xml {
namespace {

void printToStandardError(const char* text, ...) { std::cerr << text << std::endl; }

}  // namespace

bool Message::out = true;
Message::Handler Message::mMessageHandler = &printToStandardError;

Message::Message(const std::string& text) {
    lastMessage() = text;
    if (out) mMessageHandler(text.c_str());
}

// Both oddities are deliberate, and handlers depend on them: the last message is the format as it
// stands, and the handler's text begins with the length byte.
Message::Message(const char* format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    const int size = std::vsnprintf(nullptr, 0, format, arguments);
    va_end(arguments);
    std::string text(1, static_cast<char>(static_cast<unsigned char>(size)));
    if (size > 0) {
        text.resize(1 + static_cast<std::size_t>(size));
        va_start(arguments, format);
        std::vsnprintf(text.data() + 1, text.size(), format, arguments);
        va_end(arguments);
    }
    lastMessage() = format;
    if (out) mMessageHandler(text.c_str());
}

void Message::InstallMessageHandler(Handler handler) { mMessageHandler = handler; }

// The name promises the opposite; callers pass true to see messages.
bool Message::disableOutput(bool enabled) {
    const bool previous = out;
    out = enabled;
    return previous;
}

const std::string& Message::getLastMessage() { return lastMessage(); }

// Made on first use, because messages may be reported while other statics are being made.
std::string& Message::lastMessage() {
    static std::string text;
    return text;
}

}  // namespace Xml
