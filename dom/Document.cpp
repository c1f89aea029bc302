#include <utility>

#include "VexXml/Dom.h"
#include "VexXml/Dtd.h"
#include "VexXml/Streams.h"

namespace Xml {
namespace {

const char* const kXmlDeclaration = "<?xml version = \"1.0\" ?>";

}  // namespace

Document::Document() = default;

// Binding the root may need memory; without, it and the DTD are the caller's again.
Document::Document(Element* root, Dtd* dtd) : mDocumentDtd(dtd), mRoot(root) {
    linkContent();
    try {
        if (mRoot) mRoot->setDtd(dtd);
    } catch (...) {
        if (mDocumentDtd) mDocumentDtd.release()->linkTo(nullptr);
        mRoot.release()->linkTo(nullptr);
        throw;
    }
}

// The link to the source's DTD is not taken over: nothing looks anything up through it, and the
// copy may live longer.
Document::Document(const Document& other) : Document() {
    if (other.mRoot) mRoot.reset(other.mRoot->clone()->toElement());
    if (other.mDocumentDtd) mDocumentDtd.reset(other.mDocumentDtd->clone()->toDtd());
    linkContent();
    if (mRoot) mRoot->setDtd(mDocumentDtd.get());
}

Document::Document(Document&& other) noexcept { *this = std::move(other); }

Document& Document::operator=(const Document& other) {
    if (this == &other) {
        touch();
        return *this;
    }
    return *this = Document(other);
}

// `other` may be below the old root, which dies last.
Document& Document::operator=(Document&& other) noexcept {
    if (this == &other) return *this;
    const std::unique_ptr<Dtd> oldDtd = std::exchange(mDocumentDtd, std::move(other.mDocumentDtd));
    const std::unique_ptr<Element> oldRoot = std::exchange(mRoot, std::move(other.mRoot));
    other.touch();
    linkContent();
    return *this;
}

Document::~Document() = default;

// What is below may be marked as touched up to the top, so the document must be, too.
void Document::linkContent() {
    if (mRoot) mRoot->linkTo(this);
    if (mDocumentDtd) mDocumentDtd->linkTo(this);
    touch();
    if (!is(PathTouched) && mRoot) mRoot->forgetTouchedPaths();
}

// What is below the root may have been marked as touched up to here.
void Document::setDtd(const Dtd* dtd) {
    Object::setDtd(dtd);
    if (dtd != nullptr && mRoot) mRoot->forgetTouchedPaths();
}

Object* Document::clone() const { return new Document(*this); }

const std::string& Document::toString() const {
    if (!mText) mText = std::make_unique<std::string>();
    return *mText = "<Document> " + (mRoot ? mRoot->getName() : std::string());
}

bool Document::isDocument() const { return true; }

Element* Document::getRoot() { return mRoot.get(); }
const Element* Document::getRoot() const { return mRoot.get(); }
Dtd* Document::getDtd() { return mDocumentDtd.get(); }
const Dtd* Document::getDtd() const { return mDocumentDtd.get(); }

Element* Document::extractRoot() {
    if (!mRoot) return nullptr;
    mRoot->linkTo(nullptr);
    try {
        mRoot->setDtd(nullptr);
    } catch (...) {
        mRoot->linkTo(this);
        throw;
    }
    return mRoot.release();
}

Dtd* Document::extractDtd() {
    if (!mDocumentDtd) return nullptr;
    mDocumentDtd->linkTo(nullptr);
    try {
        if (mRoot) mRoot->setDtd(nullptr);
    } catch (...) {
        mDocumentDtd->linkTo(this);
        throw;
    }
    setDtd(nullptr);
    return mDocumentDtd.release();
}

const Element* Document::find(const std::string& name, int index) const {
    if (!mRoot) return nullptr;
    const bool rootMatches = mRoot->getName() == name;
    if (rootMatches && index < 1) return mRoot.get();
    return std::as_const(*mRoot).findElement(name, rootMatches ? index - 1 : index);
}

Element* Document::find(const std::string& name, int index) {
    return const_cast<Element*>(std::as_const(*this).find(name, index));
}

std::vector<Element*> Document::findAll(const std::string& name) {
    std::vector<Element*> found;
    if (!mRoot) return found;
    if (mRoot->getName() == name) found.push_back(mRoot.get());
    mRoot->findAllElements(name, found);
    return found;
}

bool Document::validate() {
    bool hasRunOut = false;
    return validate(hasRunOut);
}

bool Document::validate(bool& hasRunOut) {
    if (!mDocumentDtd) return true;
    if (!mRoot || !mDocumentDtd->validate(mRoot.get(), hasRunOut)) return false;
    setDtd(mDocumentDtd.get());
    return true;
}

void Document::write(OutStream& out) const {
    out << kXmlDeclaration << '\n';
    if (mDocumentDtd) mDocumentDtd->toStream(out);
    if (mRoot) mRoot->toStream(out);
    out << '\n';
}

}  // namespace Xml
