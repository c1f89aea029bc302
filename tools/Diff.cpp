#include <algorithm>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "VexXml/Dom.h"
#include "VexXml/Dtd.h"
#include "tools/Alignment.h"
#include "tools/CommandLine.h"
#include "tools/Commands.h"
#include "tools/Diagnostics.h"
#include "tools/FlatTree.h"
#include "tools/Output.h"
#include "tools/Place.h"
#include "tools/Reading.h"
#include "tools/Shown.h"

namespace tools {
namespace {

constexpr const char* kNotes =
    "Prints a line for each difference, with the path to it: what was changed or deleted\n"
    "by its place in OLD, what was inserted by its place in NEW. In a path \"[3]\" counts\n"
    "the children of that name, or the texts, of one element; of more than 100 steps the\n"
    "middle is left out. The order of attributes does not matter, nor whether a character\n"
    "is written as a reference, nor what the library does not keep, such as comments.\n"
    "Texts and values are cut behind 60 characters, beginning near where they differ.\n"
    "\n"
    "Children are paired so that few are left over: first those that are the same, of\n"
    "the others those of the same name and attributes, then those of the same name. Where\n"
    "more than 200 are left over, only those that are unlike all others are paired. So\n"
    "the cost is in proportion to the length of the documents.\n";

constexpr const char* kDiffStatuses =
    "Exit status: 0 the documents are the same, 1 they differ, 2 wrong usage, or a file\n"
    "that cannot be read, parsed or written.";

struct Options {
    std::string oldInput;
    std::string newInput;
    bool quiet = false;
    Xml::ReadLimits limits;
};

using Indices = std::vector<std::uint32_t>;
using Matches = std::vector<Match>;

/// A child that is not the same in both documents.
struct Change {
    enum class Kind { Deleted, Inserted, Changed };
    Kind kind;
    std::uint32_t oldNode;  ///< Deleted and Changed
    std::uint32_t newNode;  ///< Inserted and Changed
    std::string step;       ///< to the child, in the path
};

// Names for the children of an element in a path: "item", or "item[3]" where there are several.
std::vector<std::string> stepsTo(const FlatTree& tree, const Indices& children) {
    std::unordered_map<std::uint64_t, std::pair<std::size_t, std::size_t>> counts;  // all, met
    for (const std::uint32_t child : children) ++counts[tree[child].name].first;
    std::vector<std::string> steps;
    for (const std::uint32_t child : children) {
        auto& [all, met] = counts[tree[child].name];
        ++met;
        const bool isElement = tree[child].node->isElement();
        std::string step = isElement ? harmless(tree.element(child).getName()) : "text";
        if (all > 1) step += '[' + std::to_string(met) + ']';
        steps.push_back(std::move(step));
    }
    return steps;
}

std::vector<std::uint64_t> numbersOf(const FlatTree& tree, const Indices& nodes, std::size_t begin,
                                     std::size_t end, std::uint64_t FlatNode::*number) {
    std::vector<std::uint64_t> numbers;
    for (std::size_t i = begin; i < end; ++i) numbers.push_back(tree[nodes[i]].*number);
    return numbers;
}

// The children of two elements, and which of them are paired.
class Pairing {
public:
    Pairing(const FlatTree& oldTree, const Indices& oldNodes, const FlatTree& newTree,
            const Indices& newNodes)
        : mOldTree(oldTree), mOldNodes(oldNodes), mNewTree(newTree), mNewNodes(newNodes) {
        for (const auto number : {&FlatNode::whole, &FlatNode::head, &FlatNode::name}) {
            pairBy(number);
        }
    }

    /// In the order of the documents.
    std::vector<Change> changes() const {
        const std::vector<std::string> oldSteps = stepsTo(mOldTree, mOldNodes);
        const std::vector<std::string> newSteps = stepsTo(mNewTree, mNewNodes);
        std::vector<Change> changes;
        std::size_t i = 0;
        std::size_t j = 0;
        for (const auto& [oldEnd, newEnd] : withEnd()) {
            for (; i < oldEnd; ++i) {
                changes.push_back({Change::Kind::Deleted, mOldNodes[i], 0, oldSteps[i]});
            }
            for (; j < newEnd; ++j) {
                changes.push_back({Change::Kind::Inserted, 0, mNewNodes[j], newSteps[j]});
            }
            if (i == mOldNodes.size() || j == mNewNodes.size()) break;
            if (mOldTree[mOldNodes[i]].whole != mNewTree[mNewNodes[j]].whole) {
                changes.push_back({Change::Kind::Changed, mOldNodes[i], mNewNodes[j], oldSteps[i]});
            }
            ++i;
            ++j;
        }
        return changes;
    }

private:
    Matches withEnd() const {
        Matches matches = mMatches;
        matches.emplace_back(mOldNodes.size(), mNewNodes.size());
        return matches;
    }

    // What lies between two pairs.
    void pairBy(std::uint64_t FlatNode::*number) {
        Matches matches;
        std::size_t oldBegin = 0;
        std::size_t newBegin = 0;
        for (const Match& match : withEnd()) {
            for (const auto& [left, right] :
                 align(numbersOf(mOldTree, mOldNodes, oldBegin, match.first, number),
                       numbersOf(mNewTree, mNewNodes, newBegin, match.second, number))) {
                matches.emplace_back(oldBegin + left, newBegin + right);
            }
            matches.push_back(match);
            oldBegin = match.first + 1;
            newBegin = match.second + 1;
        }
        matches.pop_back();
        mMatches = std::move(matches);
    }

    const FlatTree& mOldTree;
    const Indices& mOldNodes;
    const FlatTree& mNewTree;
    const Indices& mNewNodes;
    Matches mMatches;
};

// Prints how two trees differ, going into pairs of elements by a list instead of call stack.
class Comparison {
public:
    Comparison(const FlatTree& oldTree, const FlatTree& newTree, BlockWriter& out)
        : mOld(oldTree), mNew(newTree), mOut(out) {}

    void print() {
        enter({0}, {0});
        while (!mLevels.empty() && !mOut.hasFailed()) {
            Level& level = mLevels.back();
            if (level.next == level.changes.size()) {
                mLevels.pop_back();
            } else {
                print(level.changes[level.next++]);
            }
        }
    }

private:
    struct Level {
        std::vector<Change> changes;
        std::size_t next;  ///< the step of the one before stands in the path
    };

    void enter(const Indices& oldNodes, const Indices& newNodes) {
        mLevels.push_back({Pairing(mOld, oldNodes, mNew, newNodes).changes(), 0});
    }

    void print(const Change& change) {
        if (change.kind == Change::Kind::Deleted) {
            write("", "deleted " + shownNode(mOld, change.oldNode));
        } else if (change.kind == Change::Kind::Inserted) {
            write("", "inserted " + shownNode(mNew, change.newNode));
        } else if (mOld[change.oldNode].node->isElement()) {
            const std::uint32_t oldNode = change.oldNode;
            const std::uint32_t newNode = change.newNode;
            compareAttributes(mOld.element(oldNode), mNew.element(newNode));
            enter(mOld.childrenOf(oldNode), mNew.childrenOf(newNode));
        } else {
            writeChange("", mOld.text(change.oldNode), mNew.text(change.newNode));
        }
    }

    // Both have them in the order of their names.
    void compareAttributes(const Xml::Element& oldElement, const Xml::Element& newElement) {
        const int oldCount = oldElement.getAttributeCount();
        const int newCount = newElement.getAttributeCount();
        int i = 0;
        int j = 0;
        while (i < oldCount && j < newCount) {
            const Xml::Attribute& before = *oldElement.getAttribute(i);
            const Xml::Attribute& now = *newElement.getAttribute(j);
            const int order = before.getName().compare(now.getName());
            if (order < 0) write(before, "deleted ");
            if (order > 0) write(now, "inserted ");
            if (order == 0) compareValues(before, now);
            if (order <= 0) ++i;
            if (order >= 0) ++j;
        }
        for (; i < oldCount; ++i) write(*oldElement.getAttribute(i), "deleted ");
        for (; j < newCount; ++j) write(*newElement.getAttribute(j), "inserted ");
    }

    void write(const Xml::Attribute& attribute, const char* what) {
        write(stepTo(attribute), what + shown(bytesOf(attribute.getValue())));
    }

    void compareValues(const Xml::Attribute& before, const Xml::Attribute& now) {
        if (before.getValue() == now.getValue()) return;
        writeChange(stepTo(before), bytesOf(before.getValue()), bytesOf(now.getValue()));
    }

    static std::string stepTo(const Xml::Attribute& attribute) {
        return "/@" + harmless(attribute.getName());
    }

    void writeChange(const std::string& step, std::string_view before, std::string_view now) {
        const std::size_t shorter = std::min(before.size(), now.size());
        std::size_t place = 0;
        while (place < shorter && before[place] == now[place]) ++place;
        write(step, "changed " + shownFrom(before, place) + " to " + shownFrom(now, place));
    }

    void write(const std::string& step, const std::string& text) {
        mOut.write(path() + step + ": " + text + '\n');
    }

    std::string path() const {
        constexpr std::size_t kMostAtEachEnd = 50;
        std::string path;
        const std::size_t size = mLevels.size();
        for (std::size_t i = 0; i < size; ++i) {
            if (i == kMostAtEachEnd && size > 2 * kMostAtEachEnd) {
                path += "/...";
                i = size - kMostAtEachEnd;
            }
            path += '/' + mLevels[i].changes[mLevels[i].next - 1].step;
        }
        return path;
    }

    static std::string shownNode(const FlatTree& tree, std::uint32_t index) {
        const bool isElement = tree[index].node->isElement();
        return isElement ? shownElement(tree.element(index)) : shown(tree.text(index));
    }

    const FlatTree& mOld;
    const FlatTree& mNew;
    BlockWriter& mOut;
    std::vector<Level> mLevels;
};

std::string declarationOf(const DocumentReading& reading) {
    Diagnostics diagnostics;
    Xml::Dtd* dtd = reading.document->getDtd();
    return dtd != nullptr ? textOf(*dtd) : "";
}

Status compare(const DocumentReading& before, const DocumentReading& now, bool isQuiet) {
    const FlatTree oldTree(*before.document->getRoot());
    const FlatTree newTree(*now.document->getRoot());
    const bool isSameDeclaration = declarationOf(before) == declarationOf(now);
    const bool isSameTree = oldTree[0].whole == newTree[0].whole;
    if (isSameDeclaration && isSameTree) return Success;
    BlockWriter out;
    if (isQuiet) return Different;
    if (!isSameDeclaration) out.write("<!DOCTYPE>: changed\n");
    if (!isSameTree) Comparison(oldTree, newTree, out).print();
    out.flush();
    return out.hasFailed() ? Trouble : Different;
}

Status diff(const Options& options) {
    if (options.oldInput == "-" && options.newInput == "-") {
        refuseArgument("NEW", "only one document can be the standard input");
    }
    const DocumentReading before = readDocument(options.oldInput, options.limits, OwnDtd::Ignored);
    const DocumentReading now = readDocument(options.newInput, options.limits, OwnDtd::Ignored);
    if (before.status != Success || now.status != Success) return Trouble;
    return compare(before, now, options.quiet);
}

}  // namespace

void addDiff(const CommandLine& line) {
    const auto options = std::make_shared<Options>();
    Command command(line, {"diff", "Print how two documents differ", kNotes, kDiffStatuses},
                    options->limits);
    command.addFlag("--quiet", options->quiet, "Print nothing");
    command.addInput("OLD", options->oldInput, "A document; - for the standard input");
    command.addInput("NEW", options->newInput, "Another one");
    command.run([options] { return diff(*options); });
}

}  // namespace tools
