#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <memory>
#include <new>
#include <sstream>
#include <string>

#include "VexXml/Readers.h"
#include "faults/Documents.h"
#include "faults/EachAllocation.h"
#include "support/TempFolder.h"

namespace {

using faults::failEachAllocation;

std::unique_ptr<Xml::Document> read(const std::string& text) {
    Xml::StringInStream in(text);
    Xml::DocumentReader reader;
    reader.parse(in);
    return std::unique_ptr<Xml::Document>(reader.extractDocument());
}

/// So long that a string stream is not given it piece by piece.
std::string longDocument() {
    std::string text = "<a>";
    for (int i = 0; i < 3; ++i) {
        text += "<b><c x='1'>" + std::string(200000, 'x') + "</c><d>yes</d></b>";
    }
    return text + "</a>";
}

// Standard streams keep what goes wrong to themselves; whoever writes to them asks.
void expectToHaveWritten(const std::ostream& stream) {
    if (!stream.good()) throw std::bad_alloc();
}

struct ToString {
    explicit ToString(const std::string& text) : document(read(text)) {}
    void run() {
        std::ostringstream stream;
        Xml::FileOutStream out(&stream);
        document->toStream(out);
        expectToHaveWritten(stream);
        written = stream.str();
    }
    std::string result() const { return written; }

    std::unique_ptr<Xml::Document> document;
    std::string written;
};

struct ToFile {
    ToFile(const std::string& text, const std::string& name) : path(name), document(read(text)) {}
    void run() {
        std::ofstream file;
        {
            Xml::FileOutStream out(path, &file);
            document->toStream(out);
        }
        expectToHaveWritten(file);
    }
    std::string result() const {
        std::ifstream file(path, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }

    std::string path;
    std::unique_ptr<Xml::Document> document;
};

/// A sink of a caller's own, whose memory fails as well, and which is written to again.
class OwnSink : public Xml::OutStream {
public:
    void putChar(char c) override { mText += c; }
    int getPosition() const override { return static_cast<int>(mText.size()); }
    void setPosition(int) override {}

    std::string take() { return std::exchange(mText, {}); }

private:
    std::string mText;
};

struct ToOwnSink {
    explicit ToOwnSink(const std::string& text) : document(read(text)) {}
    void run() {
        sink.take();
        document->toStream(sink);
    }
    std::string result() { return sink.take(); }

    std::unique_ptr<Xml::Document> document;
    OwnSink sink;
};

TEST(FailingMemoryInWriting, ToAStringStreamIsToldByItsState) {
    failEachAllocation<ToString>(std::string(faults::kBook));
}

TEST(FailingMemoryInWriting, OfALongTextToAStringStreamIsToldByItsState) {
    failEachAllocation<ToString>(longDocument());
}

TEST(FailingMemoryInWriting, ToAFileIsToldByItsState) {
    const support::TempFolder folder;
    failEachAllocation<ToFile>(std::string(faults::kBook), folder.path("out.xml"));
}

TEST(FailingMemoryInWriting, LeavesASinkIndentedAsBefore) {
    failEachAllocation<ToOwnSink>(std::string(faults::kBook));
}

}  // namespace
