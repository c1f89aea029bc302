#include <utility>
#include <vector>

#include "VexXml/Readers.h"
#include "readers/CopyOf.h"
#include "readers/Quotes.h"

namespace Xml {

ElementReader::ElementReader(Dtd* dtd) : mDtd(dtd) {}

ElementReader::ElementReader(const ElementReader& other)
    : Reader(other), mElement(copyOf(other.mElement)), mDtd(other.mDtd) {}

ElementReader::ElementReader(ElementReader&&) noexcept = default;

ElementReader& ElementReader::operator=(const ElementReader& other) {
    if (this != &other) *this = ElementReader(other);
    return *this;
}

ElementReader& ElementReader::operator=(ElementReader&&) noexcept = default;
ElementReader::~ElementReader() = default;

Element* ElementReader::getRoot() { return mElement.get(); }

Element* ElementReader::extractRoot() { return mElement.release(); }

// element ::= EmptyElemTag | STag content ETag
//
// All elements inside are read by one more reader, in turn: documents may nest deeper than the call
// stack. Invariant: the elements of `open` have their start tags read and their end tags not; each
// belongs into the one before it, the first into the element of this reader.
bool ElementReader::parse(InStream& in) {
    ElementReader inner(mDtd);
    std::vector<std::unique_ptr<Element>> open;
    const auto innermost = [&] { return open.empty() ? mElement.get() : open.back().get(); };
    bool isEmpty = false;
    mElement.reset();
    if (!readStartTag(in, isEmpty)) return false;
    if (isEmpty) return true;
    for (;;) {
        ElementReader& reader = open.empty() ? *this : inner;
        Content content = reader.readContent(in, *innermost());
        if (content == Content::ChildElement) {
            const bool isRead = inner.readStartTag(in, isEmpty);
            open.push_back(std::move(inner.mElement));
            content = !isRead ? Content::Failed : isEmpty ? Content::EndTag : Content::Leaf;
        }
        if (content == Content::Failed) {
            if (!open.empty()) setMessage(inner.getErrorMessage());
            return false;
        }
        if (content == Content::EndTag) {
            if (open.empty()) return true;
            std::unique_ptr<Element> child = std::move(open.back());
            open.pop_back();
            innermost()->addChild(child.get());
            child.release();
        }
    }
}

// STag ::= '<' Name Attribute* '>'      EmptyElemTag ::= '<' Name Attribute* '/>'
bool ElementReader::readStartTag(InStream& in, bool& isEmpty) {
    std::string name;
    std::string token;
    if (!checkToken(in, "<") || !getName(in, name)) return false;
    mElement = std::make_unique<Element>(name);
    if (!readAttributes(in, token)) return false;
    isEmpty = token == "/>";
    return isEmpty || token == ">";
}

// Attribute ::= Name '=' AttValue, as many as there are. `token` is what follows them.
bool ElementReader::readAttributes(InStream& in, std::string& token) {
    if (!getToken(in, token)) return false;
    while (isName(token)) {
        std::string quoted;
        if (!checkToken(in, "=") || !getString(in, quoted)) return false;
        DataHolder value(unquoted(quoted));
        mElement->setAttribute(token, replaceEntities(value, mDtd));
        if (!getToken(in, token)) return false;
    }
    return true;
}

// content ::= (element | CharData | CDSect | PI | Comment)*, one of these, or the end tag. A child
// element is left to be read.
//
// White space in front of markup is dropped with the look ahead. A text, however, must look like a
// token: one that begins with a quote needs another one somewhere behind it.
ElementReader::Content ElementReader::readContent(InStream& in, Element& element) {
    const int start = in.getPosition();
    std::string token;
    if (!getToken(in, token)) return Content::Failed;
    const auto leafIf = [](bool isRead) { return isRead ? Content::Leaf : Content::Failed; };
    if (token == "</") return readEndTag(in, element) ? Content::EndTag : Content::Failed;
    if (token == "<![CDATA[") return leafIf(readCDataSection(in, element));
    if (token.compare(0, 2, "<?") == 0) return leafIf(skip(in, "?>"));
    in.setPosition(start);
    if (token == "<") return Content::ChildElement;
    // Skipped from in front of its opener, so that "<!-->" is a whole comment. Deliberate, as is
    // that one without an end has no message: callers know both.
    if (token == "<!--") return leafIf(in.skip("-->"));
    if (token.compare(0, 2, "<!") == 0) {
        message(in, "unexpected token \"" + token + '"');
        return Content::Failed;
    }
    return leafIf(readCharData(in, element));
}

// ETag ::= '</' Name '>'
bool ElementReader::readEndTag(InStream& in, const Element& element) {
    std::string name;
    if (!getToken(in, name)) return false;
    if (name != element.getName()) {
        message(in, '"' + element.getName() + "\" expected");
        return false;
    }
    return checkToken(in, ">");
}

// CDSect ::= '<![CDATA[' (Char* - (Char* ']]>' Char*)) ']]>'
bool ElementReader::readCDataSection(InStream& in, Element& element) {
    const std::string end = "]]>";
    std::string text;
    char c = 0;
    while (text.size() < end.size() ||
           text.compare(text.size() - end.size(), end.size(), end) != 0) {
        if (!in.get(c)) {
            message(in, in.getErrorMessage());
            return false;
        }
        text += c;
    }
    text.resize(text.size() - end.size());
    auto section = std::make_unique<CharData>(DataHolder(text));
    element.addChild(section.get());
    section.release();
    return true;
}

// The text is kept as it stands, with its references.
bool ElementReader::readCharData(InStream& in, Element& element) {
    auto text = std::make_unique<CharData>();
    if (!getCharData(in, text->data())) return false;
    element.addChild(text.get());
    text.release();
    return true;
}

}  // namespace Xml
