#pragma once

#include <memory>
#include <string>
#include <vector>

#include "VexXml/Dom.h"
#include "VexXml/XPath.h"

namespace xpath {

/// A line of a file in the folder queries/. A new file there is read without further ado.
///
///     in tree.xml from /r/a; parent::node     which document, and the queries in front of each
///     b[1] => b                               expression and answer, as `answerOf` gives it
///
/// Without "from" the queries start from the document. In expressions and answers \t, \n, \r and \s
/// stand for white space (blanks around them do not count), \xNN for a byte. Empty lines and those
/// that begin with "#" do not count.
struct QueryLine {
    std::string place;  ///< "axes.txt:12"
    std::shared_ptr<Xml::Document> document;
    std::vector<std::string> before;
    std::string expression;
    std::string answer;

    /// A query that has been through `before`.
    Xml::XPath query() const;
};

/// Those of all files, in the order of the files' names.
const std::vector<QueryLine>& queryLines();

/// The results with a blank between them, "nothing" when there are none; or the error as
/// "error 14: b/", without its detail "error 26". Results are written
///
///     /            the document
///     i#2          an element, with its attribute id if it has one
///     @v=10        an attribute
///     "text"       character data
///     'text'       a string
///     2.000000     a number
///     true         a boolean
///
/// A failure is added when the query disagrees with itself: `count` is what `GetValues` returned.
std::string answerOf(Xml::XPath& query, unsigned long count);
/// Runs the query first.
std::string answerTo(Xml::XPath& query, const std::string& expression);
/// "" for none.
std::string errorOf(const Xml::XPath& query);

/// Reads a document, which must be good.
std::unique_ptr<Xml::Document> parsed(const std::string& text);

}  // namespace xpath
