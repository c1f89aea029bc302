#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <sstream>
#include <string>

#include "VexSys/FileIO.h"
#include "VexXml/Readers.h"
#include "faults/FailingCalls.h"
#include "support/Dump.h"
#include "support/TempFolder.h"

namespace {

/// Longer than what is read or written at once.
std::string longDocument(std::size_t size) {
    std::string text = "<?xml version='1.0'?>\n<!-- \r\n -->\n<a>";
    while (text.size() < size) text += "<b x='1'>text &amp; more\r\n</b><c/><!-- no -->\n";
    return text + "</a>\n<!-- behind -->\n";
}

std::unique_ptr<Xml::Document> read(Xml::InStream& in, std::string& error) {
    Xml::DocumentReader reader;
    const bool isRead = reader.parse(in);
    error = reader.getErrorMessage();
    return std::unique_ptr<Xml::Document>(isRead ? reader.extractDocument() : nullptr);
}

std::string fromFile(const std::string& path) {
    std::string error;
    std::ifstream file;
    Xml::FileInStream in(path, &file);
    const auto document = read(in, error);
    return document != nullptr ? support::dump(*document) : "error: " + error;
}

std::string fromFileSpec(const std::string& path) {
    std::string error;
    Xml::FileSpecInStream in((VexSys::FileSpec(path)));
    const auto document = read(in, error);
    return document != nullptr ? support::dump(*document) : "error: " + error;
}

/// Lets each call of the system fail in turn: either what is read is right all the same, or reading
/// fails and says so.
void expectNoPartTakenForAll(const std::string& path, std::string (*readFrom)(const std::string&)) {
    const std::string expected = readFrom(path);
    bool hasFailed = true;
    int failures = 0;
    for (long count = 0; hasFailed; ++count) {
        SCOPED_TRACE("call " + std::to_string(count) + " fails");
        std::string found;
        {
            const faults::FailingCalls calls(count, hasFailed);
            found = readFrom(path);
        }
        if (found == expected) continue;
        EXPECT_EQ(found.substr(0, 7), "error: ");
        ++failures;
    }
    EXPECT_GT(failures, 0);
}

TEST(FailingReads, OfAFileAreNeverTakenForItsEnd) {
    const support::TempFolder folder;
    expectNoPartTakenForAll(folder.write("a.xml", longDocument(30000)), fromFile);
}

TEST(FailingReads, OfAFileOfTheFileLayerAreNeverTakenForItsEnd) {
    const support::TempFolder folder;
    expectNoPartTakenForAll(folder.write("a.xml", longDocument(200000)), fromFileSpec);
}

TEST(FailingReads, OfAnExternalSubsetAreNeverTakenForItsEnd) {
    const support::TempFolder folder;
    const std::string blanks(5000, '\n');
    const std::string declarations =
        "<!ELEMENT e0 (#PCDATA)>" + blanks + "<!ELEMENT e1 (#PCDATA)>" + blanks;
    const std::string dtd = folder.write("a.dtd", declarations);
    expectNoPartTakenForAll(folder.write("a.xml", "<!DOCTYPE e0 SYSTEM \"" + dtd + "\"><e0/>"),
                            fromFile);
}

TEST(ShrinkingFiles, AreNotTakenForWholeOnes) {
    const support::TempFolder folder;
    const std::string path = folder.write("a.xml", longDocument(200000));
    std::ifstream file;
    Xml::FileInStream fromFile(path, &file);
    Xml::FileSpecInStream fromFileSpec((VexSys::FileSpec(path)));
    std::filesystem::resize_file(path, 150000);
    std::string error;
    EXPECT_EQ(read(fromFile, error), nullptr);
    EXPECT_NE(error.find("Unexpected end of stream"), std::string::npos) << error;
    EXPECT_EQ(read(fromFileSpec, error), nullptr);
}

std::string contentOf(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

std::unique_ptr<Xml::Document> makeDocument(std::size_t size) {
    Xml::StringInStream in(longDocument(size));
    Xml::DocumentReader reader;
    reader.parse(in);
    return std::unique_ptr<Xml::Document>(reader.extractDocument());
}

bool toFile(Xml::Document& document, const std::string& path) {
    std::ofstream file;
    {
        Xml::FileOutStream out(path, &file);
        document.toStream(out);
    }
    return file.good();
}

bool toFileSpec(Xml::Document& document, const std::string& path) {
    const VexSys::FileSpec spec(path);
    VexSys::FileSpecFunctions::CreateFile(spec, 0x54455854);
    VexSys::FileIO file(spec);
    file.Open(VexSys::kFileWrite);
    Xml::FileSpecOutStream out(file);
    document.toStream(out);
    return file.Close();
}

/// Lets each call of the system fail in turn: writing succeeds only if all is written.
void expectFailuresTold(Xml::Document& document,
                        bool (*writeTo)(Xml::Document&, const std::string&)) {
    const support::TempFolder folder;
    const std::string path = folder.path("out.xml");
    ASSERT_TRUE(writeTo(document, path));
    const std::string expected = contentOf(path);
    bool hasFailed = true;
    for (long count = 0; hasFailed; ++count) {
        SCOPED_TRACE("call " + std::to_string(count) + " fails");
        bool isWritten = false;
        {
            const faults::FailingCalls calls(count, hasFailed);
            isWritten = writeTo(document, path);
        }
        EXPECT_TRUE(isWritten || hasFailed);
        EXPECT_TRUE(!isWritten || contentOf(path) == expected);
    }
}

TEST(FailingWrites, OfAFileShowInTheStandardStream) {
    expectFailuresTold(*makeDocument(60000), toFile);
}

TEST(FailingWrites, OfAFileOfTheFileLayerShowInTheFile) {
    expectFailuresTold(*makeDocument(200000), toFileSpec);
}

}  // namespace
