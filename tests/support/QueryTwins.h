#pragma once

#include <string>

#include "VexSys/Uni16.h"
#include "VexXml/XPath.h"
#include "support/ReferenceXPath.h"
#include "support/Samples.h"

namespace support {

/// The expression as the 16-bit text that a query takes.
VexSys::Uni16String utf16(const std::string& utf8);

/// The library and the reference, asked the same, one expression after the other.
class QueryTwins {
public:
    /// Queries start from the node, which may also be one outside the sample's document.
    QueryTwins(const Sample& sample, Xml::Object& contextNode);

    /// Empty, or how the answers differ and what was asked so far.
    std::string differenceOn(const std::string& expression);

private:
    std::string syntaxDifference(Xml::XPath before, const std::string& expression) const;

    const Sample& mSample;
    Xml::XPath mQuery;
    ReferenceXPath mReference;
    bool mIsInDocument;
    std::string mStory;
};

}  // namespace support
