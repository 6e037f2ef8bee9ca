#include "settings/decimal_text.h"

#include <algorithm>
#include <charconv>
#include <cmath>

namespace tessaro {

std::optional<double> LeadingDecimal(std::string text) {
  const size_t comma = text.find(',');
  if (comma != std::string::npos) text[comma] = '.';
  const size_t begin = text.find_first_not_of(" \t+");
  if (begin == std::string::npos) return std::nullopt;
  double number = 0;
  const auto [end, error] = std::from_chars(text.data() + begin, text.data() + text.size(), number);
  if (error != std::errc() || !std::isfinite(number)) return std::nullopt;
  return number;
}

std::string DecimalText(double number) {
  char digits[400];
  const auto end = std::to_chars(digits, digits + sizeof digits, number, std::chars_format::fixed);
  std::string text(digits, end.ptr);
  return text.find('.') == std::string::npos ? text + ".0" : text;
}

std::string WithComma(std::string number) {
  std::replace(number.begin(), number.end(), '.', ',');
  return number;
}

}  // namespace tessaro
