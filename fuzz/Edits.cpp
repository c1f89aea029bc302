#include <algorithm>
#include <cstddef>
#include <iterator>
#include <memory>
#include <sstream>
#include <vector>

#include "VexXml/Dtd.h"
#include "VexXml/Streams.h"
#include "fuzz/Checks.h"
#include "fuzz/Documents.h"
#include "support/Diagnostics.h"
#include "support/Dump.h"
#include "support/LogStream.h"

namespace fuzz {
namespace {

const char* const kNames[] = {"a", "b", "long-name", "n:c"};
const char* const kTexts[] = {
    "",       "x",   "text", "<&>\"'", "\n",
    " \r\n ", "]]>", "&e;",  "'open",  "a much longer text than the others"};

template <std::size_t size>
const char* oneOf(const char* const (&choices)[size], std::size_t number) {
    return choices[number % size];
}

bool hasText(const Xml::Element& element) {
    for (int i = 0; i < element.getChildCount(); ++i)
        if (element.getChild(i)->isCharData()) return true;
    return false;
}

// The tabs in front of a node count as part of its text, and whether there are any depends on its
// parent, which need not move it: a caller who changes that has to touch what it is true for.
void touchChildren(Xml::Element& element) {
    for (int i = 0; i < element.getChildCount(); ++i) element.getChild(i)->touch();
}

/// A document that is edited, and the text that it is written over each time.
class Editing {
public:
    explicit Editing(std::unique_ptr<Xml::Document> document) : mDocument(std::move(document)) {}

    /// The edit changes a node that `where` chooses, in a way that `what` has a part in. Empty, or
    /// what is wrong then.
    std::string edit(std::size_t number, std::size_t where, std::size_t what);
    /// Writes what changed since the last time.
    std::string rewrite();

private:
    Xml::Element& element() { return *mElements[mWhere % mElements.size()]; }
    const Xml::Element& other() const { return *mElements[mWhat % mElements.size()]; }
    Xml::Object* child() { return element().getChild(static_cast<int>(mWhat)); }
    const char* name() const { return oneOf(kNames, mWhat); }
    Xml::DataHolder text() const { return Xml::DataHolder(oneOf(kTexts, mWhat)); }
    void findElements();
    bool isLarge() const { return mElements.size() > kManyElements; }

    void addElement() { element().addElement(name(), text()); }
    void addText() { element().addChild(new Xml::CharData(text())); }
    void insertElement() { element().insertChild(child(), new Xml::Element(name())); }
    void insertCopy();
    void drop() { delete element().extractChild(static_cast<int>(mWhat)); }
    void turn();
    void setAttribute() { element().setAttribute(name(), text()); }
    void removeAttribute() { element().removeAttribute(name()); }
    void setName() { element().setName(name()); }
    void setCharData() { element().setCharData(text()); }
    void setData();
    void killChildren() { element().killChildren(); }
    void assignElement();
    void assignDocument();
    void mergeDtd();
    void setEntity();
    void declareElement();
    void bind() { element().setDtd(mWhat % 2 == 0 ? nullptr : mDocument->getDtd()); }
    void validate() { mDocument->validate(); }

    static constexpr std::size_t kManyElements = 100;

    const support::OptimizedRewriting mOptimised;
    std::unique_ptr<Xml::Document> mDocument;
    std::vector<Xml::Element*> mElements;  ///< all of them
    std::size_t mWhere = 0;
    std::size_t mWhat = 0;
    std::stringstream mFile;
    Xml::FileOutStream mOut{&mFile};
};

void Editing::findElements() {
    mElements = {mDocument->getRoot()};
    for (std::size_t next = 0; next < mElements.size(); ++next) {
        Xml::Element& parent = *mElements[next];
        for (int i = 0; i < parent.getChildCount(); ++i) {
            if (parent.getChild(i)->isElement())
                mElements.push_back(parent.getChild(i)->toElement());
        }
    }
}

// What was taken out is put in again at once and in the same element: a node that stood elsewhere
// meanwhile is passed over in its old place, whatever was written there and however deep it is now.
void Editing::turn() {
    const int count = element().getChildCount();
    if (count == 0) return;
    Xml::Object* last = element().extractChild(count - 1);
    element().insertChild(child(), last);
}

void Editing::insertCopy() {
    if (isLarge()) return;
    Xml::Object* copy = other().clone();
    element().insertChild(element().getChild(0), copy);
}

void Editing::setData() {
    Xml::Object* node = child();
    if (node == nullptr || !node->isCharData()) return;
    mWhat % 2 == 0 ? node->toCharData()->setData(text())
                   : node->toCharData()->setData(Xml::Entity("e"));
}

void Editing::assignElement() {
    if (!isLarge()) element() = other();
}

void Editing::assignDocument() {
    *mDocument = Xml::Document(*mDocument);
    findElements();
}

// Neither this nor an entity touches the DTD, which so has to be done here.
void Editing::mergeDtd() {
    if (mDocument->getDtd() == nullptr) return;
    Xml::Dtd other("other");
    other.addElementDecl(name());
    other.addElementDecl("b", "a", Xml::RepOptional);
    other.addAttDecl(name(), "k", new Xml::AttStringType(Xml::AttValue, text()));
    other.setEntity("f", text());
    mDocument->getDtd()->merge(other, mWhat % 2 == 0);
    mDocument->getDtd()->touch();
}

void Editing::setEntity() {
    if (mDocument->getDtd() == nullptr) return;
    mDocument->getDtd()->setEntity("e", text());
    mDocument->getDtd()->touch();
}

void Editing::declareElement() {
    Xml::Dtd* dtd = mDocument->getDtd();
    if (dtd == nullptr) return;
    std::unique_ptr<Xml::ContentSpec> any = std::make_unique<Xml::AnySpec>(dtd);
    if (dtd->addElementDecl(name(), any.get())) any.release();
}

std::string Editing::edit(std::size_t number, std::size_t where, std::size_t what) {
    using Edit = void (Editing::*)();
    static constexpr Edit kEdits[] = {
        &Editing::addElement,     &Editing::addText,
        &Editing::insertElement,  &Editing::insertCopy,
        &Editing::drop,           &Editing::turn,
        &Editing::setAttribute,   &Editing::removeAttribute,
        &Editing::setName,        &Editing::setCharData,
        &Editing::setData,        &Editing::killChildren,
        &Editing::assignElement,  &Editing::assignDocument,
        &Editing::mergeDtd,       &Editing::setEntity,
        &Editing::declareElement, &Editing::bind,
        &Editing::validate,
    };
    findElements();
    mWhere = where;
    mWhat = what;
    const std::size_t kind = number % (std::size(kEdits) + 1);
    if (kind == std::size(kEdits)) return rewrite();
    const bool hadText = hasText(element());
    (this->*kEdits[kind])();
    if (hasText(element()) != hadText) touchChildren(element());
    return "";
}

// A text that became shorter has the end of the former one behind it.
std::string Editing::rewrite() {
    mOut.setPosition(0);
    mDocument->toStream(mOut);
    std::string found = mFile.str();
    Xml::Object::setRWOptimization(false);
    const std::string expected = support::written(*mDocument);
    Xml::Object::setRWOptimization(true);
    if (found.compare(0, expected.size(), expected) == 0) return "";
    found.resize(std::min(found.size(), expected.size()));
    return "written over the former text as\n" + found + "\nand from scratch as\n" + expected;
}

}  // namespace

std::string checkEdits(std::string_view input) {
    const support::Diagnostics diagnostics;
    const std::size_t end = std::min(input.find('\0'), input.size());
    std::unique_ptr<Xml::Document> document = read(std::string(input.substr(0, end)));
    if (document == nullptr) return "";
    Editing editing(std::move(document));
    std::string wrong = editing.rewrite();
    const auto number = [input](std::size_t place) -> std::size_t {
        return static_cast<unsigned char>(input[place]);
    };
    for (std::size_t place = end + 1; place + 2 < input.size() && wrong.empty(); place += 3)
        wrong = editing.edit(number(place), number(place + 1), number(place + 2));
    return wrong.empty() ? editing.rewrite() : wrong;
}

}  // namespace fuzz
