#include "streams/OutWindow.h"

#include <fstream>
#include <limits>
#include <locale>
#include <ostream>
#include <sstream>
#include <typeinfo>

#include "values/ByteClass.h"
#include "values/References.h"

namespace Xml {
namespace {

/// The memory that a standard buffer puts bytes into, which only derived classes may ask for.
struct PutArea : std::streambuf {
    static char* next(const std::streambuf& buffer) { return (buffer.*&PutArea::pptr)(); }
    static char* end(const std::streambuf& buffer) { return (buffer.*&PutArea::epptr)(); }
    static void advance(std::streambuf& buffer, std::ptrdiff_t count) {
        (buffer.*&PutArea::pbump)(static_cast<int>(count));
    }
};

constexpr std::ptrdiff_t kMostAtOnce = std::numeric_limits<int>::max();

// Whether putting a byte that there is room for does nothing else.
bool onlyPuts(const std::ostream& stream) {
    return stream.good() && stream.tie() == nullptr &&
           (stream.flags() & std::ios_base::unitbuf) == 0;
}

// Whether asking for the position leaves no trace, and each byte that is put adds 1 to it, at least
// until there is no room.
bool countsBytes(const std::streambuf& buffer) {
    using Conversion = std::codecvt<char, char, std::mbstate_t>;
    if (typeid(buffer) == typeid(std::stringbuf)) return true;
    return typeid(buffer) == typeid(std::filebuf) &&
           std::use_facet<Conversion>(buffer.getloc()).always_noconv();
}

}  // namespace

void OutWindow::takeBack() {
    mStream = mOut.standardStream();
    if (mStream == nullptr) return;
    if (onlyPuts(*mStream) && countsBytes(*mStream->rdbuf())) {
        takeArea();
    } else {
        mStream = nullptr;
    }
}

void OutWindow::takeArea() {
    mStartPosition = mStream->tellp();
    const std::streambuf& buffer = *mStream->rdbuf();
    mStart = mNext = PutArea::next(buffer);
    mEnd = mStart + std::min(PutArea::end(buffer) - mStart, kMostAtOnce);
}

void OutWindow::release() {
    if (mNext != mStart) PutArea::advance(*mStream->rdbuf(), mNext - mStart);
    mStart = mNext = mEnd = nullptr;
}

void OutWindow::setPosition(int position) {
    release();
    mOut.setPosition(position);
    takeBack();
}

void OutWindow::writeDataHolder(const DataHolder& text) {
    if (mStream == nullptr) {
        mOut.writeDataHolder(text);
    } else {
        putBytes(text.toCString(), static_cast<std::size_t>(text.getSize()));
    }
}

void OutWindow::put(std::string_view text) {
    for (std::size_t end = text.find('\n'); end != std::string_view::npos; end = text.find('\n')) {
        putInLine(text.substr(0, end));
        put('\n');
        text.remove_prefix(end + 1);
    }
    putInLine(text);
}

void OutWindow::putEscaped(std::string_view text) {
    constexpr unsigned char kEndsRun = ByteClass::Special | ByteClass::LineFeed;
    std::size_t begin = 0;
    for (std::size_t end = 0; end < text.size(); ++end) {
        if (!ByteClass::has(text[end], kEndsRun)) continue;
        putInLine(text.substr(begin, end - begin));
        if (text[end] == '\n') {
            put('\n');
        } else {
            putInLine(stdReference(text[end]));
        }
        begin = end + 1;
    }
    putInLine(text.substr(begin));
}

// Needs: no line feed in the text.
void OutWindow::putInLine(std::string_view text) {
    if (mStream == nullptr) {
        for (const char c : text) mOut.put(c);
    } else if (!text.empty()) {
        if (mOut.mAtLineStart) putTabs();
        putBytes(text.data(), text.size());
    }
}

void OutWindow::putTabs() {
    mOut.mAtLineStart = false;
    for (int tab = 0; tab < mOut.mTabs; ++tab) putBytes("\t", 1);
}

// What the stream makes room for is asked for each time, its state and position, too: it may have
// failed, and what is added to a file may go elsewhere than where it stood. One that makes no room
// is left to itself.
void OutWindow::putBeyond(const char* bytes, std::size_t count) {
    const char* const end = bytes + count;
    while (mStream != nullptr) {
        const std::size_t fitting = std::min(static_cast<std::size_t>(end - bytes), room());
        mNext = std::copy_n(bytes, fitting, mNext);
        bytes += fitting;
        if (bytes == end) return;
        release();
        mStream->put(*bytes++);
        takeBack();
        if (room() == 0) mStream = nullptr;
    }
    for (; bytes != end; ++bytes) mOut.putChar(*bytes);
}

}  // namespace Xml
