#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <thread>

#include "VexXml/Readers.h"
#include "VexXml/XPath.h"
#include "faults/Documents.h"
#include "faults/EachAllocation.h"

namespace {

using faults::failEachAllocation;

struct Query {
    explicit Query(const std::string& text) : expression(text) {
        Xml::StringInStream in(faults::kBook);
        Xml::DocumentReader reader;
        reader.parse(in);
        document.reset(reader.extractDocument());
        query = std::make_unique<Xml::XPath>(document.get());
    }
    void run() {
        query->GetValues("/");  // what the next one starts from
        found = query->SyntaxOK(expression) ? "well-formed" : "malformed";
        const unsigned long count = query->GetValues(expression);
        for (unsigned long i = 0; i < count; ++i) found += "|" + query->GetValueUTF8(i);
        found += "|" + query->GetErrorStringUTF8();
        const Xml::XPath copy(*query);
        found += "|" + copy.GetErrorStringUTF8();
    }
    std::string result() const { return found; }

    std::string expression;
    std::unique_ptr<Xml::Document> document;
    std::unique_ptr<Xml::XPath> query;
    std::string found;
};

/// What a query has found stays when checking an expression that goes on from there fails.
struct Check : Query {
    Check() : Query("em[aNameThatIsNoShortText = 'x']/parent::node") { query->GetValues("//em"); }
    void run() {
        found = query->SyntaxOK(expression) ? "well-formed" : "malformed";
        found += "|" + std::to_string(query->GetNrOfResults());
    }
};

// A thread of its own has none of the expressions that others asked before: it keeps those that it
// asks itself, and in the end as many as in the beginning.
template <class Work>
void inNewThread(const Work& work) {
    std::thread(work).join();
}

TEST(FailingMemoryInACheck, LeavesTheResults) {
    inNewThread([] { failEachAllocation<Check>(); });
}

class FailingMemoryInAQuery : public testing::TestWithParam<const char*> {};

TEST_P(FailingMemoryInAQuery, LeavesItUsable) {
    inNewThread([] { failEachAllocation<Query>(std::string(GetParam())); });
}

INSTANTIATE_TEST_SUITE_P(
    Expressions, FailingMemoryInAQuery,
    testing::Values("/book/chapter", "//em", "/book/chapter[@id = '2']/text",
                    "//chapter[position() = last()]/@id", "//em/ancestor::node",
                    "//note[title = 'Note'][em]/following::node", "//title/preceding::node",
                    "//em[../../note]/parent::node", "count", "1 + 2 * 3", "//chapter[2 - 1]",
                    "//chapter/attribute::node", "//nothing", "a[", "//chapter[@id = 'x", "//", "",
                    "text()", "//chapter[last() - 1]//text"));

}  // namespace
