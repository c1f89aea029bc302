#include <memory>
#include <string>
#include <vector>

#include "VexXml/Dom.h"
#include "VexXml/XPath.h"
#include "tools/CommandLine.h"
#include "tools/Commands.h"
#include "tools/Diagnostics.h"
#include "tools/ErrorPrinter.h"
#include "tools/Expression.h"
#include "tools/Output.h"
#include "tools/Reading.h"
#include "tools/Utf8.h"

namespace tools {
namespace {

constexpr const char* kNotes =
    "Of an attribute the value is printed, of an element its first text. With several\n"
    "files each result, or count, has \"FILE:\" in front. A result may hold line feeds;\n"
    "-0 ends it with a NUL. An expression that does not begin with \"/\" starts from the\n"
    "document; in front of one that begins with \"-\" write \"--\". Kind tests stand\n"
    "without parentheses, as in \"//title/text\", and names are compared as written, with\n"
    "their prefixes. The document's own DTD need not be kept to. All files are tried.\n";

constexpr const char* kReplacement = "\xEF\xBF\xBD";  // U+FFFD

constexpr const char* kReplaced = "bytes that are not UTF-8 appear as U+FFFD";
constexpr const char* kNotUtf8 = "what is written is not UTF-8";

struct Options {
    std::string expression;
    std::vector<std::string> inputs;
    bool count = false;        ///< print how many results there are in place of the results
    bool asNode = false;       ///< print nodes as XML in place of their texts
    bool asValue = false;      ///< print their texts, which is done anyway
    bool endsWithNul = false;  ///< print a NUL behind each result in place of a line feed
    Xml::ReadLimits limits;
};

// A document ends with a line feed, which is not to make an empty line in front of the next result.
std::string xmlOf(Xml::Object& node) {
    std::string text = textOf(node);
    if (node.isDocument()) text.pop_back();
    return text;
}

std::string textOfResult(Xml::XPath& query, unsigned long index, bool asNode) {
    const Xml::XPath::ResultItem& result = query.GetResults()[index];
    const bool isNode = result.kind == Xml::XPath::Node;
    return asNode && isNode ? xmlOf(*result.node) : query.GetValueUTF8(index);
}

// One query over one document.
class DocumentQuery {
public:
    DocumentQuery(const Options& options, const DocumentReading& reading)
        : mOptions(options), mSource(reading.source), mQuery(reading.document.get()) {
        if (options.inputs.size() > 1) mPrefix = mSource.name + ':';
    }

    Status run(BlockWriter& out) {
        const unsigned long count = mQuery.GetValues(mOptions.expression);
        if (mOptions.count) {
            print(std::to_string(count), out);
        } else {
            printResults(count, out);
        }
        return count > 0 ? Success : NothingSelected;
    }

private:
    void print(const std::string& text, BlockWriter& out) const {
        out.write(mPrefix);
        out.write(text);
        out.write({mOptions.endsWithNul ? "\0" : "\n", 1});
    }
    void printResults(unsigned long count, BlockWriter& out) {
        Diagnostics diagnostics;
        bool isEachUtf8 = true;
        bool hasReplacement = false;
        for (unsigned long i = 0; i < count && !out.hasFailed(); ++i) {
            const std::string text = textOfResult(mQuery, i, mOptions.asNode);
            isEachUtf8 = isEachUtf8 && isUtf8(text);
            hasReplacement = hasReplacement || text.find(kReplacement) != std::string::npos;
            print(text, out);
        }
        out.flush();
        diagnostics.printAsWarnings(mSource.name);
        if (!isEachUtf8) printWarning(mSource.name, kNotUtf8);
        const bool isReplaced =
            hasReplacement && mSource.text.find(kReplacement) == std::string::npos;
        if (isReplaced) printWarning(mSource.name, kReplaced);
    }

    const Options& mOptions;
    const Source& mSource;
    std::string mPrefix;  ///< in front of each result
    Xml::XPath mQuery;
};

Status queryOne(const Options& options, const std::string& input, BlockWriter& out) {
    const DocumentReading reading = readDocument(input, options.limits, OwnDtd::Ignored);
    if (reading.status != Success) return Trouble;
    return DocumentQuery(options, reading).run(out);
}

Status query(const Options& options) {
    if (!checkExpression(options.expression)) return Trouble;
    BlockWriter out;
    Status total = NothingSelected;
    for (const std::string& input : options.inputs) {
        const Status status = queryOne(options, input, out);
        if (status == Trouble || total == NothingSelected) total = status;
        if (out.hasFailed()) return Trouble;
    }
    out.flush();
    return out.hasFailed() ? Trouble : total;
}

}  // namespace

void addQuery(const CommandLine& line) {
    const auto options = std::make_shared<Options>();
    Command command(line,
                    {"query", "Print what an XPath expression selects", kNotes, kSelectionStatuses},
                    options->limits);
    command.addFlag("--count", options->count, "Print only how many results there are");
    command.addFlag("--node", options->asNode, "Print nodes as XML");
    command.addFlag("--value", options->asValue, "Print the text of each result (the default)");
    command.exclude("--value", "--node");
    command.addFlag("-0", options->endsWithNul, "End results with a NUL, not a line feed");
    command.addExpression(options->expression);
    command.addInputs(options->inputs);
    command.run([options] { return query(*options); });
}

}  // namespace tools
