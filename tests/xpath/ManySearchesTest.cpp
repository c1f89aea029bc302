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

// Elements `a` with an attribute and, now and then, one called `rare` that has one more.
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
        if (isRare) path.back()->setAttribute("mark", i);
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

// Paths that mostly find nothing, however far they look.
const char* const kPaths[] = {
    "descendant::rare",
    "descendant-or-self::rare",
    "ancestor::rare",
    "ancestor-or-self::rare",
    "following::rare",
    "preceding::rare",
    "following-sibling::rare",
    "preceding-sibling::rare",
    "parent::*/rare",
    "parent::*/@mark",
    "self::*//rare",
    "self::*//@mark",
    "self::*//self::rare",
    "self::*//descendant::rare",
    "following-sibling::rare/a",
    "descendant::rare/@mark",
    "preceding-sibling::none/a",
};

// A predicate is asked of every node, so in the course of the query the way of searching changes.
TEST(XPathPredicates, FindTheSameInManyLongSearchesAsInSingleOnes) {
    for (const Shape& shape : kShapes) {
        const auto document = makeDocument(shape);
        for (const std::string context : {"//*", "//a/@id"}) {
            Xml::XPath all(document.get());
            all.GetValues(context);
            for (const std::string path : kPaths) {
                std::string expression = context;
                expression += '[' + path + ']';
                SCOPED_TRACE(shape.name + (' ' + expression));
                Xml::XPath query(document.get());
                query.GetValues(expression);
                EXPECT_EQ(namesOf(nodesOf(query)), namesOf(filtered(nodesOf(all), path)));
            }
        }
    }
}

struct ManyValues {
    const char* predicate;
    unsigned long count;  ///< of the hundred elements that it keeps
};

// The identifiers are 0 to 99. Beside nodes they are texts, "99" the greatest; else numbers.
const ManyValues kManyValues[] = {
    {"@id = //@id", 100},
    {"@id != //@id", 100},
    {"@id < //@id", 99},
    {"//@id > @id", 99},
    {"//@id <= @id", 100},
    {"position() = //@id", 99},
    {"position() != //@id", 100},
    {"position() < //@id", 98},
    {"//@id > position()", 98},
    {"position() <= //@id", 99},
    {"position() >= //@id", 100},
    {"position() div 0 = //@id", 0},
    {"position() div 0 > //@id", 100},
    {"0 div 0 * position() = //@id", 0},
    {"0 div 0 * position() != //@id", 100},
    {"0 div 0 * position() < //@id", 0},
    {"position() = 1 = //@id", 100},
    {"position() < 3 > //@id", 2},
};

TEST(XPathPredicates, CompareEveryItemWithManyNodes) {
    auto root = std::make_unique<Element>("r");
    for (int i = 0; i < 100; ++i) addChild(*root, "a").setAttribute("id", i);
    Document document(root.release());
    for (const auto& [predicate, count] : kManyValues) {
        const std::string expression = std::string("//a[") + predicate + ']';
        EXPECT_EQ(Xml::XPath(&document).GetValues(expression), count) << expression;
    }
}

TEST(XPathPredicates, FollowAnAbsolutePathOnceForAllThatAsk) {
    auto root = std::make_unique<Element>("r");
    for (int i = 0; i < 100; ++i) addChild(*root, "a").setAttribute("id", i);
    Document document(root.release());
    Xml::XPath query(&document);
    EXPECT_EQ(query.GetValues("/r/a[self::a[@id = /r/a/@id]]"), 100UL);
    EXPECT_EQ(query.GetValues("/r/a[self::a[/r/a[@id = '7']]]"), 100UL);
    EXPECT_EQ(query.GetValues("/r/a[self::a[/r/a/none]]"), 0UL);
    EXPECT_EQ(query.GetErrorDetail(), L"none");
}

}  // namespace
