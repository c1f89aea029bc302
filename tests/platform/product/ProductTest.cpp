#include <gtest/gtest.h>

#include <string>

#include "VexSys/FileIO.h"
#include "VexXml/VexXml.h"

namespace {

using VexSys::contentsOf;
using VexSys::FileSpec;

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

}  // namespace
