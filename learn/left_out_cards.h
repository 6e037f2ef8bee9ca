#pragma once

#include <cstdint>
#include <span>
#include <unordered_set>
#include <vector>

#include "store/file/card_file.h"

namespace tessaro {

// The cards that can never be chosen, known without reading their sides again, and the learning index as it
// looks without them: where N cards are left, they stand at the positions 2 ... N + 1 in their order in the index.
//
// Such cards are few and hardly ever answered, so only their own order in the index is kept; where a position lies
// follows from the places that they have in the index at that moment.
class LeftOutCards {
 public:
  // Finds them among all cards.
  explicit LeftOutCards(const CardFile& file) : file_(file) { FindAll(); }
  void FindAll();
  // To be called after the index row of this card has changed.
  void IndexRowChanged(int card_row);
  // Follows the cards after rows moved, after texts changed in these rows, and after the index was built anew.
  void Follow(const RowShift& shift);
  void TextsChanged(std::span<const int> rows);
  void SortByIndex();

  bool Has(int card_row) const { return rows_.contains(card_row); }
  // How many other cards the file has.
  int OthersCount() const;
  // The index row that a position leads to. A position beyond the last card leads to the end row or beyond it.
  int64_t IndexRowAt(int64_t position) const;

 private:
  void Judge(int card_row);

  const CardFile& file_;
  std::unordered_set<int32_t> rows_;
  std::vector<int32_t> in_index_;  // those that the index has, in its order
};

}  // namespace tessaro
