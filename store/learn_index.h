#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "store/card_table.h"

namespace tessaro {

// The learning index: one row per card, sorted by the card's predicted retention time, the worst-known card first.
// Row 1 is a start row and the last row an end row; cards stand between them, so N cards fill rows 2 ... N + 1.
// It is kept as numbers; the text table of the .row file is made when it is saved.
class LearnIndex {
 public:
  // Builds the index from the card table as it stands. False when the card table has a defect (a card row without ID).
  [[nodiscard]] bool Build(const CardTable& cards);
  // Takes over a table read from a .row file, if it fits the cards: columns, start and end row as written by ToTable,
  // every card exactly once with its own ID, ascending keys. False leaves the index as it was.
  [[nodiscard]] bool Adopt(const CardTable& table, const CardTable& cards);
  // The index as the table that a .row file holds.
  CardTable ToTable(const CardTable& cards) const;

  // Rows with start and end row; 0 before the first Build or Adopt.
  int RowCount() const;
  // The card table row that index row `row` points to: -1 for the start row, 999999 for the end row, 0 when there is no
  // such row.
  int BoxPos(int row) const;
  // The key of a row: its score read as a number; 0 when there is no such row.
  int64_t Score(int row) const;
  // The index row of a card table row; 0 when the card is not in the index.
  int RowOfCard(int card_row) const;

  // Moves the card to the first row whose score is not below `score` (into the place before it), or leaves it where it
  // is when it already stands with this score before that place; a card that was missing is inserted.
  void Update(int card_row, int64_t score);
};

}  // namespace tessaro
