#pragma once

#include <cstdint>
#include <vector>

#include "store/card_table.h"

namespace tessaro {

// The link index: card numbers in ascending order with the card table row of each, so that a link finds its card.
class LinkIndex {
 public:
  // As LearnIndex::Build, Adopt and ToTable, for the .idt file.
  [[nodiscard]] bool Build(const CardTable& cards);
  [[nodiscard]] bool Adopt(const CardTable& table, const CardTable& cards);
  CardTable ToTable(const CardTable& cards) const;

  int RowCount() const;
  // The card table row of the card with this number (the first in index order when several have it); 0 when no card has.
  int RowOfId(int64_t id) const;
};

}  // namespace tessaro
