#include <gtest/gtest.h>

#include <array>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "VexXml/VexXml.h"
#include "support/Diagnostics.h"
#include "support/Dump.h"
#include "threads/Together.h"

namespace {

// The texts have references of all kinds: to characters, common or not, to entities of the DTD, and
// to nothing.
const char* const kStart = R"(<!DOCTYPE list [
<!ELEMENT list (entry*)>
<!ELEMENT entry (#PCDATA | word)*>
<!ELEMENT word (#PCDATA)>
<!ATTLIST entry key CDATA #REQUIRED kind CDATA "plain">
<!ENTITY name "a name that is somewhat longer">
]><list>)";

std::string listText() {
    std::string text = kStart;
    for (int i = 0; i < 60; ++i) {
        const std::string key = std::to_string(i);
        text.append("<entry key='").append(key).append("'>x &lt; &name;<word>").append(key);
        text += " &amp; &#65;&#x42;</word>";
        text += "<word>plain</word><word>&unknown;</word><word>&name;</word></entry>";
    }
    return text + "</list>";
}

/// One document that several threads look at, and nobody has looked at before.
class SharedDocument : public testing::Test {
protected:
    SharedDocument() {
        Xml::StringInStream in(listText());
        Xml::DocumentReader reader;
        EXPECT_TRUE(reader.parse(in)) << reader.getErrorMessage();
        document.reset(reader.extractDocument());
    }

    const Xml::Element& root() const { return *std::as_const(*document).getRoot(); }

    /// What the threads do is done several times in each, and always gives the same.
    static void expectTheSame(const std::function<std::string()>& work) {
        std::array<std::string, threads::kThreads> found;
        threads::together([&](int number) {
            std::string& own = found[static_cast<std::size_t>(number)];
            own = work();
            for (int i = 0; i < 3; ++i) EXPECT_EQ(work(), own);
        });
        const std::string expected = work();
        EXPECT_NE(expected, "");
        for (const std::string& own : found) EXPECT_EQ(own, expected);
    }

    support::Diagnostics diagnostics;
    std::unique_ptr<Xml::Document> document;
};

std::string textsBelow(const Xml::Element& element) {
    std::vector<const Xml::Element*> words;
    element.findAllElements("word", words);
    std::string texts;
    for (const Xml::Element* word : words)
        texts.append(word->getCharData().toCString()).append("|");
    return texts;
}

TEST_F(SharedDocument, GivesItsPlainTexts) {
    expectTheSame([this] { return textsBelow(root()); });
}

TEST_F(SharedDocument, GivesPlainTextsThatStayWhereTheyAre) {
    std::array<const Xml::DataHolder*, threads::kThreads> found{};
    const Xml::Element& word = *root().findElement("word", 3);
    EXPECT_EQ((*word.getChild(0)->toCharData())[0], '&');
    threads::together([&](int number) {
        const Xml::DataHolder& text = word.getCharData();
        for (int i = 0; i < 100; ++i) EXPECT_EQ(&word.getCharData(), &text);
        found[static_cast<std::size_t>(number)] = &text;
    });
    for (const Xml::DataHolder* text : found) {
        EXPECT_EQ(text, &word.getCharData());
        EXPECT_EQ(std::string(*text), "a name that is somewhat longer");
    }
}

// The plain texts were made before, and are made anew by all threads at once.
TEST_F(SharedDocument, GivesNewPlainTextsAfterAChange) {
    const std::string before = textsBelow(root());
    document->getDtd()->setEntity("name", "another name that is no shorter");
    document->getRoot()->findElement("word", 1)->getChild(0)->toCharData()->data().append("&gt;",
                                                                                          4);
    expectTheSame([this] { return textsBelow(root()); });
    EXPECT_NE(textsBelow(root()), before);
}

TEST_F(SharedDocument, CopiesItsPlainTexts) {
    expectTheSame([this] {
        std::string texts;
        for (int i = 0; i < root().getChildCount(); ++i) {
            Xml::DataHolder text;
            root().getElement(i)->getChild(0)->toCharData()->getData(&text);
            texts.append(text.toCString()).append("|");
        }
        return texts;
    });
}

TEST_F(SharedDocument, FindsElementsAndAttributes) {
    expectTheSame([this] {
        std::string found;
        for (int i = 0; i < 60; ++i) {
            const Xml::DataHolder key(i);
            const Xml::Element* entry = root().getElementByAttribute("key", key);
            found += entry == root().findElementByAttribute("key", key) ? "" : "another";
            found += std::string(entry->getAttributeValue("kind")) + entry->getName();
            found += std::string(entry->getElementCharData("word")) + '|';
        }
        return found + std::as_const(*document).find("entry", 7)->getAttribute(0)->getName();
    });
}

TEST_F(SharedDocument, IsCopied) {
    expectTheSame([this] {
        const std::unique_ptr<Xml::Object> copy(document->clone());
        const std::unique_ptr<Xml::Object> branch(root().getChild(3)->clone());
        return support::dump(*copy->toDocument()) + support::dump(*branch->toElement());
    });
}

const char* const kExpressions[] = {
    "//word",
    "//entry[@key = '7']/word[2]",
    "/list/entry[last()]/word",
    "//word[. = 'plain']",
    "//entry[word = 'plain']/@key",
    "//text",
    "//word[3]/preceding::word",
    "//word[3]/following::word[1]",
    "//entry[@kind]",
    "//word/ancestor::list",
    "//entry[@key > 30]/following-sibling::entry[2]/word",
    "//entry[word > word]",
    "//entry[position() = 5]",
    "//word[text = 'a name that is somewhat longer']",
    "count(",
};

TEST_F(SharedDocument, IsQueriedByManyObjects) {
    expectTheSame([this] {
        std::string found;
        Xml::XPath query(document.get());
        for (const char* expression : kExpressions) {
            const unsigned long count = query.GetValues(std::string(expression));
            found += std::to_string(count) + ' ' + query.GetErrorStringUTF8() + ' ';
            for (unsigned long i = 0; i < count; ++i) found += query.GetValueUTF8(i) + '|';
            query.GetValues(std::string("/list/entry"));
        }
        return found;
    });
}

TEST_F(SharedDocument, IsQueriedWhileOthersReadAndCopyIt) {
    threads::together([this](int number) {
        for (int i = 0; i < 5; ++i) {
            Xml::XPath query(document.get());
            const std::unique_ptr<Xml::Object> copy(number == 0 ? document->clone() : nullptr);
            EXPECT_EQ(query.GetValues(std::string("//word[text = 'plain']")), 60UL);
            EXPECT_EQ(std::string(root().findElementCharData("word")), "0 & AB");
        }
    });
}

}  // namespace
