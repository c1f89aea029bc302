#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "VexXml/Dom.h"
#include "VexXml/Dtd.h"
#include "VexXml/Streams.h"
#include "dom/Build.h"
#include "support/Bindings.h"
#include "support/Dump.h"
#include "support/LogStream.h"

// Trees as deep as documents may be, in a thread whose stack would not hold a frame per level.
// Nothing is timed: whatever cost grows with the square of the depth would not end.

namespace {

using Tree = std::unique_ptr<Xml::Element>;

constexpr int kDepth = 1'000'000;

Xml::Element* childOf(const Xml::Element& element) {
    return const_cast<Xml::Element*>(element.getElement(0));
}

Xml::Element* bottomOf(Xml::Element& top) {
    Xml::Element* bottom = &top;
    while (Xml::Element* child = childOf(*bottom)) bottom = child;
    return bottom;
}

int depthOf(const Xml::Element& top) {
    int depth = 1;
    for (const Xml::Element* child = childOf(top); child != nullptr; child = childOf(*child)) {
        ++depth;
    }
    return depth;
}

Tree chain() { return Tree(support::makeChain(kDepth)); }

// A chain whose levels all hold an empty text: they are written without line feeds, and so without
// the indentation, which would by itself grow with the square of the depth.
Tree mixedChain() {
    Tree top = chain();
    for (Xml::Element* level = top.get(); level != nullptr; level = childOf(*level)) {
        level->addChild(support::text(""));
    }
    return top;
}

// How many levels are bound to that DTD, character data not counted.
int levelsBoundTo(const std::string& name, Xml::Element& top) {
    int count = 0;
    for (Xml::Element* level = &top; level != nullptr; level = childOf(*level)) {
        if (support::bindingOf(*level) == name) ++count;
    }
    return count;
}

TEST(DeepTree, IsBuiltTopDown) {
    support::runOnSmallStack([] { EXPECT_EQ(depthOf(*chain()), kDepth); });
}

TEST(DeepTree, IsBuiltBottomUp) {
    support::runOnSmallStack([] {
        Tree top(new Xml::Element("e"));
        for (int level = 1; level < kDepth; ++level) {
            Tree above(new Xml::Element("e"));
            above->addChild(top.release());
            top = std::move(above);
        }
        EXPECT_EQ(depthOf(*top), kDepth);
    });
}

TEST(DeepTree, IsBuiltBottomUpFromBoundElements) {
    support::runOnSmallStack([] {
        const auto dtd = support::makeDtd("one");
        Tree top(new Xml::Element("e"));
        for (int level = 1; level < kDepth; ++level) {
            Tree above(new Xml::Element("e"));
            above->setDtd(dtd.get());
            above->insertChild(nullptr, top.release());
            top = std::move(above);
        }
        EXPECT_EQ(levelsBoundTo("one", *top), kDepth - 1);
    });
}

TEST(DeepTree, IsBuiltTopDownBelowABoundTop) {
    support::runOnSmallStack([] {
        const auto dtd = support::makeDtd("one");
        Tree top(new Xml::Element("e"));
        Xml::Element* bottom = top.get();
        for (int level = 1; level < kDepth; ++level) {
            bottom->setDtd(dtd.get());
            bottom = bottom->addElement("e", "");
        }
        EXPECT_EQ(levelsBoundTo("one", *top), 1);
        EXPECT_EQ(depthOf(*top), kDepth);
    });
}

TEST(DeepTree, IsTouchedAtTheBottomAgainAndAgain) {
    support::runOnSmallStack([] {
        const Tree top = chain();
        Xml::Element* bottom = bottomOf(*top);
        for (int i = 0; i < kDepth; ++i) bottom->touch();
        for (int i = 0; i < kDepth; ++i) bottom->setAttribute("k", i);
        for (int i = 0; i < kDepth; ++i) bottom->setCharData("x");
        EXPECT_EQ(support::written(*bottom), "<e k=\"999999\">x</e>");
    });
}

TEST(DeepTree, IsTouchedAtEveryLevel) {
    support::runOnSmallStack([] {
        const auto dtd = support::makeDtd("one");
        const Tree top = chain();
        top->setDtd(dtd.get());
        std::vector<Xml::Element*> levels{top.get()};
        top->findAllElements("e", levels);
        for (std::size_t i = levels.size(); i-- > 0;) levels[i]->touch();
        for (Xml::Element* level : levels) level->touch();
        EXPECT_EQ(levelsBoundTo("none", *top), kDepth);
    });
}

TEST(DeepTree, IsBoundAndUnbound) {
    support::runOnSmallStack([] {
        const auto one = support::makeDtd("one");
        const auto two = support::makeDtd("two");
        const Tree top = chain();
        top->setDtd(one.get());
        EXPECT_EQ(levelsBoundTo("one", *top), kDepth);
        bottomOf(*top)->touch();
        EXPECT_EQ(levelsBoundTo("none", *top), kDepth);
        top->setDtd(two.get());
        EXPECT_EQ(levelsBoundTo("two", *top), kDepth);
        top->setDtd(nullptr);
        EXPECT_EQ(levelsBoundTo("none", *top), kDepth);
    });
}

TEST(DeepTree, IsBoundAtEveryLevelFromBelow) {
    support::runOnSmallStack([] {
        const auto dtd = support::makeDtd("one");
        const Tree top = chain();
        std::vector<Xml::Element*> levels{top.get()};
        top->findAllElements("e", levels);
        for (std::size_t i = levels.size(); i-- > 0;) levels[i]->setDtd(dtd.get());
        EXPECT_EQ(levelsBoundTo("one", *top), kDepth);
    });
}

TEST(DeepTree, IsCopied) {
    support::runOnSmallStack([] {
        const Tree top = mixedChain();
        const Xml::Element copy(*top);
        EXPECT_EQ(depthOf(copy), kDepth);
        const Tree clone(top->clone()->toElement());
        EXPECT_EQ(depthOf(*clone), kDepth);
        EXPECT_EQ(depthOf(*top), kDepth);
    });
}

TEST(DeepTree, IsAssigned) {
    support::runOnSmallStack([] {
        const Tree top = chain();
        const Tree target = chain();
        bottomOf(*target)->setName("old");
        *target = *top;
        EXPECT_EQ(depthOf(*target), kDepth);
        EXPECT_EQ(bottomOf(*target)->getName(), "e");
    });
}

TEST(DeepTree, IsAssignedFromWithin) {
    support::runOnSmallStack([] {
        const Tree top = chain();
        *top = *childOf(*childOf(*top));
        EXPECT_EQ(depthOf(*top), kDepth - 2);
        *bottomOf(*top) = *top;
        EXPECT_EQ(depthOf(*top), 2 * (kDepth - 2) - 1);
        *top = *bottomOf(*top);
        EXPECT_EQ(depthOf(*top), 1);
    });
}

TEST(DeepTree, IsMoved) {
    support::runOnSmallStack([] {
        const Tree top = chain();
        Xml::Element moved(std::move(*top));
        EXPECT_EQ(depthOf(moved), kDepth);
        moved = std::move(*bottomOf(moved));
        EXPECT_EQ(depthOf(moved), 1);
    });
}

TEST(DeepTree, IsSearched) {
    support::runOnSmallStack([] {
        const Tree top = chain();
        Xml::Element* bottom = bottomOf(*top);
        bottom->setAttribute("k", "v");
        bottom->setCharData("x");
        EXPECT_EQ(top->findElement("none"), nullptr);
        EXPECT_EQ(top->findElement("e", kDepth - 2), bottom);
        EXPECT_EQ(top->findElement("e", kDepth - 1), nullptr);
        EXPECT_EQ(top->findElementByAttribute("k", "v"), bottom);
        EXPECT_EQ(top->findElementByAttribute("k", "w"), nullptr);
        std::vector<const Xml::Element*> found;
        static_cast<const Xml::Element&>(*top).findAllElements("e", found);
        EXPECT_EQ(found.size(), static_cast<std::size_t>(kDepth - 1));
        bottom->setName("bottom");
        EXPECT_EQ(std::string(top->findElementCharData("bottom")), "x");
        top->findAndSetElementCharData("bottom", "y");
        EXPECT_EQ(std::string(bottom->getCharData()), "y");
    });
}

// Counts what is written, as a million levels need not be kept.
class CountingStream : public Xml::OutStream {
public:
    void putChar(char /*c*/) override { ++written, ++mPosition; }
    int getPosition() const override { return mPosition; }
    void setPosition(int position) override { mPosition = position; }

    int written = 0;

private:
    int mPosition = 0;
};

int bytesWritten(Xml::Object& node) {
    CountingStream out;
    node.toStream(out);
    return out.written;
}

TEST(DeepTree, IsWritten) {
    support::runOnSmallStack([] { EXPECT_EQ(bytesWritten(*mixedChain()), kDepth * 7); });
}

TEST(DeepTree, IsWrittenWithIndentation) {
    support::runOnSmallStack([] {
        constexpr int kLevels = 5000;
        const Tree top(support::makeChain(kLevels));
        // Above the last level, each has two tags with a line feed; level n is indented by n tabs.
        constexpr int kTags = (kLevels - 1) * 7 + 4;
        constexpr int kLineFeeds = (kLevels - 1) * 2;
        constexpr int kTabs = (kLevels - 1) * (kLevels - 2) + (kLevels - 1);
        EXPECT_EQ(bytesWritten(*top), kTags + kLineFeeds + kTabs);
    });
}

TEST(DeepTree, IsWrittenAgainWhereItChanged) {
    support::runOnSmallStack([] {
        const support::OptimizedRewriting rewriting;
        const Tree top = mixedChain();
        EXPECT_EQ(bytesWritten(*top), kDepth * 7);
        EXPECT_EQ(bytesWritten(*top), 0);
        bottomOf(*top)->touch();
        EXPECT_EQ(bytesWritten(*top), kDepth * 7);
        childOf(*top)->touch();
        EXPECT_EQ(bytesWritten(*top), 2 * 7);
    });
}

TEST(DeepTree, IsTakenApart) {
    support::runOnSmallStack([] {
        const Tree top = chain();
        const std::unique_ptr<Xml::Object> extracted(childOf(*top)->extractChild(0));
        EXPECT_EQ(depthOf(*extracted->toElement()), kDepth - 2);
        extracted->toElement()->killChildren();
        EXPECT_EQ(depthOf(*extracted->toElement()), 1);
    });
}

TEST(DeepTree, IsTakenApartLevelByLevel) {
    support::runOnSmallStack([] {
        Tree top = chain();
        int levels = 1;
        for (; top->getChildCount() > 0; ++levels) top.reset(top->extractChild(0)->toElement());
        EXPECT_EQ(levels, kDepth);
    });
}

TEST(DeepDocument, IsSearchedCopiedAndGivenUp) {
    support::runOnSmallStack([] {
        Xml::Document document(chain().release(), support::makeDtd("one").release());
        EXPECT_EQ(levelsBoundTo("one", *document.getRoot()), kDepth);
        EXPECT_EQ(document.findAll("e").size(), static_cast<std::size_t>(kDepth));
        EXPECT_EQ(document.find("e", kDepth - 1), bottomOf(*document.getRoot()));
        Xml::Document copy(document);
        copy = document;
        EXPECT_EQ(levelsBoundTo("one", *copy.getRoot()), kDepth);
        const Tree root(copy.extractRoot());
        EXPECT_EQ(levelsBoundTo("none", *root), kDepth);
        const std::unique_ptr<Xml::Dtd> dtd(document.extractDtd());
        EXPECT_EQ(levelsBoundTo("none", *document.getRoot()), kDepth);
    });
}

TEST(DeepDocument, IsValidatedAndBoundAgainAfterAChange) {
    support::runOnSmallStack([] {
        auto dtd = std::make_unique<Xml::Dtd>("d");
        dtd->addElementDecl("e", "e", Xml::RepOptional);
        dtd->addAttDecl("e", "dtd", new Xml::AttStringType(Xml::AttValue, "d"));
        Xml::Document document(chain().release(), dtd.release());
        bottomOf(*document.getRoot())->touch();
        EXPECT_EQ(levelsBoundTo("none", *document.getRoot()), kDepth);
        EXPECT_TRUE(document.validate());
        EXPECT_EQ(levelsBoundTo("d", *document.getRoot()), kDepth);
        bottomOf(*document.getRoot())->setCharData("x");
        EXPECT_FALSE(document.validate());
    });
}

}  // namespace
