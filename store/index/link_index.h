#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "store/index/card_ids.h"
#include "store/table/card_table.h"
#include "store/table/line_end.h"
#include "store/table/row_shift.h"

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
  bool Fits(const CardIds& ids) const {
    return built_ && fingerprint_.value_or(ids.fingerprint()) == ids.fingerprint();
  }
  [[nodiscard]] bool SaveTo(WritableFile& file, const CardTable& cards) const { return SaveTo(file, CardIds(cards)); }
  [[nodiscard]] bool SaveTo(WritableFile& file, const CardIds& ids, Progress* progress = nullptr) const;

  // Rows with start and end row; 0 before the first Build or Adopt.
  int RowCount() const { return built_ ? static_cast<int>(rows_.size()) + 2 : 0; }
  // The card table row of the card with this number (the first in index order when several have it); 0 when no card
  // has, and for the number 0, which is that of cards without one.
  int RowOfId(int64_t id) const;

  // Rows of the card table were removed or have got new numbers. Cards that were removed leave the index; those that
  // came are not in it until they are put there.
  void Shift(const RowShift& shift);
  // Takes the cards in these rows, ascending, out of the index, ...
  void Remove(std::span<const int> card_rows);
  // ... or puts them in with the IDs that they have, each before the first number that is not below it.
  void Put(std::span<const int> card_rows, const CardTable& cards);

 private:
  template <typename ReadRows>
  bool AdoptRows(const ReadRows& read_rows, const CardIds& ids, LineEnd line_end);

  bool built_ = false;
  std::vector<int64_t> ids_;              // in index order
  std::vector<int32_t> rows_;             // beside ids_: the card table rows
  std::optional<uint64_t> fingerprint_;   // of the IDs in their rows; nothing once it followed a change of them
  LineEnd line_end_ = LineEnd::LineFeed;  // of the file that it was read from
};

}  // namespace tessaro
