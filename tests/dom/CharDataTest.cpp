#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <utility>

#include "VexXml/Dom.h"
#include "VexXml/Dtd.h"
#include "VexXml/Streams.h"
#include "dom/Build.h"
#include "support/Bindings.h"
#include "support/Diagnostics.h"
#include "support/Dump.h"
#include "support/LogStream.h"

namespace {

std::string storedIn(Xml::CharData& text) { return text.data(); }
std::string plainOf(const Xml::CharData& text) { return text.getData(); }

// Each plain text, and how it is stored and written.
const std::pair<std::string, std::string> kTexts[] = {
    {"", ""},
    {"a<b", "a&lt;b"},
    {"&<>\"'", "&amp;&lt;&gt;&quot;&apos;"},
    {"&lt;", "&amp;lt;"},
    {"&", "&amp;"},
    {" \t\r\n ", " \t\r\n "},
    {"\xC3\xA9\xFF", "\xC3\xA9\xFF"},
    {std::string("a\0b", 3), std::string("a\0b", 3)},
};

TEST(CharData, IsEmptyByDefault) {
    Xml::CharData text;
    EXPECT_EQ(storedIn(text), "");
    EXPECT_EQ(plainOf(text), "");
    EXPECT_EQ(text.getSize(), 0);
    EXPECT_EQ(support::written(text), "");
}

TEST(CharData, HoldsItsTextEscaped) {
    for (const auto& [plain, escaped] : kTexts) {
        SCOPED_TRACE(plain);
        Xml::CharData built{Xml::DataHolder(plain)};
        Xml::CharData changed{Xml::DataHolder("old & longer than the new")};
        changed.getData();
        changed.setData(Xml::DataHolder(plain));
        for (Xml::CharData* text : {&built, &changed}) {
            EXPECT_EQ(storedIn(*text), escaped);
            EXPECT_EQ(text->getSize(), static_cast<int>(escaped.size()));
            EXPECT_EQ(support::written(*text), escaped);
            EXPECT_EQ(plainOf(*text), plain);
            EXPECT_EQ(text->toString(), plain);
        }
    }
}

TEST(CharData, GivesItsPlainTextThroughAnArgument) {
    const Xml::CharData text{Xml::DataHolder("a<b")};
    Xml::DataHolder plain("old");
    text.getData(&plain);
    EXPECT_EQ(std::string(plain), "a<b");
}

TEST(CharData, GivesPlainTextsOfAnyLength) {
    for (std::size_t length = 0; length < 600; ++length) {
        const std::string plain = std::string(length, 'x') + "<";
        Xml::CharData text{Xml::DataHolder(plain)};
        EXPECT_EQ(text.toString(), plain);
        EXPECT_EQ(plainOf(text), plain);
        EXPECT_EQ(text.getData(), Xml::DataHolder(plain));
        EXPECT_STREQ(text.getData().toCString(), plain.c_str());
    }
}

TEST(CharData, GivesPlainTextsThatMayBeCopiedAndChanged) {
    for (const std::size_t length : {0U, 14U, 15U, 16U, 1000U}) {
        const std::string plain = std::string(length, 'x') + "<";
        auto text = std::make_unique<Xml::CharData>(Xml::DataHolder(plain));
        Xml::DataHolder copy = text->getData();
        Xml::DataHolder assigned;
        assigned = text->getData();
        text.reset();
        EXPECT_EQ(std::string(copy.push('>')), plain + ">");
        EXPECT_EQ(std::string(assigned.push('>')), plain + ">");
    }
}

TEST(CharData, HoldsAReferenceAsItIs) {
    Xml::CharData built{Xml::Entity("copy")};
    Xml::CharData changed{Xml::DataHolder("old")};
    changed.setData(Xml::Entity("copy"));
    for (Xml::CharData* text : {&built, &changed}) {
        EXPECT_EQ(storedIn(*text), "&copy;");
        EXPECT_EQ(support::written(*text), "&copy;");
    }
}

TEST(CharData, ResolvesAReferenceThroughItsDtd) {
    Xml::Dtd dtd("d");
    dtd.setEntity("copy", "(c) & <more>");
    Xml::CharData text{Xml::Entity("copy")};
    EXPECT_EQ(plainOf(text), "&copy;");
    text.setDtd(&dtd);
    EXPECT_EQ(plainOf(text), "(c) & <more>");
    EXPECT_EQ(text.toString(), "(c) & <more>");
    Xml::DataHolder plain;
    text.getData(&plain);
    EXPECT_EQ(std::string(plain), "(c) & <more>");
    EXPECT_EQ(support::written(text), "&copy;");
    text.setDtd(nullptr);
    EXPECT_EQ(plainOf(text), "&copy;");
}

TEST(CharData, ResolvesPredefinedAndCharacterReferencesWithoutADtd) {
    Xml::CharData text{Xml::Entity("lt")};
    EXPECT_EQ(plainOf(text), "<");
    text.data() = Xml::DataHolder("&#65;&#x42;&amp;lt;&unknown;&open");
    EXPECT_EQ(plainOf(text), "AB&lt;&unknown;&open;");
}

TEST(CharData, ReportsNothingForAnUnknownReference) {
    support::Diagnostics diagnostics;
    const Xml::Dtd dtd("d");
    Xml::CharData text{Xml::Entity("copy")};
    text.setDtd(&dtd);
    EXPECT_EQ(plainOf(text), "&copy;");
    EXPECT_EQ(diagnostics.take(), std::vector<std::string>());
}

TEST(CharData, GivesAccessToItsEscapedText) {
    Xml::CharData text{Xml::DataHolder("a<b")};
    text.data().push('>');
    EXPECT_EQ(support::written(text), "a&lt;b>");
    text[0] = 'x';
    EXPECT_EQ(std::as_const(text)[0], 'x');
    EXPECT_EQ(std::as_const(text)[1], '&');
    EXPECT_EQ(plainOf(text), "x<b>");
}

TEST(CharData, ChangesSize) {
    Xml::CharData text{Xml::DataHolder("a<b")};
    EXPECT_TRUE(text.setSize(2));
    EXPECT_EQ(storedIn(text), "a&");
    EXPECT_TRUE(text.setSize(4));
    EXPECT_EQ(storedIn(text), std::string("a&\0\0", 4));
    EXPECT_EQ(text.getSize(), 4);
    EXPECT_TRUE(text.setSize(0));
    EXPECT_EQ(text.getSize(), 0);
}

TEST(CharData, PadsWithNulsThatAreWritten) {
    Xml::CharData text{Xml::DataHolder("ab")};
    EXPECT_TRUE(text.setSize(5));
    EXPECT_EQ(support::written(text), std::string("ab\0\0\0", 5));
    EXPECT_EQ(plainOf(text), std::string("ab\0\0\0", 5));
    EXPECT_EQ(text.toString(), std::string("ab\0\0\0", 5));
}

TEST(CharData, RefusesANegativeSize) {
    Xml::CharData text{Xml::DataHolder("ab")};
    EXPECT_FALSE(text.setSize(-1));
    EXPECT_EQ(storedIn(text), "ab");
}

TEST(CharData, ReservesWithoutChange) {
    Xml::CharData text{Xml::DataHolder("ab")};
    for (const int size : {-1, 0, 1, 1000}) {
        EXPECT_TRUE(text.reserve(size)) << size;
        EXPECT_EQ(storedIn(text), "ab");
    }
}

TEST(CharData, IsWrittenWithoutIndentation) {
    support::LogStream out;
    out.incTab();
    Xml::CharData text{Xml::DataHolder("one\ntwo")};
    text.toStream(out);
    out << "behind\nx";
    EXPECT_EQ(out.log(), "one\ntwo\tbehind\n\tx");
}

TEST(CharData, TakesTextsOfItsOwn) {
    Xml::CharData text{Xml::DataHolder("a<b")};
    text.setData(text.getData());
    EXPECT_EQ(storedIn(text), "a&lt;b");
    text.setData(text.data());
    EXPECT_EQ(storedIn(text), "a&amp;lt;b");
    text.getData(&text.data());
    EXPECT_EQ(storedIn(text), "a&lt;b");
}

TEST(CharData, IsUnboundByANewText) {
    const auto dtd = support::makeDtd("one");
    Xml::CharData text;
    text.setDtd(dtd.get());
    text.setData(Xml::DataHolder("x"));
    EXPECT_EQ(support::bindingOf(text), "none");
    text.setDtd(dtd.get());
    text.setData(Xml::Entity("dtd"));
    EXPECT_EQ(support::bindingOf(text), "none");
}

TEST(CharData, StaysBoundWhenItsTextIsChangedDirectly) {
    const auto dtd = support::makeDtd("one");
    Xml::CharData text;
    text.setDtd(dtd.get());
    text.data() = Xml::DataHolder("ab");
    text.setSize(1);
    text.reserve(100);
    text[0] = 'c';
    EXPECT_EQ(support::bindingOf(text), "one");
}

TEST(CharData, TouchesItselfAndItsParentByANewText) {
    const support::OptimizedRewriting rewriting;
    const std::unique_ptr<Xml::Element> top(support::element("a", {support::text("x")}));
    Xml::CharData* text = top->getChild(0)->toCharData();
    support::writeAt(0, *top);
    text->setData(Xml::DataHolder("y"));
    EXPECT_EQ(support::writeAt(0, *top), "<a>y</a>");
    text->setData(Xml::Entity("z"));
    EXPECT_EQ(support::writeAt(0, *top), "<a>&z;</a>");
}

TEST(CharData, TouchesNothingWhenItsTextIsChangedDirectly) {
    const support::OptimizedRewriting rewriting;
    const std::unique_ptr<Xml::Element> top(support::element("a", {support::text("x")}));
    support::writeAt(0, *top);
    Xml::CharData* text = top->getChild(0)->toCharData();
    text->data() = Xml::DataHolder("y");
    (*text)[0] = 'z';
    text->setSize(1);
    EXPECT_EQ(support::writeAt(0, *top), "[to 8]");
}

TEST(CharData, CopiesDetachedButBound) {
    const support::OptimizedRewriting rewriting;
    const auto dtd = support::makeDtd("one");
    const std::unique_ptr<Xml::Element> top(support::element("a", {support::text("x")}));
    top->setDtd(dtd.get());
    support::writeAt(0, *top);
    Xml::CharData copy(*top->getChild(0)->toCharData());
    const std::unique_ptr<Xml::Object> clone(top->getChild(0)->clone());
    for (Xml::Object* node : {static_cast<Xml::Object*>(&copy), clone.get()}) {
        EXPECT_EQ(node->getParent(), nullptr);
        EXPECT_EQ(support::bindingOf(*node), "one");
        // Where the original stands: a copy counts as never written.
        EXPECT_EQ(support::writeAt(3, *node), "x");
    }
}

TEST(CharData, AssignmentTakesOverTextParentAndDtd) {
    const auto dtd = support::makeDtd("one");
    const std::unique_ptr<Xml::Element> top(support::element("a", {support::text("x")}));
    top->setDtd(dtd.get());
    Xml::CharData other{Xml::DataHolder("old")};
    other.getData();
    other = *top->getChild(0)->toCharData();
    EXPECT_EQ(plainOf(other), "x");
    EXPECT_EQ(other.getParent(), top.get());
    EXPECT_EQ(support::bindingOf(other), "one");
}

TEST(CharData, AssignmentTakesOverWhatIsKnownOfTheLastWriting) {
    const support::OptimizedRewriting rewriting;
    Xml::CharData source{Xml::DataHolder("x")};
    support::writeAt(3, source);
    Xml::CharData target{Xml::DataHolder("longer")};
    target = source;
    EXPECT_EQ(support::writeAt(3, target), "[to 4]");
}

TEST(CharData, CanBeAssignedToItself) {
    Xml::CharData text{Xml::DataHolder("a<b")};
    const Xml::CharData& same = text;
    text = same;
    EXPECT_EQ(storedIn(text), "a&lt;b");
}

TEST(CharData, IsEmptyOnceMovedFrom) {
    const std::string plain = "a text that is too long for a small one <";
    const auto source = std::make_unique<Xml::CharData>(Xml::DataHolder(plain));
    source->getData();
    const auto target = std::make_unique<Xml::CharData>(std::move(*source));
    EXPECT_EQ(plainOf(*target), plain);
    EXPECT_EQ(plainOf(*source), "");
    EXPECT_EQ(source->getSize(), 0);
    *source = std::move(*target);
    EXPECT_EQ(plainOf(*source), plain);
    EXPECT_EQ(plainOf(*target), "");
}

TEST(CharData, OutlivesTheElementOfTheOneThatItWasCopiedFrom) {
    Xml::CharData kept;
    {
        const Xml::Element element("e", "t");
        kept = *element.getChild(0)->toCharData();
    }
    kept = Xml::CharData(Xml::DataHolder("x"));
    EXPECT_EQ(kept.toString(), "x");
}

struct Change {
    const char* name;
    void (*make)(Xml::CharData& text);  ///< of "a&lt;b" to "c&gt;d"
};

const Change kChanges[] = {
    {"set", [](Xml::CharData& text) { text.setData(std::string("c>d")); }},
    {"assigned", [](Xml::CharData& text) { text = Xml::CharData(std::string("c>d")); }},
    {"assigned from another",
     [](Xml::CharData& text) {
         const Xml::CharData other(std::string("c>d"));
         text = other;
     }},
    {"edited", [](Xml::CharData& text) { text.data() = std::string("c&gt;d"); }},
    {"edited byte by byte",
     [](Xml::CharData& text) {
         text[0] = 'c';
         text[2] = 'g';
         text[5] = 'd';
     }},
    {"cut and appended to",
     [](Xml::CharData& text) {
         text.setSize(0);
         text.data().append("c&gt;d", 6);
     }},
};

TEST(CharData, GivesThePlainTextOfTheMoment) {
    for (const Change& change : kChanges) {
        SCOPED_TRACE(change.name);
        Xml::CharData text(std::string("a<b"));
        EXPECT_EQ(plainOf(text), "a<b");
        change.make(text);
        EXPECT_EQ(plainOf(text), "c>d");
        EXPECT_EQ(text.toString(), "c>d");
    }
}

TEST(CharData, GivesThePlainTextAfterEveryEditThroughAReference) {
    Xml::CharData text(std::string("a<b"));
    Xml::DataHolder& escaped = text.data();
    EXPECT_EQ(plainOf(text), "a<b");
    escaped = std::string("c&gt;d");
    EXPECT_EQ(plainOf(text), "c>d");
    escaped[0] = 'e';
    EXPECT_EQ(plainOf(text), "e>d");
}

TEST(CharData, GivesThePlainTextForTheDtdOfTheMoment) {
    const auto one = support::makeDtd("one");
    const auto other = support::makeDtd("other");
    Xml::CharData text(Xml::Entity("dtd"));
    EXPECT_EQ(plainOf(text), "&dtd;");
    text.setDtd(one.get());
    EXPECT_EQ(plainOf(text), "one");
    text.setDtd(other.get());
    EXPECT_EQ(plainOf(text), "other");
}

}  // namespace
