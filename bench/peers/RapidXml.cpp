#include <rapidxml/rapidxml.hpp>
#include <rapidxml/rapidxml_print.hpp>

#include <fstream>

#include "bench/peers/Library.h"

namespace Bench {

namespace {

using Node = rapidxml::xml_node<char>;

template <class Tally>
void tallyNode(const Node& node, Tally& tally) {
    if (node.type() == rapidxml::node_data || node.type() == rapidxml::node_cdata) {
        tally.text({node.value(), node.value_size()});
    } else if (node.type() == rapidxml::node_element) {
        tally.element({node.name(), node.name_size()});
        for (auto* attribute = node.first_attribute(); attribute != nullptr;
             attribute = attribute->next_attribute()) {
            tally.attribute({attribute->name(), attribute->name_size()},
                            {attribute->value(), attribute->value_size()});
        }
    }
}

template <class Tally>
void walkTree(const Node& top, Tally& tally) {
    const Node* node = top.first_node();
    while (node != nullptr) {
        tallyNode(*node, tally);
        const Node* next = node->first_node();
        while (next == nullptr && node != &top) {
            next = node->next_sibling();
            if (next == nullptr) node = node->parent();
        }
        node = next;
    }
}

/// Parsing works in place, so each document has a copy of its source to itself.
class RapidXmlLibrary : public Library {
public:
    bool parse(const std::string& text) override {
        mSource.assign(text.c_str(), text.c_str() + text.size() + 1);
        return parseSource();
    }
    bool parseFile(const std::string& path) override {
        std::ifstream file(path, std::ios::binary | std::ios::ate);
        mSource.resize(static_cast<std::size_t>(file.tellg()) + 1);
        file.seekg(0);
        file.read(mSource.data(), static_cast<std::streamsize>(mSource.size() - 1));
        mSource.back() = '\0';
        return file && parseSource();
    }
    void clear() override {
        mDocument.clear();
        mSource = std::vector<char>();  // `{}` would keep its memory
    }

    void walk(Sum& tally) override { walkTree(mDocument, tally); }
    void walk(Answers& tally) override { walkTree(mDocument, tally); }

    std::string write() override {
        const Output output = print();
        return {output.bytes.get(), output.size};
    }
    std::size_t writeToMemory() override { return print().size; }
    bool writeFile(const std::string& path) override {
        const Output output = print();
        std::ofstream file(path, std::ios::binary);
        file.write(output.bytes.get(), static_cast<std::streamsize>(output.size));
        return file.good();
    }

private:
    struct Output {
        std::unique_ptr<char[]> bytes;
        std::size_t size;
    };

    bool parseSource() {
        try {
            mDocument.parse<rapidxml::parse_default>(mSource.data());
            return true;
        } catch (const rapidxml::parse_error&) {
            return false;
        }
    }

    // Printing is fastest to a buffer that is large enough. Here that is eight times the source;
    // what is not used of it costs nothing.
    Output print() {
        Output output{std::unique_ptr<char[]>(new char[mSource.size() * 8]), 0};
        const char* const end = rapidxml::print(output.bytes.get(), mDocument);
        output.size = static_cast<std::size_t>(end - output.bytes.get());
        return output;
    }

    std::vector<char> mSource;
    rapidxml::xml_document<char> mDocument;
};

const Registration kRapidXml({"RapidXml", "1.13", LibraryInfo::Kind::Tree,
                              [] { return std::make_unique<RapidXmlLibrary>(); }});

}  // namespace

}  // namespace Bench
