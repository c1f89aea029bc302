#include "bench/QueryDocuments.h"

#include <vector>

namespace Bench {
namespace {

using Xml::Document;
using Xml::Element;

Element* addChild(Element& parent, const char* name) {
    auto child = std::make_unique<Element>(name);
    parent.addChild(child.get());
    return child.release();
}

}  // namespace

std::unique_ptr<Document> makeFlatDocument(int records) {
    auto root = std::make_unique<Element>("r");
    for (int i = 0; i < records; ++i) {
        Element& record = *addChild(*root, "a");
        record.setAttribute("id", i);
        record.addElement("b", i);
        addChild(record, "c");
    }
    return std::make_unique<Document>(root.release());
}

std::unique_ptr<Document> makeDeepDocument(int levels) {
    auto root = std::make_unique<Element>("r");
    std::vector<Element*> open{root.get()};
    for (int i = 0; i < levels; ++i) {
        Element& record = *addChild(*open.back(), "a");
        record.setAttribute("id", i);
        record.addElement("b", i);
        open.push_back(&record);
    }
    for (; open.size() > 1; open.pop_back()) addChild(*open.back(), "c");
    return std::make_unique<Document>(root.release());
}

}  // namespace Bench
