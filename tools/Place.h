#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace tools {

/// A place in a text as an editor shows it. A line ends with LF, CRLF or CR.
struct Place {
    std::size_t line;         ///< counted from 1
    std::size_t column;       ///< in characters of UTF-8, counted from 1
    std::string_view source;  ///< the line without its end
    std::size_t offset;       ///< of the place in `source`, in bytes
};

/// The place of the byte at `position`, which may be just behind the last one. The result refers to
/// `text`.
Place locate(std::string_view text, std::size_t position);

/// The source line and below it a caret under the place, both ended by a line feed.
///
/// Of a long line only what is around the place is shown. What a terminal would act on appears as
/// "?"; tabs stay, in both lines, so that the caret stands under its character at any tab width.
std::string excerpt(const Place& place);

/// The text with whatever a terminal would act on replaced by "?", line ends and tabs included.
std::string harmless(std::string_view text);

}  // namespace tools
