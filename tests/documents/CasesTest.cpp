#include <gtest/gtest.h>

#include <set>
#include <string>

#include "documents/Cases.h"

namespace {

using documents::Case;
using Documents = documents::InCasesFolder;

TEST_F(Documents, AreRewrittenOrRefusedAsExpected) {
    for (const Case& document : documents::cases()) {
        EXPECT_EQ(documents::rewritten(document.text, diagnostics), document.expected)
            << document.name << ".xml";
    }
}

/// The class that reports, or "" where there is no message.
std::string reporterOf(const std::string& expected) {
    const std::size_t start = expected.rfind(" <Xml::");
    return start == std::string::npos ? ""
                                      : expected.substr(start + 2, expected.size() - start - 4);
}

TEST_F(Documents, AreRefusedByEveryReader) {
    std::set<std::string> reporters;
    for (const Case& document : documents::cases()) {
        if (document.expected.find("error: ") != std::string::npos) {
            reporters.insert(reporterOf(document.expected));
        }
    }
    const std::set<std::string> all = {"",
                                       "Xml::AttListReader",
                                       "Xml::ChildrenSpecReader",
                                       "Xml::CommentReader",
                                       "Xml::DTDReader",
                                       "Xml::DoctypeReader",
                                       "Xml::DocumentReader",
                                       "Xml::ElementDeclReader",
                                       "Xml::ElementReader",
                                       "Xml::EntityReader",
                                       "Xml::MixedSpecReader",
                                       "Xml::PIReader",
                                       "Xml::VersionInfoReader"};
    EXPECT_EQ(reporters, all);
}

}  // namespace
