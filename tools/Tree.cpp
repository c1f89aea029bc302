#include <unistd.h>

#include <algorithm>
#include <cstddef>
#include <limits>
#include <memory>
#include <string>
#include <vector>

#include "VexXml/Dom.h"
#include "tools/Colours.h"
#include "tools/CommandLine.h"
#include "tools/Commands.h"
#include "tools/Output.h"
#include "tools/PrintEach.h"
#include "tools/Shown.h"
#include "tools/Walk.h"

namespace tools {
namespace {

constexpr const char* kNotes =
    "An element stands on a line with its attributes, and with its text if it holds\n"
    "nothing else; other texts stand on lines of their own. Values and texts are cut\n"
    "behind 60 characters, white space in them is shown as single spaces, and what a\n"
    "terminal would act on as \"?\". \"...\" stands behind an element whose children are\n"
    "left out. Each level is indented by two spaces; beyond level 40 the level stands\n"
    "in front as a number instead. With several files each outline has \"FILE:\" above\n"
    "it. The document's own DTD need not be kept to. All files are tried; the worst\n"
    "one decides the exit status.\n";

struct Options {
    std::vector<std::string> inputs;
    std::size_t depth = std::numeric_limits<std::size_t>::max();
    std::string colour = "auto";
    Xml::ReadLimits limits;
};

// So that what is written for a level is bounded.
constexpr std::size_t kMostIndented = 40;

constexpr ElementColours kColours = {kBlue, kCyan, kGreen, kPlain};

std::string indentation(std::size_t level) {
    std::string out(2 * (std::min(level, kMostIndented) - 1), ' ');
    if (level > kMostIndented) out += std::to_string(level) + ": ";
    return out;
}

class TreePrinter {
public:
    TreePrinter(const Options& options, BlockWriter& out) : mDepth(options.depth), mOut(out) {
        const bool isColoured =
            options.colour == "always" || (options.colour == "auto" && usesColour(STDOUT_FILENO));
        if (isColoured) mColours = kColours;
    }

    void print(const Xml::Element& root) {
        Walk walk(root);
        while (const Xml::Object* node = walk.next()) {
            mOut.write(indentation(walk.level()));
            if (node->isElement()) {
                printElement(*node->toElement(), walk);
            } else {
                printText(*node->toCharData());
            }
            mOut.write("\n");
            if (mOut.hasFailed()) return;
        }
    }

private:
    void printElement(const Xml::Element& element, Walk& walk) {
        mOut.write(shownElement(element, mColours));
        const bool isCut = walk.level() >= mDepth;
        if (isCut || isShownWhole(element)) walk.leaveOut();
        if (isCut && !isShownWhole(element)) mOut.write(" ...");
    }

    void printText(const Xml::CharData& text) {
        mOut.write(mColours.value);
        mOut.write(shown(plainText(text)));
        mOut.write(mColours.plain);
    }

    std::size_t mDepth;
    ElementColours mColours;
    BlockWriter& mOut;
};

Status tree(const Options& options) {
    return printEach(
        options.inputs, options.limits,
        [&](const Xml::Element& root, BlockWriter& out) { TreePrinter(options, out).print(root); });
}

}  // namespace

void addTree(const CommandLine& line) {
    const auto options = std::make_shared<Options>();
    Command command(line, {"tree", "Print an outline of documents", kNotes, kStatuses},
                    options->limits);
    command.addNumber("--depth", 1, options->depth, "Print so many levels only");
    command.addChoice("--color", "WHEN", {"auto", "always", "never"}, options->colour,
                      "Colour the outline: auto, always or never");
    command.addInputs(options->inputs);
    command.run([options] { return tree(*options); });
}

}  // namespace tools
