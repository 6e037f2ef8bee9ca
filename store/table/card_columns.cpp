#include "store/table/card_columns.h"

#include <algorithm>
#include <cstdint>
#include <limits>

#include "platform/eight_digits.h"
#include "store/table/card_table.h"

namespace tessaro {
namespace {

bool IsBlank(char c) {
  return c == ' ' || (c >= '\t' && c <= '\r');
}
bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}

}  // namespace

CardColumns ColumnsOf(const CardTable& cards) {
  return {cards.ColumnIndex(kId),       cards.ColumnIndex(kTopic),  cards.ColumnIndex(kQuestion),
          cards.ColumnIndex(kAnswer),   cards.ColumnIndex(kScore),  cards.ColumnIndex(kTimeLearned),
          cards.ColumnIndex(kYesNoRow), cards.ColumnIndex(kTimeRow)};
}

namespace {

// Whether one of the tags stands in the text. It is looked through once for all of them.
template <typename IsTag>
bool HasTag(std::string_view text, IsTag is_tag) {
  for (size_t at = text.find('<'); at != std::string_view::npos; at = text.find('<', at + 1)) {
    if (is_tag(text.substr(at))) return true;
  }
  return false;
}

bool BeginsNavigation(std::string_view text) {
  return text.starts_with("<navigation>") || text.starts_with("<NAVIGATION>");
}

bool BeginsDuplicateMark(std::string_view text) {
  return text.starts_with("<+++>");
}

}  // namespace

bool IsNavigation(std::string_view question) {
  return HasTag(question, BeginsNavigation);
}

bool IsDuplicateMarked(std::string_view text) {
  return HasTag(text, BeginsDuplicateMark);
}

bool IsLeftOut(std::string_view id, std::string_view question, std::string_view answer) {
  const auto begins_either = [](std::string_view text) { return BeginsNavigation(text) || BeginsDuplicateMark(text); };
  return HasEndMark(id) || HasTag(question, begins_either) || IsDuplicateMarked(answer);
}

std::string BlankTimeRow() {
  std::string times = "0";
  for (int i = 1; i < kHistoryLength; ++i) times += " 0";
  return times;
}

std::string BlankYesNoRow() {
  return std::string(kHistoryLength, 'f');
}

std::string IdText(int64_t number) {
  constexpr size_t kDigits = 6;
  constexpr int64_t kMost = 999'999;
  if (number < 0 || number > kMost) {
    const std::string digits = std::to_string(number);
    return std::string(digits.size() < kDigits ? kDigits - digits.size() : 0, '0') + digits;
  }
  std::string text = "000000";
  for (size_t i = kDigits; number > 0; number /= 10) text[--i] = static_cast<char>('0' + number % 10);
  return text;
}

int64_t LeadingNumber(std::string_view text) {
  constexpr uint64_t kMost = std::numeric_limits<int64_t>::max();
  constexpr size_t kDigitsAtOnce = 8;
  constexpr size_t kSafeDigits = 18;  // so many never go beyond kMost
  size_t i = 0;
  while (i < text.size() && IsBlank(text[i])) ++i;
  const bool negative = i < text.size() && text[i] == '-';
  if (i < text.size() && (text[i] == '-' || text[i] == '+')) ++i;
  uint64_t number = 0;
  const size_t safe_end = std::min(text.size(), i + kSafeDigits);
  if (text.size() - i >= kDigitsAtOnce && ReadEightDigits(text.data() + i, number)) i += kDigitsAtOnce;
  for (; i < safe_end && IsDigit(text[i]); ++i) number = number * 10 + static_cast<uint64_t>(text[i] - '0');
  for (; i < text.size() && IsDigit(text[i]); ++i) {
    const auto digit = static_cast<uint64_t>(text[i] - '0');
    if (number > (kMost - digit) / 10)
      return negative ? std::numeric_limits<int64_t>::min() : static_cast<int64_t>(kMost);
    number = number * 10 + digit;
  }
  return negative ? -static_cast<int64_t>(number) : static_cast<int64_t>(number);
}

bool HasDigits(std::string_view text) {
  const auto* at = std::find_if_not(text.begin(), text.end(), IsBlank);
  if (at != text.end() && (*at == '-' || *at == '+')) ++at;
  return at != text.end() && IsDigit(*at);
}

}  // namespace tessaro
