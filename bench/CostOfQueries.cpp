#include <functional>
#include <memory>

#include "VexXml/Dom.h"
#include "VexXml/XPath.h"
#include "bench/CostCases.h"
#include "bench/QueryDocuments.h"

namespace Bench {
namespace {

// An expression asked of a document with `size` nodes.
CostCase queryCase(const std::string& expression, bool isDeep, std::size_t smallest = 40000) {
    return {(isDeep ? "deep " : "flat ") + expression, "record", smallest,
            [=](std::size_t size) -> CostRun {
                const int count = static_cast<int>(size);
                const std::shared_ptr<Xml::Document> document =
                    isDeep ? makeDeepDocument(count) : makeFlatDocument(count);
                return {size, [=] { Xml::XPath(document.get()).GetValues(expression); }};
            }};
}

// An expression that grows, asked of a small document.
CostCase expressionCase(const std::string& name,
                        const std::function<std::string(std::size_t size)>& makeExpression,
                        std::size_t smallest = 10000) {
    return {"expression " + name, "part", smallest, [=](std::size_t size) -> CostRun {
                const std::shared_ptr<Xml::Document> document = makeDeepDocument(10);
                const std::string expression = makeExpression(size);
                return {size, [=] { Xml::XPath(document.get()).GetValues(expression); }};
            }};
}

// Begins once, goes on n times, and ends n times.
CostCase expressionCase(const std::string& begin, const std::string& piece, const std::string& end,
                        std::size_t smallest = 10000) {
    return expressionCase(
        begin + piece + "..." + end,
        [=](std::size_t size) { return begin + repeated(piece, size) + repeated(end, size); },
        smallest);
}

// As many steps as there are levels.
CostCase stepsCase(const std::string& step) {
    return {"n steps " + step + " down a chain", "step", 10000, [=](std::size_t size) -> CostRun {
                const std::shared_ptr<Xml::Document> document =
                    makeDeepDocument(static_cast<int>(size));
                const std::string expression = "/r" + repeated(step, size);
                return {size, [=] { Xml::XPath(document.get()).GetValues(expression); }};
            }};
}

}  // namespace

std::vector<CostCase> costsOfQueries() {
    std::vector<CostCase> cases;
    for (const bool isDeep : {false, true}) {
        for (const char* expression :
             {"//a", "//a//b", "//a//*", "//a/preceding::*", "//a/following::*",
              "//a/following-sibling::*", "//a/preceding-sibling::*", "//a/ancestor::*",
              "/r/a[following-sibling::a]", "/r/a[preceding-sibling::none]", "//a[ancestor::a]",
              "//a[ancestor::none]", "//a[preceding::none]", "//a[.//none]", "//a[descendant::b]",
              "//a[b = //b]"}) {
            cases.push_back(queryCase(expression, isDeep));
        }
        for (const char* expression : {"//a[following-sibling::b = 'x']", "//a[preceding::b = 'x']",
                                       "//a[descendant::b = 'x']", "//a[ancestor::a[b = 'x']]",
                                       "//a[following-sibling::a[@id = 'x']]"}) {
            cases.push_back(queryCase(expression, isDeep, 500));
        }
    }
    cases.push_back(stepsCase("/a"));
    cases.push_back(stepsCase("/*"));
    cases.push_back(expressionCase("a", "/a", ""));
    cases.push_back(expressionCase("a", "//a", ""));
    cases.push_back(expressionCase("/r/a", "/self::node", ""));
    cases.push_back(expressionCase("/r/a", "/ancestor::node/descendant::node", "", 1000));
    cases.push_back(expressionCase("/r/a", "[1]", ""));
    cases.push_back(expressionCase("//a", "[a", "]"));
    cases.push_back(expressionCase("/r", "[a", "]"));
    cases.push_back(expressionCase("//*", "[*", "]"));
    cases.push_back(expressionCase("/r", "[1 = 1", "]"));
    cases.push_back(expressionCase("/r", "[a", ""));
    cases.push_back(expressionCase("/r", "[", ""));
    cases.push_back(expressionCase("/r", "]", ""));
    cases.push_back(expressionCase("/r", "[\"", ""));
    cases.push_back(expressionCase("/r", "'", ""));
    cases.push_back(expressionCase("1", " + 1", ""));
    cases.push_back(expressionCase("1", " * 1 + 1", ""));
    cases.push_back(expressionCase("//a", " = //a", ""));
    cases.push_back(expressionCase("1", " ", ""));
    cases.push_back(expressionCase("1", "1", ""));
    cases.push_back(expressionCase("'", "x", "'"));
    cases.push_back(expressionCase("a", "a", ""));
    cases.push_back(expressionCase("", "/", ""));
    cases.push_back(expressionCase("", ":", ""));
    cases.push_back(expressionCase("", "a::", ""));
    cases.push_back(expressionCase("", "self::", ""));
    cases.push_back(expressionCase("", "last(", ""));
    cases.push_back(expressionCase("", " = ", ""));
    return cases;
}

}  // namespace Bench
