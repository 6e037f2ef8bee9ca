#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "store/index/card_ids.h"
#include "store/table/card_table.h"
#include "store/table/line_end.h"

namespace tessaro {

class Progress;
class WritableFile;

// The link index: card numbers in ascending order with the card table row of each, so that a link finds its card.
class LinkIndex {
 public:
  // As with LearnIndex, for the .idt file. A card number above 999999 is left out.
  [[nodiscard]] bool Build(const CardTable& cards) { return Build(cards, CardIds(cards)); }
  [[nodiscard]] bool Build(const CardTable& cards, const CardIds& ids, Progress* progress = nullptr);
  [[nodiscard]] bool Adopt(const CardTable& table, const CardIds& ids);
  [[nodiscard]] bool Adopt(std::string_view text, const CardIds& ids);
  bool Fits(const CardIds& ids) const { return built_ && fingerprint_ == ids.fingerprint(); }
  [[nodiscard]] bool SaveTo(WritableFile& file, const CardTable& cards, Progress* progress = nullptr) const;

  // Rows with start and end row; 0 before the first Build or Adopt.
  int RowCount() const { return built_ ? static_cast<int>(rows_.size()) + 2 : 0; }
  // The card table row of the card with this number (the first in index order when several have it); 0 when no card
  // has.
  int RowOfId(int64_t id) const;

 private:
  template <typename ReadRows>
  bool AdoptRows(const ReadRows& read_rows, const CardIds& ids, LineEnd line_end);

  bool built_ = false;
  std::vector<int64_t> ids_;   // in index order
  std::vector<int32_t> rows_;  // beside ids_: the card table rows
  uint64_t fingerprint_ = 0;
  LineEnd line_end_ = LineEnd::LineFeed;  // of the file that it was read from
};

}  // namespace tessaro
