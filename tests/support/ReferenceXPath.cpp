#include "support/ReferenceXPath.h"

#include <cstdint>

#include "support/ReferenceXPathValues.h"

namespace support {

using xpath::Items;
using Text = ReferenceXPath::Text;
using Query = ReferenceXPath::Query;

namespace {

Xml::Document* documentOf(Xml::Object* node) {
    while (node != nullptr && !node->isDocument()) node = node->getParent();
    return node == nullptr ? nullptr : node->toDocument();
}

// One word of an attribute's value. The index is never counted down, on purpose: any other than 0
// finds nothing.
bool wordOf(const Text& text, std::uint32_t wordIndex, Text& word) {
    std::size_t at = 0;
    while (at < text.size() && wordIndex != 0) {
        while (at < text.size() && text[at] != L' ') ++at;
        while (at < text.size() && text[at] == L' ') ++at;
    }
    if (at == text.size()) return false;
    word = text.substr(at, text.find(L' ', at) - at);
    return true;
}

}  // namespace

ReferenceXPath::ReferenceXPath(Xml::Object* contextNode)
    : mDocument(documentOf(contextNode)), mResults{xpath::nodeItem(contextNode)} {}

unsigned long ReferenceXPath::GetValues(const Text& expression) {
    if (mDocument == nullptr) return 0;
    reset(false);
    return findNodes(expression) ? mResults.size() : 0;
}

Text ReferenceXPath::GetValue(const Text& expression, long wordIndex) {
    if (mDocument == nullptr) return {};
    reset(false);
    if (!findNodes(expression) || mResults.empty()) return {};
    return GetValue(0UL, wordIndex);
}

Text ReferenceXPath::GetValue(unsigned long index, long wordIndex) {
    mError.code = Query::NoError;
    if (index >= mResults.size()) {
        mError.code = Query::IndexOutOfBounds;
        return {};
    }
    const Query::ResultItem& item = mResults[index];
    const auto word = static_cast<std::uint32_t>(wordIndex);
    const bool isAttribute = item.kind == Query::Node && item.node->isAttribute();
    if (!isAttribute || word == UINT32_MAX) return xpath::toText(item);
    Text text;
    if (!wordOf(xpath::toText(item), word, text)) mError.code = Query::IndexOutOfBounds;
    return text;
}

bool ReferenceXPath::SyntaxOK(const Text& expression) {
    reset(true);
    return findNodes(expression);
}

Text ReferenceXPath::GetErrorDetail() const {
    switch (mError.code) {
        case Query::NoError:
        case Query::IndexOutOfBounds:
        case Query::NoXPathSpecified:
        case Query::ContextIsNotANode:
            return {};
        default:
            return mError.detail;
    }
}

void ReferenceXPath::reset(bool syntaxOnly) {
    mError = {};
    mFailureDepth = 0;
    mSyntaxOnly = syntaxOnly;
}

bool ReferenceXPath::findNodes(const Text& expression) {
    Text text;
    xpath::removeWhiteSpaces(expression, text, mError);
    Items context;
    if (text.empty()) {
        if (!mSyntaxOnly) mResults.clear();
        return mError.set(Query::NoXPathSpecified, {});
    }
    if (text.front() != L'/') {
        if (mResults.empty()) return mError.set(Query::NoContextNodes, text);
        context.swap(mResults);
        return evaluateWhole(context, text);
    }
    if (!mSyntaxOnly) mResults.clear();
    if (text == L"/") {
        if (!mSyntaxOnly) mResults.push_back(xpath::nodeItem(mDocument));
        return true;
    }
    if (!mSyntaxOnly) context.push_back(xpath::nodeItem(mDocument));
    return evaluateWhole(context, text);
}

bool ReferenceXPath::evaluateWhole(const Items& context, const Text& expression) {
    Value value;
    if (!evaluate(context, expression, {false, 1}, value)) return false;
    mResults.clear();
    if (mSyntaxOnly) {
        mResults = context;
        return true;
    }
    for (const Query::ResultItem& item : value.items) {
        if (item.kind == Query::Node) {
            xpath::addNode(item.node, mResults);
        } else {
            xpath::append(mResults, {item}, -1);
        }
    }
    if (!mResults.empty() && mError.code == Query::NodeNotFound) mError = {};
    return true;
}

bool ReferenceXPath::failBecauseNoNode() { return mError.set(Query::ContextIsNotANode, {}); }

}  // namespace support
