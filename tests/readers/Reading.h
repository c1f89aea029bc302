#pragma once

#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "VexXml/Readers.h"
#include "support/PlainInStream.h"

namespace reading {

/// An input that is refused: where reading stopped, and the text of the message, null for none.
struct Failure {
    std::string input;
    int position;
    const char* text;
};

inline const char* const kEnd = "Unexpected end of stream";
inline const char* const kQuote = "\"\"\" or \"'\" expected";

/// A message about the first line, where the column is the position.
inline std::string messageAt(int position, const std::string& text, const std::string& className) {
    return "(line = 1, column = " + std::to_string(position) + ") " + text + " <" + className + ">";
}

/// What the reader answered, where it left the stream, and its message.
inline std::string read(Xml::Reader& reader, Xml::InStream& in) {
    const bool answer = reader.parse(in);
    const std::string& message = reader.getErrorMessage();
    return (answer ? "true at " : "false at ") + std::to_string(in.getPosition()) +
           (message.empty() ? "" : " " + message);
}

inline std::string read(Xml::Reader& reader, const std::string& input) {
    support::PlainInStream in(input);
    return read(reader, in);
}

/// A content model as it stands in its declaration.
inline std::string written(const Xml::ContentSpec& model) {
    std::ostringstream text;
    Xml::FileOutStream out(&text);
    model.toStream(out);
    return text.str();
}

/// What `read` gives for the failure when the message is the reader's own.
inline std::string outcomeOf(const Failure& failure, const std::string& className) {
    std::string outcome = "false at " + std::to_string(failure.position);
    if (failure.text == nullptr) return outcome;
    return outcome + " " + messageAt(failure.position, failure.text, className);
}

/// Reads each input with a new reader that `make` returns.
template <class Make, std::size_t N>
void expectFailures(const Failure (&failures)[N], const std::string& className, const Make& make) {
    for (const Failure& failure : failures) {
        SCOPED_TRACE(failure.input);
        auto reader = make();
        EXPECT_EQ(read(reader, failure.input), outcomeOf(failure, className));
    }
}

}  // namespace reading
