#include "VexXml/XPath.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <memory>
#include <memory_resource>
#include <string_view>
#include <utility>

#include "VexSys/Localization.h"
#include "VexXml/Dom.h"
#include "xpath/CompiledExpression.h"
#include "xpath/Encoding.h"
#include "xpath/Error.h"
#include "xpath/Evaluator.h"
#include "xpath/RecentExpressions.h"
#include "xpath/Values.h"

namespace Xml {
namespace {

using VexSys::Uni16String;

constexpr const char* kModule = "XPath";
constexpr const char* kDetailMark = " --> ";

// What most evaluations take.
constexpr std::size_t kUsualSize = 2048;

// All bits of a word index that asks for the whole text.
constexpr std::uint32_t kWholeText = 0xFFFFFFFF;

Document* documentOf(Object* node) {
    while (node != nullptr && !node->isDocument()) node = node->getParent();
    return node != nullptr ? node->toDocument() : nullptr;
}

XPath::ResultItem nodeItem(Object* node) {
    XPath::ResultItem item;
    item.node = node;
    return item;
}

Uni16String fromUTF8(std::string_view text) {
    return VexSys::UTF8ToUni16Char(text.data(), text.size());
}

Uni16String textOf(const XPath::ResultItem& item) {
    switch (item.kind) {
        case XPath::Node: {
            TextBuffer buffer;
            ValueTexts texts;
            return item.node != nullptr ? fromUTF8(texts.of(*item.node, buffer)) : Uni16String();
        }
        case XPath::String:
            return item.text;
        case XPath::Number:
            return VexSys::PlatformCStringToUni16Char(numberText(item.number).c_str());
        default:
            return item.flag ? L"1" : L"0";
    }
}

bool isAbsolute(const ExpressionText& text) { return text[0] == L'/'; }

bool isDocument(const ExpressionText& text) { return text.size() == 1 && isAbsolute(text); }

Uni16String detailOf(const Misses::Blamed& blamed, const ExpressionText& text) {
    Uni16String detail(blamed.step->testText);
    if (!blamed.byPredicates) return detail;
    for (const Predicate& predicate : blamed.step->predicates) {
        detail += text.asWritten({predicate.text.begin - 1, predicate.text.end + 1});
    }
    return detail;
}

}  // namespace

XPath::XPath(Object* contextNode) : mDocument(documentOf(contextNode)), mNodes{contextNode} {}

XPath::XPath(const XPath& other) = default;
XPath::XPath(XPath&& other) noexcept
    : mError(std::exchange(other.mError, NoError)),
      mDocument(std::exchange(other.mDocument, nullptr)),
      mNodes(std::move(other.mNodes)),
      mValues(std::move(other.mValues)),
      mItems(std::move(other.mItems)),
      mErrorDetail(std::move(other.mErrorDetail)) {}

XPath& XPath::operator=(const XPath& other) = default;

XPath& XPath::operator=(XPath&& other) noexcept {
    if (this == &other) return *this;
    mError = std::exchange(other.mError, NoError);
    mDocument = std::exchange(other.mDocument, nullptr);
    mNodes = std::exchange(other.mNodes, {});
    mValues = std::exchange(other.mValues, {});
    mItems = std::exchange(other.mItems, {});
    mErrorDetail = std::exchange(other.mErrorDetail, {});
    return *this;
}

XPath::~XPath() = default;

unsigned long XPath::GetValues(const Uni16String& expression) {
    return runQuery(ExpressionSource(expression));
}

unsigned long XPath::GetValues(const std::string& expression) {
    return runQuery(ExpressionSource(expression));
}

// An expression that was compiled for nodes may not do for values.
unsigned long XPath::runQuery(const ExpressionSource& source) {
    if (mDocument == nullptr) return 0;
    const bool startsFromNodes = mValues.empty();
    std::unique_ptr<CompiledExpression> expression =
        startsFromNodes ? RecentExpressions::take(source)
                        : std::make_unique<CompiledExpression>(source);
    const unsigned long count = FindNodes(*expression) ? GetNrOfResults() : 0;
    if (startsFromNodes && expression->isCompiled()) RecentExpressions::keep(std::move(expression));
    return count;
}

Uni16String XPath::GetValue(const Uni16String& expression, long wordIndex) {
    return GetValues(expression) > 0 ? GetValue(0, wordIndex) : Uni16String();
}

std::string XPath::GetValueUTF8(const std::string& expression, long wordIndex) {
    return GetValues(expression) > 0 ? GetValueUTF8(0, wordIndex) : std::string();
}

// A word is never counted, so every index but 0 comes to the end of the text. Deliberate: callers
// that go through the words of a value stop there.
Uni16String XPath::GetValue(unsigned long index, long wordIndex) {
    const bool isInBounds = index < GetNrOfResults();
    mError = isInBounds ? NoError : IndexOutOfBounds;
    if (!isInBounds) return {};
    const ResultItem item = itemOf(index);
    Uni16String text = textOf(item);
    const bool isWord = item.kind == Node && item.node != nullptr && item.node->isAttribute() &&
                        static_cast<std::uint32_t>(wordIndex) != kWholeText;
    if (!isWord) return text;
    if (wordIndex != 0 || text.empty()) {
        mError = IndexOutOfBounds;
        return {};
    }
    return text.substr(0, text.find(L' '));
}

std::string XPath::GetValueUTF8(unsigned long index, long wordIndex) {
    return toUTF8(GetValue(index, wordIndex));
}

unsigned long XPath::GetNrOfResults() const { return mNodes.size() + mValues.size(); }

// Most callers want the number of results or their texts, so the nodes stay bare until then.
const std::vector<XPath::ResultItem>& XPath::GetResults() const {
    if (!mValues.empty()) return mValues;
    if (mItems.size() != mNodes.size()) {
        mItems.reserve(mNodes.size());
        std::transform(mNodes.begin(), mNodes.end(), std::back_inserter(mItems), nodeItem);
    }
    return mItems;
}

// Needs: the index is below the number of results.
XPath::ResultItem XPath::itemOf(unsigned long index) const {
    return mNodes.empty() ? mValues[index] : nodeItem(mNodes[index]);
}

bool XPath::SyntaxOK(const Uni16String& expression) {
    return checkSyntax(ExpressionSource(expression));
}

bool XPath::SyntaxOK(const std::string& expression) {
    return checkSyntax(ExpressionSource(expression));
}

// The results that do not stay are those that a query would have used up, or replaced.
bool XPath::checkSyntax(const ExpressionSource& source) {
    CompiledExpression expression(source);
    if (!begin(expression.text())) return false;
    if (isDocument(expression.text())) return true;
    const XPathError error = expression.compile(Compiler::Context::Nodes);
    const bool isGood = error.code == NoError;
    if (isGood == isAbsolute(expression.text())) clearResults();
    return isGood || fail(error.code, error.detail);
}

XPath::ErrorCode XPath::GetErrorCode() const { return mError; }

Uni16String XPath::GetErrorDetail() const {
    return showsDetail(mError) ? mErrorDetail : Uni16String();
}

Uni16String XPath::GetErrorString() const {
    Uni16String text = VexSys::Localization::GetString(errorKey(mError), kModule, "");
    if (!showsDetail(mError)) return text;
    return text + VexSys::PlatformCStringToUni16Char(kDetailMark) + GetErrorDetail();
}

std::string XPath::GetErrorStringUTF8() const { return toUTF8(GetErrorString()); }

// False when the expression has nothing in it or nothing to start from.
bool XPath::begin(const ExpressionText& text) {
    setError(text.error().code, text.error().detail);
    if (text.size() == 0) return fail(NoXPathSpecified, {});
    if (isAbsolute(text) || GetNrOfResults() > 0) return true;
    return fail(NoContextNodes, text.asWritten(text.whole()));
}

// A relative expression starts from the results and uses them up; an absolute one replaces them.
bool XPath::FindNodes(CompiledExpression& expression) {
    const ExpressionText& text = expression.text();
    if (!begin(text)) {
        clearResults();
        return false;
    }
    std::vector<Object*> nodes = std::exchange(mNodes, {});
    std::vector<ResultItem> values = std::exchange(mValues, {});
    mItems.clear();
    if (isAbsolute(text)) {
        nodes.assign(1, mDocument);
        values.clear();
    }
    if (!expression.isCompiled()) {
        const XPathError error = expression.compile(values.empty() ? Compiler::Context::Nodes
                                                                   : Compiler::Context::Values);
        if (error.code != NoError) return fail(error.code, error.detail);
    }
    EvaluateExpression(expression, nodes, values);
    mNodes.swap(nodes);
    mValues.swap(values);
    return true;
}

// Needs: `nodes` or `values` is empty. They are the context, and become the results.
void XPath::EvaluateExpression(const CompiledExpression& expression, std::vector<Object*>& nodes,
                               std::vector<ResultItem>& values) {
    std::array<std::byte, kUsualSize> buffer;
    std::pmr::monotonic_buffer_resource memory(buffer.data(), buffer.size());
    Evaluator evaluator(expression.program(), *mDocument, &memory);
    Outcome outcome = evaluator.evaluate(std::move(nodes));
    nodes = std::move(outcome.nodes);
    values = std::move(outcome.values);
    const Misses::Blamed& blamed = evaluator.blamed();
    const bool isEmpty = nodes.empty() && values.empty();
    if (isEmpty && blamed.step != nullptr) {
        setError(NodeNotFound, detailOf(blamed, expression.text()));
    }
}

void XPath::clearResults() {
    mNodes.clear();
    mValues.clear();
    mItems.clear();
}

void XPath::setError(ErrorCode error, const Uni16String& detail) {
    mError = error;
    mErrorDetail = detail;
}

bool XPath::fail(ErrorCode error, const Uni16String& detail) {
    setError(error, detail);
    return false;
}

}  // namespace Xml
