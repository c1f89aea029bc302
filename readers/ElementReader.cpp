#include <algorithm>
#include <utility>

#include "VexXml/Readers.h"
#include "dom/TreeBuilder.h"
#include "readers/CopyOf.h"
#include "readers/ElementContent.h"
#include "readers/ElementScanner.h"
#include "readers/LimitedRead.h"
#include "readers/Quotes.h"
#include "streams/TextWindow.h"
#include "streams/TokenMemory.h"
#include "values/References.h"

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
// stack. This reader reports mistakes in its own element, that one those further inside.
bool ElementReader::parse(InStream& in) {
    LimitedRead read(*this, in);
    mElement.reset();
    const ElementContent tag = readStartTag(in);
    if (tag == ElementContent::Failed || !isWithin(&ReadLimits::elementDepth, 1, in)) {
        return read.end(false);
    }
    return read.end(tag != ElementContent::StartTag || readAllContent(in));
}

// content ETag
bool ElementReader::readAllContent(InStream& in) {
    ElementReader inner(mDtd);
    const ReadBudget::Share share(mBudget, inner.mBudget);
    TextWindow window(in);
    TokenMemory tokens(in);
    TreeBuilder tree(*mElement, mDtd);
    ElementScanner scanner(window, tree, mBudget);
    for (scanner.read(); !tree.isComplete(); scanner.read()) {
        if (window.grow()) continue;
        window.handOver();
        ElementReader& reader = tree.isAtRoot() ? *this : inner;
        if (!reader.readNext(in, tokens, tree, inner)) {
            setMessage(reader.getErrorMessage());
            tree.abandon();
            return false;
        }
        window.takeBack();
    }
    window.handOver();
    return true;
}

// Reads one piece of content into the tree; of a child element `inner` reads the start tag.
bool ElementReader::readNext(InStream& in, TokenMemory& tokens, TreeBuilder& tree,
                             ElementReader& inner) {
    tree.settle();
    const ElementContent content = readContent(in, tokens, tree.innermost(), inner);
    const bool isChild =
        content == ElementContent::StartTag || content == ElementContent::EmptyElementTag;
    if (isChild && !isWithin(&ReadLimits::elementDepth, tree.depth() + 1, in)) return false;
    if (content == ElementContent::StartTag) tree.beginElement(std::move(inner.mElement));
    if (content == ElementContent::EmptyElementTag) tree.addElement(std::move(inner.mElement));
    if (content == ElementContent::EndTag) tree.endElement();
    return content != ElementContent::Failed;
}

// STag ::= '<' Name Attribute* '>'      EmptyElemTag ::= '<' Name Attribute* '/>'
ElementContent ElementReader::readStartTag(InStream& in) {
    std::string name;
    std::string token;
    if (!checkToken(in, "<") || !getName(in, name)) return ElementContent::Failed;
    mElement = std::make_unique<Element>(name);
    if (!takesFrom(&ReadLimits::nodes, 1, in) || !readAttributes(in, token)) {
        return ElementContent::Failed;
    }
    if (token == "/>") return ElementContent::EmptyElementTag;
    return token == ">" ? ElementContent::StartTag : ElementContent::Failed;
}

// Attribute ::= Name '=' AttValue, as many as there are. `token` is what follows them.
bool ElementReader::readAttributes(InStream& in, std::string& token) {
    if (!getToken(in, token)) return false;
    for (std::uint64_t count = 1; isName(token); ++count) {
        if (!isWithin(&ReadLimits::attributesPerElement, count, in) || !readAttribute(in, token) ||
            !getToken(in, token)) {
            return false;
        }
    }
    return true;
}

bool ElementReader::readAttribute(InStream& in, const std::string& name) {
    std::string quoted;
    if (!isWithin(&ReadLimits::nameLength, name.size(), in) ||
        !takesFrom(&ReadLimits::nodes, 1, in) || !checkToken(in, "=") || !getString(in, quoted)) {
        return false;
    }
    DataHolder value(unquoted(quoted));
    if (!mayReplace(in, value, &ReadLimits::valueLength)) return false;
    mElement->setAttribute(name, replaceEntities(value, mDtd));
    return true;
}

// content ::= (element | CharData | CDSect | PI | Comment)*, one of these, or the end tag. Of a
// child element `inner` reads the start tag.
//
// White space in front of markup is dropped with the look ahead. A text, however, must look like a
// token: one that begins with a quote needs another one somewhere behind it.
ElementContent ElementReader::readContent(InStream& in, TokenMemory& tokens, Element& element,
                                          ElementReader& inner) {
    const int start = in.getPosition();
    std::string token;
    if (!tokens.getToken(token)) {
        message(in, in.getErrorMessage());
        return ElementContent::Failed;
    }
    const auto leafIf = [](bool isRead) {
        return isRead ? ElementContent::Leaf : ElementContent::Failed;
    };
    if (token == "</") {
        return readEndTag(in, element) ? ElementContent::EndTag : ElementContent::Failed;
    }
    if (token == "<![CDATA[") return leafIf(readCDataSection(in, element));
    if (token.compare(0, 2, "<?") == 0) return leafIf(skip(in, "?>"));
    in.setPosition(start);
    if (token == "<") return readChild(in, inner);
    // Skipped from in front of its opener, so that "<!-->" is a whole comment. Deliberate, as is
    // that one without an end has no message: callers know both.
    if (token == "<!--") return leafIf(in.skip("-->"));
    if (token.compare(0, 2, "<!") == 0) {
        message(in, "unexpected token \"" + token + '"');
        return ElementContent::Failed;
    }
    return leafIf(readCharData(in, element));
}

ElementContent ElementReader::readChild(InStream& in, ElementReader& inner) {
    const ElementContent tag = inner.readStartTag(in);
    if (tag == ElementContent::Failed) setMessage(inner.getErrorMessage());
    return tag;
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
    if (!isWithin(&ReadLimits::textLength, text.size(), in)) return false;
    if (!takesFrom(&ReadLimits::nodes, 1, in)) return false;
    auto section = std::make_unique<CharData>(DataHolder(text));
    element.addChild(section.get());
    section.release();
    return true;
}

// What entities come to is measured before anybody puts it together: one may be short to name and
// long. Only those of a DTD are longer than their references.
bool ElementReader::mayReplace(InStream& in, const DataHolder& text,
                               std::uint64_t ReadLimits::*length) {
    if (limits() == nullptr) return true;
    const auto size = static_cast<std::uint64_t>(text.getSize());
    if (mDtd == nullptr) return isWithin(length, size, in);
    const std::uint64_t growth = std::min(limits()->entityGrowth, ReadLimits::kNone - size);
    const std::uint64_t most = std::min(limits()->*length, size + growth);
    const std::uint64_t grown = std::max<std::uint64_t>(size, replacedSize(text, mDtd, most));
    return isWithin(length, grown, in) && takesFrom(&ReadLimits::entityGrowth, grown - size, in);
}

// The text is kept as it stands, with its references.
bool ElementReader::readCharData(InStream& in, Element& element) {
    auto text = std::make_unique<CharData>();
    if (!getCharData(in, text->data())) return false;
    if (!mayReplace(in, text->data(), &ReadLimits::textLength)) return false;
    if (!takesFrom(&ReadLimits::nodes, 1, in)) return false;
    element.addChild(text.get());
    text.release();
    return true;
}

}  // namespace Xml
