#include <gtest/gtest.h>

#include <array>
#include <fstream>
#include <functional>
#include <memory>
#include <sstream>
#include <string>

#include "VexSys/FileIO.h"
#include "VexXml/VexXml.h"
#include "support/Diagnostics.h"
#include "support/Dump.h"
#include "support/TempFolder.h"
#include "threads/Together.h"

// ctest runs each test in a process of its own, so in each all that the process keeps is used for
// the first time by several threads at once.
namespace {

using Documents = std::array<std::unique_ptr<Xml::Document>, threads::kThreads>;
using Texts = std::array<std::string, threads::kThreads>;

const char* const kShop = R"(<!DOCTYPE shop [
<!ELEMENT shop (name, item*)>
<!ELEMENT name (#PCDATA)>
<!ELEMENT item (#PCDATA | name)*>
<!ATTLIST item id CDATA #REQUIRED unit CDATA "kg">
<!ENTITY company "Tea &amp; Sons">
]>
<shop><name>&company;</name><item id="1">Tea &lt; coffee &company;</item><item id="2">a longer text
than lies in a holder<name>&amp;</name></item></shop>)";

std::unique_ptr<Xml::Document> read(const std::string& text) {
    Xml::StringInStream in(text);
    Xml::DocumentReader reader;
    EXPECT_TRUE(reader.parse(in)) << reader.getErrorMessage();
    return std::unique_ptr<Xml::Document>(reader.extractDocument());
}

class OwnDocuments : public testing::Test {
protected:
    /// Whether all threads make of their numbers what one alone would.
    static void expectTheSame(const std::function<std::string(int)>& work) {
        Texts found;
        threads::together(
            [&](int number) { found[static_cast<std::size_t>(number)] = work(number); });
        for (int number = 0; number < threads::kThreads; ++number) {
            EXPECT_EQ(found[static_cast<std::size_t>(number)], work(number)) << number;
        }
    }
    support::Diagnostics diagnostics;
};

TEST_F(OwnDocuments, AreReadAndFreed) {
    expectTheSame([](int) { return support::dump(*read(kShop)); });
}

TEST_F(OwnDocuments, AreReadFromFiles) {
    const support::TempFolder folder;
    const std::string path = folder.write("shop.xml", kShop);
    expectTheSame([&](int number) {
        std::ifstream file;
        Xml::FileInStream plain(path, &file);
        Xml::FileSpecInStream named{VexSys::FileSpec(path)};
        Xml::DocumentReader reader;
        reader.parse(number % 2 == 0 ? static_cast<Xml::InStream&>(plain) : named);
        return reader.getErrorMessage() + support::dump(*reader.getDocument());
    });
}

TEST_F(OwnDocuments, AreEdited) {
    expectTheSame([](int number) {
        const auto document = read(kShop);
        Xml::Element& root = *document->getRoot();
        for (int i = 0; i < 200; ++i) {
            root.addElement("item", Xml::DataHolder(i))->setAttribute("id", number);
            root.addElement("note", std::string(static_cast<std::size_t>(i) * 3, '&'));
        }
        for (int i = 0; i < 50; ++i) delete root.extractChild(root.getChildCount() / 2);
        root.setCharData(std::string(1000, '<'));
        root.removeAttribute("none");
        return root.toString() + support::dump(*document);
    });
}

TEST_F(OwnDocuments, AreValidatedAndCopied) {
    expectTheSame([](int number) {
        const auto document = read(kShop);
        if (number % 2 == 0) document->getRoot()->getElement("item")->removeAttribute("id");
        const std::unique_ptr<Xml::Object> copy(document->clone());
        const bool isValid = document->validate();
        const bool isCopyValid = copy->toDocument()->validate();
        return std::to_string(isValid) + std::to_string(isCopyValid) +
               support::dump(*copy->toDocument());
    });
}

TEST_F(OwnDocuments, AreQueried) {
    expectTheSame([](int) {
        const auto document = read(kShop);
        Xml::XPath query(document.get());
        std::string found;
        for (const char* expression : {"//item[@id = '2']", "//name", "//item[2]/name", "//item[",
                                       "//text[3]", "/shop/item[last()]/@id", "7 * 6"}) {
            found += query.GetValueUTF8(expression) + '|' + query.GetErrorStringUTF8() + '\n';
        }
        return found;
    });
}

// The text of a refusal goes through all that tells a class its name.
TEST_F(OwnDocuments, AreRefused) {
    expectTheSame([](int) {
        Xml::StringInStream in("<a><b></a>");
        Xml::DocumentReader reader;
        reader.parse(in);
        return reader.getErrorMessage();
    });
}

// So many that not all find room among the shared ones, which every thread meets at another time.
TEST_F(OwnDocuments, HaveMoreNamesThanAreShared) {
    expectTheSame([](int number) {
        Xml::Element root("root");
        for (int i = 0; i < 4000; ++i) {
            root.addElement("e" + std::to_string((i * (number + 1)) % 6000), "");
            root.setAttribute("a" + std::to_string(number * 1000 + i % 2000), i);
        }
        Xml::XPath query(&root);
        const Xml::Element copy(root);
        return std::to_string(copy.getElement("e0") != nullptr) + support::dump(copy);
    });
}

TEST_F(OwnDocuments, HoldLongTexts) {
    expectTheSame([](int number) {
        std::string found;
        for (int i = 0; i < 20; ++i) {
            const std::size_t size = 70000U + 50000U * static_cast<unsigned>((i + number) % 4);
            const auto document = read("<a>" + std::string(size, 'x') + "&lt;</a>");
            found += std::to_string(document->getRoot()->getCharData().getSize()) + ' ';
        }
        return found;
    });
}

TEST_F(OwnDocuments, AreFreedByOtherThreadsThanReadThem) {
    Documents documents;
    const auto at = [&documents](int number) -> std::unique_ptr<Xml::Document>& {
        return documents[static_cast<std::size_t>(number % threads::kThreads)];
    };
    for (int round = 0; round < 5; ++round) {
        threads::together([&](int number) {
            at(number + round) = read(kShop);
            Xml::Element& root = *at(number + round)->getRoot();
            for (int i = 0; i < 500; ++i) root.addElement("item", std::string(100, 'x'));
        });
        threads::together([&](int number) {
            Xml::Element& root = *at(number)->getRoot();
            EXPECT_EQ(root.getChildCount(), 503);
            root.addElement("name", "of the thread that frees it");
            at(number).reset();
        });
    }
}

TEST_F(OwnDocuments, MayShareADtdThatNobodyChanges) {
    const auto shop = read(kShop);
    const Xml::Dtd& dtd = *shop->getDtd();
    expectTheSame([&](int number) {
        Xml::Element root("shop");
        root.addElement("name", "a shop");
        for (int i = 0; i < 100; ++i) root.addElement("item", "")->setAttribute("id", i);
        if (number % 2 == 1) root.addElement("name", "too late");
        std::string found = dtd.validate(&root) ? "valid" : "not valid";
        root.getElement("item")->getCharData();
        return found + std::string(root.getElement("item")->getAttributeValue("unit"));
    });
}

TEST_F(OwnDocuments, MayGetCopiesOfADtdThatNobodyChanges) {
    const auto shop = read(kShop);
    const Xml::Dtd& dtd = *shop->getDtd();
    expectTheSame([&](int) {
        const std::unique_ptr<Xml::Object> copy(dtd.clone());
        Xml::Dtd merged("merged");
        merged.merge(dtd, true);
        Xml::Dtd assigned("assigned");
        assigned = dtd;
        return support::written(*copy) + support::written(merged) + support::written(assigned) +
               dtd.toString();
    });
}

}  // namespace
