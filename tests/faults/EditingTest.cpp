#include <gtest/gtest.h>

#include <memory>
#include <new>
#include <string>
#include <vector>

#include "VexXml/Dom.h"
#include "VexXml/Dtd.h"
#include "VexXml/Readers.h"
#include "faults/Documents.h"
#include "faults/EachAllocation.h"
#include "faults/Quiet.h"
#include "support/Dump.h"

namespace {

using faults::failEachAllocation;

const char* const kLong = "a text that is too long to lie in its holder";

/// What is done with a document, and what there is to tell of it.
using Work = std::string (*)(Xml::Document& document);

/// A document that was read, and so is valid, and something done with it.
struct Done {
    Done(const std::string& text, Work todo) : work(todo) {
        Xml::StringInStream in(text);
        Xml::DocumentReader reader;
        reader.parse(in);
        document.reset(reader.extractDocument());
    }
    void run() { told = work(*document); }
    std::string result() const { return told + "\n" + support::dump(*document); }

    Work work;
    std::unique_ptr<Xml::Document> document;
    std::string told;
};

struct Case {
    const char* name;
    std::string text;
    Work work;
};

std::unique_ptr<Xml::Element> makeBranch() {
    auto top = std::make_unique<Xml::Element>("branch");
    Xml::Element* inner = top->addElement("twig", kLong);
    inner->addElement("leaf", "green")->setAttribute("size", kLong);
    top->addElement("twig", "dry")->addElement("leaf", "brown")->addElement("vein", "");
    return top;
}

Xml::Element& rootOf(Xml::Document& document) { return *document.getRoot(); }

Xml::Element& chapterOf(Xml::Document& document) { return *document.find("chapter"); }

void expectRight(const Case& todo) {
    SCOPED_TRACE(todo.name);
    failEachAllocation<Done>(todo.text, todo.work);
}

const Case kAttributeCases[] = {
    {"set the first", "<a/>",
     [](Xml::Document& document) {
         rootOf(document).setAttribute("name", kLong);
         return std::string();
     }},
    {"set one more", "<a x='1' z='3'/>",
     [](Xml::Document& document) {
         rootOf(document).setAttribute("y", kLong);
         return std::string();
     }},
    {"set one again", "<a x='1' z='3'/>",
     [](Xml::Document& document) {
         rootOf(document).setAttribute("x", kLong);
         return std::string(rootOf(document).getAttributeValue("x"));
     }},
    {"remove by name", "<a x='1' y='2' z='3'/>",
     [](Xml::Document& document) {
         rootOf(document).removeAttribute("y");
         return std::string();
     }},
    {"remove by index", "<a x='1' y='2' z='3'/>",
     [](Xml::Document& document) {
         if (rootOf(document).getAttributeCount() == 3) rootOf(document).removeAttribute(1);
         return std::string();
     }},
    {"assign another", "<a x='1' y='2'/>",
     [](Xml::Document& document) {
         const Xml::Attribute other(
             "a-name-that-is-longer-than-those-that-nodes-share-with-others-x", kLong);
         *rootOf(document).getAttribute("x") = other;
         return std::string(rootOf(document).getAttribute("x")->getName());
     }},
    {"move away", "<a x='1' y='2'/>",
     [](Xml::Document& document) {
         Xml::Attribute taken("other", "");
         taken = std::move(*rootOf(document).getAttribute("x"));
         *rootOf(document).getAttribute("x") = taken;
         return taken.toString();
     }},
    {"show", "<a x='1' y='a text that is longer than fifteen bytes'/>",
     [](Xml::Document& document) {
         return rootOf(document).toString() + rootOf(document).getAttribute("x")->toString() +
                document.toString();
     }},
    {"set one more of very many", faults::manyAttributes(),
     [](Xml::Document& document) {
         rootOf(document).setAttribute("n", kLong);
         return std::string();
     }},
    {"set so many that they are divided", "<a/>",
     [](Xml::Document&) {
         Xml::Element element("a");
         for (int i = 0; i < 260; ++i) element.setAttribute("n" + std::to_string(i), "");
         return element.toString();
     }},
    {"set again what was removed of very many", faults::manyAttributes(),
     [](Xml::Document& document) {
         Xml::Element& root = rootOf(document);
         root.setAttribute("n", "");
         while (root.getAttributeCount() > 0) root.removeAttribute(0);
         root.setAttribute("one", kLong);
         return std::string();
     }},
};

const Case kChildCases[] = {
    {"add a child", faults::kBook,
     [](Xml::Document& document) {
         std::unique_ptr<Xml::Element> branch = makeBranch();
         chapterOf(document).addChild(branch.get());
         branch.release();
         return std::string();
     }},
    {"insert a child", faults::kBook,
     [](Xml::Document& document) {
         std::unique_ptr<Xml::Element> branch = makeBranch();
         rootOf(document).insertChild(&chapterOf(document), branch.get());
         branch.release();
         return std::string();
     }},
    {"add an element", faults::kBook,
     [](Xml::Document& document) {
         rootOf(document).addElement("chapter", kLong);
         return std::string();
     }},
    {"extract a child", faults::kBook,
     [](Xml::Document& document) {
         const std::unique_ptr<Xml::Object> out(
             rootOf(document).extractChild(&chapterOf(document)));
         return std::string();
     }},
    {"extract by index", faults::kBook,
     [](Xml::Document& document) {
         const std::unique_ptr<Xml::Object> out(rootOf(document).extractChild(1));
         return std::string();
     }},
    {"replace the text", faults::kBook,
     [](Xml::Document& document) {
         chapterOf(document).setCharData(kLong);
         return std::string();
     }},
    {"replace a text elsewhere", faults::kBook,
     [](Xml::Document& document) {
         rootOf(document).findAndSetElementCharData("em", kLong);
         return std::string(rootOf(document).findElementCharData("em"));
     }},
    {"rename", faults::kBook,
     [](Xml::Document& document) {
         rootOf(document).setName(
             "a-name-that-is-longer-than-those-that-nodes-share-with-others-and-then-some");
         return std::string();
     }},
    {"look up", faults::kBook,
     [](Xml::Document& document) {
         std::string found = std::to_string(document.findAll("em").size());
         found += document.find("title")->getCharData();
         found += document.find("title")->getChild(0)->toString();
         return found + std::string(chapterOf(document).getAttributeValue("language"));
     }},
    {"kill the children", faults::kBook,
     [](Xml::Document& document) {
         chapterOf(document).killChildren();
         return std::string();
     }},
};

const Case kWholeCases[] = {
    {"copy a document", faults::kBook,
     [](Xml::Document& document) {
         Xml::Document copy(document);
         return std::to_string(copy.validate());
     }},
    {"clone a document", faults::kBook,
     [](Xml::Document& document) {
         const std::unique_ptr<Xml::Object> copy(document.clone());
         return std::string(copy->toString());
     }},
    {"assign a document", faults::kBook,
     [](Xml::Document& document) {
         Xml::Document other(makeBranch().release());
         document = other;
         return std::string();
     }},
    {"assign an element its own part", faults::kBook,
     [](Xml::Document& document) {
         if (Xml::Element* inner = document.find("note")) rootOf(document) = *inner;
         return std::string();
     }},
    {"copy an element", faults::kBook,
     [](Xml::Document& document) {
         const Xml::Element copy(rootOf(document));
         return std::string(copy.findElementCharData("em"));
     }},
    {"clone an element", faults::manyAttributes(),
     [](Xml::Document& document) {
         const std::unique_ptr<Xml::Object> copy(rootOf(document).clone());
         return std::string();
     }},
    {"extract the root", faults::kBook,
     [](Xml::Document& document) {
         const std::unique_ptr<Xml::Element> root(document.extractRoot());
         return std::string();
     }},
    {"extract the DTD", faults::kBook,
     [](Xml::Document& document) {
         const std::unique_ptr<Xml::Dtd> dtd(document.extractDtd());
         return std::string();
     }},
    {"make a document", "<a/>",
     [](Xml::Document&) {
         auto root = makeBranch();
         auto dtd = std::make_unique<Xml::Dtd>("branch");
         const Xml::Document made(root.get(), dtd.get());
         root.release();
         dtd.release();
         return std::string();
     }},
    {"bind to another DTD", faults::kBook,
     [](Xml::Document& document) {
         const Xml::Dtd other("other");
         rootOf(document).setDtd(&other);
         rootOf(document).setDtd(nullptr);
         return std::string();
     }},
    {"validate", faults::kBook,
     [](Xml::Document& document) {
         rootOf(document).touch();
         return std::to_string(document.validate());
     }},
    {"find invalid", faults::kBook,
     [](Xml::Document& document) {
         if (rootOf(document).getChildCount() == 5) delete rootOf(document).extractChild(0);
         return std::to_string(document.validate());
     }},
};

class FailingMemoryInEditing : public testing::TestWithParam<Case> {
protected:
    faults::Quiet mQuiet;
};

TEST_P(FailingMemoryInEditing, LeavesTheDocumentUsable) { expectRight(GetParam()); }

std::string nameOf(const testing::TestParamInfo<Case>& info) {
    std::string name;
    for (const char c : std::string(info.param.name)) name += c == ' ' ? '_' : c;
    return name;
}

INSTANTIATE_TEST_SUITE_P(Attributes, FailingMemoryInEditing, testing::ValuesIn(kAttributeCases),
                         nameOf);
INSTANTIATE_TEST_SUITE_P(Children, FailingMemoryInEditing, testing::ValuesIn(kChildCases), nameOf);
INSTANTIATE_TEST_SUITE_P(Documents, FailingMemoryInEditing, testing::ValuesIn(kWholeCases), nameOf);

// What the process keeps for good is not kept in part.
TEST(FailingMemoryForANewName, LeavesTheNameUsable) {
    for (long count = 0; count < 8; ++count) {
        const std::string name = "new-name-" + std::to_string(count);
        bool hasFailed = false;
        try {
            const faults::FailingMemory memory(count, faults::Failing::Once, hasFailed);
            const Xml::Element element(name);
        } catch (const std::bad_alloc&) {
            EXPECT_TRUE(hasFailed);
        }
        EXPECT_EQ(Xml::Element(name).getName(), name);
    }
}

}  // namespace
