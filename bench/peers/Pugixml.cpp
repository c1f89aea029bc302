#include <pugixml.hpp>

#include <cstring>

#include "bench/peers/Library.h"

namespace Bench {

namespace {

template <class Tally>
void tallyNode(const pugi::xml_node& node, Tally& tally) {
    const pugi::xml_node_type type = node.type();
    if (type == pugi::node_pcdata || type == pugi::node_cdata) {
        tally.text(node.value());
    } else if (type == pugi::node_element) {
        tally.element(node.name());
        for (auto attribute = node.first_attribute(); attribute;
             attribute = attribute.next_attribute()) {
            tally.attribute(attribute.name(), attribute.value());
        }
    }
}

template <class Tally>
void walkTree(const pugi::xml_node& top, Tally& tally) {
    pugi::xml_node node = top.first_child();
    while (node) {
        tallyNode(node, tally);
        pugi::xml_node next = node.first_child();
        while (!next && node != top) {
            next = node.next_sibling();
            if (!next) node = node.parent();
        }
        node = next;
    }
}

class StringWriter : public pugi::xml_writer {
public:
    void write(const void* data, std::size_t size) override {
        text.append(static_cast<const char*>(data), size);
    }

    std::string text;
};

class PugixmlLibrary : public Library {
public:
    Abilities abilities() const override { return {true, true, true, true, false}; }

    bool parse(const std::string& text) override {
        return mDocument.load_buffer(text.data(), text.size());
    }
    bool parseFile(const std::string& path) override { return mDocument.load_file(path.c_str()); }
    void clear() override { mDocument.reset(); }

    void walk(Sum& tally) override { walkTree(mDocument, tally); }
    void walk(Answers& tally) override { walkTree(mDocument, tally); }

    std::string write() override {
        StringWriter writer;
        mDocument.save(writer);
        return std::move(writer.text);
    }
    bool writeFile(const std::string& path) override { return mDocument.save_file(path.c_str()); }

    std::size_t select(const std::string& expression) override {
        return mDocument.select_nodes(expression.c_str()).size();
    }
    std::size_t selectedBytes(const std::string& expression) override {
        std::size_t bytes = 0;
        for (const pugi::xpath_node& found : mDocument.select_nodes(expression.c_str())) {
            bytes += std::strlen(found.attribute() ? found.attribute().value()
                                                   : found.node().child_value());
        }
        return bytes;
    }

private:
    pugi::xml_document mDocument;
};

std::string version() {
    return std::to_string(PUGIXML_VERSION / 1000) + "." +
           std::to_string(PUGIXML_VERSION / 10 % 100);
}

const Registration kPugixml({"pugixml", version(), LibraryInfo::Kind::Tree,
                             [] { return std::make_unique<PugixmlLibrary>(); }});

}  // namespace

}  // namespace Bench
