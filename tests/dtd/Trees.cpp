#include "dtd/Trees.h"

#include <algorithm>
#include <cstddef>

namespace support {
// Invariant: `open` is the element that the next node belongs to, null in front of the root.
std::unique_ptr<Xml::Element> tree(const std::string& text) {
    std::unique_ptr<Xml::Element> root;
    Xml::Object* open = nullptr;
    Xml::Element* last = nullptr;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == ' ') continue;
        if (text[i] == '(') {
            open = last;
        } else if (text[i] == ')') {
            open = open->getParent();
        } else if (text[i] == '#') {
            open->toElement()->addChild(new Xml::CharData(Xml::Entity("dtd")));
        } else {
            const std::size_t end = std::min(text.find_first_of(" ()#", i), text.size());
            auto element = std::make_unique<Xml::Element>(text.substr(i, end - i));
            last = element.get();
            if (open == nullptr) {
                root = std::move(element);
            } else {
                open->toElement()->addChild(element.release());
            }
            i = end - 1;
        }
    }
    return root;
}

std::vector<Xml::Object*> childrenOf(Xml::Element& element) {
    std::vector<Xml::Object*> children;
    for (int i = 0; i < element.getChildCount(); ++i) children.push_back(element.getChild(i));
    return children;
}

std::queue<Xml::Object*> queueOf(Xml::Element& element) {
    const std::vector<Xml::Object*> children = childrenOf(element);
    return std::queue<Xml::Object*>({children.begin(), children.end()});
}

void declareMarks(Xml::Dtd& dtd, const std::vector<std::string>& elements,
                  const std::string& value) {
    dtd.setEntity("dtd", value);
    for (const std::string& element : elements) {
        dtd.addAttDecl(element, "dtd", new Xml::AttStringType(Xml::AttValue, value));
    }
}

std::vector<Xml::Object*> nodesOf(Xml::Element& top) {
    std::vector<Xml::Object*> nodes;
    std::vector<Xml::Object*> pending{&top};
    while (!pending.empty()) {
        Xml::Object* node = pending.back();
        pending.pop_back();
        nodes.push_back(node);
        if (!node->isElement()) continue;
        const std::vector<Xml::Object*> children = childrenOf(*node->toElement());
        pending.insert(pending.end(), children.rbegin(), children.rend());
    }
    return nodes;
}

std::string bindingOf(const Xml::Object& node) {
    const std::string found = node.isElement()
                                  ? std::string(node.toElement()->getAttributeValue("dtd"))
                                  : std::string(node.toCharData()->getData());
    return found.empty() || found == "&dtd;" ? "-" : found;
}

std::string bindings(Xml::Element& top) {
    std::string out;
    for (const Xml::Object* node : nodesOf(top)) {
        if (!out.empty()) out += ' ';
        out += (node->isElement() ? node->toElement()->getName() : "#") + '=' + bindingOf(*node);
    }
    return out;
}

}  // namespace support
