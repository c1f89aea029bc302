#include "tools/FlatTree.h"

#include "tools/Shown.h"

namespace tools {
namespace {

// What digests begin with, so that no element is taken for a text.
constexpr std::uint64_t kElement = 1;
constexpr std::uint64_t kText = 2;

bool isCharData(const Xml::Object* node) { return node != nullptr && node->isCharData(); }

// Of the texts side by side from a place on; moves behind them.
std::string textsFrom(const Xml::Element& parent, int& place) {
    std::string text;
    for (; isCharData(parent.getChild(place)); ++place) {
        text += plainText(*parent.getChild(place)->toCharData());
    }
    return text;
}

}  // namespace

FlatTree::FlatTree(const Xml::Element& root) {
    open(root, 0);
    while (!mOpen.empty()) {
        Open& top = mOpen.back();
        const Xml::Object* child = top.element->getChild(top.next);
        if (child == nullptr) {
            close();
        } else if (child->isElement()) {
            open(*child->toElement(), static_cast<std::uint32_t>(top.next++));
        } else {
            addTexts();
        }
    }
}

std::vector<std::uint32_t> FlatTree::childrenOf(std::uint32_t index) const {
    std::vector<std::uint32_t> children;
    const std::uint32_t end = mNodes[index].end;
    for (std::uint32_t child = index + 1; child < end; child = mNodes[child].end) {
        children.push_back(child);
    }
    return children;
}

const Xml::Element& FlatTree::element(std::uint32_t index) const {
    return *mNodes[index].node->toElement();
}

std::string FlatTree::text(std::uint32_t index) const {
    const FlatNode& node = mNodes[index];
    int place = static_cast<int>(node.place);
    return textsFrom(*node.node->getParent()->toElement(), place);
}

void FlatTree::open(const Xml::Element& element, std::uint32_t place) {
    Digest digest;
    digest.add(kElement);
    digest.add(element.getName());
    const std::uint64_t name = digest.value();
    for (int i = 0; i < element.getAttributeCount(); ++i) {
        const Xml::Attribute& attribute = *element.getAttribute(i);
        digest.add(attribute.getName());
        digest.add(bytesOf(attribute.getValue()));
    }
    // Otherwise a child could be taken for one more attribute.
    digest.add(static_cast<std::uint64_t>(element.getAttributeCount()));
    const std::uint64_t head = digest.value();
    mOpen.push_back({static_cast<std::uint32_t>(mNodes.size()), &element, 0, digest});
    mNodes.push_back({&element, place, 0, name, head, 0});
}

void FlatTree::addTexts() {
    Open& parent = mOpen.back();
    const int place = parent.next;
    const std::string text = textsFrom(*parent.element, parent.next);
    if (text.empty()) return;
    Digest digest;
    digest.add(kText);
    digest.add(text);
    const auto index = static_cast<std::uint32_t>(mNodes.size());
    mNodes.push_back({parent.element->getChild(place), static_cast<std::uint32_t>(place), index + 1,
                      kText, kText, digest.value()});
    parent.digest.add(digest.value());
}

void FlatTree::close() {
    const Open closed = mOpen.back();
    mOpen.pop_back();
    FlatNode& node = mNodes[closed.index];
    node.end = static_cast<std::uint32_t>(mNodes.size());
    node.whole = closed.digest.value();
    if (!mOpen.empty()) mOpen.back().digest.add(node.whole);
}

}  // namespace tools
