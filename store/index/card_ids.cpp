#include "store/index/card_ids.h"

#include <algorithm>
#include <cstring>
#include <functional>

#include "platform/other_thread.h"
#include "store/table/card_columns.h"

namespace tessaro {
namespace {

uint64_t Mixed(uint64_t bits) {
  bits *= 0x9E3779B97F4A7C15U;
  return bits ^ (bits >> 29U);
}

}  // namespace

CardIds::CardIds(const CardTable& cards, const Known& known)
    : cards_(cards), row_count_(cards.RowCount()), id_column_(cards.ColumnIndex(kId)) {
  numbers_.assign(static_cast<size_t>(row_count_) + 1, kNotSixDigits);
  const auto [front, behind] = InTwoParts(kFirstCardRow, std::max(kFirstCardRow, row_count_),
                                          [&](int first, int last) { return Collect(first, last, known); });
  highest_ = front.goes_on ? std::max(front.highest, behind.highest) : front.highest;
  fingerprint_ = front.fingerprint + behind.fingerprint;
}

CardIds::Part CardIds::Collect(int first, int last, const Known& known) {
  Part part;
  auto next = static_cast<size_t>(std::lower_bound(known.rows.begin(), known.rows.end(), first) - known.rows.begin());
  for (int row = first; row < last; ++row) {
    const bool is_known = next < known.rows.size() && known.rows[next] == row;
    uint32_t number = is_known ? known.numbers[next++] : kNotSixDigits;
    std::string_view id;
    if (number == kNotSixDigits) {
      cards_.Expect(row + CardTable::kAhead);
      id = cards_.Peek(id_column_, row);
      number = SixDigits(id);
      part.goes_on = part.goes_on && !id.starts_with('#');
    }
    numbers_[static_cast<size_t>(row)] = number;
    if (part.goes_on) part.highest = std::max(part.highest, number != kNotSixDigits ? number : LeadingNumber(id));
    const uint64_t text = number != kNotSixDigits ? number : std::hash<std::string_view>()(id);
    part.fingerprint += Mixed(Mixed(text) ^ static_cast<uint64_t>(row));
  }
  return part;
}

}  // namespace tessaro
