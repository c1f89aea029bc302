#pragma once

#include <string_view>

namespace tools {

/// Whether the byte can only go on a character, not begin one.
bool isContinuation(char byte);
/// The first character, or one byte if it does not begin a whole one. Needs: not empty.
std::string_view firstCharacter(std::string_view text);
/// Whether the text is made of whole characters.
bool isUtf8(std::string_view text);

}  // namespace tools
