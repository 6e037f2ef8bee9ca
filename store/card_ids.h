#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "store/card_table.h"

namespace tessaro {

// The IDs of all cards of a table, read once: checking an index asks for them in any order, and the texts lie far apart
// in memory. Holds while the table stays as it is.
class CardIds {
 public:
  explicit CardIds(const CardTable& cards);

  // Rows of the card table, frame included.
  int RowCount() const { return cards_.RowCount(); }
  // Whether the card in this row, 2 ... RowCount() - 1, has exactly this ID.
  bool Has(int row, std::string_view id) const;
  // The ID of a card read as a number.
  int64_t Number(int row) const;
  // Whether every card has an ID that is not empty.
  bool complete() const { return complete_; }
  // The highest number of a card, up to the first row whose ID begins with "#".
  int64_t highest() const { return highest_; }
  // Changes when the IDs or the rows they stand in change.
  uint64_t fingerprint() const { return fingerprint_; }

 private:
  const CardTable& cards_;
  int id_column_;
  std::vector<uint32_t> numbers_;  // by row
  bool complete_ = true;
  int64_t highest_ = 0;
  uint64_t fingerprint_ = 0;
};

}  // namespace tessaro
