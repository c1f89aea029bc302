#include <gtest/gtest.h>

#include <fstream>
#include <memory>
#include <sstream>
#include <string>

#include "VexXml/Readers.h"
#include "faults/Documents.h"
#include "faults/EachAllocation.h"
#include "faults/Quiet.h"
#include "support/Dump.h"
#include "support/PlainInStream.h"
#include "support/TempFolder.h"

namespace {

using faults::failEachAllocation;

/// What a reader leaves: an error text and a document.
std::string textOf(const std::string& error, Xml::Document* document) {
    return error + "\n" + (document != nullptr ? support::dump(*document) : "no document");
}

/// Reads a document from what `Source` makes of a string.
template <class Source>
struct Reading {
    explicit Reading(const std::string& string) : text(string) {}
    void run() {
        Source source(text);
        Xml::DocumentReader reader;
        reader.parse(source.in);
        document.reset(reader.extractDocument());
        error = reader.getErrorMessage();
    }
    std::string result() const { return textOf(error, document.get()); }

    std::string text;
    std::unique_ptr<Xml::Document> document;
    std::string error;
};

template <class Stream>
struct Text {
    explicit Text(const std::string& text) : in(text) {}
    Stream in;
};

struct File {
    explicit File(const std::string& path) : in(path, &file) {}
    std::ifstream file;
    Xml::FileInStream in;
};

using FromMemory = Reading<Text<Xml::StringInStream>>;
using FromFile = Reading<File>;
using FromBareStream = Reading<Text<support::PlainInStream>>;

class FailingMemoryInReading : public testing::Test {
protected:
    faults::Quiet mQuiet;
};

TEST_F(FailingMemoryInReading, OfATextLeavesNothingBehind) {
    failEachAllocation<FromMemory>(faults::kBook);
}

TEST_F(FailingMemoryInReading, OfAFileLeavesNothingBehind) {
    const support::TempFolder folder;
    failEachAllocation<FromFile>(folder.write("book.xml", faults::kBook));
}

TEST_F(FailingMemoryInReading, OfAStreamOfACallersOwnLeavesNothingBehind) {
    failEachAllocation<FromBareStream>(faults::kBook);
}

TEST_F(FailingMemoryInReading, OfManyAttributesLeavesNothingBehind) {
    failEachAllocation<FromMemory>(faults::manyAttributes());
}

TEST_F(FailingMemoryInReading, OfWhatIsWrongLeavesNothingBehind) {
    for (const std::string wrong : {
             "<a><b></a>",
             "<a x='1' x='&#x41;&unknown;' y z='1'/>",
             "<a><b/><!-- never ended",
             "<a><b><c/>text<![CDATA[ never ended",
             "<!DOCTYPE a [<!ELEMENT a (b, (c | d)+, (e))> <!ELEMENT a EMPTY>]><a/>",
             "<!DOCTYPE a [<!ELEMENT a (b, (c | d]><a/>",
             "<!DOCTYPE a [<!ELEMENT a (#PCDATA | b | b)*><!ATTLIST a x CDATA 'a' x CDATA 'b' ",
             "<!DOCTYPE a [<!ENTITY e 'a' <a/>",
         }) {
        SCOPED_TRACE(wrong);
        failEachAllocation<FromMemory>(wrong);
        failEachAllocation<FromBareStream>(wrong);
    }
}

}  // namespace
