#include "streams/OutWindow.h"

#include <fstream>
#include <limits>
#include <locale>
#include <ostream>
#include <sstream>
#include <typeinfo>
#include <utility>

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

constexpr unsigned char kEndsRun = ByteClass::Special | ByteClass::LineFeed;
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

// Where all could be references and still fit, and no line ends, no more questions are asked.
void OutWindow::putEscaped(std::string_view text) {
    constexpr std::size_t kLongestReference = 6;
    if (mOut.mAtLineStart || text.size() > room() / kLongestReference) {
        return putEscapedSlowly(text);
    }
    char* next = mNext;
    for (const char c : text) {
        if (!ByteClass::has(c, kEndsRun)) {
            *next++ = c;
        } else if (c == '\n') {
            return putEscapedSlowly(text);
        } else {
            const std::string_view reference = stdReference(c);
            next = std::copy(reference.begin(), reference.end(), next);
        }
    }
    mNext = next;
}

void OutWindow::putEscapedSlowly(std::string_view text) {
    while (!text.empty()) {
        const auto* const special = std::find_if(text.begin(), text.end(), ByteClass::isSpecial);
        const auto size = static_cast<std::size_t>(special - text.begin());
        putSlowly(text.substr(0, size));
        if (size == text.size()) return;
        putSlowly(stdReference(*special));
        text.remove_prefix(size + 1);
    }
}

void OutWindow::putSlowly(std::string_view text) {
    if (mStream == nullptr) {
        for (const char c : text) mOut.put(c);
        return;
    }
    while (!text.empty()) {
        const std::size_t size = std::min(text.find('\n'), text.size());
        if (size > 0) putTabs();
        putBytes(text.data(), size);
        if (size == text.size()) return;
        mOut.mAtLineStart = true;
        putBytes("\n", 1);
        text.remove_prefix(size + 1);
    }
}

void OutWindow::putTabs() {
    if (!std::exchange(mOut.mAtLineStart, false)) return;
    for (int tab = 0; tab < mOut.mTabs; ++tab) putBytes("\t", 1);
}

// What the stream makes room for is asked for each time, its state and position, too: it may have
// failed, and what is added to a file may go elsewhere than where it stood. One that makes no room
// is left to itself.
void OutWindow::putBytes(const char* bytes, std::size_t count) {
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
