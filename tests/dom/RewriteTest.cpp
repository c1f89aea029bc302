#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>

#include "VexXml/Dom.h"
#include "VexXml/Dtd.h"
#include "VexXml/Streams.h"
#include "dom/Build.h"
#include "support/Dump.h"
#include "support/LogStream.h"

namespace {

using support::element;
using support::text;
using support::writeAt;
using Tree = std::unique_ptr<Xml::Element>;

TEST(RewriteOptimisation, IsOffByDefault) { EXPECT_FALSE(Xml::Object::setRWOptimization(false)); }

TEST(RewriteOptimisation, TellsWhatItWas) {
    EXPECT_FALSE(Xml::Object::setRWOptimization(true));
    EXPECT_TRUE(Xml::Object::setRWOptimization(true));
    EXPECT_TRUE(Xml::Object::setRWOptimization(false));
    EXPECT_FALSE(Xml::Object::setRWOptimization(false));
}

// A tree that is laid out on several lines, with its text:
//   0 <a>
//   4     <b k="1">
//  15         <c>one</c>
//  28         <c>two</c>
//  41     </b>
//  47     <d>x<e/></d>
//  61 </a>
class Rewriting : public testing::Test {
protected:
    static Xml::Element* make() {
        auto* b = element("b", {element("c", {text("one")}), element("c", {text("two")})});
        b->setAttribute("k", "1");
        return element("a", {b, element("d", {text("x"), element("e")})});
    }

    const support::OptimizedRewriting mOn;
    const Tree mTop{make()};
    const std::string mWhole = writeAt(0, *mTop);
};

TEST_F(Rewriting, WritesTheWholeTextAtFirst) {
    EXPECT_EQ(mWhole,
              "<a>\n\t<b k=\"1\">\n\t\t<c>one</c>\n\t\t<c>two</c>\n\t</b>\n\t<d>x<e/></d>\n</a>");
}

TEST_F(Rewriting, PassesOverWhatIsUnchanged) {
    EXPECT_EQ(writeAt(0, *mTop), "[to 65]");
    EXPECT_EQ(writeAt(0, *mTop), "[to 65]");
}

TEST_F(Rewriting, WritesEverythingWhenSwitchedOff) {
    Xml::Object::setRWOptimization(false);
    EXPECT_EQ(writeAt(0, *mTop), mWhole);
    EXPECT_EQ(writeAt(0, *mTop), mWhole);
}

TEST_F(Rewriting, KnowsWhatWasWrittenWhileSwitchedOff) {
    Xml::Object::setRWOptimization(false);
    const Tree top(make());
    writeAt(0, *top);
    Xml::Object::setRWOptimization(true);
    EXPECT_EQ(writeAt(0, *top), "[to 65]");
}

TEST_F(Rewriting, WritesEverythingAtAnotherPlace) {
    EXPECT_EQ(writeAt(1, *mTop), mWhole);
    EXPECT_EQ(writeAt(0, *mTop), mWhole);
    EXPECT_EQ(writeAt(0, *mTop), "[to 65]");
}

TEST_F(Rewriting, WritesTheTagsAroundAChangeAndNothingBesides) {
    mTop->findElement("c", 1)->setCharData("TWO");
    EXPECT_EQ(writeAt(0, *mTop),
              "<a>\n\t<b k=\"1\">\n[to 27]\n\t\t<c>TWO</c>\n\t</b>\n[to 60]\n</a>");
    EXPECT_EQ(writeAt(0, *mTop), "[to 65]");
}

TEST_F(Rewriting, WritesAChangedStartTagAndNothingBesides) {
    mTop->getElement("b")->setAttribute("k", "2");
    EXPECT_EQ(writeAt(0, *mTop), "<a>\n\t<b k=\"2\">\n[to 27]\n[to 40]\n\t</b>\n[to 60]\n</a>");
}

TEST_F(Rewriting, WritesAChangeInMixedContentAndNothingBesides) {
    mTop->findElement("e")->setName("f");
    EXPECT_EQ(writeAt(0, *mTop), "<a>\n[to 46]\n\t<d>[to 52]<f/></d>\n</a>");
}

TEST_F(Rewriting, WritesWhateverALongerTextMoves) {
    mTop->findElement("c")->setCharData("three");
    EXPECT_EQ(writeAt(0, *mTop),
              "<a>\n\t<b k=\"1\">\n\t\t<c>three</c>\n\t\t<c>two</c>\n\t</b>\n\t<d>x<e/></d>\n</a>");
    EXPECT_EQ(writeAt(0, *mTop), "[to 67]");
}

TEST_F(Rewriting, WritesNothingBehindWhereTwoChangesOfLengthCancelOut) {
    mTop->findElement("c", 0)->setCharData("three");
    mTop->findElement("c", 1)->setCharData("2");
    EXPECT_EQ(writeAt(0, *mTop),
              "<a>\n\t<b k=\"1\">\n\t\t<c>three</c>\n\t\t<c>2</c>\n\t</b>\n[to 60]\n</a>");
}

TEST_F(Rewriting, PassesOverAnExtractedNodeInItsOldPlaceOnly) {
    Xml::Element* d = mTop->getElement("d");
    delete mTop->extractChild(mTop->getElement("b"));
    EXPECT_EQ(writeAt(0, *mTop), "<a>\n\t<d>x<e/></d>\n</a>");
    const std::unique_ptr<Xml::Object> extracted(mTop->extractChild(d));
    EXPECT_EQ(writeAt(4, *extracted), "[to 17]");
    EXPECT_EQ(writeAt(0, *extracted), "<d>x<e/></d>");
}

TEST_F(Rewriting, TakesANewNodeForChanged) {
    mTop->getElement("d")->insertChild(mTop->findElement("e"), text("y"));
    EXPECT_EQ(writeAt(0, *mTop), "<a>\n[to 46]\n\t<d>[to 52]y<e/></d>\n</a>");
}

TEST_F(Rewriting, ForgetsTheChangeOnceItIsWritten) {
    writeAt(0, *mTop->getElement("b"));  // at another place
    EXPECT_EQ(writeAt(0, *mTop), "[to 65]");
    mTop->getElement("b")->touch();
    writeAt(14, *mTop->getElement("b"));
    // The top is touched still, and b no longer begins where it does in the top.
    EXPECT_EQ(writeAt(0, *mTop),
              "<a>\n\t<b k=\"1\">\n\t\t<c>one</c>\n\t\t<c>two</c>\n\t</b>\n[to 60]\n</a>");
}

// Deliberate: where it begins is all that is asked of an unchanged node, and that is in front of
// its tabs. Behind a text there are none, but here the element begins at the same place.
TEST(RewriteOptimisation, CountsTheTabsInFrontAsPartOfANode) {
    const support::OptimizedRewriting on;
    const Tree top(element("a", {element("b"), element("c")}));
    EXPECT_EQ(writeAt(0, *top), "<a>\n\t<b/>\n\t<c/>\n</a>");
    top->insertChild(top->getElement("c"), text("xyz"));
    EXPECT_EQ(writeAt(0, *top), "<a><b/>xyz[to 15]</a>");
}

// A file that is written once and then again from its start, as callers do.
class RewritingAFile : public testing::Test {
protected:
    RewritingAFile() : mPath(testing::TempDir() + "vexxml-rewrite-" + name() + ".xml") {
        std::ofstream(mPath, std::ios::binary | std::ios::trunc).close();
        mFile.open(mPath, std::ios::in | std::ios::out | std::ios::binary);
    }
    ~RewritingAFile() override { std::remove(mPath.c_str()); }

    static std::string name() {
        return testing::UnitTest::GetInstance()->current_test_info()->name();
    }

    // Writes the node from the start of the file, over what stands there.
    void write(Xml::Object& node) {
        mOut.setPosition(0);
        node.toStream(mOut);
        mFile.flush();
        ASSERT_TRUE(mFile.good());
    }

    std::string content() const {
        std::ifstream in(mPath, std::ios::binary);
        return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
    }

    // Puts '#' over bytes that a rewriting must pass over.
    void blot(const std::string& piece) {
        const std::size_t place = content().find(piece);
        ASSERT_NE(place, std::string::npos) << piece;
        mFile.seekp(static_cast<std::streamoff>(place));
        for (std::size_t i = 0; i < piece.size(); ++i) mFile.put('#');
        mFile.flush();
    }

    const support::OptimizedRewriting mOn;

private:
    std::string mPath;
    std::fstream mFile;
    Xml::FileOutStream mOut{&mFile};
};

// What a full write of the node gives; a copy knows of no earlier writing.
std::string wholeText(const Xml::Object& node) {
    const std::unique_ptr<Xml::Object> copy(node.clone());
    return support::written(*copy);
}

Xml::Element* list() {
    auto* top = element("list");
    for (int i = 0; i < 9; ++i) {
        auto* entry = element("entry", {element("key", {text("key" + std::to_string(i))}),
                                        element("value", {text("<"), element("v"), text(">")})});
        entry->setAttribute("n", i);
        top->addChild(entry);
    }
    return top;
}

Xml::Dtd* listDtd() {
    auto* dtd = new Xml::Dtd("list");
    dtd->addElementDecl("list", "entry", Xml::RepZeroOrMore);
    dtd->addAttDecl("list", "owner", Xml::AttImplied);
    return dtd;
}

struct Edit {
    const char* what;
    void (*act)(Xml::Element& root);
};

const Edit kEditsOfEqualLength[] = {
    {"nothing", [](Xml::Element&) {}},
    {"a text four levels down",
     [](Xml::Element& root) { root.getElement(4)->getElement("key")->setCharData("KEY4"); }},
    {"the first and the last text",
     [](Xml::Element& root) {
         root.findElement("key", 0)->setCharData("KEY0");
         root.findElement("key", 8)->setCharData("KEY8");
     }},
    {"mixed content",
     [](Xml::Element& root) {
         root.findElement("value", 3)->getChild(0)->toCharData()->setData(Xml::DataHolder(">"));
         root.findElement("v", 5)->setName("w");
     }},
    {"an attribute one level down",
     [](Xml::Element& root) { root.getElement(7)->setAttribute("n", "x"); }},
    {"the root's name", [](Xml::Element& root) { root.setName("LIST"); }},
    {"everything",
     [](Xml::Element& root) {
         for (int i = 0; i < 9; ++i) root.getElement(i)->setAttribute("n", 8 - i);
         for (int i = 0; i < 9; ++i) root.findElement("key", i)->setCharData("abcd");
     }},
    {"two entries in each other's place",
     [](Xml::Element& root) {
         Xml::Object* second = root.extractChild(1);
         root.insertChild(root.getChild(6), second);
     }},
};

TEST_F(RewritingAFile, GivesTheWholeTextAfterChangesOfEqualLength) {
    Xml::Document document(list(), listDtd());
    write(document);
    EXPECT_EQ(content(), wholeText(document));
    for (const Edit& edit : kEditsOfEqualLength) {
        SCOPED_TRACE(edit.what);
        edit.act(*document.getRoot());
        write(document);
        EXPECT_EQ(content(), wholeText(document));
    }
}

TEST_F(RewritingAFile, GivesTheWholeTextAfterAChangeThatAddsToIt) {
    Xml::Document document(list(), listDtd());
    write(document);
    document.getRoot()->findElement("key", 2)->setCharData("a longer key than there was");
    write(document);
    EXPECT_EQ(content(), wholeText(document));
    document.getRoot()->insertChild(document.getRoot()->getChild(5), element("entry"));
    write(document);
    EXPECT_EQ(content(), wholeText(document));
}

// The stream cannot be cut: what is left of the longer text stays behind the end.
TEST_F(RewritingAFile, LeavesTheOldEndBehindAShorterText) {
    Xml::Document document(list(), listDtd());
    write(document);
    const std::string before = content();
    document.getRoot()->findElement("key", 2)->setCharData("k");
    write(document);
    const std::string whole = wholeText(document);
    EXPECT_EQ(content(), whole + before.substr(whole.size()));
}

TEST_F(RewritingAFile, PassesOverWhatIsUnchanged) {
    Xml::Document document(list(), listDtd());
    write(document);
    document.getRoot()->findElement("key", 2)->setCharData("KEY2");
    for (const char* untouched : {"list [", "<!ELEMENT", "n=\"1\"", "key1", "key3", "n=\"8\""}) {
        blot(untouched);
    }
    const std::string blotted = content();
    write(document);
    std::string expected = blotted;
    expected.replace(expected.find("key2"), 4, "KEY2");
    EXPECT_EQ(content(), expected);
}

TEST_F(RewritingAFile, RepairsEverythingWhenSwitchedOff) {
    Xml::Document document(list(), listDtd());
    write(document);
    blot("key1");
    Xml::Object::setRWOptimization(false);
    write(document);
    EXPECT_EQ(content(), wholeText(document));
}

TEST_F(RewritingAFile, WritesTheDtdAgainOnceItHasChanged) {
    Xml::Document document(list(), listDtd());
    write(document);
    document.getDtd()->addElementDecl("entry", new Xml::AnySpec(document.getDtd()));
    write(document);
    EXPECT_EQ(content(), wholeText(document));
}

TEST_F(RewritingAFile, GivesTheWholeTextAfterABindingAndAChange) {
    Xml::Document document(list());
    write(document);
    Xml::Dtd dtd("d");
    for (int round = 0; round < 3; ++round) {
        document.getRoot()->setDtd(&dtd);
        const std::string text = "key" + std::string(1, static_cast<char>('A' + round));
        document.getRoot()->findElement("key", 4)->setCharData(text);
        write(document);
        EXPECT_EQ(content(), wholeText(document));
    }
    document.getRoot()->setDtd(nullptr);
}

TEST_F(Rewriting, WritesATextThatWasMovedAway) {
    Xml::Element top("e", "abc");
    EXPECT_EQ(support::writeAt(0, top), "<e>abc</e>");
    const Xml::CharData taken(std::move(*top.getChild(0)->toCharData()));
    EXPECT_EQ(taken.toString(), "abc");
    EXPECT_EQ(support::writeAt(0, top), "<e></e>");
}

}  // namespace
