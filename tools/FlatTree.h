#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "VexXml/Dom.h"
#include "tools/Digest.h"

namespace tools {

/// A node with numbers to compare it by. Texts side by side are one node, empty ones are none.
struct FlatNode {
    const Xml::Object* node;  ///< of several texts the first
    std::uint32_t place;      ///< of the node among the children of its parent, from 0
    std::uint32_t end;        ///< the index behind all nodes below this one
    std::uint64_t name;       ///< stands for the name of an element; the same for all texts
    std::uint64_t head;       ///< stands for name and attributes; the same for all texts
    std::uint64_t whole;      ///< stands for all there is
};

/// The nodes of a tree in the order of the document, each by its index.
class FlatTree {
public:
    /// Index 0 is the root.
    explicit FlatTree(const Xml::Element& root);

    const FlatNode& operator[](std::uint32_t index) const { return mNodes[index]; }
    std::vector<std::uint32_t> childrenOf(std::uint32_t index) const;
    const Xml::Element& element(std::uint32_t index) const;
    /// The text of the texts that a node stands for.
    std::string text(std::uint32_t index) const;

private:
    /// An element whose children are being added.
    struct Open {
        std::uint32_t index;
        const Xml::Element* element;
        int next;  ///< the child that comes next
        Digest digest;
    };

    void open(const Xml::Element& element, std::uint32_t place);
    void addTexts();
    void close();

    std::vector<FlatNode> mNodes;
    std::vector<Open> mOpen;
};

}  // namespace tools
