#include <gtest/gtest.h>

#include <string>

#include "VexSys/FileIO.h"
#include "VexXml/VexXml.h"

namespace {

using VexSys::contentsOf;
using VexSys::FileSpec;
using VexSys::UTF8ToUni16Char;

TEST(Product, WritesAndReadsItsOwnFiles) {
    {
        Xml::FileSpecOutStream out(FileSpec("doc"));
        ASSERT_TRUE(out.isValid());
        out << "<r>texx</r>";
        out.setPosition(6);
        out << "t";
        EXPECT_EQ(out.getPosition(), 7);
    }
    EXPECT_EQ(contentsOf("doc"), "<r>text</r>");
    EXPECT_EQ(VexSys::typeOf("doc"), 0x54455854U);

    Xml::FileSpecInStream in(FileSpec("doc"));
    Xml::ElementReader reader(nullptr);
    EXPECT_TRUE(reader.parse(in));
    EXPECT_EQ(in.getPosition(), 11);
    EXPECT_TRUE(in.eof());
}

TEST(Product, ReadsNothingFromAFileThatCannotBeOpened) {
    Xml::FileSpecInStream in(FileSpec("missing"));
    char c = 0;
    EXPECT_FALSE(in.getChar(c));
    EXPECT_EQ(in.getPosition(), -1);
    EXPECT_FALSE(Xml::FileSpecOutStream(FileSpec("")).isValid());
}

TEST(Product, ComesToTheEndOfAFileThatShrinks) {
    contentsOf("doc") = "abcdef";
    Xml::FileSpecInStream in(FileSpec("doc"));
    contentsOf("doc") = "abc";
    std::string token;
    EXPECT_TRUE(in.getToken(token));
    EXPECT_EQ(token, "abc");
    EXPECT_TRUE(in.eof());
}

TEST(Product, GetsItsFileObjectsBack) {
    contentsOf("doc") = "abc";
    {
        Xml::FileSpecInStream in(FileSpec("doc"));
        Xml::FileSpecInStream copy(in);
        Xml::FileSpecOutStream out(FileSpec("other"));
        const Xml::FileSpecInStream missing(FileSpec("missing"));
        EXPECT_EQ(VexSys::livingFiles(), 2);
        char c = 0;
        EXPECT_TRUE(copy.getChar(c));
    }
    EXPECT_EQ(VexSys::livingFiles(), 0);
}

TEST(Product, QueriesInItsOwnText) {
    const std::string name = "\xC3\xA4\xF0\x9F\x98\x80";
    Xml::Document document(new Xml::Element("r"));
    document.getRoot()->setAttribute("name", name);
    Xml::XPath query(&document);
    EXPECT_EQ(query.GetValue(UTF8ToUni16Char("/r[@name = '" + name + "']/@name")),
              UTF8ToUni16Char(name));
    EXPECT_EQ(query.GetValueUTF8("//@name[position() = 1]"), name);
    EXPECT_EQ(query.GetValueUTF8("/r/@name < 'b'"), "0");
    EXPECT_EQ(query.GetValueUTF8("/r/@name + 1.5"), "1.500000");
}

TEST(Product, NamesErrorsOfQueriesInItsOwnWords) {
    Xml::Document document(new Xml::Element("r"));
    Xml::XPath query(&document);
    EXPECT_EQ(query.GetValues("/s"), 0U);
    EXPECT_EQ(query.GetErrorString(), UTF8ToUni16Char("<XPath> xpat/xerr/NODE NOT FOUND --> s"));
    EXPECT_FALSE(query.SyntaxOK("/s/"));
    EXPECT_EQ(query.GetErrorStringUTF8(), "<XPath> xpat/xerr/SLASH AT END NOT ALLOWED --> s/");
}

}  // namespace
