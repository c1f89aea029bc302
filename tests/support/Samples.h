#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "VexXml/Dom.h"

namespace support {

/// A small document whose nodes have numbers, in document order, attributes in front of children.
class Sample {
public:
    explicit Sample(const std::string& text);
    /// The document without a root.
    Sample();

    const std::string& text() const { return mText; }
    /// The first is the document.
    const std::vector<Xml::Object*>& nodes() const { return mNodes; }
    /// What it is and its number, such as `element#3`.
    std::string nameOf(const Xml::Object* node) const;

    /// Needs: the node is of this document.
    std::size_t numberOf(const Xml::Object* node) const { return mNumbers.at(node); }

private:
    void number(Xml::Object& node);

    std::string mText;
    std::unique_ptr<Xml::Document> mDocument;
    std::vector<Xml::Object*> mNodes;
    std::map<const Xml::Object*, std::size_t> mNumbers;
};

/// Documents that use the names and values of `Expressions`.
const std::vector<std::unique_ptr<Sample>>& samples();

}  // namespace support
