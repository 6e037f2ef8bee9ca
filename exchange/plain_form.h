#pragma once

#include <optional>
#include <string_view>

#include "platform/side_code_page.h"

// What stands in for characters that the code page of the cards lacks.
namespace tessaro {

// The plain form of a character that the code page lacks: the letter without its accent, the plain sign; empty for a
// character that is not seen, such as a joiner. Nothing when there is none.
std::optional<std::string_view> PlainForm(char32_t character);

// The byte of a letter with the accent that a character behind it puts on it, as some programs write "ä". Nothing when
// `accent` is no such character or the code page lacks the letter with it.
std::optional<char> WithAccent(char letter, char32_t accent, CodePage page = {});
// True for the accents that are characters of their own behind a letter.
bool IsAccent(char32_t character);

}  // namespace tessaro
