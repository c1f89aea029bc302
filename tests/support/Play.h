#pragma once

#include <functional>
#include <map>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "VexXml/Dom.h"
#include "support/LogStream.h"
#include "support/TreeModel.h"

namespace model {

/// Real nodes and the model of each, changed together. Every step takes what it works on by chance,
/// and does nothing when there is no such node.
class Play {
public:
    Play() {
        adoptDtd("one");
        adoptDtd("two");
    }
    Play(const Play&) = delete;
    Play& operator=(const Play&) = delete;
    ~Play() {
        while (!mNodes.empty()) destroy(*topOf(*mNodes.back()));
    }

    /// Takes the step that the number stands for.
    void step(unsigned number);
    /// Empty, or the first difference between the real nodes and the model.
    std::string difference();
    /// The steps so far, one a line.
    const std::string& story() const { return mStory; }

private:
    // Choosing by chance.
    int below(int limit);
    Node* any();
    Node* anyThat(const std::function<bool(Node&)>& wanted);
    Node* anyOf(Node::Kind kind);
    Node* anyTop();
    Node* anyLooseChild(const Node& parent);
    Node* anyDtdOrNone();
    std::string anyName() { return std::string(1, static_cast<char>('a' + below(5))); }
    std::string anyText() { return "t" + std::to_string(below(3)); }

    // The steps.
    void makeElement();
    void makeCharData();
    void makeDocument();
    void addChild();
    void insertChild();
    void extractChild();
    void setDtd();
    void setParent();
    void touch();
    void touchByAttribute();
    void write();
    void setAttribute();
    void removeAttribute();
    void setName();
    void setData();
    void setCharData();
    void copy();
    void assignElement();
    void moveElement();
    void assignCharData();
    void assignDocument();
    void killChildren();
    void validate();
    void validateDocument();
    void extractFromDocument();
    void destroyTop();

    // Keeping both sides together.
    Node* adopt(Node::Kind kind, Xml::Object* real);
    Node* adoptDtd(const std::string& name);
    Node* copyOf(const Node& source);
    void attach(Node& top, Xml::Object* real);
    void moveContent(Node& copy, Node& target);
    void nameApart(Node& dtd);
    void linkChild(Node& parent, Node& child, std::size_t place);
    void letGo(const std::vector<Node*>& dying);
    void forget(const std::vector<Node*>& dead);
    void destroy(Node& top);
    bool isHeld(const Node& node) const;
    Node* topOf(Node& node) const;
    void tell(const std::string& what) { mStory += what + '\n'; }
    std::string show(const Node* node);

    std::string difference(const Node& node);
    std::string writtenByBoth(Node& node, int position);

    std::mt19937 mRandom;
    std::vector<std::unique_ptr<Node>> mNodes;
    unsigned mStep = 0;
    unsigned mMadeInStep = 0;
    std::map<unsigned, std::size_t> mNames;  ///< what the nodes are called in the story, by key
    int mDtdCount = 0;
    std::string mStory;
    std::string mDifference;
    const support::OptimizedRewriting mOptimised;
};

}  // namespace model
