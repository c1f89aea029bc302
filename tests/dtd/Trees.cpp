#include "dtd/Trees.h"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace support {
// Invariant: the next node belongs to the last of the `open` elements, the root to none.
std::unique_ptr<Xml::Element> tree(const std::string& text) {
    std::unique_ptr<Xml::Element> root;
    std::vector<Xml::Element*> open;
    Xml::Element* last = nullptr;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == ' ') continue;
        if (text[i] == '(') {
            open.push_back(last);
        } else if (text[i] == ')') {
            open.pop_back();
        } else if (text[i] == '#') {
            open.back()->addChild(new Xml::CharData(Xml::Entity("dtd")));
        } else {
            const std::size_t end = std::min(text.find_first_of(" ()#", i), text.size());
            auto element = std::make_unique<Xml::Element>(text.substr(i, end - i));
            last = element.get();
            i = end - 1;
            if (open.empty()) {
                root = std::move(element);
            } else {
                open.back()->addChild(element.release());
            }
        }
    }
    return root;
}

std::vector<Xml::Object*> childrenOf(Xml::Element& element) {
    std::vector<Xml::Object*> children;
    children.reserve(static_cast<std::size_t>(element.getChildCount()));
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
    const std::string found = node.isElement() ? node.toElement()->getAttributeValue("dtd")
                                               : node.toCharData()->getData();
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
