#include "VexXml/XPath.h"

#include <algorithm>
#include <cstdint>
#include <string_view>
#include <utility>

#include "VexSys/Localization.h"
#include "VexXml/Dom.h"
#include "xpath/Compiler.h"
#include "xpath/Encoding.h"
#include "xpath/Error.h"
#include "xpath/Evaluator.h"
#include "xpath/ExpressionText.h"
#include "xpath/Values.h"

namespace Xml {
namespace {

using VexSys::Uni16String;

constexpr const char* kModule = "XPath";
constexpr const char* kDetailMark = " --> ";

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

bool holdsValues(const std::vector<XPath::ResultItem>& items) {
    return !items.empty() && items.front().kind != XPath::Node;
}

// None when the items are values: nothing then starts from them.
NodeList nodesOf(const std::vector<XPath::ResultItem>& items) {
    NodeList nodes;
    if (holdsValues(items)) return nodes;
    nodes.reserve(items.size());
    for (const XPath::ResultItem& item : items) nodes.push_back(item.node);
    return nodes;
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

Uni16String detailOf(const Misses::Blamed& blamed, const ExpressionText& text) {
    Uni16String detail = blamed.step->testText;
    if (!blamed.byPredicates) return detail;
    for (const Predicate& predicate : blamed.step->predicates) {
        detail += text.asWritten({predicate.text.begin - 1, predicate.text.end + 1});
    }
    return detail;
}

}  // namespace

XPath::XPath(Object* contextNode)
    : mDocument(documentOf(contextNode)), mResults{nodeItem(contextNode)} {}

XPath::XPath(const XPath& other) = default;
XPath::XPath(XPath&& other) noexcept
    : mError(std::exchange(other.mError, NoError)),
      mDocument(std::exchange(other.mDocument, nullptr)),
      mResults(std::move(other.mResults)),
      mErrorDetail(std::move(other.mErrorDetail)) {}

XPath& XPath::operator=(const XPath& other) = default;

XPath& XPath::operator=(XPath&& other) noexcept {
    if (this == &other) return *this;
    mError = std::exchange(other.mError, NoError);
    mDocument = std::exchange(other.mDocument, nullptr);
    mResults = std::exchange(other.mResults, {});
    mErrorDetail = std::exchange(other.mErrorDetail, {});
    return *this;
}

XPath::~XPath() = default;

unsigned long XPath::GetValues(const Uni16String& expression) {
    if (mDocument == nullptr) return 0;
    return FindNodes(expression, false) ? GetNrOfResults() : 0;
}

unsigned long XPath::GetValues(const std::string& expression) {
    return GetValues(fromUTF8(expression));
}

Uni16String XPath::GetValue(const Uni16String& expression, long wordIndex) {
    return GetValues(expression) > 0 ? GetValue(0, wordIndex) : Uni16String();
}

std::string XPath::GetValueUTF8(const std::string& expression, long wordIndex) {
    return toUTF8(GetValue(fromUTF8(expression), wordIndex));
}

// A word is never counted, so every index but 0 comes to the end of the text. Deliberate: callers
// that go through the words of a value stop there.
Uni16String XPath::GetValue(unsigned long index, long wordIndex) {
    const bool isInBounds = index < mResults.size();
    mError = isInBounds ? NoError : IndexOutOfBounds;
    if (!isInBounds) return {};
    const ResultItem& item = mResults[index];
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

unsigned long XPath::GetNrOfResults() const { return mResults.size(); }

const std::vector<XPath::ResultItem>& XPath::GetResults() const { return mResults; }

bool XPath::SyntaxOK(const Uni16String& expression) { return FindNodes(expression, true); }

bool XPath::SyntaxOK(const std::string& expression) { return SyntaxOK(fromUTF8(expression)); }

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

// A relative expression starts from the results and uses them up; an absolute one replaces them.
bool XPath::FindNodes(const Uni16String& expression, bool syntaxOnly) {
    const ExpressionText text(expression);
    setError(text.error().code, text.error().detail);
    if (text.size() == 0) {
        if (!syntaxOnly) mResults.clear();
        return fail(NoXPathSpecified, {});
    }
    std::vector<ResultItem> context;
    if (text[0] != L'/') {
        if (mResults.empty()) return fail(NoContextNodes, text.asWritten(text.whole()));
        context.swap(mResults);
    } else if (!syntaxOnly) {
        mResults.clear();
        context.push_back(nodeItem(mDocument));
    }
    const bool isDocument = text.size() == 1 && text[0] == L'/';
    if (isDocument && syntaxOnly) return true;
    if (!EvaluateExpression(context, text, syntaxOnly)) return false;
    mResults.swap(context);
    return true;
}

bool XPath::EvaluateExpression(std::vector<ResultItem>& context, const ExpressionText& text,
                               bool syntaxOnly) {
    if (text.error().code != NoError) return false;
    const bool startsFromValues = !syntaxOnly && holdsValues(context);
    Compiler compiler(text,
                      startsFromValues ? Compiler::Context::Values : Compiler::Context::Nodes);
    Program program;
    if (!compiler.compile(program)) return fail(compiler.error().code, compiler.error().detail);
    if (syntaxOnly) return true;
    Evaluator evaluator(program, *mDocument);
    context = evaluator.evaluate(nodesOf(context));
    const Misses::Blamed& blamed = evaluator.blamed();
    if (context.empty() && blamed.step != nullptr) setError(NodeNotFound, detailOf(blamed, text));
    return true;
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
