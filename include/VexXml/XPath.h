#pragma once

/// Queries over the tree: nodes and values selected by XPath expressions.

#include <cstdint>
#include <string>
#include <vector>

#include "VexSys/Uni16.h"
#include "VexXml/Export.h"

namespace Xml {

class Document;
class CompiledExpression;
class ExpressionText;
class Object;
struct ExpressionSource;

/// Answers queries about one document, starting from one of its nodes.
///
/// An expression that begins with "/" starts from the document. Any other starts from the results
/// of the query before it, the first from the node that was given to the constructor, so that
/// queries can be chained:
///
///     Xml::XPath query(&document);
///     query.GetValues("/menu/dish");    // every dish
///     query.GetValues("@name");         // and then the name of each
///
/// Results refer to nodes of the tree and own none. They hold until the tree changes; then the next
/// expression must begin with "/", and the document must still live.
///
/// Several threads may query one document at the same time, each with an object of its own, as long
/// as nobody changes the document. An object is used by one thread at a time, `const` operations
/// included.
///
/// Texts are UTF-16 in a `VexSys::Uni16String`. Expressions are taken in UTF-8 in a `std::string`
/// as well, and what ends in `UTF8` gives texts back so. Nothing is thrown: a query that fails
/// leaves an error code and a text about it. So does one that finds nothing, except that the code
/// is `NoError` when only a part of its expression found nothing, as `none + some` does.
class VEXXML_API XPath {
public:
    /// Why the last query has no result. Behind each code stands an expression that gives it.
    enum ErrorCode : std::uint32_t {
        NoError = 0,
        IndexOutOfBounds = 1,            ///< none does, but `GetValue(99)`
        NodeNotFound = 2,                ///< nothing was selected
        NodeContainsNoData = 3,          ///< never set
        DoubleSlashAtEnd = 4,            ///< `a//`
        NoXPathSpecified = 5,            ///< ` ` or `a[]`
        IllegalCharAfterLiteral = 6,     ///< `a['b'c]`
        IllegalCharAfterFunction = 7,    ///< `a[last()c]`
        IllegalCharAfterKindTest = 8,    ///< `text()`
        IllegalCharInNumber = 9,         ///< `a[1x]`
        IllegalCharAfterPredicate = 10,  ///< `a[1]b`
        NoValidAttributeName = 11,       ///< `@5`
        NoValidNameOrTest = 12,          ///< `a/5`
        NoContextNodes = 13,             ///< `a` when the query before it found nothing
        SlashAtEnd = 14,                 ///< `a/`
        NoValidAxis = 15,                ///< `up::a`
        NoValidInitialAxis = 16,         ///< never set
        NoValidComparison = 17,          ///< never set
        MissingOpeningQuote = 18,        ///< never set
        MissingClosingQuote = 19,        ///< `a['b]`
        MissingClosingBracket = 20,      ///< `a[1`
        MissingFunctionClose = 21,       ///< `a[last(]`
        MissingFunctionOpen = 22,        ///< `a[last]`
        MissingKindTestClose = 23,       ///< `text(x`
        MissingKindTestOpen = 24,        ///< `texts`
        NoPositionArgument = 25,         ///< never set
        ContextIsNotANode = 26           ///< `a` when the query before it gave a number
    };

    /// What a result is.
    enum ResultKind : std::uint32_t { Node = 0, String = 1, Number = 2, Boolean = 3 };

    /// A node or a value.
    struct ResultItem {
        /// The index of the context item that a value inside a predicate belongs to. Always -1 for
        /// the results of a query.
        std::int32_t tag = -1;
        ResultKind kind = Node;    ///< tells which of the following counts
        Object* node = nullptr;    ///< Node only, not owned
        VexSys::Uni16String text;  ///< String only
        double number = 0;         ///< Number only
        bool flag = false;         ///< Boolean only
    };

    /// The direction of a location step.
    enum Axis : std::uint32_t {
        NoAxis = 0,
        AttributeAxis = 1,          ///< `attribute::a` or `@a`
        ChildAxis = 2,              ///< `child::a` or `a`
        DescendantAxis = 3,         ///< `descendant::a`
        ParentAxis = 4,             ///< `parent::a`
        AncestorAxis = 5,           ///< `ancestor::a`
        FollowingSiblingAxis = 6,   ///< `following-sibling::a`
        PrecedingSiblingAxis = 7,   ///< `preceding-sibling::a`
        FollowingAxis = 8,          ///< `following::a`
        PrecedingAxis = 9,          ///< `preceding::a`
        DescendantOrSelfAxis = 10,  ///< `descendant-or-self::a`
        AncestorOrSelfAxis = 11,    ///< `ancestor-or-self::a`
        SelfAxis = 12               ///< `self::a`
    };

    /// What kind of node a location step selects, when it does not go by the name.
    enum KindTest : std::uint32_t {
        NoKind = 0,
        AnyNode = 1,        ///< `node`
        ElementNode = 2,    ///< `element`
        AttributeNode = 3,  ///< `attribute`
        DocumentNode = 4,   ///< `document-node`
        TextNode = 5        ///< `text`
    };

    /// The operators, with the forms that they are written in.
    enum ExpressionOperators : std::uint32_t {
        Less = 0,            ///< `<` or ` lt `
        LessOrEqual = 1,     ///< `<=` or ` le `
        Equal = 2,           ///< `=` or ` eq `
        Greater = 3,         ///< `>` or ` gt `
        GreaterOrEqual = 4,  ///< `>=` or ` ge `
        NotEqual = 5,        ///< `!=` or ` ne `
        Addition = 6,        ///< ` + `
        Subtraction = 7,     ///< ` - `
        Division = 8,        ///< ` div `
        Multiplication = 9,  ///< ` * `
        NoOperator = 10
    };

    /// What came of looking for a function's name in front of an operand.
    enum FunctionState : std::uint32_t {
        NotThisFunction = 0,
        MalformedFunction = 1,  ///< the error is set
        FunctionRead = 2
    };

    /// Makes `contextNode` the only result. It may be null or outside any document; then there is
    /// nothing to be found, and only `SyntaxOK` is of use.
    explicit XPath(Object* contextNode);
    XPath(const XPath& other);
    XPath(XPath&& other) noexcept;
    XPath& operator=(const XPath& other);
    XPath& operator=(XPath&& other) noexcept;
    ~XPath();

    /// Runs the query and returns the number of its results; 0 when it fails. Without a document it
    /// does nothing, and the error stays as it is.
    unsigned long GetValues(const VexSys::Uni16String& expression);
    unsigned long GetValues(const std::string& expression);

    /// Runs the query as `GetValues` does and gives the text of the first result, or an empty one.
    VexSys::Uni16String GetValue(const VexSys::Uni16String& expression, long wordIndex = -1);
    /// The same in UTF-8.
    std::string GetValueUTF8(const std::string& expression, long wordIndex = -1);

    /// The text of a result, counted from 0. When there is none, an empty text and
    /// `IndexOutOfBounds`.
    ///
    /// The text of an attribute is its value; of an element the first of its children that is
    /// character data, so possibly none; of a document an empty one. Numbers have six decimals; a
    /// boolean is "1" or "0".
    ///
    /// With the word index -1 the text comes whole. With 0 an attribute gives what stands in front
    /// of the first space, be it nothing; an empty value, or any other index, is
    /// `IndexOutOfBounds`.
    VexSys::Uni16String GetValue(unsigned long index, long wordIndex = -1);
    /// The same in UTF-8.
    std::string GetValueUTF8(unsigned long index, long wordIndex = -1);

    /// The number of results of the last query.
    unsigned long GetNrOfResults() const;
    /// Valid until the next query.
    const std::vector<ResultItem>& GetResults() const;

    /// Whether the expression is well-formed. Nothing is selected, but the results change: after
    /// true, a relative expression leaves them as they are and an absolute one ("/" apart) leaves
    /// none; after false it is the other way round. White space alone leaves them as they are.
    bool SyntaxOK(const VexSys::Uni16String& expression);
    bool SyntaxOK(const std::string& expression);

    /// Why the last query has no result; `NoError` when it has one.
    ErrorCode GetErrorCode() const;
    /// The piece of the expression that the error is about; empty when it is about none.
    VexSys::Uni16String GetErrorDetail() const;
    /// The text of the error, in the language of `VexSys::Localization`, and for most of them
    /// " --> " and the detail.
    VexSys::Uni16String GetErrorString() const;
    /// The same in UTF-8.
    std::string GetErrorStringUTF8() const;

private:
    unsigned long runQuery(const ExpressionSource& source);
    bool checkSyntax(const ExpressionSource& source);
    bool begin(const ExpressionText& text);
    bool FindNodes(CompiledExpression& expression);
    void EvaluateExpression(const CompiledExpression& expression, std::vector<Object*>& nodes,
                            std::vector<ResultItem>& values);
    ResultItem itemOf(unsigned long index) const;
    void clearResults();
    void setError(ErrorCode error, const VexSys::Uni16String& detail);
    bool fail(ErrorCode error, const VexSys::Uni16String& detail);

    ErrorCode mError = NoError;
    Document* mDocument = nullptr;  ///< null when the context node is in none
    // The results, which are also the context of the next relative expression.
    std::vector<Object*> mNodes;             ///< empty when they are values
    std::vector<ResultItem> mValues;         ///< empty when they are nodes
    mutable std::vector<ResultItem> mItems;  ///< of the nodes, made by `GetResults`
    VexSys::Uni16String mErrorDetail;
};

}  // namespace Xml
