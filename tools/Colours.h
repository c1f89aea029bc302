#pragma once

#include <string_view>

namespace tools {

inline constexpr std::string_view kBold = "\x1b[1m";
inline constexpr std::string_view kBoldRed = "\x1b[1;31m";
inline constexpr std::string_view kBoldMagenta = "\x1b[1;35m";
inline constexpr std::string_view kBlue = "\x1b[34m";
inline constexpr std::string_view kCyan = "\x1b[36m";
inline constexpr std::string_view kGreen = "\x1b[32m";
inline constexpr std::string_view kPlain = "\x1b[0m";

/// Whether what is written to an open file is coloured by itself: on a terminal, unless the user's
/// NO_COLOR says otherwise.
bool usesColour(int file);

}  // namespace tools
