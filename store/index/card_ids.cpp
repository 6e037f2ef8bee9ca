#include "store/index/card_ids.h"

#include <algorithm>
#include <cstring>
#include <functional>

#include "store/table/card_columns.h"

namespace tessaro {
namespace {

// Each text lies in memory that is not at hand yet; asking for it so many rows ahead takes a third of the time.
constexpr int kRowsAhead = 16;

uint64_t Mixed(uint64_t bits) {
  bits *= 0x9E3779B97F4A7C15U;
  return bits ^ (bits >> 29U);
}

}  // namespace

CardIds::CardIds(const CardTable& cards)
    : cards_(cards), row_count_(cards.RowCount()), id_column_(cards.ColumnIndex(kId)) {
  numbers_.assign(static_cast<size_t>(row_count_) + 1, kNotSixDigits);
  bool before_end_mark = true;
  for (int row = kFirstCardRow; row < row_count_; ++row) {
    __builtin_prefetch(cards.Peek(id_column_, row + kRowsAhead).data());
    const std::string_view id = cards.Peek(id_column_, row);
    const uint32_t number = SixDigits(id);
    numbers_[static_cast<size_t>(row)] = number;
    before_end_mark = before_end_mark && !id.starts_with('#');
    if (before_end_mark) highest_ = std::max(highest_, number != kNotSixDigits ? number : LeadingNumber(id));
    const uint64_t text = number != kNotSixDigits ? number : std::hash<std::string_view>()(id);
    fingerprint_ += Mixed(Mixed(text) ^ static_cast<uint64_t>(row));
  }
}

}  // namespace tessaro
