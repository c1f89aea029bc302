#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "VexXml/Dom.h"
#include "VexXml/Streams.h"
#include "dom/Build.h"
#include "support/Diagnostics.h"
#include "support/Dump.h"
#include "support/LogStream.h"

namespace {

using support::element;
using support::text;
using Tree = std::unique_ptr<Xml::Element>;

// A tree, and its text with short notation on and off.
struct Layout {
    const char* what;
    Xml::Element* (*make)();
    const char* shortText;
    const char* longText;
};

const Layout kLayouts[] = {
    {"empty", [] { return element("a"); }, "<a/>", "<a></a>"},
    {"text", [] { return element("a", {text("x<y")}); }, "<a>x&lt;y</a>", "<a>x&lt;y</a>"},
    {"empty text counts as a child", [] { return element("a", {text("")}); }, "<a></a>", "<a></a>"},
    {"elements stand on lines of their own",
     [] {
         return element("a", {element("b"), element("c")});
     },
     "<a>\n\t<b/>\n\t<c/>\n</a>", "<a>\n\t<b></b>\n\t<c></c>\n</a>"},
    {"every level is indented by one tab",
     [] {
         return element("a", {element("b", {element("c", {element("d")})}), element("e")});
     },
     "<a>\n\t<b>\n\t\t<c>\n\t\t\t<d/>\n\t\t</c>\n\t</b>\n\t<e/>\n</a>",
     "<a>\n\t<b>\n\t\t<c>\n\t\t\t<d></d>\n\t\t</c>\n\t</b>\n\t<e></e>\n</a>"},
    {"text first",
     [] {
         return element("a", {text("x"), element("b")});
     },
     "<a>x<b/></a>", "<a>x<b></b></a>"},
    {"text last",
     [] {
         return element("a", {element("b"), element("c"), text("x")});
     },
     "<a><b/><c/>x</a>", "<a><b></b><c></c>x</a>"},
    {"empty text makes the content mixed",
     [] {
         return element("a", {element("b"), text("")});
     },
     "<a><b/></a>", "<a><b></b></a>"},
    {"two texts",
     [] {
         return element("a", {text("x"), text("y")});
     },
     "<a>xy</a>", "<a>xy</a>"},
    {"text one level down", [] { return element("a", {element("b", {text("x")})}); },
     "<a>\n\t<b>x</b>\n</a>", "<a>\n\t<b>x</b>\n</a>"},
    {"elements inside mixed content are indented by all their levels",
     [] {
         return element("a", {text("x"), element("b", {element("c")}), text("y")});
     },
     "<a>x<b>\n\t\t<c/>\n\t</b>y</a>", "<a>x<b>\n\t\t<c></c>\n\t</b>y</a>"},
    {"text is never indented",
     [] {
         return element("a", {element("b", {text("one\ntwo\n"), element("c")})});
     },
     "<a>\n\t<b>one\ntwo\n<c/></b>\n</a>", "<a>\n\t<b>one\ntwo\n<c></c></b>\n</a>"},
};

TEST(ElementWriting, LaysOutContentByItsKind) {
    for (const Layout& layout : kLayouts) {
        SCOPED_TRACE(layout.what);
        const Tree top(layout.make());
        EXPECT_EQ(support::written(*top), layout.shortText);
        const support::ShortNotation off(false);
        EXPECT_EQ(support::written(*top), layout.longText);
    }
}

TEST(ElementWriting, UsesShortNotationByDefault) {
    EXPECT_TRUE(Xml::Element::usingShortNotationForEmptyTags());
}

TEST(ElementWriting, SwitchesShortNotationAndTellsWhatItWas) {
    EXPECT_TRUE(Xml::Element::setShortNotationForEmptyTags(false));
    EXPECT_FALSE(Xml::Element::usingShortNotationForEmptyTags());
    EXPECT_FALSE(Xml::Element::setShortNotationForEmptyTags(false));
    EXPECT_FALSE(Xml::Element::setShortNotationForEmptyTags(true));
    EXPECT_TRUE(Xml::Element::usingShortNotationForEmptyTags());
    EXPECT_TRUE(Xml::Element::setShortNotationForEmptyTags(true));
}

TEST(ElementWriting, PutsABlankInFrontOfEachAttribute) {
    Xml::Element top("item");
    top.setAttribute("b", "2");
    top.setAttribute("a", "<&>\"'");
    EXPECT_EQ(support::written(top), "<item a=\"&lt;&amp;&gt;&quot;&apos;\" b=\"2\"/>");
    const support::ShortNotation off(false);
    EXPECT_EQ(support::written(top), "<item a=\"&lt;&amp;&gt;&quot;&apos;\" b=\"2\"></item>");
}

TEST(ElementWriting, WritesBytesAsTheyAre) {
    Xml::Element top("a");
    top.setAttribute("k", Xml::DataHolder("\xC3\xA9\0\xFF", 4));
    top.setCharData(Xml::DataHolder("\xE2\x82\xAC\0\x01", 5));
    EXPECT_EQ(support::written(top),
              std::string("<a k=\"\xC3\xA9\0\xFF\">\xE2\x82\xAC\0\x01</a>", 21));
}

// Deliberate: an attribute goes through the indenting write, text content does not.
TEST(ElementWriting, IndentsBehindALineFeedInAnAttribute) {
    const Tree top(element("a", {element("b", {element("c")})}));
    top->setAttribute("k", "one\ntwo");
    top->findElement("c")->setAttribute("k", "\n\none\ntwo");
    EXPECT_EQ(support::written(*top),
              "<a k=\"one\ntwo\">\n\t<b>\n\t\t<c k=\"\n\n\t\tone\n\t\ttwo\"/>\n\t</b>\n</a>");
}

TEST(ElementWriting, LeavesOutAttributesWithoutName) {
    support::Diagnostics diagnostics;
    Xml::Element top("a");
    top.setAttribute("", "v");
    EXPECT_EQ(support::written(top), "<a/>");
}

TEST(ElementWriting, WritesElementsWithoutName) {
    support::Diagnostics diagnostics;
    const Tree top(element("1", {element("2"), element("a", {text("x")})}));
    EXPECT_EQ(support::written(*top), "<>\n\t</>\n\t<a>x</a>\n</>");
}

TEST(ElementWriting, WritesReferencesUnresolved) {
    const Tree top(element("a", {new Xml::CharData(Xml::Entity("copy")), text("&copy;")}));
    EXPECT_EQ(support::written(*top), "<a>&copy;&amp;copy;</a>");
}

TEST(ElementWriting, StartsAtTheLevelOfTheStream) {
    const Tree top(element("a", {element("b")}));
    support::LogStream out;
    out.incTab();
    top->toStream(out);
    EXPECT_EQ(out.log(), "\t<a>\n\t\t<b/>\n\t</a>");
}

TEST(ElementWriting, LeavesTheLevelOfTheStream) {
    const Tree top(element("a", {element("b", {text("x")}), element("c")}));
    support::LogStream out;
    top->toStream(out);
    out << "\nbehind";
    EXPECT_EQ(out.log(), "<a>\n\t<b>x</b>\n\t<c/>\n</a>\nbehind");
}

TEST(ElementWriting, ChangesNothingThatIsWrittenAgain) {
    const Tree top(element("a", {element("b", {text("x<y")}), element("c")}));
    top->setAttribute("k", "v");
    const std::string first = support::written(*top);
    EXPECT_EQ(support::written(*top), first);
    EXPECT_EQ(support::dump(*top), "a(k=\"v\" b(\"x&lt;y\") c())");
}

}  // namespace
