#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include "VexXml/Dom.h"

// Nodes, their names and texts lie together in memory that comes from no allocator the sanitizers
// watch, unless a sanitizer is there. So every node here has content that no other has.

namespace {

using Nodes = std::vector<std::unique_ptr<Xml::Element>>;

/// Texts of all lengths, so that blocks of all sizes are in use.
std::string textFor(int number) {
    const auto length = static_cast<std::size_t>(number % 600);
    return std::to_string(number) + std::string(length, static_cast<char>('a' + number % 26));
}

std::unique_ptr<Xml::Element> elementFor(int number) {
    auto element = std::make_unique<Xml::Element>("e" + std::to_string(number % 50));
    element->setAttribute("k", textFor(number + 1));
    for (int i = 0; i < number % 9; ++i) element->addChild(new Xml::CharData(textFor(number + i)));
    return element;
}

/// What is wrong with an element that `elementFor` made; nothing if all is right.
std::string mistakeIn(const Xml::Element& element, int number) {
    if (element.getName() != "e" + std::to_string(number % 50)) return "name";
    if (element.getAttribute("k")->getValue() != Xml::DataHolder(textFor(number + 1)))
        return "attribute";
    if (element.getChildCount() != number % 9) return "count of children";
    for (int i = 0; i < element.getChildCount(); ++i) {
        if (element.getChild(i)->toString() != textFor(number + i)) return "child";
    }
    return "";
}

Nodes elements(int count) {
    Nodes nodes;
    for (int i = 0; i < count; ++i) nodes.push_back(elementFor(i));
    return nodes;
}

void expectIntact(const Nodes& nodes) {
    for (std::size_t i = 0; i < nodes.size(); ++i) {
        if (!nodes[i]) continue;
        const int number = static_cast<int>(i);
        ASSERT_EQ(mistakeIn(*nodes[i], number), "") << "in element " << i;
    }
}

TEST(NodeMemory, KeepsNodesApart) {
    const Nodes nodes = elements(5000);
    expectIntact(nodes);
}

TEST(NodeMemory, KeepsNodesApartWhileOthersComeAndGo) {
    std::mt19937 random(1);
    Nodes nodes(2000);
    for (int round = 0; round < 40000; ++round) {
        const std::size_t place = random() % nodes.size();
        if (nodes[place]) {
            nodes[place].reset();
        } else {
            nodes[place] = elementFor(static_cast<int>(place));
        }
    }
    expectIntact(nodes);
}

TEST(NodeMemory, ServesATreeAfterALargeOneIsGone) {
    elements(60000);
    const Nodes nodes = elements(5000);
    expectIntact(nodes);
}

TEST(NodeMemory, IsGivenBackByAnotherThread) {
    Nodes kept;
    for (int round = 0; round < 4; ++round) {
        Nodes nodes = elements(3000);
        std::thread([&nodes] { nodes.clear(); }).join();
        kept = elements(3000);
    }
    expectIntact(kept);
}

TEST(NodeMemory, OutlivesTheThreadThatMadeTheNodes) {
    Nodes nodes;
    std::thread([&nodes] { nodes = elements(3000); }).join();
    const Nodes later = elements(3000);
    expectIntact(nodes);
    expectIntact(later);
}

TEST(NodeMemory, IsSharedByThreadsAtWork) {
    std::vector<Nodes> all(4);
    std::vector<std::thread> threads;
    threads.reserve(all.size());
    for (Nodes& nodes : all) {
        threads.emplace_back([&nodes] {
            for (int round = 0; round < 5; ++round) nodes = elements(1500);
        });
    }
    for (std::thread& thread : threads) thread.join();
    for (const Nodes& nodes : all) expectIntact(nodes);
}

/// Made before its thread makes a node, so that it is destroyed after everything that the library
/// keeps for the thread.
struct LastOfThread {
    ~LastOfThread() {
        nodes.clear();
        *mistake = mistakeIn(*elementFor(7), 7);
    }

    Nodes nodes;
    std::string* mistake = nullptr;
};

TEST(NodeMemory, ServesAThreadUntilItsVeryEnd) {
    std::string mistake = "not destroyed";
    std::thread([&mistake] {
        static thread_local LastOfThread last;
        last.mistake = &mistake;
        last.nodes = elements(100);
    }).join();
    EXPECT_EQ(mistake, "");
}

struct alignas(128) AlignedElement : Xml::Element {
    explicit AlignedElement(const std::string& name) : Element(name) {}
};

TEST(NodeMemory, AlignsClassesThatAskForIt) {
    std::vector<std::unique_ptr<AlignedElement>> nodes;
    for (int i = 0; i < 20; ++i) {
        nodes.push_back(std::make_unique<AlignedElement>("a"));
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(nodes.back().get()) % 128, 0U);
    }
}

struct LargeElement : Xml::Element {
    explicit LargeElement(const std::string& name) : Element(name) {}

    char bytes[2000] = {};
};

TEST(NodeMemory, HoldsClassesOfAnySize) {
    Xml::Element top("a");
    for (int i = 0; i < 100; ++i) {
        auto* child = new LargeElement("b" + std::to_string(i));
        for (char& byte : child->bytes) byte = static_cast<char>(i);
        top.addChild(child);
    }
    for (int i = 0; i < 100; ++i) {
        auto* child = static_cast<LargeElement*>(top.getChild(i));
        EXPECT_EQ(child->getName(), "b" + std::to_string(i));
        EXPECT_EQ(child->bytes[0], static_cast<char>(i));
        EXPECT_EQ(child->bytes[1999], static_cast<char>(i));
    }
}

}  // namespace
