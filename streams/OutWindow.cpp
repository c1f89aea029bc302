#include "streams/OutWindow.h"

#include <exception>
#include <fstream>
#include <limits>
#include <locale>
#include <new>
#include <ostream>
#include <sstream>
#include <string>
#include <typeinfo>
#include <utility>

#include "values/ByteClass.h"
#include "values/References.h"

namespace Xml {
namespace {

/// The memory that a standard buffer puts bytes into, which only derived classes may ask for.
struct PutArea : std::streambuf {
    static char* next(const std::streambuf& buffer) { return (buffer.*&PutArea::pptr)(); }
    static char* begin(const std::streambuf& buffer) { return (buffer.*&PutArea::pbase)(); }
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

// Whether it is that of a string stream, filled up to its end with a text that is long.
bool isFullOfText(const std::streambuf& buffer, const char* filledTo) {
    constexpr std::ptrdiff_t kLong = 65536;
    return typeid(buffer) == typeid(std::stringbuf) && filledTo == PutArea::end(buffer) &&
           filledTo - PutArea::begin(buffer) >= kLong;
}

// Makes the text longer in one move. Needs: the buffer is full of it. Changes nothing when there is
// not enough memory.
void append(std::stringbuf& buffer, const Pieces& pieces) {
    const char* const begin = PutArea::begin(buffer);
    const auto present = static_cast<std::size_t>(PutArea::next(buffer) - begin);
    const std::size_t size = present + pieces.filled();
    std::string text;
    text.reserve(size + size / 2);  // so that the next move is far away
    text.append(begin, present);
    for (const Pieces::Piece& piece : pieces) text.append(piece.bytes, piece.filled);
    const std::streamoff readPosition = buffer.pubseekoff(0, std::ios::cur, std::ios::in);
    buffer.str(std::move(text));
    buffer.pubseekoff(0, std::ios::end, std::ios::out);
    if (readPosition >= 0) buffer.pubseekpos(readPosition, std::ios::in);
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

// Nothing comes out of a destructor; the state of the stream shows the failure.
OutWindow::~OutWindow() {
    try {
        release();
    } catch (const std::exception&) {
        mStream = nullptr;
    }
}

void OutWindow::release() {
    settle();
    if (!mPieces.isEmpty()) handOn();
    mStart = mNext = mEnd = nullptr;
}

// What has been put into the memory counts as filled from now on.
void OutWindow::settle() {
    if (mNext == mStart) return;
    if (mPieces.isEmpty()) {
        PutArea::advance(*mStream->rdbuf(), mNext - mStart);
    } else {
        mPieces.last().filled += static_cast<std::size_t>(mNext - mStart);
    }
    if (mStartPosition >= 0) mStartPosition += mNext - mStart;
    mStart = mNext;
}

// A text that grows in a string stream moves again and again, each time to fresh memory. So what
// comes behind a long one is collected first, if there is memory for that. Needs: no room.
bool OutWindow::collectsMore() {
    if (mPieces.isEmpty() && !isFullOfText(*mStream->rdbuf(), mEnd)) return false;
    settle();
    try {
        mPieces.add();
    } catch (const std::bad_alloc&) {
        return false;
    }
    mStart = mNext = mPieces.last().bytes;
    mEnd = mPieces.last().end();
    return true;
}

void OutWindow::handOn() {
    const Pieces pieces = std::move(mPieces);
    try {
        append(static_cast<std::stringbuf&>(*mStream->rdbuf()), pieces);
    } catch (const std::exception&) {
        for (const Pieces::Piece& piece : pieces) {
            mStream->write(piece.bytes, static_cast<std::streamsize>(piece.filled));
        }
    }
}

void OutWindow::setPosition(int position) {
    release();
    mOut.setPosition(position);
    takeBack();
}

void OutWindow::putSlowly(LinePart::Escaped escaped) {
    std::string_view text = escaped.text;
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
        if (collectsMore()) continue;
        release();
        mStream->put(*bytes++);
        takeBack();
        if (room() == 0) mStream = nullptr;
    }
    for (; bytes != end; ++bytes) mOut.putChar(*bytes);
}

}  // namespace Xml
