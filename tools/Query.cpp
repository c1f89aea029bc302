#include <string>

#include "VexXml/Dom.h"
#include "VexXml/XPath.h"
#include "tools/Commands.h"
#include "tools/Diagnostics.h"
#include "tools/ErrorPrinter.h"
#include "tools/Expression.h"
#include "tools/Output.h"
#include "tools/Reading.h"
#include "tools/Utf8.h"

namespace tools {
namespace {

constexpr const char* kReplacement = "\xEF\xBF\xBD";  // U+FFFD

constexpr const char* kReplaced = "bytes that are not UTF-8 appear as U+FFFD";
constexpr const char* kNotUtf8 = "what is written is not UTF-8";

// Writes results in blocks: one by one they would cost a system call each, all at once memory.
class ResultPrinter {
public:
    explicit ResultPrinter(char separator) : mSeparator(separator) {}

    void print(const std::string& prefix, const std::string& text) {
        mBlock.append(prefix).append(text) += mSeparator;
        if (mBlock.size() >= kBlockSize) flush();
    }
    void flush() {
        if (!mHasFailed) mHasFailed = !writeToStandardOutput(mBlock);
        mBlock.clear();
    }
    /// Whether something could not be written, which has been told.
    bool hasFailed() const { return mHasFailed; }

private:
    static constexpr std::size_t kBlockSize = std::size_t{64} * 1024;

    char mSeparator;
    std::string mBlock;
    bool mHasFailed = false;
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
    DocumentQuery(const QueryOptions& options, const DocumentReading& reading)
        : mOptions(options), mSource(reading.source), mQuery(reading.document.get()) {
        if (options.inputs.size() > 1) mPrefix = mSource.name + ':';
    }

    Status run(ResultPrinter& printer) {
        const unsigned long count = mQuery.GetValues(mOptions.expression);
        if (mOptions.count) {
            printer.print(mPrefix, std::to_string(count));
        } else {
            printResults(count, printer);
        }
        return count > 0 ? Success : NothingSelected;
    }

private:
    void printResults(unsigned long count, ResultPrinter& printer) {
        Diagnostics diagnostics;
        bool isEachUtf8 = true;
        bool hasReplacement = false;
        for (unsigned long i = 0; i < count && !printer.hasFailed(); ++i) {
            const std::string text = textOfResult(mQuery, i, mOptions.asNode);
            isEachUtf8 = isEachUtf8 && isUtf8(text);
            hasReplacement = hasReplacement || text.find(kReplacement) != std::string::npos;
            printer.print(mPrefix, text);
        }
        printer.flush();
        diagnostics.printAsWarnings(mSource.name);
        if (!isEachUtf8) printWarning(mSource.name, kNotUtf8);
        const bool isReplaced =
            hasReplacement && mSource.text.find(kReplacement) == std::string::npos;
        if (isReplaced) printWarning(mSource.name, kReplaced);
    }

    const QueryOptions& mOptions;
    const Source& mSource;
    std::string mPrefix;  ///< in front of each result
    Xml::XPath mQuery;
};

Status queryOne(const QueryOptions& options, const std::string& input, ResultPrinter& printer) {
    const DocumentReading reading = readDocument(input, options.limits, OwnDtd::Ignored);
    if (reading.status != Success) return Trouble;
    return DocumentQuery(options, reading).run(printer);
}

}  // namespace

Status query(const QueryOptions& options) {
    if (!checkExpression(options.expression)) return Trouble;
    ResultPrinter printer(options.separator);
    Status total = NothingSelected;
    for (const std::string& input : options.inputs) {
        const Status status = queryOne(options, input, printer);
        if (status == Trouble || total == NothingSelected) total = status;
        if (printer.hasFailed()) return Trouble;
    }
    printer.flush();
    return printer.hasFailed() ? Trouble : total;
}

}  // namespace tools
