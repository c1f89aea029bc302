#include "support/Samples.h"

#include <gtest/gtest.h>

#include "VexXml/Readers.h"
#include "VexXml/Streams.h"

namespace support {
namespace {

const char* const kDocuments[] = {
    "<a/>",
    // Mixed content, names with prefixes, empty values.
    "<a x='1' y='x y'><b x='2'>1</b>x y<b/><c n:x='10.0' y=''><b x='1'>2<n:a>x</n:a>1</b></c>"
    "<n:b y='2'/>1</a>",
    // One name on every level.
    "<a><a x='1'><a x='2'><a/>2</a>1</a><a y='1'/><b><a x='1'><b/></a></b></a>",
    // What reads as a number, or nearly.
    "<a><b x='1'>1</b><b x='2'>10.0</b><b x='2'> 2 </b><b x='-1'>-2.5e1</b><b y='&#65;'>0x1F</b>"
    "<c>nan</c><c>inf</c><c>1e999</c><c>+3</c><c>.5.5</c><c>10.</c></a>",
    // Several parents, so that positions count over all of them.
    "<n:a><b><c x='1'/><c x='2'/></b><b><c x='2'/>2<c x='3'>3</c>x</b><b y='1'/><n:a:b/></n:a>",
    "<b>\xC3\xA9<a x='\xC3\xA9 \xE2\x82\xAC'>\xF0\x9F\x98\x80</a><![CDATA[1<2]]><a x=' 1 '>"
    "<!-- x -->&quot;</a></b>",
    // What is no UTF-8, what that becomes in UTF-16, and characters that take two units there.
    "<a x='\xEF\xBF\xBD'><b x='\xFF'>\xC3</b><b x='\xF0\x9F\x98\x80'>\xEF\xBF\xBD</b>"
    "<b x='\xED\xA0\xBD'>&#65;</b><c>A</c><a>&amp;</a><a y='&amp;'>&lt;&amp;</a></a>",
};

}  // namespace

Sample::Sample(const std::string& text) : mText(text) {
    Xml::StringInStream in(text);
    Xml::DocumentReader reader;
    EXPECT_TRUE(reader.parse(in)) << reader.getErrorMessage();
    mDocument.reset(reader.extractDocument());
    if (mDocument) number(*mDocument);
}

Sample::Sample() : mText("(no root)"), mDocument(std::make_unique<Xml::Document>()) {
    number(*mDocument);
}

std::string Sample::nameOf(const Xml::Object* node) const {
    const auto known = mNumbers.find(node);
    if (known == mNumbers.end()) return "a node of another tree";
    const char* const kind = node->isDocument()    ? "document"
                             : node->isElement()   ? "element"
                             : node->isAttribute() ? "attribute"
                                                   : "text";
    return kind + ("#" + std::to_string(known->second));
}

void Sample::number(Xml::Object& node) {  // NOLINT(misc-no-recursion): the documents are small
    mNumbers[&node] = mNodes.size();
    mNodes.push_back(&node);
    if (node.isDocument() && node.toDocument()->getRoot() != nullptr) {
        number(*node.toDocument()->getRoot());
    }
    if (!node.isElement()) return;
    Xml::Element& element = *node.toElement();
    for (int i = 0; i < element.getAttributeCount(); ++i) number(*element.getAttribute(i));
    for (int i = 0; i < element.getChildCount(); ++i) number(*element.getChild(i));
}

const std::vector<std::unique_ptr<Sample>>& samples() {
    static const auto kSamples = [] {
        std::vector<std::unique_ptr<Sample>> made;
        made.push_back(std::make_unique<Sample>());
        for (const char* text : kDocuments) made.push_back(std::make_unique<Sample>(text));
        return made;
    }();
    return kSamples;
}

}  // namespace support
