#include "settings/option_text.h"

#include <algorithm>
#include <charconv>
#include <string>

namespace tessaro {
namespace {

std::string_view Trimmed(std::string_view text) {
  const size_t first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

// The whole text as a number.
template <typename Number, typename... Format>
std::optional<Number> Whole(std::string_view text, Format... format) {
  Number number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number, format...);
  if (error != std::errc() || end != text.data() + text.size()) return std::nullopt;
  return number;
}

}  // namespace

std::optional<int64_t> TypedNumber(std::string_view text, const NumberSetting& setting) {
  const auto number = Whole<int64_t>(Trimmed(text));
  return number && setting.Allows(*number) ? number : std::nullopt;
}

std::optional<double> TypedDecimal(std::string_view text, const DecimalSetting& setting) {
  std::string digits(Trimmed(text));
  std::replace(digits.begin(), digits.end(), ',', '.');
  const auto number = Whole<double>(digits, std::chars_format::fixed);
  return number && setting.Allows(*number) ? number : std::nullopt;
}

}  // namespace tessaro
