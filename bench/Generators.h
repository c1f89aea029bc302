#pragma once

/// Documents made from a fixed sequence of numbers, so the same on every machine.
///
/// They keep to what all libraries read alike: ASCII, no white space alone between two tags of
/// mixed content, and behind a quote at the start of a text another one.

#include <string>

namespace Bench {

/// Lots of an auction: elements in elements, some attributes, short and long texts, few references.
std::string makeRecords(std::size_t bytes);
/// `count` small elements side by side.
std::string makeFlat(int count);
/// Elements without text, with a dozen attributes each.
std::string makeAttributes(std::size_t bytes);
/// Paragraphs with elements, line ends, CDATA sections and many references in their text.
std::string makeMixed(std::size_t bytes);
/// Sections in sections, 90 levels, again and again.
std::string makeDeep(std::size_t bytes);
/// `levels` elements, each the only child of the one around it.
std::string makeChain(int levels);
/// Texts that begin with a quote.
std::string makeQuotes(std::size_t bytes);
/// As `makeRecords`, behind an internal subset to which it keeps.
std::string makeValid(std::size_t bytes);

}  // namespace Bench
