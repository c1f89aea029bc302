#include <gtest/gtest.h>

#include <climits>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "VexXml/Dom.h"
#include "VexXml/Dtd.h"
#include "dom/Build.h"
#include "support/Bindings.h"
#include "support/Diagnostics.h"
#include "support/Dump.h"
#include "support/LogStream.h"

namespace {

using support::bindings;
using support::element;
using support::text;

constexpr const char* kDeclaration = "<?xml version = \"1.0\" ?>\n";

// "doc" holds any number of "p", which hold text and have an attribute "k" with a default.
Xml::Dtd* docDtd() {
    auto* dtd = new Xml::Dtd("doc");
    dtd->addElementDecl("doc", "p", Xml::RepZeroOrMore);
    dtd->addElementDecl("p");
    dtd->addAttDecl("p", "k", new Xml::AttStringType(Xml::AttValue, "by default"));
    dtd->setEntity("dtd", "doc");
    return dtd;
}

constexpr const char* kDocDtd =
    "<!DOCTYPE doc [\n<!ENTITY dtd \"doc\">\n<!ELEMENT doc (p)*>\n<!ELEMENT p (#PCDATA)>\n"
    "<!ATTLIST p\n\tk CDATA \"by default\"\n>\n]>\n";

Xml::Element* docRoot() { return element("doc", {element("p", {text("x")}), element("p")}); }

constexpr const char* kDocRoot = "<doc>\n\t<p>x</p>\n\t<p/>\n</doc>";

TEST(Document, MayBeEmpty) {
    Xml::Document document;
    EXPECT_EQ(document.getRoot(), nullptr);
    EXPECT_EQ(document.getDtd(), nullptr);
    EXPECT_EQ(document.getParent(), nullptr);
}

TEST(Document, OwnsRootAndDtdAndIsTheirParent) {
    Xml::Element* root = docRoot();
    Xml::Dtd* dtd = docDtd();
    Xml::Document document(root, dtd);
    const Xml::Document& constant = document;
    EXPECT_EQ(document.getRoot(), root);
    EXPECT_EQ(document.getDtd(), dtd);
    EXPECT_EQ(constant.getRoot(), root);
    EXPECT_EQ(constant.getDtd(), dtd);
    EXPECT_EQ(root->getParent(), &document);
    EXPECT_EQ(dtd->getParent(), &document);
}

TEST(Document, BindsTheWholeTreeToItsDtd) {
    Xml::Document document(element("a", {element("b", {text("x")})}),
                           support::makeDtd("one").release());
    EXPECT_EQ(bindings(*document.getRoot()), "a=one b=one #=one");
}

TEST(Document, WithoutADtdUnbindsTheTree) {
    const auto dtd = support::makeDtd("one");
    Xml::Element* root = element("a", {text("x")});
    root->setDtd(dtd.get());
    const Xml::Document document(root);
    EXPECT_EQ(bindings(*root), "a=none #=none");
}

TEST(Document, NamesItsRootInItsText) {
    support::Diagnostics diagnostics;
    EXPECT_EQ(Xml::Document(docRoot()).toString(), "<Document> doc");
    EXPECT_EQ(Xml::Document(element("1")).toString(), "<Document> ");
    EXPECT_EQ(Xml::Document().toString(), "<Document> ");
    Xml::Document document(docRoot());
    document.toString();
    document.getRoot()->setName("other");
    EXPECT_EQ(document.toString(), "<Document> other");
}

TEST(Document, IsWrittenWithDeclarationDtdAndRoot) {
    Xml::Document document(docRoot(), docDtd());
    EXPECT_EQ(support::written(document), std::string(kDeclaration) + kDocDtd + kDocRoot + '\n');
}

TEST(Document, IsWrittenWithWhatItHas) {
    Xml::Document withoutDtd(docRoot());
    Xml::Document withoutRoot(nullptr, docDtd());
    Xml::Document empty;
    EXPECT_EQ(support::written(withoutDtd), std::string(kDeclaration) + kDocRoot + '\n');
    EXPECT_EQ(support::written(withoutRoot), std::string(kDeclaration) + kDocDtd + '\n');
    EXPECT_EQ(support::written(empty), std::string(kDeclaration) + '\n');
}

TEST(Document, IsWrittenFromTheFirstColumn) {
    Xml::Document document(element("a", {element("b", {element("c")})}));
    support::LogStream out;
    document.toStream(out);
    out << "x";
    EXPECT_EQ(out.log(), std::string(kDeclaration) + "<a>\n\t<b>\n\t\t<c/>\n\t</b>\n</a>\nx");
}

TEST(DocumentRewriting, PassesOverAnUnchangedDocument) {
    const support::OptimizedRewriting rewriting;
    Xml::Document document(element("a"), new Xml::Dtd("a"));
    const std::string whole = support::writeAt(0, document);
    EXPECT_EQ(whole, std::string(kDeclaration) + "<!DOCTYPE a [\n]>\n<a/>\n");
    EXPECT_EQ(support::writeAt(0, document), "[to 47]");
}

TEST(DocumentRewriting, WritesTheChangedPartOnly) {
    const support::OptimizedRewriting rewriting;
    Xml::Document document(element("a"), new Xml::Dtd("a"));
    support::writeAt(0, document);
    document.getRoot()->setName("b");
    EXPECT_EQ(support::writeAt(0, document), std::string(kDeclaration) + "[to 42]<b/>\n");
    document.getDtd()->touch();
    EXPECT_EQ(support::writeAt(0, document),
              std::string(kDeclaration) + "<!DOCTYPE a [\n]>\n[to 46]\n");
    document.touch();
    EXPECT_EQ(support::writeAt(0, document), std::string(kDeclaration) + "[to 42][to 46]\n");
}

TEST(Document, GivesUpItsRoot) {
    Xml::Document document(element("a", {element("b", {text("x")})}),
                           support::makeDtd("one").release());
    Xml::Element* root = document.getRoot();
    const std::unique_ptr<Xml::Element> extracted(document.extractRoot());
    EXPECT_EQ(extracted.get(), root);
    EXPECT_EQ(root->getParent(), nullptr);
    EXPECT_EQ(bindings(*root), "a=none b=none #=none");
    EXPECT_EQ(document.getRoot(), nullptr);
    EXPECT_NE(document.getDtd(), nullptr);
    EXPECT_EQ(document.extractRoot(), nullptr);
}

TEST(Document, GivesUpItsDtd) {
    Xml::Document document(element("a", {element("b", {text("x")})}),
                           support::makeDtd("one").release());
    Xml::Dtd* dtd = document.getDtd();
    const std::unique_ptr<Xml::Dtd> extracted(document.extractDtd());
    EXPECT_EQ(extracted.get(), dtd);
    EXPECT_EQ(dtd->getParent(), nullptr);
    EXPECT_EQ(bindings(*document.getRoot()), "a=none b=none #=none");
    EXPECT_EQ(document.getDtd(), nullptr);
    EXPECT_NE(document.getRoot(), nullptr);
    EXPECT_EQ(document.extractDtd(), nullptr);
}

TEST(Document, GivesUpItsDtdUnderAChangedTree) {
    Xml::Document document(element("a", {element("b", {text("x")}), text("y")}),
                           support::makeDtd("one").release());
    document.getRoot()->getElement(0)->touch();
    EXPECT_EQ(bindings(*document.getRoot()), "a=none b=none #=one #=one");
    const std::unique_ptr<Xml::Dtd> extracted(document.extractDtd());
    EXPECT_EQ(bindings(*document.getRoot()), "a=none b=none #=none #=none");
}

TEST(Document, GivesUpItsDtdWithoutARoot) {
    Xml::Document document(nullptr, docDtd());
    const std::unique_ptr<Xml::Dtd> extracted(document.extractDtd());
    EXPECT_NE(extracted, nullptr);
    EXPECT_EQ(document.extractRoot(), nullptr);
}

TEST(Document, LetsWhatItGaveUpLiveOn) {
    std::unique_ptr<Xml::Element> root;
    std::unique_ptr<Xml::Dtd> dtd;
    {
        Xml::Document document(docRoot(), docDtd());
        root.reset(document.extractRoot());
        dtd.reset(document.extractDtd());
    }
    root->touch();
    EXPECT_EQ(support::written(*root), kDocRoot);
    EXPECT_EQ(support::written(*dtd), kDocDtd);
    Xml::Document again(root.release(), dtd.release());
    EXPECT_TRUE(again.validate());
}

// The elements named x, in order: the root, its first child, that one's child, its last child.
class DocumentSearch : public testing::Test {
protected:
    Xml::Document mDocument{
        element("x", {element("x", {element("y", {element("x")})}), text("x"), element("x")})};
    Xml::Element* const mFirst = mDocument.getRoot()->getElement(0);
    Xml::Element* const mInner = mFirst->getElement(0)->getElement(0);
    Xml::Element* const mLast = mDocument.getRoot()->getElement(1);
};

TEST_F(DocumentSearch, CountsTheRootFirst) {
    const std::vector<Xml::Element*> all = {mDocument.getRoot(), mFirst, mInner, mLast};
    const Xml::Document& constant = mDocument;
    for (int i = 0; i < 4; ++i) {
        EXPECT_EQ(mDocument.find("x", i), all[static_cast<std::size_t>(i)]) << i;
        EXPECT_EQ(constant.find("x", i), all[static_cast<std::size_t>(i)]) << i;
    }
    EXPECT_EQ(mDocument.findAll("x"), all);
}

TEST_F(DocumentSearch, TakesAnIndexBelowOneForTheFirst) {
    for (const int index : {0, -1, INT_MIN}) {
        EXPECT_EQ(mDocument.find("x", index), mDocument.getRoot()) << index;
        EXPECT_EQ(mDocument.find("y", index), mFirst->getElement(0)) << index;
    }
    EXPECT_EQ(mDocument.find("x"), mDocument.getRoot());
    EXPECT_EQ(static_cast<const Xml::Document&>(mDocument).find("y"), mFirst->getElement(0));
}

TEST_F(DocumentSearch, FindsNothingBeyondTheLast) {
    for (const int index : {4, 5, INT_MAX}) EXPECT_EQ(mDocument.find("x", index), nullptr);
    EXPECT_EQ(mDocument.find("y", 1), nullptr);
    EXPECT_EQ(mDocument.find("none"), nullptr);
    EXPECT_TRUE(mDocument.findAll("none").empty());
}

TEST_F(DocumentSearch, CountsOnlyBelowARootOfAnotherName) {
    EXPECT_EQ(mDocument.find("y", 0), mFirst->getElement(0));
    EXPECT_EQ(mDocument.findAll("y"), std::vector<Xml::Element*>{mFirst->getElement(0)});
}

TEST(Document, WithoutARootFindsNothing) {
    Xml::Document document;
    EXPECT_EQ(document.find("x"), nullptr);
    EXPECT_EQ(static_cast<const Xml::Document&>(document).find("x", 1), nullptr);
    EXPECT_TRUE(document.findAll("x").empty());
}

TEST(DocumentValidation, SucceedsWithoutADtd) {
    EXPECT_TRUE(Xml::Document(docRoot()).validate());
    EXPECT_TRUE(Xml::Document().validate());
}

TEST(DocumentValidation, FailsWithADtdButNoRoot) {
    EXPECT_FALSE(Xml::Document(nullptr, docDtd()).validate());
}

TEST(DocumentValidation, AsksTheDtd) {
    support::Diagnostics diagnostics;
    EXPECT_TRUE(Xml::Document(docRoot(), docDtd()).validate());
    EXPECT_TRUE(Xml::Document(element("doc"), docDtd()).validate());
    EXPECT_FALSE(Xml::Document(element("other"), docDtd()).validate());
    EXPECT_FALSE(Xml::Document(element("doc", {element("doc")}), docDtd()).validate());
    EXPECT_FALSE(Xml::Document(element("doc", {text(" ")}), docDtd()).validate());
    EXPECT_EQ(diagnostics.take(), std::vector<std::string>());
}

TEST(DocumentValidation, BindsWhatIsValid) {
    Xml::Document document(docRoot(), docDtd());
    Xml::Element* root = document.getRoot();
    root->getElement(0)->setCharData("new");
    EXPECT_EQ(std::string(root->getElement(0)->getAttributeValue("k")), "");
    EXPECT_TRUE(document.validate());
    EXPECT_EQ(std::string(root->getElement(0)->getAttributeValue("k")), "by default");
    EXPECT_EQ(support::bindingOf(*root->getElement(0)->getChild(0)), "doc");
}

TEST(DocumentValidation, TouchesNothing) {
    const support::OptimizedRewriting rewriting;
    Xml::Document document(docRoot(), docDtd());
    const std::string end = std::to_string(support::writeAt(0, document).size());
    EXPECT_TRUE(document.validate());
    EXPECT_EQ(support::writeAt(0, document), "[to " + end + ']');
}

TEST(Document, BindsItselfWithoutItsRoot) {
    const auto one = support::makeDtd("one");
    const auto two = support::makeDtd("two");
    Xml::Document document(element("a", {text("x")}));
    document.getRoot()->setDtd(one.get());
    document.setDtd(two.get());
    EXPECT_EQ(bindings(*document.getRoot()), "a=one #=one");
    EXPECT_EQ(document.getDtd(), nullptr);
}

TEST(DocumentCopy, HasEverythingOfItsOwn) {
    Xml::Document source(docRoot(), docDtd());
    source.toString();
    const std::string whole = support::written(source);
    Xml::Document copy(source);
    const std::unique_ptr<Xml::Object> clone(source.clone());
    source.getRoot()->killChildren();
    source.getDtd()->setEntity("more", "x");
    for (Xml::Document* document : {&copy, clone->toDocument()}) {
        EXPECT_EQ(support::written(*document), whole);
        EXPECT_EQ(document->toString(), "<Document> doc");
        EXPECT_EQ(document->getParent(), nullptr);
        EXPECT_EQ(document->getRoot()->getParent(), document);
        EXPECT_EQ(document->getDtd()->getParent(), document);
        EXPECT_NE(document->getRoot(), source.getRoot());
        EXPECT_NE(document->getDtd(), source.getDtd());
    }
}

TEST(DocumentCopy, IsBoundToItsOwnDtd) {
    Xml::Document source(element("a", {element("b", {text("x")}), text("y")}),
                         support::makeDtd("one").release());
    source.getRoot()->getElement(0)->touch();
    Xml::Document copy(source);
    copy.getDtd()->setEntity("dtd", "copy");
    EXPECT_EQ(bindings(*copy.getRoot()), "a=one b=one #=copy #=copy");
    EXPECT_EQ(bindings(*source.getRoot()), "a=none b=none #=one #=one");
}

TEST(DocumentCopy, WithoutADtdIsUnbound) {
    const auto dtd = support::makeDtd("one");
    Xml::Document source(element("a", {element("b", {text("x")})}));
    source.getRoot()->setDtd(dtd.get());
    Xml::Document copy(source);
    EXPECT_EQ(copy.getDtd(), nullptr);
    EXPECT_EQ(bindings(*copy.getRoot()), "a=none b=none #=none");
}

TEST(DocumentCopy, WorksWithoutARoot) {
    Xml::Document source(nullptr, docDtd());
    Xml::Document copy(source);
    EXPECT_EQ(support::written(copy), std::string(kDeclaration) + kDocDtd + '\n');
    EXPECT_EQ(copy.getRoot(), nullptr);
    const Xml::Document empty;
    copy = empty;
    EXPECT_EQ(support::written(copy), std::string(kDeclaration) + '\n');
}

TEST(DocumentCopy, IsTouchedAndUnwritten) {
    const support::OptimizedRewriting rewriting;
    Xml::Document source(docRoot(), docDtd());
    const std::string whole = support::writeAt(0, source);
    Xml::Document copy(source);
    EXPECT_EQ(support::writeAt(0, copy), whole);
}

TEST(DocumentAssignment, CopiesEverything) {
    Xml::Document source(docRoot(), docDtd());
    const std::string whole = support::written(source);
    Xml::Document target(element("old", {text("x")}), new Xml::Dtd("old"));
    target.toString();
    target = source;
    source.getRoot()->killChildren();
    EXPECT_EQ(support::written(target), whole);
    EXPECT_EQ(target.toString(), "<Document> doc");
    EXPECT_EQ(target.getRoot()->getParent(), &target);
    EXPECT_EQ(target.getDtd()->getParent(), &target);
    EXPECT_TRUE(target.validate());
}

TEST(DocumentAssignment, IsBoundToItsOwnDtd) {
    Xml::Document source(element("a", {text("x")}), support::makeDtd("one").release());
    Xml::Document target(element("b"), support::makeDtd("two").release());
    target = source;
    target.getDtd()->setEntity("dtd", "target");
    EXPECT_EQ(bindings(*target.getRoot()), "a=one #=target");
    EXPECT_EQ(bindings(*source.getRoot()), "a=one #=one");
}

TEST(DocumentAssignment, KeepsItsPlaceAndTouches) {
    const support::OptimizedRewriting rewriting;
    Xml::Element above("a");
    Xml::Document source;
    Xml::Document target(element("old"));
    target.setParent(&above);
    source.setParent(nullptr);
    support::writeAt(0, above);
    support::writeAt(0, target);
    target = source;
    EXPECT_EQ(target.getParent(), &above);
    EXPECT_EQ(support::writeAt(0, above), "<a/>");
    EXPECT_EQ(support::writeAt(0, target), std::string(kDeclaration) + '\n');
}

TEST(DocumentAssignment, FromItselfChangesNoContent) {
    Xml::Document document(docRoot(), docDtd());
    const std::string whole = support::written(document);
    const Xml::Document& same = document;
    document = same;
    EXPECT_EQ(support::written(document), whole);
    EXPECT_EQ(document.getRoot()->getParent(), &document);
    EXPECT_TRUE(document.validate());
}

TEST(DocumentMove, TakesEverythingAlong) {
    Xml::Document source(docRoot(), docDtd());
    source.toString();
    Xml::Element* root = source.getRoot();
    Xml::Dtd* dtd = source.getDtd();
    Xml::Document target(std::move(source));
    EXPECT_EQ(target.getRoot(), root);
    EXPECT_EQ(target.getDtd(), dtd);
    EXPECT_EQ(root->getParent(), &target);
    EXPECT_EQ(dtd->getParent(), &target);
    EXPECT_EQ(target.toString(), "<Document> doc");
    EXPECT_TRUE(target.validate());
}

TEST(DocumentMove, LeavesAnEmptyDocument) {
    const auto source = std::make_unique<Xml::Document>(docRoot(), docDtd());
    const Xml::Document target(std::move(*source));
    EXPECT_EQ(source->getRoot(), nullptr);
    EXPECT_EQ(source->getDtd(), nullptr);
    EXPECT_EQ(source->toString(), "<Document> ");
    EXPECT_TRUE(source->validate());
    EXPECT_EQ(support::written(*source), std::string(kDeclaration) + '\n');
}

TEST(DocumentMove, AssignsAllButThePlace) {
    Xml::Element above("a");
    const auto source = std::make_unique<Xml::Document>(docRoot(), docDtd());
    Xml::Document target(element("old"), new Xml::Dtd("old"));
    target.setParent(&above);
    Xml::Element* root = source->getRoot();
    target = std::move(*source);
    EXPECT_EQ(target.getParent(), &above);
    EXPECT_EQ(target.getRoot(), root);
    EXPECT_EQ(root->getParent(), &target);
    EXPECT_EQ(target.getDtd()->getParent(), &target);
    EXPECT_TRUE(target.validate());
    EXPECT_EQ(source->getRoot(), nullptr);
}

/// Asks its DTD for its text when it dies.
class LastWords : public Xml::CharData {
public:
    LastWords(const Xml::Entity& entity, std::string& words)
        : Xml::CharData(entity), mWords(words) {}
    ~LastWords() override { mWords = toString(); }

private:
    std::string& mWords;
};

TEST(Document, DestroysItsRootBeforeItsDtd) {
    std::string words;
    {
        auto dtd = std::make_unique<Xml::Dtd>("d");
        dtd->setEntity("n", "value");
        auto root = std::make_unique<Xml::Element>("e");
        root->addChild(new LastWords(Xml::Entity("n"), words));
        const Xml::Document document(root.release(), dtd.release());
    }
    EXPECT_EQ(words, "value");
}

TEST(DocumentMove, AssignsADocumentThatIsBelowIt) {
    Xml::Document target(element("a"));
    auto inner = std::make_unique<Xml::Document>(element("b"), new Xml::Dtd("q"));
    Xml::Document& source = *inner;
    target.getRoot()->addChild(inner.release());
    target = std::move(source);
    EXPECT_EQ(target.toString(), "<Document> b");
    EXPECT_EQ(std::string(target.getDtd()->getName()), "q");
}

}  // namespace
