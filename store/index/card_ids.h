#pragma once

#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "store/table/card_columns.h"
#include "store/table/card_table.h"

namespace tessaro {

// The number that the program writes as this ID. An ID in any other form is text and nothing else.
inline constexpr uint32_t kNotSixDigits = UINT32_MAX;
inline uint32_t SixDigits(std::string_view id) {
  return id.size() == 6 ? DigitsOnly(id).value_or(kNotSixDigits) : kNotSixDigits;
}

// The IDs of all cards of a table, read once: checking an index asks for them in any order, and the texts lie far apart
// in memory. Holds while the table stays as it is.
class CardIds {
 public:
  // Numbers of cards that are at hand, as SixDigits reads them, and the rows in ascending order that they stand in.
  struct Known {
    std::span<const int> rows = {};
    std::span<const uint32_t> numbers = {};
  };
  explicit CardIds(const CardTable& cards) : CardIds(cards, Known()) {}
  CardIds(const CardTable& cards, const Known& known);

  // Rows of the card table, frame included.
  int RowCount() const { return row_count_; }
  // The ID of the card in this row as SixDigits reads it; kNotSixDigits for a row that is none of a card.
  uint32_t number(int row) const {
    const auto index = static_cast<size_t>(row);
    return index < numbers_.size() ? numbers_[index] : kNotSixDigits;
  }
  std::string_view Text(int row) const { return cards_.Peek(id_column_, row); }
  // The highest number of a card, up to the first row whose ID begins with "#".
  int64_t highest() const { return highest_; }
  // Changes when the IDs or the rows they stand in change.
  uint64_t fingerprint() const { return fingerprint_; }

 private:
  struct Part {
    int64_t highest = 0;  // up to the first row whose ID begins with "#"
    bool goes_on = true;  // there was none
    uint64_t fingerprint = 0;
  };
  // Collects the numbers of these rows.
  Part Collect(int first, int last, const Known& known);

  const CardTable& cards_;
  int row_count_;
  int id_column_;
  std::vector<uint32_t> numbers_;  // by row
  int64_t highest_ = 0;
  uint64_t fingerprint_ = 0;
};

}  // namespace tessaro
