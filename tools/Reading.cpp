#include "tools/Reading.h"

#include <algorithm>
#include <optional>
#include <sstream>

#include "VexXml/Readers.h"
#include "VexXml/Streams.h"
#include "tools/Diagnostics.h"
#include "tools/ErrorPrinter.h"
#include "tools/Progress.h"

namespace tools {
namespace {

constexpr const char* kInvalid = "Doc could not be validated";
constexpr const char* kTooManySteps = "limit exceeded: validationSteps";
constexpr const char* kTextBehindRoot = "text behind the root element";

// A text that is read piece by piece, as readers do with files, so that it is known how far they
// have come. They find the same as in a text in memory.
class WatchedInStream : public Xml::StringInStream {
public:
    WatchedInStream(const std::string& text, Progress& progress)
        : Xml::StringInStream(text), mText(text), mProgress(progress) {}

private:
    const Xml::DataHolder* textInMemory() const override { return nullptr; }

    bool readAhead(std::size_t position, std::size_t count, std::string& ahead) override {
        mProgress.show(position);
        ahead.append(mText, std::min(position, mText.size()), count);
        return true;
    }

    const std::string& mText;
    Progress& mProgress;
};

std::unique_ptr<Xml::InStream> streamOver(const std::string& text, Progress& progress) {
    if (progress.isWanted()) return std::make_unique<WatchedInStream>(text, progress);
    return std::make_unique<Xml::StringInStream>(text);
}

struct Failure {
    std::string text;
    int position;
};

// Some failures have no text of their own; then the last report tells the most.
Failure failureOf(const Xml::Reader& reader, const Xml::InStream& in, Diagnostics& diagnostics) {
    std::string text = bareText(reader.getErrorMessage());
    if (text.empty()) text = diagnostics.takeLast();
    if (text.empty()) text = "not well-formed";
    return {text, in.getPosition()};
}

// Misc*, up to the end of the stream
std::optional<Failure> readBehindRoot(Xml::InStream& in, Diagnostics& diagnostics) {
    for (in.eatWhite(); !in.eof(); in.eatWhite()) {
        const int start = in.getPosition();
        std::string token;
        in.getToken(token);
        in.setPosition(start);
        Xml::CommentReader comment;
        Xml::PIReader instruction;
        if (token == "<!--") {
            if (!comment.parse(in)) return failureOf(comment, in, diagnostics);
        } else if (token == "<?") {
            if (!instruction.parse(in)) return failureOf(instruction, in, diagnostics);
        } else {
            return Failure{kTextBehindRoot, start};
        }
    }
    return std::nullopt;
}

// A document reader stops in front of text behind the root element, and succeeds. If that text is
// no whole token, as in `<a/>'x`, it succeeds at the end of the stream, and leaves the same message
// as behind a comment that ends the document. With whatever ends a token put behind the text, it
// stops in front of the text then too.
std::optional<Failure> findTextBehindRoot(const std::string& text, Xml::InStream& in,
                                          const Xml::Reader& reader,
                                          const Xml::ReadLimits& limits) {
    in.eatWhite();
    if (!in.eof()) return Failure{kTextBehindRoot, in.getPosition()};
    if (reader.getErrorMessage().empty()) return std::nullopt;
    Xml::StringInStream ended(text + ";'\"");
    Xml::DocumentReader again;
    again.setLimits(limits);
    again.parse(ended);
    ended.eatWhite();
    if (ended.getPosition() == static_cast<int>(text.size())) return std::nullopt;
    return Failure{kTextBehindRoot, ended.getPosition()};
}

std::optional<Failure> parseDocument(const std::string& text, OwnDtd ownDtd,
                                     const Xml::ReadLimits& limits, Diagnostics& diagnostics,
                                     std::unique_ptr<Xml::Document>& document) {
    Progress progress("parsing", text.size());
    const std::unique_ptr<Xml::InStream> stream = streamOver(text, progress);
    Xml::InStream& in = *stream;
    Xml::DocumentReader reader;
    reader.setLimits(limits);
    const bool isRead = reader.parse(in);
    document.reset(reader.extractDocument());
    if (isRead) return findTextBehindRoot(text, in, reader, limits);
    const Failure failure = failureOf(reader, in, diagnostics);
    const bool isOnlyInvalid = document != nullptr && (failure.text == kInvalid ||
                                                       failure.text.rfind(kTooManySteps, 0) == 0);
    if (!isOnlyInvalid || ownDtd == OwnDtd::Obeyed) return failure;
    return readBehindRoot(in, diagnostics);
}

}  // namespace

DocumentReading readDocument(const std::string& name, const Xml::ReadLimits& limits,
                             OwnDtd ownDtd) {
    DocumentReading reading;
    if (!readSource(name, limits.totalBytes, reading.source)) {
        reading.status = Trouble;
        return reading;
    }
    Diagnostics diagnostics;
    const std::optional<Failure> failure =
        parseDocument(reading.source.text, ownDtd, limits, diagnostics, reading.document);
    diagnostics.printAsWarnings(name);
    if (!failure) return reading;
    printError(reading.source, static_cast<std::size_t>(failure->position), failure->text);
    reading.status = BadDocument;
    return reading;
}

DtdReading readDtd(const std::string& name, const Xml::ReadLimits& limits) {
    Source source;
    if (!readSource(name, limits.totalBytes, source)) return {Trouble, nullptr};
    Diagnostics diagnostics;
    Xml::StringInStream in(source.text);
    Xml::DTDReader reader("");
    reader.setLimits(limits);
    std::optional<Failure> failure;
    if (!reader.parse(in)) failure = failureOf(reader, in, diagnostics);
    diagnostics.printAsWarnings(name);
    if (!failure) return {Success, std::unique_ptr<Xml::Dtd>(reader.extractDtd())};
    printError(source, static_cast<std::size_t>(failure->position), failure->text);
    return {BadDocument, nullptr};
}

std::string bareText(const std::string& message) {
    const std::size_t placeEnd = message.find(") ");
    const std::size_t classStart = message.rfind(" <");
    if (placeEnd == std::string::npos || classStart < placeEnd + 2) return message;
    return message.substr(placeEnd + 2, classStart - placeEnd - 2);
}

std::string textOf(Xml::Object& node) {
    std::ostringstream text;
    Xml::FileOutStream out(&text);
    node.toStream(out);
    return text.str();
}

}  // namespace tools
