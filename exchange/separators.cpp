#include "exchange/separators.h"

#include "store/table/card_columns.h"

namespace tessaro {

std::string CodeText(std::optional<char> character) {
  return std::to_string(static_cast<signed char>(character.value_or('\0')));
}

std::optional<char> CharacterOfCode(std::string_view code) {
  const char character = static_cast<char>(static_cast<uint64_t>(LeadingNumber(code)) & 0xFFU);
  return character == '\0' ? std::nullopt : std::optional(character);
}

SeparatorFault FaultOf(char separator) {
  // What history, score and times of a card are made of.
  constexpr std::string_view kInColumns = "0123456789 wf";
  if (separator == '\\') return SeparatorFault::Backslash;
  if (separator == 'n') return SeparatorFault::LetterN;
  if (kInColumns.find(separator) != std::string_view::npos) return SeparatorFault::InColumns;
  if (separator == '"') return SeparatorFault::Quote;
  return separator == '\n' || separator == '\r' ? SeparatorFault::LineEnd : SeparatorFault::None;
}

SeparatorFault FaultOf(char separator, char second) {
  const SeparatorFault fault = FaultOf(second);
  return fault == SeparatorFault::None && separator == second ? SeparatorFault::Same : fault;
}

}  // namespace tessaro
