#include "support/Readings.h"

#include <sstream>

#include "support/Dump.h"
#include "support/FileLikeInStream.h"
#include "support/PlainInStream.h"

namespace support {
namespace {

/// Notes when a read met the end of the text.
class WatchedInStream : public PlainInStream {
public:
    using PlainInStream::PlainInStream;

    bool getChar(char& c) override {
        const bool found = PlainInStream::getChar(c);
        if (!found) mMetEnd = true;
        return found;
    }

    bool metEnd() const { return mMetEnd; }

private:
    bool mMetEnd = false;
};

/// All but what was read.
std::string stateBehind(Xml::Reader& reader, Xml::InStream& in) {
    const bool answer = reader.parse(in);
    return (answer ? "true \"" : "false \"") + reader.getErrorMessage() + "\" at " +
           std::to_string(in.getPosition()) + ", line " + std::to_string(in.getLine()) +
           ", column " + std::to_string(in.getColumn()) + ", last \"" + in.getErrorMessage() +
           "\"\n";
}

std::string reportsOf(Diagnostics& diagnostics) {
    std::string reports;
    for (const std::string& report : diagnostics.take()) reports += report + "\n";
    return reports;
}

/// Empty when both are the same.
std::string difference(const char* stream, const std::string& found, const std::string& expected) {
    if (found == expected) return "";
    return std::string("From ") + stream + ":\n" + found + "\ninstead of:\n" + expected + "\n";
}

}  // namespace

std::string readingOf(Xml::DocumentReader& reader, Xml::InStream& in, Diagnostics& diagnostics) {
    std::string reading = stateBehind(reader, in);
    if (reader.getDocument() != nullptr) reading += dump(*reader.getDocument()) + "\n";
    return reading + reportsOf(diagnostics);
}

std::string readingOf(Xml::ElementReader& reader, Xml::InStream& in, Diagnostics& diagnostics) {
    std::string reading = stateBehind(reader, in);
    if (reader.getRoot() != nullptr) reading += dump(*reader.getRoot()) + "\n";
    return reading + reportsOf(diagnostics);
}

std::string readingOf(Xml::DTDReader& reader, Xml::InStream& in, Diagnostics& diagnostics) {
    std::string reading = stateBehind(reader, in);
    if (reader.getDtd() != nullptr) reading += written(*reader.getDtd());
    return reading + reportsOf(diagnostics);
}

std::string linesOf(Xml::InStream& in, std::size_t size) {
    std::string lines;
    for (std::size_t position = 0; position <= size; ++position) {
        in.setPosition(static_cast<int>(position));
        lines += std::to_string(in.getLine()) + ':' + std::to_string(in.getColumn()) + ' ';
    }
    return lines;
}

std::string differenceBetweenStreams(const std::string& text,
                                     const std::function<std::string(Xml::InStream&)>& reading) {
    WatchedInStream plain(text);
    const std::string expected = reading(plain);
    Xml::StringInStream string(text);
    std::string found = difference("a string", reading(string), expected);

    std::istringstream source(text);
    Xml::FileInStream file(&source);
    const std::string fromFile = reading(file);
    FileLikeInStream like(text);
    found += difference("a file", fromFile, reading(like));
    // The one extra success at the end of a file shows only where the end is met: that is, not in a
    // document that fails before it, nor in one with something behind its root.
    if (!plain.metEnd()) found += difference("a file, and not its end", fromFile, expected);
    return found;
}

}  // namespace support
