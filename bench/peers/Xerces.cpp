#include <xercesc/dom/DOM.hpp>
#include <xercesc/framework/LocalFileFormatTarget.hpp>
#include <xercesc/framework/MemBufFormatTarget.hpp>
#include <xercesc/framework/MemBufInputSource.hpp>
#include <xercesc/parsers/XercesDOMParser.hpp>
#include <xercesc/util/PlatformUtils.hpp>
#include <xercesc/util/TransService.hpp>
#include <xercesc/util/XMLChar.hpp>
#include <xercesc/util/XercesVersion.hpp>

#include "bench/peers/Library.h"

namespace Bench {

namespace {

using xercesc::DOMNode;
using xercesc::XMLString;

/// Drops white space between tags and processing instructions; there are no settings for that.
class Parser : public xercesc::XercesDOMParser {
public:
    Parser() {
        setValidationScheme(Val_Never);
        setLoadExternalDTD(false);
        setDoNamespaces(false);
        setCreateEntityReferenceNodes(false);
        setCreateCommentNodes(false);
    }

    void docCharacters(const XMLCh* text, const XMLSize_t length, const bool isCData) override {
        if (!isCData && xercesc::XMLChar1_0::isAllSpaces(text, length)) return;
        XercesDOMParser::docCharacters(text, length, isCData);
    }
    void docPI(const XMLCh* /*target*/, const XMLCh* /*data*/) override {}
};

// Texts are UTF-16. The timed walk takes their lengths in units; only the check makes them bytes.
std::string_view viewOf(const XMLCh* text, const Sum& /*tally*/) {
    return {reinterpret_cast<const char*>(text), XMLString::stringLen(text)};
}
std::string viewOf(const XMLCh* text, const Answers& /*tally*/) {
    const xercesc::TranscodeToStr bytes(text, "UTF-8");
    return {reinterpret_cast<const char*>(bytes.str()), bytes.length()};
}

template <class Tally>
void tallyNode(const DOMNode& node, Tally& tally) {
    if (node.getNodeType() == DOMNode::ELEMENT_NODE) {
        tally.element(viewOf(node.getNodeName(), tally));
        const xercesc::DOMNamedNodeMap& attributes = *node.getAttributes();
        for (XMLSize_t i = 0; i < attributes.getLength(); ++i) {
            const DOMNode& attribute = *attributes.item(i);
            tally.attribute(viewOf(attribute.getNodeName(), tally),
                            viewOf(attribute.getNodeValue(), tally));
        }
    } else if (node.getNodeType() == DOMNode::TEXT_NODE ||
               node.getNodeType() == DOMNode::CDATA_SECTION_NODE) {
        tally.text(viewOf(node.getNodeValue(), tally));
    }
}

template <class Tally>
void walkTree(const DOMNode& root, Tally& tally) {
    const DOMNode* node = &root;
    while (node != nullptr) {
        tallyNode(*node, tally);
        const DOMNode* next = node->getFirstChild();
        while (next == nullptr && node != &root) {
            next = node->getNextSibling();
            if (next == nullptr) node = node->getParentNode();
        }
        node = next;
    }
}

struct Process {
    Process() { xercesc::XMLPlatformUtils::Initialize(); }
};

template <class Dom>
struct Release {
    void operator()(Dom* object) const { object->release(); }
};

/// Its XPath selects by names alone, so it answers no queries here; it validates only while it
/// reads.
class XercesLibrary : public Library {
public:
    XercesLibrary() : mParser(std::make_unique<Parser>()) {}

    bool parse(const std::string& text) override {
        const xercesc::MemBufInputSource source(reinterpret_cast<const XMLByte*>(text.data()),
                                                text.size(), "memory");
        return hold([&] { mParser->parse(source); });
    }
    bool parseFile(const std::string& path) override {
        return hold([&] { mParser->parse(path.c_str()); });
    }
    void clear() override { mDocument.reset(); }

    void walk(Sum& tally) override { walkTree(*mDocument->getDocumentElement(), tally); }
    void walk(Answers& tally) override { walkTree(*mDocument->getDocumentElement(), tally); }

    std::string write() override {
        xercesc::MemBufFormatTarget target;
        writeTo(target);
        return {reinterpret_cast<const char*>(target.getRawBuffer()), target.getLen()};
    }
    std::size_t writeToMemory() override {
        xercesc::MemBufFormatTarget target;
        writeTo(target);
        return target.getLen();
    }
    bool writeFile(const std::string& path) override {
        xercesc::LocalFileFormatTarget target(path.c_str());
        return writeTo(target);
    }

private:
    template <class Parse>
    bool hold(const Parse& parseNow) {
        try {
            parseNow();
        } catch (...) {
            return false;
        }
        mDocument.reset(mParser->adoptDocument());
        return mParser->getErrorCount() == 0 && mDocument->getDocumentElement() != nullptr;
    }

    bool writeTo(xercesc::XMLFormatTarget& target) {
        const XMLCh features[] = {xercesc::chLatin_L, xercesc::chLatin_S, xercesc::chNull};
        auto* implementation = static_cast<xercesc::DOMImplementationLS*>(
            xercesc::DOMImplementationRegistry::getDOMImplementation(features));
        const std::unique_ptr<xercesc::DOMLSSerializer, Release<xercesc::DOMLSSerializer>> writer(
            implementation->createLSSerializer());
        const std::unique_ptr<xercesc::DOMLSOutput, Release<xercesc::DOMLSOutput>> output(
            implementation->createLSOutput());
        writer->getDomConfig()->setParameter(xercesc::XMLUni::fgDOMWRTFormatPrettyPrint, true);
        output->setByteStream(&target);
        return writer->write(mDocument.get(), output.get());
    }

    Process mProcess;  ///< in front of what needs it
    std::unique_ptr<Parser> mParser;
    std::unique_ptr<xercesc::DOMDocument, Release<xercesc::DOMDocument>> mDocument;
};

const Registration kXerces({"Xerces-C", XERCES_FULLVERSIONDOT, LibraryInfo::Kind::Tree,
                            [] { return std::make_unique<XercesLibrary>(); }});

}  // namespace

}  // namespace Bench
