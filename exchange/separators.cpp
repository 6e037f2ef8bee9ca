#include "exchange/separators.h"

#include "store/table/card_columns.h"

namespace tessaro {
namespace {

SeparatorFault FaultOf(char separator) {
  if (separator == '\\') return SeparatorFault::Backslash;
  if (separator == 'n') return SeparatorFault::LetterN;
  if (separator >= '0' && separator <= '9') return SeparatorFault::Digit;
  if (separator == '"') return SeparatorFault::Quote;
  return separator == '\n' || separator == '\r' ? SeparatorFault::LineEnd : SeparatorFault::None;
}

}  // namespace

std::string CodeText(std::optional<char> character) {
  return std::to_string(static_cast<signed char>(character.value_or('\0')));
}

std::optional<char> CharacterOfCode(std::string_view code) {
  const char character = static_cast<char>(static_cast<uint64_t>(LeadingNumber(code)) & 0xFFU);
  return character == '\0' ? std::nullopt : std::optional(character);
}

SeparatorFault FaultOf(char one, char other) {
  const SeparatorFault fault = FaultOf(one) != SeparatorFault::None ? FaultOf(one) : FaultOf(other);
  return fault == SeparatorFault::None && one == other ? SeparatorFault::Same : fault;
}

}  // namespace tessaro
