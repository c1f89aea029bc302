#include <gtest/gtest.h>

#include <cctype>
#include <memory>
#include <random>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "VexXml/Dom.h"
#include "VexXml/Dtd.h"
#include "VexXml/Streams.h"
#include "dom/Build.h"
#include "dom/Sinks.h"
#include "support/Diagnostics.h"
#include "support/LogStream.h"

namespace {

using support::element;
using support::Sink;
using support::text;
using Tree = std::unique_ptr<Xml::Element>;

/// What a file stream is said to do, by a class that a caller might have written.
class PutByPut : public Xml::OutStream {
public:
    explicit PutByPut(std::ostream* stream) : mStream(stream) {}

    void putChar(char c) override { mStream->put(c); }
    int getPosition() const override { return static_cast<int>(mStream->tellp()); }
    void setPosition(int position) override { mStream->seekp(position); }

private:
    std::ostream* mStream;
};

/// What can be seen of a sink at one moment.
std::string stateOf(Sink& sink) {
    return "state " + std::to_string(sink.stream().rdstate()) + ", seen \"" + sink.seen() + "\"\n";
}

/// Elements and other nodes of a caller, which tell what can be seen of the sink while they write.
struct Watch {
    Sink* sink = nullptr;
    std::string* record = nullptr;

    void look() const {
        if (sink != nullptr) *record += "meanwhile: " + stateOf(*sink);
    }
};

Watch watch;

class WatchingElement : public Xml::Element {
public:
    using Element::Element;

protected:
    void write(Xml::OutStream& out) const override {
        watch.look();
        out << "[\n";
        Element::write(out);
        out << ']';
    }
};

class WatchingNode : public Xml::Object {
public:
    explicit WatchingNode(bool isText) : mIsText(isText) {}

    Object* clone() const override { return new WatchingNode(mIsText); }
    const std::string& toString() const override { return mText; }
    bool isCharData() const override { return mIsText; }

protected:
    void write(Xml::OutStream& out) const override {
        watch.look();
        out << "<!--";
        out.incTab();
        out.setPosition(out.getPosition());
        out << "\nx";
        out.decTab();
        out.writeDataHolder("\n-->");
    }

private:
    bool mIsText;
    std::string mText;
};

/// A tree made and written by chance, and a record of all that can be seen meanwhile.
class Performance {
public:
    Performance(unsigned seed, Sink& sink, Xml::OutStream& out)
        : mRandom(seed), mSink(sink), mOut(out) {
        watch = {&sink, &mRecord};
    }
    ~Performance() { watch = {}; }
    Performance(const Performance&) = delete;
    Performance& operator=(const Performance&) = delete;

    std::string record() {
        grow();
        for (int round = 0; round < 4; ++round) {
            arrange();
            attempt(&Performance::write);
            attempt(&Performance::probe);
            change();
        }
        mSink.stream().exceptions(std::ios::goodbit);
        mSink.stream().flush();
        mRecord += "flushed: " + stateOf(mSink);
        return mRecord;
    }

private:
    int below(int limit) { return std::uniform_int_distribution<int>(0, limit - 1)(mRandom); }
    Xml::Element& anyElement() {
        return *mElements[static_cast<std::size_t>(below(static_cast<int>(mElements.size())))];
    }

    std::string anyName() {
        return std::string(below(6) == 0 ? 17 : 1, static_cast<char>('a' + below(26)));
    }
    std::string anyText() {
        static const std::string kPieces[] = {"a",        "some words ",
                                              "&",        "<",
                                              ">",        "\"",
                                              "'",        "\n",
                                              "\r\n",     std::string(1, '\0'),
                                              "\xC3\xA9", std::string(90, '-')};
        std::string text;
        for (int i = below(5); i > 0; --i) text += kPieces[below(12)];
        return text;
    }
    Xml::Object* anyLeaf() {
        switch (below(10)) {
            case 0:
                return new WatchingNode(below(2) == 0);
            case 1:
                return new Xml::CharData(Xml::Entity("e"));
            default:
                return new Xml::CharData(Xml::DataHolder(anyText()));
        }
    }

    void grow() {
        mDocument = std::make_unique<Xml::Document>(new Xml::Element("top"),
                                                    below(2) == 0 ? new Xml::Dtd("d") : nullptr);
        mElements.push_back(mDocument->getRoot());
        for (int i = below(25); i > 0; --i) {
            auto* made =
                below(12) == 0 ? new WatchingElement(anyName()) : new Xml::Element(anyName());
            anyElement().addChild(made);
            mElements.push_back(made);
            for (int k = below(3); k > 0; --k) made->setAttribute(anyName(), anyText());
            if (below(2) == 0) made->addChild(anyLeaf());
            if (below(8) == 0) made->setAttribute("no\nname", anyText());
        }
    }

    void arrange() {
        Xml::Object::setRWOptimization(below(3) != 0);
        Xml::Element::setShortNotationForEmptyTags(below(3) != 0);
        for (; below(3) == 0; ++mLevel) mOut.incTab();
        for (; mLevel > 0 && below(3) == 0; --mLevel) mOut.decTab();
        attempt(&Performance::move);
    }
    void move() {
        if (below(2) == 0) mOut.setPosition(below(20));
        mOut << (below(2) == 0 ? "." : "\n");
    }
    void write() {
        mTarget = below(2) == 0 ? static_cast<Xml::Object*>(mDocument.get()) : &anyElement();
        mStart = mOut.getPosition();
        mTarget->toStream(mOut);
        mRecord += stateOf(mSink);  // before the question, which may flush
        mRecord += "ends at " + std::to_string(mOut.getPosition()) + ", ";
    }

    // Which nodes are known to stand where: the document is written once more to where it was
    // written, again and again, while more and more of the elements count as changed.
    void probe() {
        const Watch watched = std::exchange(watch, {});
        const bool before = Xml::Object::setRWOptimization(true);
        for (Xml::Element* element : mElements) {
            support::LogStream log(mStart - 1);
            log << '.';
            for (int i = 0; i < mLevel; ++i) log.incTab();
            mTarget->toStream(log);
            mRecord += "again: " + log.log() + '\n';
            element->touch();
        }
        Xml::Object::setRWOptimization(before);
        watch = watched;
    }

    void change() {
        for (int i = below(3); i > 0; --i) anyElement().setAttribute(anyName(), anyText());
        for (int i = below(2); i > 0; --i) anyElement().addChild(anyLeaf());
    }

    void attempt(void (Performance::*act)()) {
        try {
            (this->*act)();
        } catch (const std::exception& caught) {
            mRecord += std::string("thrown: ") + caught.what() + ", ";
        }
        mRecord += stateOf(mSink);
    }

    std::mt19937 mRandom;
    Sink& mSink;
    Xml::OutStream& mOut;
    int mLevel = 0;
    int mStart = 0;
    Xml::Object* mTarget = nullptr;
    std::unique_ptr<Xml::Document> mDocument;
    std::vector<Xml::Element*> mElements;
    std::string mRecord;
    support::Diagnostics mDiagnostics;
    const support::OptimizedRewriting mPutsBackOptimization;
    const support::ShortNotation mPutsBackNotation{true};
};

std::string recordOfMany(Sink& sink, Xml::OutStream& out) {
    const Tree top(element("top"));
    for (int i = 0; i < 300; ++i) {
        auto* child = element("child", {text(std::string(static_cast<std::size_t>(i), 'x'))});
        child->setAttribute("n", "<");
        top->addChild(child);
    }
    std::string record;
    try {
        top->toStream(out);
    } catch (const std::exception& caught) {
        record = caught.what();
    }
    record += stateOf(sink);
    const support::OptimizedRewriting on;
    top->touch();
    return record + support::writeAt(0, *top);
}

TEST(Writing, DoesToStandardStreamsWhatPuttingEachByteDoes) {
    for (std::size_t kind = 0; kind < support::kSinkKindCount; ++kind) {
        SCOPED_TRACE(support::kSinkKinds[kind].what);
        for (unsigned seed = 0; seed < 40; ++seed) {
            SCOPED_TRACE(seed);
            const auto sink = support::kSinkKinds[kind].make();
            const auto other = support::kSinkKinds[kind].make();
            Xml::FileOutStream file(&sink->stream());
            PutByPut putByPut(&other->stream());
            const std::string expected = Performance(seed, *other, putByPut).record();
            ASSERT_EQ(Performance(seed, *sink, file).record(), expected);
        }
    }
}

// Longer than the usual buffer, but not than what a pipe holds.
TEST(Writing, DoesToFilesWhatPuttingEachByteDoesAlsoInLongTexts) {
    for (std::size_t kind = 0; kind < support::kSinkKindCount; ++kind) {
        SCOPED_TRACE(support::kSinkKinds[kind].what);
        const auto sink = support::kSinkKinds[kind].make();
        const auto other = support::kSinkKinds[kind].make();
        Xml::FileOutStream file(&sink->stream());
        PutByPut putByPut(&other->stream());
        const std::string expected = recordOfMany(*other, putByPut);
        EXPECT_EQ(recordOfMany(*sink, file), expected);
    }
}

/// Some 700,000 bytes; every so many elements there is a node of a caller's own, if at all.
Tree longTree(int nodeDistance) {
    Tree top(element("top"));
    for (int i = 0; i < 7000; ++i) {
        top->addChild(element("child", {text(std::string(80, 'x'))}));
        if (nodeDistance > 0 && i % nodeDistance == 0) top->addChild(new WatchingNode(false));
    }
    return top;
}

// Some of the text is read before, the rest behind it.
std::string recordOfLongText(std::stringstream& stream, Xml::OutStream& out, const Tree& tree) {
    std::string read(3, '.');
    stream.read(read.data(), 3);
    stream.clear();
    tree->toStream(out);
    const auto readPosition = static_cast<std::streamoff>(stream.tellg());
    std::string record = read + std::to_string(readPosition);
    record += ' ' + std::to_string(static_cast<std::streamoff>(stream.tellp()));
    out << "\nend";
    record += ' ' + std::to_string(out.getPosition()) + stream.str();
    std::getline(stream, read);
    out.setPosition(100);
    tree->toStream(out);
    return record + read + stream.str();
}

struct LongTextCase {
    const char* what;
    std::size_t before;
    std::ios::openmode mode;
    int nodeDistance;
};

TEST(Writing, DoesToStringStreamsWhatPuttingEachByteDoesAlsoInLongTexts) {
    constexpr auto kBoth = std::ios::in | std::ios::out;
    const LongTextCase cases[] = {
        {"an empty stream", 0, kBoth, 0},
        {"a short text to be written over", 100, kBoth, 0},
        {"a long text to be written over", 300000, kBoth, 0},
        {"behind a short text", 100, kBoth | std::ios::app, 0},
        {"behind a long text", 300000, kBoth | std::ios::ate, 0},
        {"a stream that is only written to", 0, std::ios::out, 0},
        {"a stream that is seldom released", 0, kBoth, 3000},
        {"a stream that is often released", 0, kBoth, 50},
    };
    for (const LongTextCase& test : cases) {
        SCOPED_TRACE(test.what);
        const Tree tree = longTree(test.nodeDistance);
        std::stringstream stream(std::string(test.before, '-'), test.mode);
        std::stringstream other(std::string(test.before, '-'), test.mode);
        Xml::FileOutStream file(&stream);
        PutByPut putByPut(&other);
        const std::string expected = recordOfLongText(other, putByPut, tree);
        EXPECT_TRUE(recordOfLongText(stream, file, tree) == expected);
    }
}

TEST(Writing, WritesValuesOfAnyLengthWithASpecialByteAnywhere) {
    const Tree tree(element("top"));
    for (std::size_t size = 0; size < 40; ++size) {
        for (std::size_t place = 0; place < size; ++place) {
            for (const char special : std::string("&<>\"'\n#=%;\v\x8A\xA2\xBC")) {
                std::string value(size, 'x');
                value[place] = special;
                auto* child = element(std::string(size, 'n'));
                child->setAttribute("a", value);
                tree->addChild(child);
            }
        }
    }
    std::ostringstream stream;
    std::ostringstream other;
    Xml::FileOutStream file(&stream);
    PutByPut putByPut(&other);
    tree->toStream(file);
    tree->toStream(putByPut);
    EXPECT_TRUE(stream.str() == other.str());
}

/// A stream of a caller, derived from one that need not be asked byte by byte.
class Shouting : public Xml::FileOutStream {
public:
    using FileOutStream::FileOutStream;

    void putChar(char c) override {
        FileOutStream::putChar(static_cast<char>(std::toupper(static_cast<unsigned char>(c))));
    }
};

TEST(Writing, LeavesBytesToAClassDerivedFromAFileStream) {
    const Tree top(element("a", {text("x"), element("b")}));
    std::ostringstream stream;
    Shouting out(&stream);
    top->toStream(out);
    EXPECT_EQ(stream.str(), "<A>X<B/></A>");
}

/// Keeps a record of each byte, and a "?" for each question for the position.
class Questioned : public support::LogStream {
public:
    int getPosition() const override {
        mQuestions.push_back(log().size());
        return LogStream::getPosition();
    }

    std::string record() const {
        std::string record = log();
        for (auto place = mQuestions.rbegin(); place != mQuestions.rend(); ++place) {
            record.insert(*place, "?");
        }
        return record;
    }

private:
    mutable std::vector<std::size_t> mQuestions;
};

TEST(Writing, AsksAStreamForItsPositionAtBothEndsOfANodeAndNowhereElse) {
    const Tree top(element("a", {element("b", {text("x")}), element("c")}));
    top->setAttribute("k", "<\n>");
    const support::OptimizedRewriting on;
    for (const char* expected :
         {"?<a k=\"&lt;\n&gt;\">\n?\t<b>?x?</b>?\n?\t<c/>?\n</a>?", "?[to 38]"}) {
        Questioned out;
        top->toStream(out);
        EXPECT_EQ(out.record(), expected);
    }
}

}  // namespace
