#include <gtest/gtest.h>

#include <fstream>
#include <functional>
#include <memory>
#include <sstream>
#include <string>
#include <utility>

#include "VexSys/FileIO.h"
#include "VexXml/Readers.h"
#include "VexXml/XPath.h"
#include "faults/Documents.h"
#include "faults/EachAllocation.h"
#include "faults/Quiet.h"
#include "support/Dump.h"
#include "support/TempFolder.h"

namespace {

using faults::expectNoMemoryNeeded;

const char* const kLong = "a text that is too long to lie in its holder";

std::unique_ptr<Xml::Document> readBook() {
    Xml::StringInStream in(faults::kBook);
    Xml::DocumentReader reader;
    reader.parse(in);
    return std::unique_ptr<Xml::Document>(reader.extractDocument());
}

/// Moves in each way between two that hold something, and frees what is left.
template <class Movable>
void expectMoves(Movable one, Movable other) {
    expectNoMemoryNeeded([&] {
        Movable moved(std::move(one));
        other = std::move(moved);
        one = std::move(other);
        const Movable last(std::move(one));
    });
}

TEST(Moving, OfTextsNeedsNoMemory) {
    expectMoves(Xml::DataHolder(kLong), Xml::DataHolder("short"));
    expectMoves(Xml::Entity("an-entity-of-some-length"), Xml::Entity("e"));
}

TEST(Moving, OfNodesNeedsNoMemory) {
    const std::unique_ptr<Xml::Document> book = readBook();
    expectMoves(Xml::CharData(kLong), Xml::CharData("short"));
    expectMoves(Xml::Element(*book->getRoot()), Xml::Element("other", kLong));
    expectMoves(Xml::Document(*book), Xml::Document(new Xml::Element("other", kLong)));
    expectMoves(Xml::Dtd(*book->getDtd()), Xml::Dtd("other"));
}

TEST(Moving, OfNodesIntoTheirPlacesNeedsNoMemory) {
    const std::unique_ptr<Xml::Document> book = readBook();
    Xml::Element& chapter = *book->find("chapter");
    Xml::Element content("chapter", kLong);
    content.addElement("em", "more")->addElement("em", "and more");
    expectNoMemoryNeeded([&] { chapter = std::move(content); });
    EXPECT_EQ(support::dump(chapter),
              std::string("chapter(\"") + kLong + "\" em(\"more\" em(\"and more\")))");
}

/// What is below it is not known to be written along with it.
class OwnElement : public Xml::Element {
public:
    using Element::Element;
    using Element::operator=;
};

TEST(Moving, OfContentIntoAnElementOfAnotherClassNeedsNoMemory) {
    OwnElement own("own");
    Xml::Element content("content");
    content.addElement("a", "1")->addElement("b", "2")->addElement("c", "3");
    content.addElement("d", "4")->addElement("e", "5");
    expectNoMemoryNeeded([&] { own = std::move(content); });
    EXPECT_EQ(support::dump(own), "content(a(\"1\" b(\"2\" c(\"3\"))) d(\"4\" e(\"5\")))");
}

TEST(Moving, OfModelsNeedsNoMemory) {
    Xml::Dtd dtd("a");
    Xml::SeqSpec sequence(&dtd);
    sequence.add("a-name-of-some-length", Xml::RepOnce);
    sequence.add(new Xml::ChildrenSpec(&dtd, new Xml::SeqSpec(sequence), Xml::RepOnce));
    Xml::ChoiceSpec choice(&dtd);
    choice.addChoice(new Xml::ChildrenSpec(&dtd, new Xml::SeqSpec(sequence), Xml::RepOnce));
    choice.addChoice("b", Xml::RepOnce);
    Xml::MixedSpec mixed(&dtd);
    mixed.addName("a-name-of-some-length");
    expectMoves(sequence, sequence);
    expectMoves(choice, choice);
    expectMoves(mixed, mixed);
    expectMoves(Xml::NameSpec(&dtd, "a-name-of-some-length"), Xml::NameSpec(&dtd, "b"));
    expectMoves(Xml::ChildrenSpec(&dtd, new Xml::SeqSpec(sequence), Xml::RepOnce),
                Xml::ChildrenSpec(&dtd, new Xml::ChoiceSpec(choice), Xml::RepOnce));
}

template <class Stream>
void readALittle(Stream& in) {
    std::string token;
    for (int i = 0; i < 30; ++i) in.getToken(token);
}

TEST(Moving, OfStreamsNeedsNoMemory) {
    const support::TempFolder folder;
    const std::string path = folder.write("book.xml", faults::kBook);
    Xml::StringInStream text(faults::kBook);
    readALittle(text);
    expectMoves(text, text);
    std::ifstream file;
    Xml::FileInStream fromFile(path, &file);
    readALittle(fromFile);
    expectMoves(fromFile, fromFile);
    const VexSys::FileSpec spec(path);
    expectMoves(Xml::FileSpecInStream(spec), Xml::FileSpecInStream(spec));
    std::ostringstream string;
    expectMoves(Xml::FileOutStream(&string), Xml::FileOutStream(&string));
    const VexSys::FileSpec target(folder.path("out"));
    expectMoves(Xml::FileSpecOutStream(target), Xml::FileSpecOutStream(target));
}

template <class Reader>
void expectMovesOf(const std::string& text, Reader reader) {
    Xml::StringInStream in(text);
    reader.parse(in);
    expectMoves(reader, reader);
}

TEST(Moving, OfReadersNeedsNoMemory) {
    const faults::Quiet quiet;
    Xml::Dtd dtd("a");
    expectMovesOf(faults::kBook, Xml::DocumentReader());
    expectMovesOf("<a>" + std::string(kLong) + "</b>", Xml::ElementReader(nullptr));
    expectMovesOf("<!ELEMENT a (b, (c | d)+)><!ENTITY e 'some value'>", Xml::DTDReader("a"));
    expectMovesOf("<!DOCTYPE a [<!ELEMENT a (b, (c | d)+)>]>", Xml::DoctypeReader());
    expectMovesOf("(b, (c | d)+)", Xml::ChildrenSpecReader(&dtd));
    expectMovesOf("(#PCDATA | b)*", Xml::MixedSpecReader(&dtd));
    expectMovesOf("<!-- never ended", Xml::CommentReader());
}

TEST(Moving, OfQueriesNeedsNoMemory) {
    const std::unique_ptr<Xml::Document> book = readBook();
    Xml::XPath query(book.get());
    query.GetValues("//em[1]");
    Xml::XPath failed(book.get());
    failed.GetValues("a-name-that-is-long-enough[");
    expectMoves(query, failed);
}

/// So many levels that freeing them on the call stack would not do.
TEST(Freeing, OfADeepModelNeedsNoMemory) {
    constexpr int kLevels = 50000;
    Xml::Dtd dtd("a");
    auto model = std::make_unique<Xml::ChildrenSpec>(&dtd, "a", Xml::RepOnce);
    for (int level = 0; level < kLevels; ++level) {
        auto* sequence = new Xml::SeqSpec(&dtd);
        sequence->add("b", Xml::RepOnce);
        sequence->add(model.release());
        sequence->add("c", Xml::RepOnce);
        model = std::make_unique<Xml::ChildrenSpec>(&dtd, sequence, Xml::RepOnce);
    }
    const long before = faults::liveBlocks();
    expectNoMemoryNeeded([&] { model.reset(); });
    EXPECT_LT(faults::liveBlocks(), before - long{kLevels} * 4);
}

}  // namespace
