#include <tinyxml2.h>

#include "bench/peers/Library.h"

namespace Bench {

namespace {

template <class Tally>
void tallyNode(const tinyxml2::XMLNode& node, Tally& tally) {
    if (node.ToText() != nullptr) {
        tally.text(node.Value());
    } else if (const tinyxml2::XMLElement* element = node.ToElement()) {
        tally.element(element->Name());
        for (auto* attribute = element->FirstAttribute(); attribute != nullptr;
             attribute = attribute->Next()) {
            tally.attribute(attribute->Name(), attribute->Value());
        }
    }
}

template <class Tally>
void walkTree(const tinyxml2::XMLNode& top, Tally& tally) {
    const tinyxml2::XMLNode* node = top.FirstChild();
    while (node != nullptr) {
        tallyNode(*node, tally);
        const tinyxml2::XMLNode* next = node->FirstChild();
        while (next == nullptr && node != &top) {
            next = node->NextSibling();
            if (next == nullptr) node = node->Parent();
        }
        node = next;
    }
}

/// Comments cannot be kept from becoming nodes.
class TinyXml2Library : public Library {
public:
    bool parse(const std::string& text) override {
        mDocument = std::make_unique<tinyxml2::XMLDocument>();
        return mDocument->Parse(text.data(), text.size()) == tinyxml2::XML_SUCCESS;
    }
    bool parseFile(const std::string& path) override {
        mDocument = std::make_unique<tinyxml2::XMLDocument>();
        return mDocument->LoadFile(path.c_str()) == tinyxml2::XML_SUCCESS;
    }
    // Its own way to clear a document keeps the memory.
    void clear() override { mDocument.reset(); }

    void walk(Sum& tally) override { walkTree(*mDocument, tally); }
    void walk(Answers& tally) override { walkTree(*mDocument, tally); }

    std::string write() override {
        tinyxml2::XMLPrinter printer;
        mDocument->Print(&printer);
        return printer.CStr();
    }
    std::size_t writeToMemory() override {
        tinyxml2::XMLPrinter printer;
        mDocument->Print(&printer);
        return static_cast<std::size_t>(printer.CStrSize());
    }
    bool writeFile(const std::string& path) override {
        return mDocument->SaveFile(path.c_str()) == tinyxml2::XML_SUCCESS;
    }

private:
    std::unique_ptr<tinyxml2::XMLDocument> mDocument;
};

std::string version() {
    return std::to_string(TINYXML2_MAJOR_VERSION) + "." + std::to_string(TINYXML2_MINOR_VERSION) +
           "." + std::to_string(TINYXML2_PATCH_VERSION);
}

const Registration kTinyXml2({"TinyXML-2", version(), LibraryInfo::Kind::Tree,
                              [] { return std::make_unique<TinyXml2Library>(); }});

}  // namespace

}  // namespace Bench
