#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "VexXml/Dom.h"

// Nodes share the texts of their names, but not of very many names and not of long ones. Nothing of
// that is to be seen.

namespace {

using Names = std::vector<std::string>;

Names manyNames() {
    Names names;
    for (int i = 0; i < 40000; ++i) names.push_back("name" + std::to_string(i));
    return names;
}

/// Names that differ only where texts of names are not looked at when they are searched for.
Names similarNames() {
    Names names;
    for (int i = 100; i < 300; ++i)
        names.push_back("a-first-part" + std::to_string(i) + "the-last-part");
    return names;
}

Names longNames() {
    Names names;
    for (std::size_t size = 1; size < 200; ++size) names.emplace_back(size, 'n');
    return names;
}

/// Which of the nodes that are made with these names has another; empty if none has.
std::string otherName(const Names& names) {
    std::vector<std::unique_ptr<Xml::Element>> nodes;
    for (const std::string& name : names) {
        nodes.push_back(std::make_unique<Xml::Element>(name));
        nodes.back()->setAttribute(name, name);
    }
    for (std::size_t i = 0; i < names.size(); ++i) {
        if (nodes[i]->getName() != names[i]) return names[i] + " of an element";
        if (nodes[i]->getAttribute(names[i])->getValue() != Xml::DataHolder(names[i])) {
            return names[i] + " of an attribute";
        }
    }
    return "";
}

TEST(NodeName, IsKeptHoweverManyThereAre) { EXPECT_EQ(otherName(manyNames()), ""); }

TEST(NodeName, IsKeptHoweverSimilarOthersAre) { EXPECT_EQ(otherName(similarNames()), ""); }

TEST(NodeName, IsKeptHoweverLongItIs) { EXPECT_EQ(otherName(longNames()), ""); }

TEST(NodeName, IsKeptWhenThreadsMakeTheSame) {
    Names names;
    for (int i = 0; i < 500; ++i) names.push_back("of-threads" + std::to_string(i));
    std::vector<std::string> found(4, "not looked at");
    std::vector<std::thread> threads;
    threads.reserve(found.size());
    for (std::string& other : found) {
        threads.emplace_back([&other, &names] { other = otherName(names); });
    }
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(found, std::vector<std::string>(4, ""));
}

TEST(NodeName, IsChangedInOneNodeOnly) {
    Xml::Element one("a");
    const Xml::Element other("a");
    one.setName("b");
    EXPECT_EQ(one.getName(), "b");
    EXPECT_EQ(other.getName(), "a");
}

TEST(NodeName, StaysWhenTheTextOfTheNodeIsAsked) {
    Xml::Element element("a");
    const std::string& shown = element.toString();
    EXPECT_EQ(shown, "a");
    EXPECT_EQ(element.getName(), "a");
    element.setName("b");
    EXPECT_EQ(element.toString(), "b");
    EXPECT_EQ(element.getName(), "b");
}

TEST(NodeName, GoesAlongWithCopiesAndMoves) {
    for (const std::string& name : {std::string("a"), std::string(100, 'n')}) {
        SCOPED_TRACE(name);
        Xml::Element element(name);
        EXPECT_EQ(element.toString(), name);
        const Xml::Element copy(element);
        const Xml::Element moved(std::move(element));
        EXPECT_EQ(copy.getName(), name);
        EXPECT_EQ(moved.getName(), name);
    }
}

}  // namespace
