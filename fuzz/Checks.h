#pragma once

#include <string>
#include <string_view>

/// What the library is to do with any input whatsoever. Each check gives an empty text when all is
/// well, and otherwise tells what is wrong. They need nothing of libFuzzer, so that the tests run
/// them over every input that is kept.
namespace fuzz {

/// The input is a document: it reads the same from every kind of stream, and a copy of what was
/// read is like it.
std::string checkDocument(std::string_view input);

/// The input is what stands in a DTD: it reads the same from every kind of stream, and what was
/// read is written, copied and merged without a loss.
std::string checkDtd(std::string_view input);

/// The input is an element: the shortcuts that reading takes over texts in memory show nowhere,
/// be it in the lines and columns that are known afterwards.
std::string checkContent(std::string_view input);

/// The input is a document: once it was written and read, it comes back as it is.
std::string checkRoundTrip(std::string_view input);

/// The first byte chooses a document and the second a node of it; the others are expressions, one a
/// line, each asked of what the one before it found: answers are those of the reference, and
/// `SyntaxOK` agrees with what a query says.
std::string checkXPath(std::string_view input);

/// The input is a document, and behind its first NUL three bytes for each edit of it: which one,
/// of which node, and with what. A document that is written over its former text is as if it had
/// been written from scratch.
std::string checkEdits(std::string_view input);

/// Each two bytes are the number of a step of `model::Play`: the tree is always as the model has
/// it.
std::string checkTree(std::string_view input);

struct Target {
    const char* name;  ///< also that of its folders in corpus/ and failures/
    std::string (*check)(std::string_view input);
};

constexpr Target kTargets[] = {
    {"document", &checkDocument},   {"dtd", &checkDtd},     {"content", &checkContent},
    {"roundtrip", &checkRoundTrip}, {"xpath", &checkXPath}, {"edits", &checkEdits},
    {"tree", &checkTree},
};

}  // namespace fuzz
