#include <atomic>
#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <iostream>
#include <mutex>
#include <new>
#include <string>

#include "VexXml/Values.h"

namespace Xml {
namespace {

// Written in one piece, so that lines of several threads do not mix.
void printToStandardError(const char* text, ...) {
    const std::string line = std::string(text) + '\n';
    std::cerr.write(line.data(), static_cast<std::streamsize>(line.size())).flush();
}

std::atomic<bool> isOn{true};
std::atomic<Message::Handler> installed{&printToStandardError};

/// A text, and how many there were before it in the process.
struct Numbered {
    std::string text;
    std::uint64_t number = 0;
};

/// The last text of all threads. Each keeps a copy of it, for callers to refer to: it changes only
/// by what the thread does itself.
class LastText {
public:
    static void set(const std::string& text) {
        Shared& shared = LastText::shared();
        const std::lock_guard<std::mutex> guard(shared.lock);
        shared.last.text = text;
        ++shared.last.number;
        copy(shared.last);
    }

    static const std::string& get() {
        Shared& shared = LastText::shared();
        const std::lock_guard<std::mutex> guard(shared.lock);
        return copy(shared.last);
    }

private:
    struct Shared {
        std::mutex lock;
        Numbered last;
    };

    /// The copy of a thread.
    struct Own {
        ~Own() { sHasEnded = true; }

        Numbered last;
    };

    static Shared& shared() {
        // Made on first use, because messages may be reported while other statics are being made,
        // and never destroyed, because they may be while others are destroyed.
        alignas(Shared) static char place[sizeof(Shared)];
        static Shared& made = *new (place) Shared;
        return made;
    }

    /// Gives the copy, or `last` itself at the end of a thread. Needs: the lock is held.
    static const std::string& copy(const Numbered& last) {
        if (sHasEnded) return last.text;
        static thread_local Own own;
        if (own.last.number != last.number) own.last = last;
        return own.last.text;
    }

    static thread_local bool sHasEnded;
};

thread_local bool LastText::sHasEnded = false;

// What `text` refers to may change in the course of it.
void report(const std::string& last, const char* text) {
    LastText::set(last);
    if (isOn.load()) installed.load()(text);
}

}  // namespace

Message::Message(const std::string& text) { report(text, text.c_str()); }

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
    report(format, text.c_str());
}

void Message::InstallMessageHandler(Handler handler) { installed = handler; }

// The name promises the opposite; callers pass true to see messages.
bool Message::disableOutput(bool enabled) { return isOn.exchange(enabled); }

const std::string& Message::getLastMessage() { return LastText::get(); }

}  // namespace Xml
