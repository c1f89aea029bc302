#include "support/Dump.h"

#include <pthread.h>

#include <memory>
#include <sstream>
#include <stdexcept>
#include <utility>
#include <vector>

#include "VexXml/Dtd.h"
#include "VexXml/Streams.h"

namespace support {
namespace {

std::string quoted(const std::string& text) {
    static const char* const kHex = "0123456789abcdef";
    std::string out = "\"";
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte >= 32 && byte < 127 && c != '"' && c != '\\') {
            out += c;
        } else {
            out += {'\\', 'x', kHex[byte >> 4U], kHex[byte & 15U]};
        }
    }
    return out + '"';
}

void openElement(const Xml::Element& element, std::string& out) {
    out += element.getName() + '(';
    for (int i = 0; i < element.getAttributeCount(); ++i) {
        if (i > 0) out += ' ';
        out +=
            element.getAttribute(i)->getName() + '=' + quoted(element.getAttribute(i)->getValue());
    }
}

std::string escapedText(const Xml::CharData& text) {
    std::string out;
    for (int i = 0; i < text.getSize(); ++i) out += text[i];
    return out;
}

}  // namespace

std::string written(Xml::Object& node) {
    std::ostringstream text;
    Xml::FileOutStream out(&text);
    node.toStream(out);
    return text.str();
}

std::string dump(const Xml::Element& element) {
    std::string out;
    openElement(element, out);
    // The open elements, each with the index of the child to be shown next.
    std::vector<std::pair<const Xml::Element*, int>> open{{&element, 0}};
    while (!open.empty()) {
        auto& [parent, next] = open.back();
        if (next == parent->getChildCount()) {
            out += ')';
            open.pop_back();
            continue;
        }
        const Xml::Object* child = parent->getChild(next++);
        if (out.back() != '(') out += ' ';
        if (child->isElement()) {
            openElement(*child->toElement(), out);
            open.emplace_back(child->toElement(), 0);
        } else {
            out += quoted(escapedText(*child->toCharData()));
        }
    }
    return out;
}

std::string dump(Xml::Document& document) {
    std::string out;
    if (document.getDtd() != nullptr) out += written(*document.getDtd());
    return out + (document.getRoot() != nullptr ? dump(*document.getRoot()) : "no root");
}

Xml::Element* makeChain(int depth) {
    auto top = std::make_unique<Xml::Element>("e");
    Xml::Element* bottom = top.get();
    for (int level = 1; level < depth; ++level) {
        auto child = std::make_unique<Xml::Element>("e");
        Xml::Element* next = child.get();
        bottom->addChild(child.release());
        bottom = next;
    }
    return top.release();
}

void runOnSmallStack(void (*work)()) {
    constexpr std::size_t kStackSize = std::size_t{256} * 1024;
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    pthread_attr_setstacksize(&attributes, kStackSize);
    pthread_t thread{};
    const auto run = [](void* argument) -> void* {
        (*static_cast<void (**)()>(argument))();
        return nullptr;
    };
    const int failure = pthread_create(&thread, &attributes, run, static_cast<void*>(&work));
    pthread_attr_destroy(&attributes);
    if (failure != 0) throw std::runtime_error("cannot start a thread");
    pthread_join(thread, nullptr);
}

}  // namespace support
