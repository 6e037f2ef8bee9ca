#pragma once

#include <optional>
#include <string>
#include <string_view>

// The characters that part fields and cards in a text file. Each is one byte of the code page; none = not given.
namespace tessaro {

inline constexpr char kUsualFieldSeparator = '\xA4';  // the currency sign
inline constexpr char kUsualCardSeparator = '|';
inline constexpr char kUsualQuoteSubstitute = '\xA6';  // the broken bar

// The character as a code field shows it: its byte as a signed number, so "-92" for the currency sign; "0" for none.
std::string CodeText(std::optional<char> character);
// What a code field stands for: the number that its text begins with, of which the low byte counts. 0 and a text that
// is no number are none.
std::optional<char> CharacterOfCode(std::string_view code);

// Why cards that are written with a separator cannot be read back.
enum class SeparatorFault { None, Backslash, LetterN, InColumns, Quote, LineEnd, Same };
SeparatorFault FaultOf(char separator);
// Of the second one, `Same` when they are equal.
SeparatorFault FaultOf(char separator, char second);

}  // namespace tessaro
