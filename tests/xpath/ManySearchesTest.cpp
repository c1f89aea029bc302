#include <gtest/gtest.h>

#include <memory>
#include <random>
#include <string>
#include <vector>

#include "VexXml/Dom.h"
#include "VexXml/XPath.h"

namespace {

using Xml::Document;
using Xml::Element;
using Xml::Object;

constexpr int kElements = 700;

Element& addChild(Element& parent, const std::string& name) {
    auto child = std::make_unique<Element>(name);
    parent.addChild(child.get());
    return *child.release();
}

// How likely the next element is a child of the last one, its sibling, or further up.
struct Shape {
    const char* name;
    int children;
    int siblings;
    int upwards;
};

const Shape kShapes[] = {{"flat", 0, 1, 0}, {"deep", 1, 0, 0}, {"bushy", 5, 5, 4}};

// Elements `a` with an attribute and, now and then, one called `rare`.
std::unique_ptr<Document> makeDocument(const Shape& shape) {
    std::mt19937 random(7);
    auto root = std::make_unique<Element>("r");
    std::vector<Element*> path{root.get(), &addChild(*root, "a")};
    const int all = shape.children + shape.siblings + shape.upwards;
    for (int i = 0; i < kElements; ++i) {
        const int choice = static_cast<int>(random() % static_cast<unsigned>(all));
        const int steps = choice < shape.children                    ? 0
                          : choice < shape.children + shape.siblings ? 1
                                                                     : 2;
        for (int step = 0; step < steps && path.size() > 1; ++step) path.pop_back();
        const bool isRare = random() % 200 == 0;
        path.push_back(&addChild(*path.back(), isRare ? "rare" : "a"));
        path.back()->setAttribute("id", i);
    }
    return std::make_unique<Document>(root.release());
}

std::vector<Object*> nodesOf(const Xml::XPath& query) {
    std::vector<Object*> nodes;
    for (const auto& result : query.GetResults()) nodes.push_back(result.node);
    return nodes;
}

std::string namesOf(const std::vector<Object*>& nodes) {
    std::string names;
    for (const Object* node : nodes) names += node->toString() + '\n';
    return names;
}

// Those of the nodes from which the path leads anywhere, asked for one by one.
std::vector<Object*> filtered(const std::vector<Object*>& nodes, const std::string& path) {
    std::vector<Object*> kept;
    for (Object* node : nodes) {
        if (Xml::XPath(node).GetValues(path) > 0) kept.push_back(node);
    }
    return kept;
}

// A predicate is asked of every node, and most find nothing however far they look; so in the course
// of the query the way of searching changes.
TEST(XPathPredicates, FindTheSameInManyLongSearchesAsInSingleOnes) {
    const char* const axes[] = {"descendant",        "descendant-or-self", "ancestor",
                                "ancestor-or-self",  "following",          "preceding",
                                "following-sibling", "preceding-sibling"};
    const char* const contexts[] = {"//*", "//a/@id"};
    for (const Shape& shape : kShapes) {
        const auto document = makeDocument(shape);
        for (const std::string context : contexts) {
            Xml::XPath all(document.get());
            all.GetValues(context);
            for (const std::string axis : axes) {
                SCOPED_TRACE(std::string(shape.name) + ' ' + context + ' ' + axis);
                const std::string path = axis + "::rare";
                Xml::XPath query(document.get());
                query.GetValues(context + '[' + path + ']');
                EXPECT_EQ(namesOf(nodesOf(query)), namesOf(filtered(nodesOf(all), path)));
            }
        }
    }
}

TEST(XPathPredicates, FindTheSameBelowManyNodesAsBelowSingleOnes) {
    for (const Shape& shape : kShapes) {
        SCOPED_TRACE(shape.name);
        const auto document = makeDocument(shape);
        Xml::XPath all(document.get());
        all.GetValues("//a");
        Xml::XPath query(document.get());
        query.GetValues("//a[self::*//rare]");
        EXPECT_EQ(namesOf(nodesOf(query)), namesOf(filtered(nodesOf(all), "self::*//rare")));
    }
}

}  // namespace
