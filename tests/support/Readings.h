#pragma once

#include <cstddef>
#include <functional>
#include <string>

#include "VexXml/Readers.h"
#include "VexXml/Streams.h"
#include "support/Diagnostics.h"

namespace support {

/// Each reads from where the stream stands, and tells in one text all that can be seen of it: the
/// answer, the message, where the stream was left, what was read and what was reported.
std::string readingOf(Xml::DocumentReader& reader, Xml::InStream& in, Diagnostics& diagnostics);
std::string readingOf(Xml::ElementReader& reader, Xml::InStream& in, Diagnostics& diagnostics);
std::string readingOf(Xml::DTDReader& reader, Xml::InStream& in, Diagnostics& diagnostics);

/// Lines and columns of the positions up to `size`: they tell which line starts are known.
std::string linesOf(Xml::InStream& in, std::size_t size);

/// Empty when the text reads the same from every kind of stream in memory, of the library's own and
/// of a caller's; or what it reads as where it does not.
std::string differenceBetweenStreams(const std::string& text,
                                     const std::function<std::string(Xml::InStream&)>& reading);

}  // namespace support
