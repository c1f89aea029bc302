#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "VexXml/Streams.h"
#include "support/Diagnostics.h"

namespace documents {

/// A document from the folder cases/: NAME.xml, and what becomes of it as NAME.expected has it.
struct Case {
    std::string name;
    std::string text;
    std::string expected;
};

/// All of them, in the order of their names.
const std::vector<Case>& cases();

/// What becomes of a document: "report: " and the text of each diagnostic, on a line each; then the
/// document as it is written, or "error: " and the reader's message.
std::string rewritten(const std::string& text, support::Diagnostics& diagnostics);

/// Runs in the folder cases/, where the documents name other files.
class InCasesFolder : public testing::Test {
protected:
    InCasesFolder();
    ~InCasesFolder() override;

    support::Diagnostics diagnostics;

private:
    std::string mFolderBefore;
};

}  // namespace documents
