#include "store/card_columns.h"

#include <algorithm>
#include <cstdint>
#include <limits>

#include "store/card_table.h"

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

bool IsNavigation(std::string_view question) {
  for (size_t at = question.find('<'); at != std::string_view::npos; at = question.find('<', at + 1)) {
    const std::string_view rest = question.substr(at);
    if (rest.starts_with("<navigation>") || rest.starts_with("<NAVIGATION>")) return true;
  }
  return false;
}

bool IsDuplicateMarked(std::string_view text) {
  return text.find("<+++>") != std::string_view::npos;
}

int64_t LeadingNumber(std::string_view text) {
  constexpr int64_t kMost = std::numeric_limits<int64_t>::max();
  constexpr int64_t kLeast = std::numeric_limits<int64_t>::min();
  size_t i = 0;
  while (i < text.size() && IsBlank(text[i])) ++i;
  const bool negative = i < text.size() && text[i] == '-';
  if (i < text.size() && (text[i] == '-' || text[i] == '+')) ++i;
  int64_t number = 0;
  for (; i < text.size() && IsDigit(text[i]); ++i) {
    const int digit = text[i] - '0';
    if (number > (kMost - digit) / 10) return negative ? kLeast : kMost;
    number = number * 10 + digit;
  }
  return negative ? -number : number;
}

bool HasDigits(std::string_view text) {
  const auto* at = std::find_if_not(text.begin(), text.end(), IsBlank);
  if (at != text.end() && (*at == '-' || *at == '+')) ++at;
  return at != text.end() && IsDigit(*at);
}

}  // namespace tessaro
