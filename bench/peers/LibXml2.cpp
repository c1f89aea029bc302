#include <libxml/parser.h>
#include <libxml/tree.h>
#include <libxml/valid.h>
#include <libxml/xpath.h>

#include <cstring>

#include "bench/peers/Library.h"

namespace Bench {

namespace {

constexpr int kOptions = XML_PARSE_NOENT | XML_PARSE_NOBLANKS | XML_PARSE_HUGE | XML_PARSE_COMPACT |
                         XML_PARSE_NONET | XML_PARSE_NOERROR | XML_PARSE_NOWARNING;

const char* chars(const xmlChar* text) {
    return text == nullptr ? "" : reinterpret_cast<const char*>(text);
}

const xmlChar* xmlChars(const std::string& text) {
    return reinterpret_cast<const xmlChar*>(text.c_str());
}

// The timed walk is content with the local name. Only for the check it is put together with its
// prefix, as it stands in the document.
std::string_view nameOf(const xmlNs* /*space*/, const xmlChar* name, const Sum& /*tally*/) {
    return chars(name);
}
std::string nameOf(const xmlNs* space, const xmlChar* name, const Answers& /*tally*/) {
    if (space == nullptr || space->prefix == nullptr) return chars(name);
    return std::string(chars(space->prefix)) + ":" + chars(name);
}

// With references resolved, the value is one text node, or none when it is empty.
const char* valueOf(const xmlAttr& attribute) {
    return attribute.children == nullptr ? "" : chars(attribute.children->content);
}

// Declarations of namespaces are attributes to all the others.
template <class Tally>
void tallyNamespaces(const xmlNode& node, Tally& tally) {
    for (const xmlNs* space = node.nsDef; space != nullptr; space = space->next) {
        const std::string_view prefix = chars(space->prefix);
        tally.attribute(prefix.empty() ? "xmlns" : "xmlns:" + std::string(prefix),
                        chars(space->href));
    }
}

template <class Tally>
void tallyNode(const xmlNode& node, Tally& tally) {
    if (node.type == XML_TEXT_NODE || node.type == XML_CDATA_SECTION_NODE) {
        tally.text(chars(node.content));
    } else if (node.type == XML_ELEMENT_NODE) {
        tally.element(nameOf(node.ns, node.name, tally));
        tallyNamespaces(node, tally);
        for (const xmlAttr* attribute = node.properties; attribute != nullptr;
             attribute = attribute->next) {
            tally.attribute(nameOf(attribute->ns, attribute->name, tally), valueOf(*attribute));
        }
    }
}

template <class Tally>
void walkTree(const xmlNode& root, Tally& tally) {
    const xmlNode* node = &root;
    while (node != nullptr) {
        tallyNode(*node, tally);
        const xmlNode* next = node->type == XML_ELEMENT_NODE ? node->children : nullptr;
        while (next == nullptr && node != &root) {
            next = node->next;
            if (next == nullptr) node = node->parent;
        }
        node = next;
    }
}

std::size_t firstTextBytes(const xmlNode& node) {
    const xmlNode* child = node.children;
    while (child != nullptr && child->type != XML_TEXT_NODE &&
           child->type != XML_CDATA_SECTION_NODE) {
        child = child->next;
    }
    return child == nullptr ? 0 : std::strlen(chars(child->content));
}

using Context = std::unique_ptr<xmlParserCtxt, decltype(&xmlFreeParserCtxt)>;

// Without comments and processing instructions.
Context makeContext() {
    Context context(xmlNewParserCtxt(), xmlFreeParserCtxt);
    context->sax->comment = nullptr;
    context->sax->processingInstruction = nullptr;
    return context;
}

class LibXml2Library : public Library {
public:
    LibXml2Library() { xmlInitParser(); }

    Abilities abilities() const override { return {true, true, true, true, true}; }

    bool parse(const std::string& text) override {
        const Context context = makeContext();
        return hold(xmlCtxtReadMemory(context.get(), text.data(), static_cast<int>(text.size()),
                                      nullptr, nullptr, kOptions));
    }
    bool parseFile(const std::string& path) override {
        const Context context = makeContext();
        return hold(xmlCtxtReadFile(context.get(), path.c_str(), nullptr, kOptions));
    }
    void clear() override { mDocument.reset(); }

    void walk(Sum& tally) override { walkTree(*xmlDocGetRootElement(mDocument.get()), tally); }
    void walk(Answers& tally) override { walkTree(*xmlDocGetRootElement(mDocument.get()), tally); }

    std::string write() override {
        xmlChar* text = nullptr;
        const int size = writeTo(&text);
        std::string copy(chars(text), static_cast<std::size_t>(size));
        xmlFree(text);
        return copy;
    }
    std::size_t writeToMemory() override {
        xmlChar* text = nullptr;
        const int size = writeTo(&text);
        xmlFree(text);
        return static_cast<std::size_t>(size);
    }
    bool writeFile(const std::string& path) override {
        return xmlSaveFormatFile(path.c_str(), mDocument.get(), 1) >= 0;
    }

    std::size_t select(const std::string& expression) override {
        return withNodes(expression, [](const xmlNodeSet& found) {
            return static_cast<std::size_t>(found.nodeNr);
        });
    }
    std::size_t selectedBytes(const std::string& expression) override {
        return withNodes(expression, [](const xmlNodeSet& found) {
            std::size_t bytes = 0;
            for (int i = 0; i < found.nodeNr; ++i) bytes += firstTextBytes(*found.nodeTab[i]);
            return bytes;
        });
    }

    bool validate() override {
        const std::unique_ptr<xmlValidCtxt, decltype(&xmlFreeValidCtxt)> context(xmlNewValidCtxt(),
                                                                                 xmlFreeValidCtxt);
        return xmlValidateDocument(context.get(), mDocument.get()) == 1;
    }

private:
    bool hold(xmlDoc* document) {
        mDocument.reset(document);
        return document != nullptr;
    }
    int writeTo(xmlChar** text) {
        int size = 0;
        xmlDocDumpFormatMemory(mDocument.get(), text, &size, 1);
        return size;
    }

    template <class Use>
    std::size_t withNodes(const std::string& expression, const Use& use) {
        const std::unique_ptr<xmlXPathContext, decltype(&xmlXPathFreeContext)> context(
            xmlXPathNewContext(mDocument.get()), xmlXPathFreeContext);
        const std::unique_ptr<xmlXPathObject, decltype(&xmlXPathFreeObject)> result(
            xmlXPathEvalExpression(xmlChars(expression), context.get()), xmlXPathFreeObject);
        if (result == nullptr || result->nodesetval == nullptr) return 0;
        return use(*result->nodesetval);
    }

    std::unique_ptr<xmlDoc, decltype(&xmlFreeDoc)> mDocument{nullptr, xmlFreeDoc};
};

const Registration kLibXml2({"libxml2", LIBXML_DOTTED_VERSION, LibraryInfo::Kind::Tree,
                             [] { return std::make_unique<LibXml2Library>(); }});

}  // namespace

}  // namespace Bench
